// The Service and Counts sections of the equipment screen.
#include "DateBox.h"
#include "EquipmentScreen.h"
#include "MessageTexts.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "Session.h"
#include "SqlValue.h"

#include <QComboBox>
#include <QDateEdit>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableWidget>

namespace {

using Cell = EquipmentServices::Cell;

/** The service grid's columns, in the order EquipmentServices::rows reads them. */
enum Column {
    ServiceUsedId,
    ServiceNo,
    ServiceId,
    Name,
    NextSchedule,
    NextCount,
    ServiceCrew,
    BudgetedHours,
    LaborCost,
    Interval,
    ScheduleType,
    SeparateWo,
};

const QStringList ServiceCaptions = {
    QStringLiteral("ServiceUsedID"), QStringLiteral("Service No"),    QStringLiteral("ServiceID"),
    QStringLiteral("Name"),          QStringLiteral("Next Schedule"), QStringLiteral("Next Count"),
    QStringLiteral("Service Crew"),  QStringLiteral("Budgeted Hrs"),  QStringLiteral("Labor Cost"),
    QStringLiteral("Interval"),      QStringLiteral("Schedule Type"), QStringLiteral("SeparateWo"),
};

const QString RemoveQuestion = QStringLiteral("Are you sure you want to delete this service?");

std::optional<Cell> cellOf(int column)
{
    switch (column) {
    case NextSchedule:
        return Cell::NextSchedule;
    case NextCount:
        return Cell::NextCount;
    case ServiceCrew:
        return Cell::Crew;
    case BudgetedHours:
        return Cell::BudgetedHours;
    case LaborCost:
        return Cell::LaborCost;
    case Interval:
        return Cell::Interval;
    default:
        return std::nullopt;
    }
}

QString shownValue(int column, const QVariant& value, const QHash<qint64, QString>& crews)
{
    switch (column) {
    case NextSchedule:
        return SqlValue::toDate(value).toString(DateBox::DisplayFormat);
    case ServiceCrew:
        return crews.value(value.toLongLong());
    case BudgetedHours:
        return value.isNull() ? QString() : QString::number(value.toDouble(), 'f', 2);
    case LaborCost:
        return value.isNull() ? QString() : QStringLiteral("$%1").arg(value.toDouble(), 0, 'f', 2);
    case ScheduleType:
        return ScheduleCodes::periodText(value.toString());
    default:
        return value.toString();
    }
}

/**
 * Editors of the service grid with the ranges its cells take. The value edited
 * is the item's Qt::UserRole; what the grid shows is made from it after the edit.
 */
class ServiceCellEditors : public QStyledItemDelegate
{
public:
    ServiceCellEditors(const QHash<qint64, QString>& crews, const QDate& today, QObject* parent)
        : QStyledItemDelegate(parent), m_crews(crews), m_today(today)
    {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override
    {
        switch (index.column()) {
        case NextSchedule: {
            auto* date = new QDateEdit(parent);
            date->setDisplayFormat(DateBox::DisplayFormat);
            date->setCalendarPopup(true);
            return date;
        }
        case ServiceCrew: {
            auto* crews = new QComboBox(parent);
            crews->addItem(QString(), qint64(0));
            for (auto it = m_crews.cbegin(); it != m_crews.cend(); ++it) {
                crews->addItem(it.value(), it.key());
            }
            crews->model()->sort(0);
            return crews;
        }
        case BudgetedHours:
        case LaborCost:
            return decimal(parent);
        default:
            return whole(parent, index.column() == NextCount ? 999999999 : 99999);
        }
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        const QVariant value = index.data(Qt::UserRole);
        if (auto* date = qobject_cast<QDateEdit*>(editor)) {
            const QDate stored = SqlValue::toDate(value);
            date->setDate(stored.isValid() ? stored : m_today);
        } else if (auto* crews = qobject_cast<QComboBox*>(editor)) {
            crews->setCurrentIndex(std::max(0, crews->findData(value.toLongLong())));
        } else if (auto* number = qobject_cast<QDoubleSpinBox*>(editor)) {
            number->setValue(value.toDouble());
        } else if (auto* count = qobject_cast<QSpinBox*>(editor)) {
            count->setValue(value.toInt());
        }
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override
    {
        QVariant value;
        if (auto* date = qobject_cast<QDateEdit*>(editor)) {
            value = date->date();
        } else if (auto* crews = qobject_cast<QComboBox*>(editor)) {
            value = crews->currentData();
        } else if (auto* number = qobject_cast<QDoubleSpinBox*>(editor)) {
            value = number->value();
        } else if (auto* count = qobject_cast<QSpinBox*>(editor)) {
            value = count->value();
        }
        model->setData(index, value, Qt::UserRole);
    }

private:
    static QWidget* decimal(QWidget* parent)
    {
        auto* number = new QDoubleSpinBox(parent);
        number->setRange(0, 99999.99);
        number->setDecimals(2);
        return number;
    }
    static QWidget* whole(QWidget* parent, int maximum)
    {
        auto* number = new QSpinBox(parent);
        number->setRange(1, maximum);
        return number;
    }

    const QHash<qint64, QString>& m_crews;
    QDate m_today;
};

} // namespace

EquipmentScreen::ServiceHooks& EquipmentScreen::serviceHooks()
{
    static ServiceHooks hooks;
    return hooks;
}

void EquipmentScreen::setServiceHooks(ServiceHooks hooks)
{
    serviceHooks() = std::move(hooks);
}

QWidget* EquipmentScreen::serviceSection()
{
    QWidget* p = page("fraService");
    for (const QSqlRecord& crew : DataHelpers::crewInfo(session())) {
        m_crewTexts.insert(crew.value(0).toLongLong(), crew.value(1).toString());
    }
    m_serviceRows = table("grdService", ServiceCaptions);
    m_serviceRows->setColumnHidden(ServiceUsedId, true);
    m_serviceRows->setColumnHidden(ServiceId, true);
    m_serviceRows->setEditTriggers(QAbstractItemView::SelectedClicked |
                                   QAbstractItemView::EditKeyPressed);
    m_serviceRows->setItemDelegate(new ServiceCellEditors(m_crewTexts, session().today(), this));
    connect(m_serviceRows, &QTableWidget::itemChanged, this,
            &EquipmentScreen::onServiceCellChanged);
    connect(m_serviceRows, &QTableWidget::cellDoubleClicked, this, [this] {
        if (findChild<QPushButton*>(QStringLiteral("cmdSelectService"))->isEnabled()) {
            selectService();
        }
    });
    qobject_cast<QFormLayout*>(p->layout())->addRow(m_serviceRows);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(button("cmdSelectService", QStringLiteral("&Open Service")));
    buttons->addWidget(button("cmdAddNewService", QStringLiteral("&Add Service")));
    buttons->addWidget(button("cmdRemoveService", QStringLiteral("&Remove Service")));
    qobject_cast<QFormLayout*>(p->layout())->addRow(buttons);
    return p;
}

QWidget* EquipmentScreen::countsSection()
{
    QWidget* p = page("fraCounts");
    m_countRows = table("grdCounts", {QStringLiteral("Count Type"), QStringLiteral("Count Date"),
                                      QStringLiteral("Count Value")});
    qobject_cast<QFormLayout*>(p->layout())->addRow(m_countRows);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(button("cmdAddCount", QStringLiteral("Add Count")));
    buttons->addWidget(button("cmdDeleteCount", QStringLiteral("Delete Count")));
    qobject_cast<QFormLayout*>(p->layout())->addRow(buttons);
    return p;
}

void EquipmentScreen::showServices()
{
    const Rows rows = m_services.rows(shownId());
    m_fillingServices = true;
    // Items are updated in place: this also runs from the grid's own change signal.
    m_serviceRows->setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        const QString type = ScheduleCodes::periodText(rows[r].value(ScheduleType).toString());
        for (int c = 0; c < ServiceCaptions.size(); ++c) {
            QTableWidgetItem* item = m_serviceRows->item(r, c);
            if (!item) {
                item = new QTableWidgetItem;
                m_serviceRows->setItem(r, c, item);
            }
            const QVariant value = rows[r].value(c);
            item->setData(Qt::UserRole, value);
            item->setText(shownValue(c, value, m_crewTexts));
            const std::optional<Cell> cell = cellOf(c);
            const bool editable = cell && EquipmentServices::isEditable(*cell, type);
            item->setFlags(editable ? item->flags() | Qt::ItemIsEditable
                                    : item->flags() & ~Qt::ItemIsEditable);
        }
    }
    m_fillingServices = false;
}

void EquipmentScreen::showCounts()
{
    const QList<EquipmentServices::Reading> readings = m_services.readings(shownId());
    m_countRows->setRowCount(0);
    m_countRows->setRowCount(int(readings.size()));
    for (int r = 0; r < readings.size(); ++r) {
        const EquipmentServices::Reading& reading = readings[r];
        // Each cell keeps its stored value: a reading without a key is deleted by them.
        const QVariant values[] = {reading.countType, reading.date, reading.value};
        const QString texts[] = {reading.countType, reading.date.toString(DateBox::DisplayFormat),
                                 reading.value.toString()};
        for (int c = 0; c < 3; ++c) {
            auto* item = new QTableWidgetItem(texts[c]);
            item->setData(Qt::UserRole, values[c]);
            m_countRows->setItem(r, c, item);
        }
    }
}

void EquipmentScreen::enableServiceButtons(bool saved)
{
    const ServiceHooks& hooks = serviceHooks();
    const bool services = saved && m_serviceRows->rowCount() > 0;
    const auto enable = [this](const char* name, bool on) {
        findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(on);
    };
    enable("cmdAddNewService", saved && bool(hooks.pickServices));
    enable("cmdSelectService", services && bool(hooks.openService));
    enable("cmdRemoveService", services);
    enable("cmdAddCount", saved && bool(hooks.addCount));
    enable("cmdDeleteCount", saved && m_countRows->rowCount() > 0);
}

void EquipmentScreen::onServiceCellChanged(QTableWidgetItem* item)
{
    const std::optional<Cell> cell = cellOf(item->column());
    if (m_fillingServices || !cell) {
        return;
    }
    const qint64 id = m_serviceRows->item(item->row(), ServiceUsedId)->text().toLongLong();
    if (beginModify()) {
        m_services.editCell(id, *cell, item->data(Qt::UserRole));
    }
    // Stored values and the ones that follow from them, or the old value after a refusal.
    showServices();
}

qint64 EquipmentScreen::selectedServiceId() const
{
    const QTableWidgetItem* item = m_serviceRows->item(m_serviceRows->currentRow(), ServiceUsedId);
    return item ? item->text().toLongLong() : 0;
}

void EquipmentScreen::addServices()
{
    if (!beginModify()) {
        return;
    }
    const qint64 id = shownId();
    const ServiceHooks& hooks = serviceHooks();
    const ServicePick pick = hooks.pickServices(session(), id, m_services.serviceIds(id), this);
    const MeterReadings::ServiceCountAsker ask =
        hooks.countAsker ? hooks.countAsker(session(), this) : m_readings.promptedAsker();
    if (!pick.ids.isEmpty() && !m_services.addServiceRecord(id, pick.ids, pick.source, ask)) {
        findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
        return;
    }
    showChildren();
    // Attaching is not revertible: the record is saved at once.
    findChild<QPushButton*>(QStringLiteral("cmdUpdate"))->click();
}

void EquipmentScreen::selectService()
{
    const qint64 serviceUsedId = selectedServiceId();
    if (serviceUsedId == 0) {
        return;
    }
    if (isEditing()) {
        findChild<QPushButton*>(QStringLiteral("cmdUpdate"))->click();
        if (isEditing()) {
            return;
        }
    }
    serviceHooks().openService(session(), serviceUsedId, this);
    showChildren();
}

void EquipmentScreen::removeService()
{
    const qint64 serviceUsedId = selectedServiceId();
    if (serviceUsedId == 0 || !beginModify() || !session().prompter().askYesNo(RemoveQuestion)) {
        return;
    }
    m_services.deleteServiceRecord(serviceUsedId);
    showChildren();
}

void EquipmentScreen::addCount()
{
    if (beginModify()) {
        serviceHooks().addCount(session(), shownId(), this);
        showChildren();
    }
}

void EquipmentScreen::deleteCount()
{
    const int row = m_countRows->currentRow();
    if (row < 0 || !session().prompter().askYesNo(MessageTexts::DeleteQuestion) || !beginModify()) {
        return;
    }
    const auto stored = [this, row](int column) {
        return m_countRows->item(row, column)->data(Qt::UserRole);
    };
    const EquipmentServices::Reading reading{stored(0).toString(), stored(1).toDate(), stored(2)};
    m_services.deleteReading(shownId(), reading);
    showChildren();
}
