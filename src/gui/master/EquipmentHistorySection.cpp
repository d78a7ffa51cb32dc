// The History section of the equipment screen: posted work, corrected in place.
#include "DateBox.h"
#include "EquipmentScreen.h"
#include "Prompter.h"
#include "Session.h"
#include "SqlValue.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDoubleValidator>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QStyledItemDelegate>
#include <QTableWidget>

namespace {

using Column = ServiceHistory::Column;
using Cell = ServiceHistory::Cell;

const QStringList HistoryCaptions = {
    QStringLiteral("WorkOrderNo"),  QStringLiteral("ServiceUsedID"), QStringLiteral("Date"),
    QStringLiteral("Service Name"), QStringLiteral("Service Crew"),  QStringLiteral("Cost Center"),
    QStringLiteral("Budgeted Hrs"), QStringLiteral("Labor Cost"),    QStringLiteral("StartTime"),
    QStringLiteral("EndTime"),      QStringLiteral("WorkHrs"),       QStringLiteral("Skip"),
    QStringLiteral("Count"),        QStringLiteral("SupplierName"),  QStringLiteral("Part Cost"),
};

enum PartColumn { PartNumber, Description, QtyUsed, Price, Category, Supplier };

const QStringList PartCaptions = {
    QStringLiteral("Part Number"), QStringLiteral("Description"), QStringLiteral("Qty Used"),
    QStringLiteral("Price"),       QStringLiteral("Category"),    QStringLiteral("Supplier"),
};

const QString UnsavedRecord =
    QStringLiteral("You must be save record for refreshing the service history records.");
const QString HistoryTable = QStringLiteral("tblWOServiceUsedHistory");

std::optional<Cell> cellOf(int column)
{
    switch (column) {
    case Column::Date:
        return Cell::Date;
    case Column::ServiceCrew:
        return Cell::Crew;
    case Column::LaborCost:
        return Cell::LaborCost;
    case Column::StartTime:
        return Cell::StartTime;
    case Column::EndTime:
        return Cell::EndTime;
    case Column::WorkHrs:
        return Cell::WorkHrs;
    case Column::Count:
        return Cell::Count;
    default:
        return std::nullopt;
    }
}

bool isTime(int column)
{
    return column == Column::StartTime || column == Column::EndTime || column == Column::WorkHrs;
}

QString money(const QVariant& value)
{
    return QStringLiteral("$%1").arg(value.toDouble(), 0, 'f', 2);
}

QString shownValue(int column, const QVariant& value, const QHash<qint64, QString>& crews)
{
    switch (column) {
    case Column::Date:
        return SqlValue::toDate(value).toString(DateBox::DisplayFormat);
    case Column::ServiceCrew:
        return crews.value(value.toLongLong());
    case Column::BudgetedHrs:
        return value.toString().isEmpty() ? QString() : QString::number(value.toDouble(), 'f', 2);
    case Column::LaborCost:
    case Column::PartCost:
        return money(value);
    case Column::StartTime:
    case Column::EndTime:
    case Column::WorkHrs:
        return ServiceHistory::timeText(value, column == Column::WorkHrs);
    case Column::Skip:
        return QString();
    default:
        return value.toString();
    }
}

/** A line editor that takes what the cell's mask takes, blank included. */
QLineEdit* maskedEditor(QWidget* parent, QValidator* validator)
{
    auto* edit = new QLineEdit(parent);
    validator->setParent(edit);
    edit->setValidator(validator);
    return edit;
}

QValidator* decimalMask()
{
    auto* mask = new QDoubleValidator(0, 9999999.99, 2);
    mask->setNotation(QDoubleValidator::StandardNotation);
    mask->setLocale(QLocale::c());
    return mask;
}

/** Editors of the history grids; the value edited is the item's Qt::UserRole. */
class HistoryCellEditors : public QStyledItemDelegate
{
public:
    HistoryCellEditors(const QHash<qint64, QString>* crews, QObject* parent)
        : QStyledItemDelegate(parent), m_crews(crews)
    {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override
    {
        if (!m_crews) {
            return maskedEditor(parent, decimalMask());
        }
        switch (index.column()) {
        case Column::Date:
            return new DateBox(parent);
        case Column::ServiceCrew: {
            auto* crews = new QComboBox(parent);
            crews->addItem(QString(), qint64(0));
            for (auto it = m_crews->cbegin(); it != m_crews->cend(); ++it) {
                crews->addItem(it.value(), it.key());
            }
            crews->model()->sort(0);
            return crews;
        }
        case Column::Count:
            return maskedEditor(parent, new QIntValidator(0, 9999999));
        case Column::LaborCost:
            return maskedEditor(parent, decimalMask());
        default:
            return maskedEditor(parent, new QRegularExpressionValidator(QRegularExpression(
                                            QStringLiteral("\\d{0,2}:\\d{0,2}"))));
        }
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        const QVariant value = index.data(Qt::UserRole);
        if (auto* date = qobject_cast<DateBox*>(editor)) {
            date->setValue(SqlValue::toDate(value));
        } else if (auto* crews = qobject_cast<QComboBox*>(editor)) {
            crews->setCurrentIndex(std::max(0, crews->findData(value.toLongLong())));
        } else if (auto* edit = qobject_cast<QLineEdit*>(editor)) {
            edit->setText(isTime(index.column()) && m_crews ? ServiceHistory::timeText(value, false)
                                                            : value.toString());
        }
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override
    {
        QVariant value;
        if (auto* date = qobject_cast<DateBox*>(editor)) {
            value = date->value();
        } else if (auto* crews = qobject_cast<QComboBox*>(editor)) {
            value = crews->currentData();
        } else if (auto* edit = qobject_cast<QLineEdit*>(editor)) {
            value = edit->text();
        }
        model->setData(index, value, Qt::UserRole);
    }

private:
    const QHash<qint64, QString>* m_crews; ///< none for the part grid
};

} // namespace

EquipmentScreen::HistoryTimeDialog& EquipmentScreen::historyTimeDialog()
{
    static HistoryTimeDialog dialog;
    return dialog;
}

void EquipmentScreen::setHistoryTimeDialog(HistoryTimeDialog dialog)
{
    historyTimeDialog() = std::move(dialog);
}

QWidget* EquipmentScreen::historySection()
{
    QWidget* p = page("fraHistory");
    auto* form = qobject_cast<QFormLayout*>(p->layout());
    const DateRange range = m_history.range();
    auto* dates = new QHBoxLayout;
    for (auto [edit, name, caption, day] :
         {std::tuple{&m_historyFrom, "datDateFrom", "From", range.from},
          std::tuple{&m_historyTo, "datDateTo", "To", range.to}}) {
        *edit = new QDateEdit(day, this);
        (*edit)->setObjectName(QString::fromLatin1(name));
        (*edit)->setDisplayFormat(DateBox::DisplayFormat);
        (*edit)->setCalendarPopup(true);
        dates->addWidget(new QLabel(QString::fromLatin1(caption), this));
        dates->addWidget(*edit);
    }
    dates->addWidget(button("cmdRefresh", QStringLiteral("&Refresh")));
    dates->addStretch();
    form->addRow(dates);
    m_historyRows = table("grdServiceHistory", HistoryCaptions);
    m_historyRows->setColumnHidden(Column::WorkOrderNo, true);
    m_historyRows->setColumnHidden(Column::LineId, true);
    m_partHistoryRows = table("grdPartHistory", PartCaptions);
    for (QTableWidget* grid : {m_historyRows, m_partHistoryRows}) {
        grid->setEditTriggers(QAbstractItemView::SelectedClicked |
                              QAbstractItemView::EditKeyPressed);
        grid->setItemDelegate(
            new HistoryCellEditors(grid == m_historyRows ? &m_crewTexts : nullptr, this));
        form->addRow(grid);
    }
    connect(m_historyRows, &QTableWidget::itemChanged, this,
            &EquipmentScreen::onHistoryCellChanged);
    connect(m_partHistoryRows, &QTableWidget::itemChanged, this,
            &EquipmentScreen::onPartHistoryCellChanged);
    connect(m_historyRows, &QTableWidget::cellClicked, this,
            &EquipmentScreen::onHistoryCellClicked);
    connect(m_historyRows, &QTableWidget::currentCellChanged, this,
            &EquipmentScreen::showPartHistory);
    form->addRow(button("cmdDeleteHistory", QStringLiteral("&Delete History")));
    connect(findChild<QPushButton*>(QStringLiteral("cmdRefresh")), &QPushButton::clicked, this,
            &EquipmentScreen::refreshHistory);
    connect(findChild<QPushButton*>(QStringLiteral("cmdDeleteHistory")), &QPushButton::clicked,
            this, &EquipmentScreen::deleteHistory);
    return p;
}

void EquipmentScreen::refreshHistory()
{
    if (mode() == Mode::Add) {
        session().prompter().inform(UnsavedRecord);
        return;
    }
    m_history.storeRange({m_historyFrom->date(), m_historyTo->date()});
    showHistory();
    enableControls();
}

void EquipmentScreen::showHistory()
{
    const Rows rows = m_history.rows(shownId(), {m_historyFrom->date(), m_historyTo->date()});
    const int current = m_historyRows->currentRow();
    m_fillingHistory = true;
    m_historyRows->setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < HistoryCaptions.size(); ++c) {
            const QVariant value = rows[r].isNull(c) ? QVariant() : rows[r].value(c);
            auto* item = new QTableWidgetItem(shownValue(c, value, m_crewTexts));
            item->setData(Qt::UserRole, value);
            if (c == Column::Skip) {
                item->setCheckState(SqlValue::toYesNo(value) ? Qt::Checked : Qt::Unchecked);
                item->setFlags(item->flags() & ~Qt::ItemIsUserCheckable);
            }
            if (!cellOf(c)) {
                item->setFlags(item->flags() & ~Qt::ItemIsEditable);
            }
            m_historyRows->setItem(r, c, item);
        }
    }
    m_fillingHistory = false;
    // The row worked on stays chosen, else the first: its parts are shown below.
    m_historyRows->setCurrentCell(
        rows.isEmpty() ? -1 : std::clamp(current, 0, int(rows.size()) - 1), Column::Date);
    showPartHistory();
}

void EquipmentScreen::showPartHistory()
{
    const qint64 lineId = selectedHistoryId();
    const Rows rows = lineId ? m_history.partRows(lineId) : Rows();
    // Also runs while the history grid is filled, as its current row is replaced.
    const bool filling = std::exchange(m_fillingHistory, true);
    m_partHistoryRows->setRowCount(0);
    m_partHistoryRows->setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < PartCaptions.size(); ++c) {
            auto* item = new QTableWidgetItem(rows[r].value(c).toString());
            item->setData(Qt::UserRole, rows[r].value(c));
            if (c != QtyUsed && c != Price) {
                item->setFlags(item->flags() & ~Qt::ItemIsEditable);
            }
            m_partHistoryRows->setItem(r, c, item);
        }
    }
    m_fillingHistory = filling;
}

qint64 EquipmentScreen::selectedHistoryId() const
{
    const QTableWidgetItem* item = m_historyRows->item(m_historyRows->currentRow(), Column::LineId);
    return item ? item->data(Qt::UserRole).toLongLong() : 0;
}

void EquipmentScreen::onHistoryCellChanged(QTableWidgetItem* item)
{
    const std::optional<Cell> cell = cellOf(item->column());
    if (m_fillingHistory || !cell) {
        return;
    }
    if (beginModify()) {
        m_history.editCell(selectedHistoryId(), *cell, item->data(Qt::UserRole));
    }
    // Stored values and the ones that follow from them, or the old value after a refusal.
    showHistory();
}

void EquipmentScreen::onPartHistoryCellChanged(QTableWidgetItem* item)
{
    if (m_fillingHistory) {
        return;
    }
    const qint64 lineId = selectedHistoryId();
    const QString partId = m_partHistoryRows->item(item->row(), PartNumber)->text();
    if (beginModify()) {
        m_history.editPartCell(lineId, partId,
                               item->column() == QtyUsed ? ServiceHistory::PartCell::QtyUsed
                                                         : ServiceHistory::PartCell::Price,
                               item->data(Qt::UserRole));
    }
    showPartHistory();
    m_fillingHistory = true;
    m_historyRows->item(m_historyRows->currentRow(), Column::PartCost)
        ->setText(money(m_history.partCost(lineId)));
    m_fillingHistory = false;
}

void EquipmentScreen::onHistoryCellClicked(int row, int column)
{
    const HistoryTimeDialog& dialog = historyTimeDialog();
    if (!dialog || !isTime(column) || !beginModify()) {
        return;
    }
    QStringList times;
    for (int c : {int(Column::StartTime), int(Column::EndTime), int(Column::WorkHrs)}) {
        const QString shown =
            ServiceHistory::timeText(m_historyRows->item(row, c)->data(Qt::UserRole), false);
        times.append(shown.isEmpty() ? QStringLiteral("00:00") : shown);
    }
    dialog(session(), m_historyRows->item(row, Column::LineId)->data(Qt::UserRole).toLongLong(),
           times, HistoryTable, this);
    showHistory();
}

void EquipmentScreen::deleteHistory()
{
    const qint64 lineId = selectedHistoryId();
    if (lineId == 0 || !beginModify()) {
        return;
    }
    if (m_history.deleteHistory(lineId)) {
        showHistory();
        enableControls();
    }
}
