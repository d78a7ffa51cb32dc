#include "DateReadingScreen.h"

#include "DateBox.h"
#include "FormPlacement.h"
#include "Prompter.h"
#include "ScreenFields.h"
#include "Session.h"

#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

// Room for the five columns with their heads.
constexpr int MinimumWidth = 720;
constexpr int MinimumHeight = 420;

/** Days shown as the office types them; the new date is typed into a date box that may be empty. */
class DateDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant& value, const QLocale&) const override
    {
        return value.toDate().toString(DateBox::DisplayFormat);
    }
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex&) const override
    {
        return new DateBox(parent);
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        static_cast<DateBox*>(editor)->setValue(index.data(Qt::EditRole).toDate());
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override
    {
        model->setData(index, static_cast<DateBox*>(editor)->value(), Qt::EditRole);
    }
};

QDateEdit* rangeBox(QWidget* parent, const char* name, const QDate& day)
{
    auto* box = new QDateEdit(day, parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setDisplayFormat(DateReadings::RangeFormat);
    box->setCalendarPopup(true);
    return box;
}

QTableWidgetItem* shownItem(const QVariant& value)
{
    auto* item = new QTableWidgetItem;
    item->setData(Qt::DisplayRole, value);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

} // namespace

DateReadingScreen::DateReadingScreen(Session& session, DateReadings::Kind kind, QWidget* parent)
    : QDialog(parent), m_session(session), m_readings(session, kind)
{
    setObjectName(m_readings.formName());
    setWindowTitle(m_readings.title());
    setMinimumSize(MinimumWidth, MinimumHeight);
    m_grid = new QTableWidget(0, ColumnCount, this);
    m_grid->setObjectName(m_readings.gridName());
    m_grid->setHorizontalHeaderLabels(m_readings.heads());
    m_grid->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_grid->horizontalHeader()->setSectionResizeMode(EquipmentName, QHeaderView::Stretch);
    m_grid->verticalHeader()->hide();
    m_grid->setItemDelegateForColumn(OldDate, new DateDelegate(m_grid));
    m_grid->setItemDelegateForColumn(NewDate, new DateDelegate(m_grid));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeRange());
    layout->addWidget(m_grid);
    layout->addWidget(makeButtons());

    connect(m_grid, &QTableWidget::itemChanged, this, &DateReadingScreen::onCellChanged);
    FormPlacement::restore(m_session, this);
    refreshRecordSet();
}

QWidget* DateReadingScreen::makeRange()
{
    const DateRange range = m_readings.range();
    m_from = rangeBox(this, "datINPDateFrom", range.from);
    m_to = rangeBox(this, "datINPDateTo", range.to);
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("From"), m_from);
    auto* second = new QFormLayout;
    second->addRow(QStringLiteral("To"), m_to);
    row->addLayout(form);
    row->addLayout(second);
    row->addStretch();
    return box;
}

QWidget* DateReadingScreen::makeButtons()
{
    m_refresh = ScreenFields::button(this, "cmdRefresh", QStringLiteral("&Refresh"));
    m_update = ScreenFields::button(this, "cmdUpdate", QStringLiteral("&Update"));
    m_cancel = ScreenFields::button(this, "cmdCancel", QStringLiteral("&Cancel"));
    m_print = ScreenFields::button(this, "cmdPrint", QStringLiteral("&Print"));
    m_exit = ScreenFields::button(this, "cmdExit", QStringLiteral("E&xit"));
    // The report of the readings comes with the report screens.
    m_print->setEnabled(false);
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_refresh);
    row->addStretch();
    for (QPushButton* button : {m_update, m_cancel, m_print, m_exit}) {
        row->addWidget(button);
    }
    connect(m_refresh, &QPushButton::clicked, this, &DateReadingScreen::refreshRecordSet);
    connect(m_update, &QPushButton::clicked, this, &DateReadingScreen::update);
    connect(m_cancel, &QPushButton::clicked, this, &DateReadingScreen::refreshRecordSet);
    connect(m_exit, &QPushButton::clicked, this, &QDialog::close);
    return box;
}

void DateReadingScreen::showDateReading(Session& session, DateReadings::Kind kind, QWidget* parent)
{
    DateReadingScreen screen(session, kind, parent);
    screen.exec();
}

void DateReadingScreen::done(int result)
{
    m_readings.storeRange({m_from->date(), m_to->date()});
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}

void DateReadingScreen::reject()
{
    // Qt cannot grey the close box of a shown dialog without hiding it, so the request is refused.
    if (!m_editing) {
        QDialog::reject();
    }
}

void DateReadingScreen::refreshRecordSet()
{
    m_rows = m_readings.list({m_from->date(), m_to->date()});
    {
        const QSignalBlocker quiet(m_grid);
        m_grid->clearContents();
        m_grid->setRowCount(int(m_rows.size()));
        for (int row = 0; row < m_rows.size(); ++row) {
            addRow(row, m_rows.at(row));
        }
    }
    setEditing(false);
}

void DateReadingScreen::addRow(int row, const DateReading& reading)
{
    m_grid->setItem(row, UnitNo, shownItem(reading.unitNo));
    m_grid->setItem(row, EquipmentName, shownItem(reading.equipmentName));
    m_grid->setItem(row, OldDate, shownItem(reading.oldDate));
    auto* newDate = new QTableWidgetItem;
    newDate->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
    m_grid->setItem(row, NewDate, newDate);
    auto* button = new QPushButton(QStringLiteral("Add one year"), m_grid);
    button->setAutoDefault(false);
    m_grid->setCellWidget(row, Select, button);
    connect(button, &QPushButton::clicked, this, [this, row] { addOneYear(row); });
}

void DateReadingScreen::addOneYear(int row)
{
    // From the old date each time, so that a second press gives the same day.
    m_grid->item(row, NewDate)
        ->setData(Qt::EditRole, DateReadings::addOneYear(m_rows.at(row).oldDate));
}

void DateReadingScreen::onCellChanged(QTableWidgetItem* item)
{
    if (item->column() != NewDate) {
        return;
    }
    DateReading& reading = m_rows[item->row()];
    const QDate typed = item->data(Qt::EditRole).toDate();
    const QString fault =
        typed.isValid() ? m_readings.dateFault(reading.oldDate, typed) : QString();
    if (!fault.isEmpty()) {
        m_session.prompter().inform(fault);
        const QSignalBlocker quiet(m_grid);
        item->setData(Qt::EditRole, reading.newDate);
        return;
    }
    reading.newDate = typed;
    setEditing(true);
}

void DateReadingScreen::update()
{
    // A failure has been reported; the typed dates stay for another try.
    if (m_readings.update(m_rows)) {
        refreshRecordSet();
    }
}

void DateReadingScreen::setEditing(bool editing)
{
    m_editing = editing;
    m_update->setEnabled(editing);
    m_cancel->setEnabled(editing);
    m_exit->setEnabled(!editing);
    m_refresh->setEnabled(!editing);
}
