#include "PartScreen.h"

#include "FormPlacement.h"
#include "IndicatorScreen.h"
#include "LookupCombo.h"
#include "PartQuickFindScreen.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "ScreenFields.h"
#include "Session.h"
#include "SupplierScreen.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>

namespace {

const QString PartIdField = QStringLiteral("PartID");
const QString LookupGone =
    QStringLiteral("One of lookup item has been deleted\nmanually from  database");

template <class T> T* named(QWidget* parent, const char* name)
{
    auto* widget = new T(parent);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QLabel* label(QWidget* parent, const char* name, const QString& text)
{
    auto* result = named<QLabel>(parent, name);
    result->setText(text);
    return result;
}

/** A list with the button that opens the screen keeping its items. */
QHBoxLayout* listWithButton(QComboBox* list, QPushButton* button)
{
    auto* row = new QHBoxLayout;
    row->addWidget(list, 1);
    row->addWidget(button);
    return row;
}

QString twoDecimals(const QString& text, const QString& blank)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    const double value = trimmed.toDouble(&ok);
    if (trimmed.isEmpty()) {
        return blank;
    }
    return ok ? QString::number(value, 'f', 2) : text;
}

} // namespace

PartScreen::PartScreen(Session& session, QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmPart"), QStringLiteral("tblPart"), PartIdField,
                   parent),
      m_manager(session)
{
    setWindowTitle(QStringLiteral("Part"));
    auto* fields = new QVBoxLayout;
    fields->addLayout(buildFields());
    auto* print = named<QPushButton>(this, "cmdPrint");
    print->setText(QStringLiteral("Re&order"));
    print->setEnabled(false); // the reorder report is not there yet
    fields->addWidget(print, 0, Qt::AlignRight);

    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdPart"));
    grid->setFields({{PartIdField, QStringLiteral("Part Number")},
                     {QStringLiteral("Description"), QStringLiteral("Description")}},
                    PartIdField);
    grid->setColumnHidden(0, false); // the key is the number the user typed
    setStandardLayout(fields, grid);
    findChild<QPushButton*>(QStringLiteral("cmdAdd"))->setText(QStringLiteral("Add &New"));
    findChild<QPushButton*>(QStringLiteral("cmdQFind"))->setText(QStringLiteral("Q-&Find"));
    findChild<QPushButton*>(QStringLiteral("cmdExit"))->setText(QStringLiteral("&Return"));
    bindFields();
    setActionRights(UserRights::PaAdd, UserRights::PaMod, UserRights::PaDel);

    connect(m_number, &QLineEdit::editingFinished, this, &PartScreen::warnNumberInUse);
    connect(m_notTracked, &QCheckBox::toggled, this,
            [this](bool notTracked) { showStockRows(!notTracked); });
    setQuickFind([this] { return PartQuickFindScreen::showPartQuickFind(this->session(), this); });
    resize(6810 / FormPlacement::TwipsPerPixel, 6735 / FormPlacement::TwipsPerPixel);
}

QLineEdit* PartScreen::numberBox(const char* name)
{
    auto* box = named<QLineEdit>(this, name);
    box->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("-?[0-9]*\\.?[0-9]*")), box));
    box->setAlignment(Qt::AlignRight);
    connect(box, &QLineEdit::editingFinished, this, [this, box] { formatNumber(box); });
    return box;
}

QFormLayout* PartScreen::buildFields()
{
    m_number = named<QLineEdit>(this, "txtPartID");
    m_description = named<QLineEdit>(this, "txtDescription");
    m_category = named<QComboBox>(this, "cboCategory");
    loadCategories();
    m_quantity = numberBox("txtQuantity");
    m_committed = label(this, "lblPartCommitedData", QString());
    m_max = numberBox("txtMax");
    m_min = numberBox("txtMin");
    m_price = numberBox("txtPrice");
    m_supplier = named<QComboBox>(this, "cboSupplier");
    loadSuppliers();
    m_inactive = named<QCheckBox>(this, "chkInactive");
    m_inactive->setText(QStringLiteral("Inactive"));
    m_notTracked = named<QCheckBox>(this, "chkNotTrackInventory");
    m_notTracked->setText(QStringLiteral("Do Not Track for Inventory"));

    for (QLineEdit* box : {m_max, m_min}) {
        box->setMinimumWidth(80);
    }
    auto* reorder = new QHBoxLayout;
    reorder->addWidget(m_max);
    reorder->addWidget(
        label(this, "lblMin", QStringLiteral("units when Quantity on Hand drops below")));
    reorder->addWidget(m_min);
    auto* flags = new QHBoxLayout;
    flags->addWidget(m_inactive);
    flags->addWidget(m_notTracked);

    m_form = new QFormLayout;
    m_form->addRow(label(this, "lblPartNumber", QStringLiteral("Part Number")), m_number);
    m_form->addRow(label(this, "lblDescription", QStringLiteral("Description")), m_description);
    auto* categories = ScreenFields::listButton(this, "cmdPartCategory");
    m_form->addRow(QStringLiteral("Category"), listWithButton(m_category, categories));
    setListButton(
        categories, m_category,
        [this](qint64 chosen) {
            IndicatorScreen::showIndicatorDetail(session(), IndicatorList::PartCategory, chosen, {},
                                                 false, this);
        },
        [this] { loadCategories(); });
    m_form->addRow(label(this, "lblQuantity", QStringLiteral("Qty on Hand")), m_quantity);
    m_form->addRow(label(this, "lblPartCommited", QStringLiteral("Part Commited")), m_committed);
    m_form->addRow(label(this, "lblReorder", QStringLiteral("Reorder")), reorder);
    m_form->addRow(QStringLiteral("Price"), m_price);
    auto* suppliers = ScreenFields::listButton(this, "cmdSupplier");
    m_form->addRow(QStringLiteral("Supplier"), listWithButton(m_supplier, suppliers));
    setListButton(
        suppliers, m_supplier,
        [this](qint64 chosen) {
            SupplierScreen::showSupplierDetail(session(), Mode::Browse, chosen, this);
        },
        [this] { loadSuppliers(); });
    m_form->addRow(QStringLiteral("Bin"), named<QLineEdit>(this, "txtBin"));
    m_form->addRow(QStringLiteral("Bar Code"), named<QLineEdit>(this, "txtBarCode"));
    m_form->addRow(QString(), flags);
    m_form->addRow(QStringLiteral("Notes"), named<QPlainTextEdit>(this, "txtNotes"));
    return m_form;
}

void PartScreen::loadCategories()
{
    LookupCombo::loadItemWithId(m_category, m_manager.categories(), QStringLiteral("ItemID"),
                                QStringLiteral("ItemName"), true);
}

void PartScreen::loadSuppliers()
{
    LookupCombo::loadItemWithId(m_supplier, m_manager.suppliers(), QStringLiteral("SupplierID"),
                                QStringLiteral("Name"), true);
}

void PartScreen::bindFields()
{
    bindField(m_number, PartIdField, &m_part.partId);
    bindField(m_description, QStringLiteral("Description"), &m_part.description);
    bindField(m_category, QStringLiteral("PartCategoryID"), &m_part.partCategory);
    bindField(m_quantity, QStringLiteral("Quantity"), &m_part.quantity);
    bindField(m_max, QStringLiteral("QtyMax"), &m_part.max);
    bindField(m_min, QStringLiteral("QtyMin"), &m_part.min);
    bindField(m_price, QStringLiteral("Price"), &m_part.price);
    bindField(m_supplier, QStringLiteral("SupplierID"), &m_part.supplier);
    bindField(findChild<QLineEdit*>(QStringLiteral("txtBin")), QStringLiteral("Bin"), &m_part.bin);
    bindField(findChild<QLineEdit*>(QStringLiteral("txtBarCode")), QStringLiteral("Bar_Code"),
              &m_part.barCode);
    bindField(m_inactive, QStringLiteral("Inactive"), &m_part.inactive);
    bindField(m_notTracked, QStringLiteral("TrackInventory"), &m_part.trackInventory);
    bindField(findChild<QPlainTextEdit*>(QStringLiteral("txtNotes")), QStringLiteral("Notes"),
              &m_part.notes);
}

QVariant PartScreen::showPartDetail(Session& session, Mode mode, const QVariant& id,
                                    QWidget* parent)
{
    PartScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

Rows PartScreen::loadRecords()
{
    return m_manager.list();
}

void PartScreen::clearData()
{
    RecordScreen::clearData();
    showNumbers(QString());
    m_committed->clear();
}

void PartScreen::displayData(const QSqlRecord& record)
{
    if (!bindings().display(record)) {
        session().prompter().inform(LookupGone);
    }
    showNumbers(m_max->text());
    m_committed->setText(
        QString::number(m_manager.partCommitted(record.value(PartIdField).toString()), 'f', 2));
}

void PartScreen::showNumbers(const QString& max)
{
    for (QLineEdit* box : {m_quantity, m_price, m_min}) {
        box->setText(twoDecimals(box->text(), QStringLiteral("0.00")));
    }
    // A part without a reorder quantity orders one.
    m_max->setText(twoDecimals(max, QStringLiteral("1.00")));
    showStockRows(!m_notTracked->isChecked());
}

void PartScreen::formatNumber(QLineEdit* box)
{
    const QString shown = twoDecimals(box->text(), QStringLiteral("0.00"));
    if (shown != box->text()) {
        box->setText(shown);
    }
}

void PartScreen::warnNumberInUse()
{
    if (!isEditing()) {
        return;
    }
    const QString oldNumber = mode() == Mode::Add ? QString() : currentId().toString();
    const QString warning = m_manager.numberInUse(m_number->text(), oldNumber);
    if (!warning.isEmpty()) {
        session().prompter().inform(warning);
        m_number->clear();
    }
}

void PartScreen::showStockRows(bool tracked)
{
    // Hidden rows give their room to the rows below them.
    for (const char* row : {"lblQuantity", "lblPartCommited", "lblReorder"}) {
        m_form->setRowVisible(findChild<QLabel*>(QString::fromLatin1(row)), tracked);
    }
}

bool PartScreen::validateFields()
{
    setObjectValues();
    const auto problem = m_manager.checkSave(m_part, mode() == Mode::Add);
    if (!problem) {
        return true;
    }
    session().prompter().inform(problem->message);
    if (problem->field == PartManager::Field::Inactive) {
        m_inactive->setChecked(false);
    }
    fieldFor(problem->field)->setFocus();
    return false;
}

QWidget* PartScreen::fieldFor(PartManager::Field field) const
{
    switch (field) {
    case PartManager::Field::Description:
        return m_description;
    case PartManager::Field::Quantity:
        return m_quantity;
    case PartManager::Field::Inactive:
        return m_inactive;
    case PartManager::Field::Number:
        break;
    }
    return m_number;
}

void PartScreen::setObjectValues()
{
    RecordScreen::setObjectValues();
    m_part.partOldId = mode() == Mode::Add ? QString() : currentId().toString();
}

bool PartScreen::saveRecord(QVariant* id)
{
    if (!m_manager.saveRecord(m_part, mode() == Mode::Add)) {
        return false;
    }
    *id = m_part.partId;
    return true;
}

QString PartScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeletePart(id.toString());
}

bool PartScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toString());
}
