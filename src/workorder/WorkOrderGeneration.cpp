#include "WorkOrderGeneration.h"

#include "Session.h"
#include "WorkOrderRecords.h"
#include "WriteScope.h"

#include <QSqlRecord>

namespace {

const QString Module = QStringLiteral("frmWorkorder");

/** The services of the filter on one machine that no open line holds yet. */
SqlFilter dueOnMachine(const SqlFilter& filter, qint64 equipmentId)
{
    // A line's ServiceUsedID is the scheduleId it came from.
    return {QStringLiteral(" FROM tblServiceUsed LEFT JOIN tblCrew "
                           "ON tblServiceUsed.CrewID = tblCrew.CrewID WHERE %1 "
                           "AND NOT EXISTS (SELECT 1 FROM tblWoServiceUsed WHERE "
                           "tblWoServiceUsed.ServiceUsedID = tblServiceUsed.ServiceUsedID) "
                           "AND tblServiceUsed.EquipmentID = ?")
                .arg(filter.where),
            filter.values + QVariantList{equipmentId}};
}

} // namespace

bool WorkOrderGeneration::generate(const QList<qint64>& equipmentIds, const WorkOrderFilter& filter,
                                   QList<qint64>* numbers)
{
    WriteScope write(m_session, Module, QStringLiteral("AddGenerateWo"));
    const SqlFilter due = filter.condition(WorkOrderFilter::DefaultCrewField, false);
    QList<qint64> made;
    for (qsizetype i = 0; i < equipmentIds.size() && write.ok(); ++i) {
        generateForMachine(write, equipmentIds.at(i), due, &made);
        if (m_progress) {
            m_progress(int(i + 1), int(equipmentIds.size()));
        }
    }
    if (!write.commit()) {
        return false;
    }
    numbers->append(made);
    return true;
}

void WorkOrderGeneration::generateForMachine(WriteScope& write, qint64 equipmentId,
                                             const SqlFilter& due, QList<qint64>* numbers)
{
    const SqlFilter services = dueOnMachine(due, equipmentId);
    const Rows crews = write.select(QStringLiteral("SELECT tblCrew.CrewID%1 AND "
                                                   "tblServiceUsed.SeparateWo = '0' GROUP BY "
                                                   "tblCrew.CrewID ORDER BY tblCrew.CrewID")
                                        .arg(services.where),
                                    services.values);
    for (const QSqlRecord& crew : crews) {
        if (crew.value(0).isNull()) {
            write.fail(QStringLiteral("A service of the machine %1 that shares a work order has "
                                      "no crew.")
                           .arg(equipmentId));
            return;
        }
        const qint64 number = WorkOrderRecords::insertHeader(write, equipmentId, m_session.today());
        numbers->append(number);
        const Rows shared = write.select(
            QStringLiteral("SELECT tblServiceUsed.ServiceUsedID%1 AND tblServiceUsed.SeparateWo "
                           "= '0' AND tblCrew.CrewID = ? ORDER BY tblServiceUsed.ServiceUsedID")
                .arg(services.where),
            services.values + QVariantList{crew.value(0)});
        for (const QSqlRecord& service : shared) {
            addLine(write, number, service.value(0).toLongLong());
        }
    }
    const Rows separate = write.select(
        QStringLiteral("SELECT tblServiceUsed.ServiceUsedID%1 AND tblServiceUsed.SeparateWo = "
                       "'1' ORDER BY tblServiceUsed.ServiceUsedID")
            .arg(services.where),
        services.values);
    for (const QSqlRecord& service : separate) {
        const qint64 number = WorkOrderRecords::insertHeader(write, equipmentId, m_session.today());
        numbers->append(number);
        addLine(write, number, service.value(0).toLongLong());
    }
}

void WorkOrderGeneration::addLine(WriteScope& write, qint64 workOrderNo, qint64 scheduleId)
{
    // The line is a snapshot of the schedule row; the crew only when it still exists.
    QVariant lineId;
    write.exec(
        QStringLiteral(
            "INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID, ServiceID, EquipmentID, "
            "LastDateScheduled, LastDatePerformed, NextScheduledDate, Name, CrewID, "
            "CostCenterID, SeparateWo, LaborEstimate, CostEstimate, Note, Period, JobNo) "
            "SELECT CAST(? AS BIGINT), s.ServiceUsedID, s.ServiceID, s.EquipmentID, "
            "s.LastDateScheduled, s.LastDatePerformed, s.NextScheduledDate, s.Name, c.CrewID, "
            "s.CostCenterID, s.SeparateWo, s.LaborEstimate, s.CostEstimate, s.Note, s.Period, "
            "s.JobNo FROM tblServiceUsed s LEFT JOIN tblCrew c ON s.CrewID = c.CrewID "
            "WHERE s.ServiceUsedID = ? RETURNING NserviceUsedID"),
        {workOrderNo, scheduleId}, &lineId);
    // Part rows hang on the new line's own key (lineId), read from the schedule's list.
    write.exec(QStringLiteral("INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, "
                              "QuantityRequired, QuantityUsed, Price, SupplierID) "
                              "SELECT CAST(? AS BIGINT), PartID, QuantityRequired, "
                              "QuantityRequired, Price, SupplierID FROM tblServiceUsedPart "
                              "WHERE PartID IS NOT NULL AND ServiceUsedID = ?"),
               {lineId, scheduleId});
}
