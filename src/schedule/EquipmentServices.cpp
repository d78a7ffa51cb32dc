#include "EquipmentServices.h"

#include "LabourCost.h"
#include "NextDateCalculator.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "ServiceMessages.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

#include <QStringList>
#include <algorithm>

namespace {

const QString Module = QStringLiteral("Equipment");
const QString AddProcedure = QStringLiteral("AddServiceRecord");
const QString ChangeProcedure = QStringLiteral("grdService_Change");

const QString DateNotBeforeToday =
    QStringLiteral("Next Schedule Date should be greater than or equal to current date");
const QString DateNotAfterOld =
    QStringLiteral("Next Schedule Date should be greater than old date");
const QString InvalidDate = QStringLiteral("Please enter valid date.");

/** The schedule columns a copy takes over from where it came from. */
const QString CopiedColumns = QStringLiteral(
    "Name, CrewID, CostCenterID, Period, EInterval, RenewalOn, Mon, Tue, Wed, Thu, Fri, Sat, "
    "Sun, FirstW, SecondW, ThirdW, ForthW, LastW, Dom, Dom1, Dom2, Dom3, Dom4, Dom5, Jan, Feb, "
    "Mar, Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece, SeparateWo, LaborEstimate, "
    "CostEstimate, Note, JobNo");

/** The columns a grid edit may store. */
const QStringList EditableColumns = {
    QStringLiteral("CrewID"),
    QStringLiteral("EInterval"),
    QStringLiteral("CostEstimate"),
    QStringLiteral("LaborEstimate"),
    QStringLiteral("NextScheduledDate"),
    QStringLiteral("NextScheduledCount"),
};

QString placeholders(qsizetype count)
{
    QStringList marks;
    marks.fill(QStringLiteral("?"), count);
    return marks.join(QLatin1Char(','));
}

} // namespace

/** A table services are copied from, with its key and its part list. */
struct EquipmentServices::Source
{
    QString table;
    QString key;
    QString partTable;
};

EquipmentServices::EquipmentServices(Session& session) : m_session(session) {}

Rows EquipmentServices::rows(qint64 equipmentId)
{
    return DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshServiceGrid"),
        QStringLiteral("SELECT ServiceUsedID, JobNo, ServiceID, Name, NextScheduledDate, "
                       "NextScheduledCount, CrewID, LaborEstimate, CostEstimate, EInterval, "
                       "Period, SeparateWo FROM tblServiceUsed WHERE EquipmentID = ? "
                       "ORDER BY ServiceUsedID"),
        {equipmentId});
}

QList<qint64> EquipmentServices::serviceIds(qint64 equipmentId)
{
    QList<qint64> ids;
    for (const QSqlRecord& row : rows(equipmentId)) {
        ids.append(row.value(2).toLongLong());
    }
    return ids;
}

bool EquipmentServices::addServiceRecord(qint64 equipmentId, const QList<qint64>& ids,
                                         const QString& source,
                                         const MeterReadings::ServiceCountAsker& ask)
{
    const bool fromEquipment = source == FromEquipment;
    const Source from =
        fromEquipment ? Source{QStringLiteral("tblServiceUsed"), QStringLiteral("ServiceUsedID"),
                               QStringLiteral("tblServiceUsedPart")}
                      : Source{QStringLiteral("tblServices"), QStringLiteral("ServiceID"),
                               QStringLiteral("tblServicesPart")};
    WriteScope write(m_session, Module, AddProcedure);
    if (ids.isEmpty()) {
        return write.commit();
    }
    QVariantList values;
    for (qint64 id : ids) {
        values.append(id);
    }
    const Rows sources =
        write.select(QStringLiteral("SELECT ") + from.key + QStringLiteral(" FROM ") + from.table +
                         QStringLiteral(" WHERE ") + from.key + QStringLiteral(" IN (") +
                         placeholders(ids.size()) + QStringLiteral(") ORDER BY ") + from.key,
                     values);
    for (const QSqlRecord& row : sources) {
        const qint64 copy = copyService(write, equipmentId, from, row.value(0).toLongLong());
        if (!write.ok() || !startMeterService(equipmentId, copy, ask)) {
            write.fail(QStringLiteral("The service could not be started on the machine."));
            break;
        }
    }
    return write.commit();
}

qint64 EquipmentServices::copyService(WriteScope& write, qint64 equipmentId, const Source& source,
                                      qint64 id)
{
    QVariant copy;
    write.exec(QStringLiteral("INSERT INTO tblServiceUsed (EquipmentID, ServiceID, ") +
                   CopiedColumns + QStringLiteral(", NextScheduledDate) SELECT ?, ServiceID, ") +
                   CopiedColumns + QStringLiteral(", ? FROM ") + source.table +
                   QStringLiteral(" WHERE ") + source.key +
                   QStringLiteral(" = ? RETURNING ServiceUsedID"),
               {equipmentId, SqlValue::date(m_session.today()), id}, &copy);
    // Parts without quantity, price or supplier get 0, as every part list holds them.
    write.exec(QStringLiteral("INSERT INTO tblServiceUsedPart (PartID, ServiceUsedID, "
                              "QuantityRequired, Price, SupplierID) SELECT PartID, ?, "
                              "COALESCE(QuantityRequired, 0), COALESCE(Price, 0), "
                              "COALESCE(SupplierID, 0) FROM ") +
                   source.partTable + QStringLiteral(" WHERE PartID IS NOT NULL AND ") +
                   source.key + QStringLiteral(" = ?"),
               {copy, id});
    return copy.toLongLong();
}

bool EquipmentServices::startMeterService(qint64 equipmentId, qint64 serviceUsedId,
                                          const MeterReadings::ServiceCountAsker& ask)
{
    const QSqlRecord copy = service(serviceUsedId);
    const QString countType = ScheduleCodes::countType(copy.value(0).toString());
    if (countType.isEmpty()) {
        return true;
    }
    MeterReadings readings(m_session);
    if (!readings.ensureReading(equipmentId, serviceUsedId, copy.value(1).toString(), countType,
                                ask)) {
        return false;
    }
    // A meter service waits for its count; the reading rule gives it a date later.
    WriteScope write(m_session, Module, AddProcedure);
    write.exec(QStringLiteral("UPDATE tblServiceUsed SET NextScheduledDate = NULL, "
                              "NextScheduledCount = ? WHERE ServiceUsedID = ?"),
               {readings.latest(equipmentId, countType).value + copy.value(2).toLongLong(),
                serviceUsedId});
    return write.commit();
}

QSqlRecord EquipmentServices::service(qint64 serviceUsedId)
{
    const Rows found = DataHelpers::read(
        m_session, Module, ChangeProcedure,
        QStringLiteral("SELECT Period, Name, EInterval, NextScheduledDate, CrewID, "
                       "LaborEstimate FROM tblServiceUsed WHERE ServiceUsedID = ?"),
        {serviceUsedId});
    return found.value(0);
}

bool EquipmentServices::deleteServiceRecord(qint64 serviceUsedId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteServiceRecord"));
    write.exec(QStringLiteral("DELETE FROM tblServiceUsed WHERE ServiceUsedID = ?"),
               {serviceUsedId});
    write.exec(QStringLiteral("DELETE FROM tblServiceUsedPart WHERE ServiceUsedID = ?"),
               {serviceUsedId});
    return write.commit();
}

bool EquipmentServices::updateEquipmentService(const QString& field, const QVariant& value,
                                               qint64 serviceUsedId)
{
    WriteScope write(m_session, Module, QStringLiteral("UpdateEquipmentService"));
    const auto known = std::find_if(EditableColumns.begin(), EditableColumns.end(),
                                    [&field](const QString& column) {
                                        return column.compare(field, Qt::CaseInsensitive) == 0;
                                    });
    if (known == EditableColumns.end()) {
        write.fail(QStringLiteral("Unknown service column: ") + field);
        return false;
    }
    write.exec(QStringLiteral("UPDATE tblServiceUsed SET ") + *known +
                   QStringLiteral(" = ? WHERE ServiceUsedID = ?"),
               {value, serviceUsedId});
    return write.commit();
}

bool EquipmentServices::isEditable(Cell cell, const QString& scheduleType)
{
    const QString period = ScheduleCodes::periodCode(scheduleType);
    switch (cell) {
    case Cell::NextCount:
        return !ScheduleCodes::isCalendarPeriod(period);
    case Cell::NextSchedule:
        // A "Counts" row keeps both cells open: its date may be set by hand.
        return !ScheduleCodes::isMeterPeriod(period) || period == QLatin1String("C");
    default:
        return true;
    }
}

bool EquipmentServices::editCell(qint64 serviceUsedId, Cell cell, const QVariant& value)
{
    switch (cell) {
    case Cell::NextSchedule:
        return editNextSchedule(serviceUsedId, value.toDate());
    case Cell::NextCount:
        return editNextCount(serviceUsedId, value);
    case Cell::Crew:
        return storeWithCost(serviceUsedId, QStringLiteral("CrewID"), value);
    case Cell::BudgetedHours:
        return storeWithCost(serviceUsedId, QStringLiteral("LaborEstimate"), value);
    case Cell::LaborCost:
        return updateEquipmentService(QStringLiteral("CostEstimate"), value, serviceUsedId);
    case Cell::Interval:
        return updateEquipmentService(QStringLiteral("EInterval"), value, serviceUsedId);
    }
    return false;
}

bool EquipmentServices::editNextSchedule(qint64 serviceUsedId, const QDate& date)
{
    Prompter& prompter = m_session.prompter();
    if (!date.isValid()) {
        prompter.inform(InvalidDate);
        return false;
    }
    if (NextDateCalculator(m_session).serviceInWorkOrder(serviceUsedId) &&
        !prompter.askYesNo(ServiceMessages::dateOnWorkOrder())) {
        return false;
    }
    const QDate stored = SqlValue::toDate(service(serviceUsedId).value(3));
    if (!stored.isValid() && date < m_session.today()) {
        prompter.inform(DateNotBeforeToday);
        return false;
    }
    if (stored.isValid() && date <= stored) {
        prompter.inform(DateNotAfterOld);
        return false;
    }
    return updateEquipmentService(QStringLiteral("NextScheduledDate"), SqlValue::date(date),
                                  serviceUsedId);
}

bool EquipmentServices::editNextCount(qint64 serviceUsedId, const QVariant& value)
{
    bool whole = false;
    const qint64 count = value.toString().trimmed().toLongLong(&whole);
    if (!whole || count <= 0) {
        m_session.prompter().inform(ServiceMessages::CountNotPositive);
        return false;
    }
    NextDateCalculator calculator(m_session);
    if (calculator.serviceInWorkOrder(serviceUsedId) &&
        !m_session.prompter().askYesNo(ServiceMessages::countOnWorkOrder())) {
        return false;
    }
    if (!updateEquipmentService(QStringLiteral("NextScheduledCount"), count, serviceUsedId)) {
        return false;
    }
    if (!service(serviceUsedId).value(3).isNull()) {
        return true;
    }
    // A count the last reading already reached makes the service due at once.
    const QDate due = calculator.nextScheduledDate(serviceUsedId);
    return !due.isValid() || updateEquipmentService(QStringLiteral("NextScheduledDate"),
                                                    SqlValue::date(due), serviceUsedId);
}

bool EquipmentServices::storeWithCost(qint64 serviceUsedId, const QString& field,
                                      const QVariant& value)
{
    if (!updateEquipmentService(field, value, serviceUsedId)) {
        return false;
    }
    const QSqlRecord row = service(serviceUsedId);
    const double cost =
        row.value(5).toDouble() * LabourCost::laborCost(m_session, row.value(4).toLongLong());
    return updateEquipmentService(QStringLiteral("CostEstimate"), cost, serviceUsedId);
}

QList<EquipmentServices::Reading> EquipmentServices::readings(qint64 equipmentId)
{
    QList<Reading> list;
    for (const QSqlRecord& row : DataHelpers::read(
             m_session, Module, QStringLiteral("RefreshCountGrid"),
             QStringLiteral("SELECT CountType, ChangeDate, CountValue FROM tblEquipmentCount "
                            "WHERE EquipmentID = ? ORDER BY ChangeDate DESC NULLS LAST, "
                            "CountType, CountValue DESC"),
             {equipmentId})) {
        list.append({row.value(0).toString(), SqlValue::toDate(row.value(1)), row.value(2)});
    }
    return list;
}

bool EquipmentServices::deleteReading(qint64 equipmentId, const Reading& reading)
{
    // Null columns compare with IS NULL, so that such a row can go too.
    QString sql = QStringLiteral("DELETE FROM tblEquipmentCount WHERE EquipmentID = ?");
    QVariantList values{equipmentId};
    const auto match = [&](const char* column, const QVariant& value) {
        sql += QStringLiteral(" AND ") + QLatin1String(column) +
               (value.isNull() ? QStringLiteral(" IS NULL") : QStringLiteral(" = ?"));
        if (!value.isNull()) {
            values.append(value);
        }
    };
    match("CountType", reading.countType.isNull() ? QVariant() : QVariant(reading.countType));
    match("ChangeDate", SqlValue::date(reading.date));
    match("CountValue", reading.value);
    WriteScope write(m_session, Module, QStringLiteral("cmdDeleteCount_Click"));
    write.exec(sql, values);
    return write.commit();
}
