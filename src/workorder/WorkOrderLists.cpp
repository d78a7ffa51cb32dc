#include "WorkOrderLists.h"

#include "WriteScope.h"

#include <QSqlRecord>

namespace {

const QString Module = QStringLiteral("frmWorkorder");

// "number   description", empty when the row names no crew.
const QString CrewText =
    QStringLiteral("CAST(tblCrew.CrewNumber AS TEXT) || '   ' || tblCrew.Description");

// Compares the schedule row's own key (a scheduleId) with the lines' scheduleIds.
const QString NotOnWorkOrder =
    QStringLiteral(" AND NOT EXISTS (SELECT 1 FROM tblWoServiceUsed "
                   "WHERE tblWoServiceUsed.ServiceUsedID = tblServiceUsed.ServiceUsedID)");

// Due machines, then the open work orders with a line inside the filter or without lines;
// the two halves never share a row, as only the first has no work order number.
const QString PrintListSql = QStringLiteral(
    "SELECT DISTINCT tblEquipment.EquipmentID, CAST(NULL AS INTEGER) AS WorkOrderNo, "
    "tblEquipment.UnitNo, tblEquipment.EquipmentName, Etype.ItemName AS EquipmentType, "
    "0 AS Printed FROM tblEquipment "
    "LEFT JOIN tblServiceUsed ON tblEquipment.EquipmentID = tblServiceUsed.EquipmentID "
    "LEFT JOIN tblCrew ON tblServiceUsed.CrewID = tblCrew.CrewID "
    "LEFT JOIN tblIndicator AS Etype ON tblEquipment.EquipmentType = Etype.ItemID "
    "LEFT JOIN tblCrew AS Ecrew ON tblEquipment.CrewID = Ecrew.CrewID "
    "WHERE %1%2 AND tblServiceUsed.Inactive = 0 AND tblEquipment.Inactive = '0' "
    "UNION ALL "
    "SELECT tblWorkorder.EquipmentID, tblWorkorder.WorkOrderNo, tblEquipment.UnitNo, "
    "tblEquipment.EquipmentName, Etype.ItemName AS EquipmentType, tblWorkorder.Printed "
    "FROM tblWorkorder "
    "LEFT JOIN tblEquipment ON tblWorkorder.EquipmentID = tblEquipment.EquipmentID "
    "LEFT JOIN tblIndicator AS Etype ON tblEquipment.EquipmentType = Etype.ItemID "
    "LEFT JOIN tblCrew AS Ecrew ON tblEquipment.CrewID = Ecrew.CrewID "
    "WHERE NOT EXISTS (SELECT 1 FROM tblWoServiceUsed "
    "WHERE tblWoServiceUsed.WorkOrderNo = tblWorkorder.WorkOrderNo) "
    "OR EXISTS (SELECT 1 FROM tblWoServiceUsed "
    "LEFT JOIN tblCrew ON tblWoServiceUsed.CrewID = tblCrew.CrewID "
    "WHERE tblWoServiceUsed.WorkOrderNo = tblWorkorder.WorkOrderNo "
    "AND (%1 OR tblWoServiceUsed.NextScheduledDate IS NULL)) "
    "ORDER BY UnitNo, WorkOrderNo NULLS FIRST");

QString firstText(const Rows& rows)
{
    return rows.isEmpty() ? QString() : rows.first().value(0).toString();
}

} // namespace

Rows WorkOrderLists::printList(const WorkOrderFilter& filter)
{
    const SqlFilter f = filter.condition(QStringLiteral("tblCrew.CrewNumber"), true);
    return DataHelpers::read(m_session, Module, QStringLiteral("RefreshPrintWo"),
                             PrintListSql.arg(f.where, NotOnWorkOrder), f.values + f.values);
}

QList<qint64> WorkOrderLists::dueEquipment(const Rows& rows)
{
    QList<qint64> ids;
    for (const QSqlRecord& row : rows) {
        if (row.value(QStringLiteral("WorkOrderNo")).isNull()) {
            ids.append(row.value(QStringLiteral("EquipmentID")).toLongLong());
        }
    }
    return ids;
}

QList<qint64> WorkOrderLists::workOrderNumbers(const Rows& rows)
{
    QList<qint64> numbers;
    for (const QSqlRecord& row : rows) {
        const QVariant number = row.value(QStringLiteral("WorkOrderNo"));
        if (!number.isNull()) {
            numbers.append(number.toLongLong());
        }
    }
    return numbers;
}

Rows WorkOrderLists::dueServices(qint64 equipmentId, const WorkOrderFilter& filter)
{
    const SqlFilter f = filter.condition(WorkOrderFilter::DefaultCrewField, false);
    const QString sql =
        QStringLiteral("SELECT tblServiceUsed.ServiceUsedID, tblServiceUsed.JobNo AS ServiceNo, "
                       "tblServiceUsed.Name AS ServiceName, %1 AS ServiceCrew, "
                       "tblServiceUsed.NextScheduledDate, tblServiceUsed.SeparateWo "
                       "FROM tblServiceUsed LEFT JOIN tblCrew "
                       "ON tblServiceUsed.CrewID = tblCrew.CrewID WHERE %2%3 "
                       "AND tblServiceUsed.Inactive = 0 AND tblServiceUsed.EquipmentID = ? "
                       "ORDER BY tblServiceUsed.NextScheduledDate, tblServiceUsed.ServiceUsedID")
            .arg(CrewText, f.where, NotOnWorkOrder);
    return DataHelpers::read(m_session, Module, QStringLiteral("RefreshGenServiceGrid"), sql,
                             f.values + QVariantList{equipmentId});
}

Rows WorkOrderLists::dueServiceParts(qint64 scheduleId)
{
    return DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshGenPartGrid"),
        QStringLiteral("SELECT tblServiceUsedPart.PartID AS PartNumber, tblPart.Description, "
                       "tblServiceUsedPart.QuantityRequired, tblServiceUsedPart.Price "
                       "FROM tblServiceUsedPart LEFT JOIN tblPart "
                       "ON tblPart.PartID = tblServiceUsedPart.PartID "
                       "WHERE tblServiceUsedPart.ServiceUsedID = ? "
                       "ORDER BY tblServiceUsedPart.PartID NULLS LAST"),
        {scheduleId});
}

QString WorkOrderLists::dueServiceNote(qint64 scheduleId)
{
    return firstText(DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshGenServiceNoteGrid"),
        QStringLiteral("SELECT Note FROM tblServiceUsed WHERE ServiceUsedID = ?"), {scheduleId}));
}

bool WorkOrderLists::setDueServiceNote(qint64 scheduleId, const QString& note)
{
    WriteScope write(m_session, Module, QStringLiteral("txtGenServiceNote_LostFocus"));
    write.exec(QStringLiteral("UPDATE tblServiceUsed SET Note = ? WHERE ServiceUsedID = ?"),
               {note, scheduleId});
    return write.commit();
}

Rows WorkOrderLists::lines(qint64 workOrderNo, const WorkOrderFilter& filter)
{
    const SqlFilter f = filter.condition(WorkOrderFilter::DefaultCrewField, false);
    const QString sql =
        QStringLiteral("SELECT JobNo AS ServiceNo, Name AS ServiceName, %1 AS ServiceCrew, "
                       "NextScheduledDate, Skip, SeparateWo, ServiceID, NserviceUsedID "
                       "FROM tblWoServiceUsed LEFT JOIN tblCrew "
                       "ON tblWoServiceUsed.CrewID = tblCrew.CrewID "
                       "WHERE WorkOrderNo = ? AND (%2 or NextScheduledDate IS NULL) "
                       "ORDER BY NserviceUsedID")
            .arg(CrewText, f.where);
    return DataHelpers::read(m_session, Module, QStringLiteral("RefreshPrintServiceGrid"), sql,
                             QVariantList{workOrderNo} + f.values);
}

Rows WorkOrderLists::lineParts(qint64 lineId)
{
    // tblWoPartUsed.ServiceUsedID holds the line's own key (a lineId).
    return DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshPrintPartGrid"),
        QStringLiteral("SELECT tblWoPartUsed.PartID AS PartNumber, tblPart.Description, "
                       "tblWoPartUsed.QuantityRequired, tblWoPartUsed.Price "
                       "FROM tblWoPartUsed LEFT JOIN tblPart "
                       "ON tblWoPartUsed.PartID = tblPart.PartID "
                       "WHERE tblWoPartUsed.ServiceUsedID = ? ORDER BY tblWoPartUsed.PartID"),
        {lineId});
}

QString WorkOrderLists::lineNote(qint64 lineId)
{
    return firstText(DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshPrintServiceNoteGrid"),
        QStringLiteral("SELECT Note FROM tblWoServiceUsed WHERE NserviceUsedID = ?"), {lineId}));
}
