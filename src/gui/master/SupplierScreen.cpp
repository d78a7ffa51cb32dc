#include "SupplierScreen.h"

#include "FormPlacement.h"
#include "IndicatorScreen.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "QuickFindScreen.h"
#include "RecordGrid.h"
#include "ScreenFields.h"

#include <QDoubleValidator>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRegularExpressionValidator>

namespace {

const QString SupplierIdField = QStringLiteral("SupplierID");
const QString NameField = QStringLiteral("Name");

/** The mask whose empty form is "(   )    -            ": area, exchange, up to twelve more. */
const QString PhoneMask = QStringLiteral("(999) 999-999999999999; ");

} // namespace

SupplierScreen::SupplierScreen(Session& session, QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmSupplier"), QStringLiteral("tblSupplier"),
                   SupplierIdField, parent),
      m_manager(session)
{
    setWindowTitle(QStringLiteral("Supplier"));
    QLayout* fields = buildFields();
    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdSupplier"));
    grid->setFields({{SupplierIdField, SupplierIdField},
                     {NameField, QStringLiteral("Supplier Name")},
                     {QStringLiteral("City"), QStringLiteral("City")},
                     {QStringLiteral("Phone"), QStringLiteral("Phone")},
                     {QStringLiteral("ContactName"), QStringLiteral("Contact Name")}},
                    SupplierIdField);
    setStandardLayout(fields, grid);
    setUniqueField(m_supplierId, SupplierIdField, true,
                   MessageTexts::unique(QStringLiteral("Supplier ID")));
    setQuickFind([this] {
        return QuickFindScreen::showQuickFind(
            this->session(), QStringLiteral("tblSupplier"), QStringLiteral("Name"),
            QStringLiteral("Supplier Name"), objectName(), {}, this);
    });
    resize(9990 / FormPlacement::TwipsPerPixel, 6270 / FormPlacement::TwipsPerPixel);
}

QLayout* SupplierScreen::buildFields()
{
    using namespace ScreenFields;
    auto* layout = new QGridLayout;
    int row = 0;
    int column = 0;
    // Two columns of captioned fields, filled row by row, in the order of checking.
    const auto place = [&](const QString& caption, QWidget* field, const QString& name,
                           FieldBindings::Member member, int checks = FieldBindings::None,
                           QWidget* beside = nullptr) {
        QWidget* shown = field;
        if (beside) {
            shown = new QWidget(this);
            auto* pair = new QHBoxLayout(shown);
            pair->setContentsMargins(0, 0, 0, 0);
            pair->addWidget(field, 1);
            pair->addWidget(beside);
        }
        layout->addWidget(new QLabel(caption, this), row, column);
        layout->addWidget(shown, row, column + 1);
        bindField(field, name, member, caption, checks);
        column = column == 0 ? 2 : 0;
        row += column == 0 ? 1 : 0;
    };
    const auto line = [this](const char* name, int maxLength) {
        return lineEdit(this, name, maxLength);
    };
    m_supplierId = line("txtSupplierID", 9);
    m_supplierId->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[0-9]*")), m_supplierId));
    place(QStringLiteral("Supplier ID"), m_supplierId, SupplierIdField, &m_supplier.supplierId,
          FieldBindings::Required);
    place(QStringLiteral("Supplier Name"), line("txtName", 50), NameField, &m_supplier.name,
          FieldBindings::Required);
    place(QStringLiteral("Contact Name"), line("txtContactName", 50), QStringLiteral("ContactName"),
          &m_supplier.contactName);
    place(QStringLiteral("Atten"), line("txtAtten", 50), QStringLiteral("Atten"),
          &m_supplier.atten);
    place(QStringLiteral("Address"), line("txtAddress", 100), QStringLiteral("Address"),
          &m_supplier.address);
    place(QStringLiteral("Address 2"), line("txtAddress2", 100), QStringLiteral("Address2"),
          &m_supplier.address2);
    place(QStringLiteral("City"), line("txtCity", 50), QStringLiteral("City"), &m_supplier.city);
    QComboBox* state = comboBox(this, "cboState");
    const auto loadStates = [this, state] {
        LookupCombo::loadItemWithId(state, m_manager.states(), QStringLiteral("ItemID"),
                                    QStringLiteral("ItemName"), true);
    };
    loadStates();
    QPushButton* stateButton = listButton(this, "cmdState");
    place(QStringLiteral("State"), state, QStringLiteral("State"), &m_supplier.state,
          FieldBindings::None, stateButton);
    setListButton(
        stateButton, state,
        [this](qint64 stateId) {
            IndicatorScreen::showIndicatorDetail(this->session(), IndicatorList::State, stateId, {},
                                                 false, this);
        },
        loadStates);
    place(QStringLiteral("Zip"), line("txtZip", 20), QStringLiteral("Zip"), &m_supplier.zip);
    for (const auto& [caption, name, column, member] :
         {std::tuple{"Phone", "txtPhone", "Phone", &m_supplier.phone},
          std::tuple{"Fax", "txtFax", "Fax", &m_supplier.fax}}) {
        QLineEdit* phone = line(name, 0);
        phone->setInputMask(PhoneMask);
        place(QString::fromLatin1(caption), phone, QString::fromLatin1(column), member);
    }
    place(QStringLiteral("Email"), line("txtEmail", 100), QStringLiteral("Email"),
          &m_supplier.email);
    place(QStringLiteral("Web Site"), line("txtWebSite", 100), QStringLiteral("WebSite"),
          &m_supplier.webSite);
    place(QStringLiteral("Tax"), line("txtTax", 20), QStringLiteral("Tax"), &m_supplier.tax);
    place(QStringLiteral("Terms"), line("txtTerms", 50), QStringLiteral("Terms"),
          &m_supplier.terms);
    QLineEdit* creditLimit = line("txtCreditLimit", 20);
    auto* realNumber = new QDoubleValidator(creditLimit);
    realNumber->setLocale(QLocale::c());
    realNumber->setNotation(QDoubleValidator::StandardNotation);
    creditLimit->setValidator(realNumber);
    place(QStringLiteral("Credit Limit"), creditLimit, QStringLiteral("CreditLimit"),
          &m_supplier.creditLimit, FieldBindings::Money);
    place(QStringLiteral("License No"), line("txtLicenseNo", 50), QStringLiteral("LicenseNo"),
          &m_supplier.licenseNo);
    auto* notes = new QPlainTextEdit(this);
    notes->setObjectName(QStringLiteral("txtNotes"));
    notes->setMaximumHeight(60);
    column = 0;
    ++row;
    layout->addWidget(new QLabel(QStringLiteral("Notes"), this), row, 0);
    layout->addWidget(notes, row, 1, 1, 3);
    bindField(notes, QStringLiteral("Notes"), &m_supplier.notes);
    return layout;
}

QVariant SupplierScreen::showSupplierDetail(Session& session, Mode mode, const QVariant& id,
                                            QWidget* parent)
{
    SupplierScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

Rows SupplierScreen::loadRecords()
{
    return m_manager.list();
}

void SupplierScreen::clearData()
{
    RecordScreen::clearData();
    // A new supplier is offered the next free number; the user may take another.
    if (mode() == Mode::Add) {
        m_supplierId->setText(QString::number(m_manager.generateId()));
    }
}

bool SupplierScreen::saveRecord(QVariant* id)
{
    if (!m_manager.saveRecord(m_supplier, mode() == Mode::Add)) {
        return false;
    }
    *id = m_supplier.supplierId;
    return true;
}

QString SupplierScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteSupplier(id.toLongLong());
}

bool SupplierScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toLongLong());
}

void SupplierScreen::enableControls()
{
    // The key is chosen once, when the supplier is added: parts and equipment hold it.
    m_supplierId->setReadOnly(mode() != Mode::Add);
}
