#include "SetupScreen.h"

#include "FieldExit.h"
#include "FormPlacement.h"
#include "Prompter.h"
#include "Session.h"
#include "SystemSettings.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

/** The mask whose empty form is "(   )    -            ": area, exchange, up to twelve more. */
const QString PhoneMask = QStringLiteral("(999) 999-999999999999; ");
constexpr int LookupColumns = 3;

QLineEdit* namedLineEdit(const QString& name, QWidget* parent)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    return edit;
}

QString buttonName(const QString& lookupName)
{
    return QStringLiteral("cmd") + QString(lookupName).remove(u' ');
}

/**
 * Buttons take no focus from a click: a click then never counts as leaving
 * the phone field, and the phone is checked once, by the button's own save.
 */
QPushButton* namedButton(const QString& name, const QString& caption, QWidget* parent)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

SetupScreen::SetupScreen(Session& session, QWidget* parent) : QDialog(parent), m_session(session)
{
    setObjectName(QStringLiteral("frmSetup"));
    setWindowTitle(QStringLiteral("Setup"));
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tabSystemOption"));
    buildGeneralTab();
    buildUserFieldsTab();
    buildLookupsTab();
    buildSettingsTab();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addLayout(buildButtons());

    FormPlacement::restore(m_session, this);
    loadValues();
    updateLookupButtons();
    // Leaving the phone for another field checks it; Cancel, which reads every value
    // again, does not.
    onFieldExit(m_phone, [this](QWidget* next) {
        if (next != m_cancel) {
            checkPhone();
        }
    });
}

void SetupScreen::buildGeneralTab()
{
    auto* page = new QWidget(m_tabs);
    auto* form = new QFormLayout(page);
    m_companyName = namedLineEdit(QStringLiteral("txtCompanyName"), page);
    m_address1 = namedLineEdit(QStringLiteral("txtCompanyAddress1"), page);
    m_address2 = namedLineEdit(QStringLiteral("txtCompanyAddress2"), page);
    m_phone = namedLineEdit(QStringLiteral("txtCompanyPhone"), page);
    m_phone->setInputMask(PhoneMask);
    m_email = namedLineEdit(QStringLiteral("txtCompanyEmail"), page);
    m_webSite = namedLineEdit(QStringLiteral("txtCompanyWebSite"), page);
    form->addRow(QStringLiteral("Company Name"), m_companyName);
    form->addRow(QStringLiteral("Address"), m_address1);
    form->addRow(QString(), m_address2);
    form->addRow(QStringLiteral("Phone"), m_phone);
    form->addRow(QStringLiteral("E-mail"), m_email);
    form->addRow(QStringLiteral("Web Site"), m_webSite);
    for (QLineEdit* edit : {m_companyName, m_address1, m_address2, m_phone, m_email, m_webSite}) {
        connect(edit, &QLineEdit::textChanged, this, &SetupScreen::markModified);
    }
    m_tabs->addTab(page, QStringLiteral("General"));
}

void SetupScreen::buildUserFieldsTab()
{
    auto* page = new QWidget(m_tabs);
    auto* layout = new QVBoxLayout(page);
    auto* note = new QLabel(QStringLiteral("Enter desired labels for user definable fields in "
                                           "equipment screen. These labels can be changed any "
                                           "time."),
                            page);
    note->setWordWrap(true);
    layout->addWidget(note);
    auto* form = new QFormLayout;
    for (int i = 0; i < SystemSettings::UserFieldCount; ++i) {
        QLineEdit* edit = namedLineEdit(QStringLiteral("txtField%1").arg(i + 1), page);
        form->addRow(QStringLiteral("Field %1").arg(i + 1), edit);
        connect(edit, &QLineEdit::textChanged, this, &SetupScreen::markModified);
        // Not editingFinished: it also fires while ~QDialog hides a screen already destroyed.
        onFieldExit(edit, [this, i](QWidget*) { restoreBlankCaption(i); });
        connect(edit, &QLineEdit::returnPressed, this, [this, i] { restoreBlankCaption(i); });
        m_userFields.append(edit);
    }
    layout->addLayout(form);
    layout->addStretch();
    m_tabs->addTab(page, QStringLiteral("User Defined Fields"));
}

void SetupScreen::buildLookupsTab()
{
    auto* page = new QWidget(m_tabs);
    auto* layout = new QVBoxLayout(page);
    auto* box = new QGroupBox(QStringLiteral("Available Lookups"), page);
    auto* grid = new QGridLayout(box);
    int index = 0;
    for (const SystemSettings::Lookup& lookup : SystemSettings::lookups()) {
        QPushButton* button = namedButton(buttonName(lookup.name), lookup.name, box);
        grid->addWidget(button, index / LookupColumns, index % LookupColumns);
        connect(button, &QPushButton::clicked, this,
                [this, lookup] { openLookup(lookup.name, lookup.listNumber); });
        m_lookupButtons.insert(lookup.name, button);
        ++index;
    }
    layout->addWidget(box);
    layout->addStretch();
    m_tabs->addTab(page, QStringLiteral("Maintain Lookups"));
}

void SetupScreen::buildSettingsTab()
{
    auto* page = new QWidget(m_tabs);
    auto* layout = new QVBoxLayout(page);
    m_security = new QCheckBox(QStringLiteral("Security On/Off"), page);
    m_security->setObjectName(QStringLiteral("chkSecurity"));
    connect(m_security, &QCheckBox::toggled, this, &SetupScreen::markModified);
    layout->addWidget(m_security);

    auto* form = new QFormLayout;
    m_lateYellow = namedLineEdit(QStringLiteral("txtServiceLateYellow"), page);
    m_lateRed = namedLineEdit(QStringLiteral("txtServiceLateRed"), page);
    m_readingDelay = namedLineEdit(QStringLiteral("txtCountReadingDelay"), page);
    form->addRow(QStringLiteral("Days late before a service shows yellow"), m_lateYellow);
    form->addRow(QStringLiteral("Days late before a service shows red"), m_lateRed);
    form->addRow(QStringLiteral("Days between meter readings"), m_readingDelay);
    const QRegularExpression digits(QStringLiteral("[0-9]*"));
    for (QLineEdit* edit : {m_lateYellow, m_lateRed, m_readingDelay}) {
        edit->setValidator(new QRegularExpressionValidator(digits, edit));
        connect(edit, &QLineEdit::textChanged, this, &SetupScreen::markModified);
    }
    layout->addLayout(form);

    m_defaultSize =
        namedButton(QStringLiteral("cmdDefaultFormSize"), QStringLiteral("Set to default"), page);
    connect(m_defaultSize, &QPushButton::clicked, this,
            [this] { SystemSettings::writeDefaultGeometry(m_session); });
    layout->addWidget(m_defaultSize, 0, Qt::AlignLeft);
    layout->addStretch();
    m_tabs->addTab(page, QStringLiteral("Settings"));
}

QHBoxLayout* SetupScreen::buildButtons()
{
    m_ok = namedButton(QStringLiteral("cmdOk"), QStringLiteral("Ok"), this);
    m_apply = namedButton(QStringLiteral("cmdApply"), QStringLiteral("Save"), this);
    m_cancel = namedButton(QStringLiteral("cmdCancel"), QStringLiteral("Cancel"), this);
    m_exit = namedButton(QStringLiteral("cmdExit"), QStringLiteral("Return"), this);
    auto* row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton* button : {m_ok, m_apply, m_cancel, m_exit}) {
        row->addWidget(button);
    }

    connect(m_ok, &QPushButton::clicked, this, [this] {
        if (!m_modified || saveChanges()) {
            accept();
        }
    });
    connect(m_apply, &QPushButton::clicked, this, [this] { saveChanges(); });
    connect(m_cancel, &QPushButton::clicked, this, &SetupScreen::loadValues);
    connect(m_exit, &QPushButton::clicked, this, &SetupScreen::reject);
    return row;
}

void SetupScreen::loadValues()
{
    const SystemSettings s = SystemSettings::load(m_session);
    m_loading = true;
    m_companyName->setText(s.companyName);
    m_address1->setText(s.companyAddress1);
    m_address2->setText(s.companyAddress2);
    m_phone->setText(s.companyPhone);
    m_email->setText(s.companyEmail);
    m_webSite->setText(s.companyWebSite);
    for (int i = 0; i < m_userFields.size(); ++i) {
        m_userFields[i]->setText(s.userFields.value(i));
    }
    m_security->setChecked(s.security);
    m_lateYellow->setText(s.serviceLateYellow);
    m_lateRed->setText(s.serviceLateRed);
    m_readingDelay->setText(s.countReadingDelay);
    m_loading = false;
    setModified(false);
}

bool SetupScreen::saveChanges()
{
    if (!checkPhone()) {
        return false;
    }
    SystemSettings s;
    s.companyName = m_companyName->text();
    s.companyAddress1 = m_address1->text();
    s.companyAddress2 = m_address2->text();
    s.companyPhone = m_phone->displayText();
    s.companyEmail = m_email->text();
    s.companyWebSite = m_webSite->text();
    for (int i = 0; i < m_userFields.size(); ++i) {
        restoreBlankCaption(i);
        s.userFields[i] = m_userFields[i]->text();
    }
    s.security = m_security->isChecked();
    s.serviceLateYellow = m_lateYellow->text();
    s.serviceLateRed = m_lateRed->text();
    s.countReadingDelay = m_readingDelay->text();
    s.save(m_session);
    setModified(false);
    return true;
}

void SetupScreen::markModified()
{
    if (!m_loading) {
        setModified(true);
    }
}

void SetupScreen::setModified(bool modified)
{
    m_modified = modified;
    m_apply->setVisible(modified);
    m_cancel->setEnabled(modified);
    m_exit->setEnabled(!modified);
}

void SetupScreen::setLookupOpener(const QString& lookupName, LookupOpener opener)
{
    if (opener) {
        m_lookupOpeners.insert(lookupName, std::move(opener));
    } else {
        m_lookupOpeners.remove(lookupName);
    }
    updateLookupButtons();
}

void SetupScreen::setIndicatorOpener(IndicatorOpener opener)
{
    m_indicatorOpener = std::move(opener);
    updateLookupButtons();
}

void SetupScreen::updateLookupButtons()
{
    for (const SystemSettings::Lookup& lookup : SystemSettings::lookups()) {
        const bool canOpen =
            m_lookupOpeners.contains(lookup.name) || (lookup.listNumber > 0 && m_indicatorOpener);
        m_lookupButtons.value(lookup.name)->setEnabled(canOpen);
    }
}

void SetupScreen::openLookup(const QString& name, int listNumber)
{
    if (const LookupOpener opener = m_lookupOpeners.value(name)) {
        opener(this);
    } else if (listNumber > 0 && m_indicatorOpener) {
        m_indicatorOpener(this, listNumber);
    }
}

bool SetupScreen::checkPhone()
{
    if (SystemSettings::isValidPhone(m_phone->displayText())) {
        return true;
    }
    m_session.prompter().message(SystemSettings::InvalidPhoneMessage, Prompter::Buttons::Ok,
                                 Prompter::Icon::Exclamation);
    // Deferred: the focus may be moving because the user switched tabs.
    QTimer::singleShot(0, this, [this] {
        m_tabs->setCurrentWidget(m_phone->parentWidget());
        m_phone->setFocus(Qt::OtherFocusReason);
    });
    return false;
}

void SetupScreen::restoreBlankCaption(int index)
{
    QLineEdit* edit = m_userFields.at(index);
    if (edit->text().trimmed().isEmpty()) {
        edit->setText(SystemSettings::defaultUserField(index + 1));
    }
}

void SetupScreen::reject()
{
    if (m_modified) {
        return;
    }
    QDialog::reject();
}

void SetupScreen::done(int result)
{
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}
