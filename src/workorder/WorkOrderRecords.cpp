#include "WorkOrderRecords.h"

#include "PartPicker.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

#include <QSqlRecord>

namespace {

const QString Module = QStringLiteral("frmWorkorder");

/** Where a picked service is read from, and how it is found on the order already. */
struct ServiceSource
{
    QString existing;
    QString row;
    QString parts;
};

const ServiceSource MasterList{
    QStringLiteral("SELECT 1 FROM tblWoServiceUsed WHERE ServiceID = ? AND WorkOrderNo = ?"),
    QStringLiteral("SELECT ServiceID, CrewID, Name, CostCenterID, SeparateWo, LaborEstimate, "
                   "CostEstimate, Note, Period, JobNo, 0 AS ServiceUsedID FROM tblServices "
                   "WHERE ServiceID = ?"),
    QStringLiteral("SELECT PartID, QuantityRequired, Price, SupplierID FROM tblServicesPart "
                   "WHERE PartID IS NOT NULL AND ServiceID = ?")};

// The picked id is a scheduleId; the same service is recognised by its ServiceID.
const ServiceSource MachineList{
    QStringLiteral("SELECT 1 FROM tblWoServiceUsed WHERE ServiceID = (SELECT ServiceID FROM "
                   "tblServiceUsed WHERE ServiceUsedID = ?) AND WorkOrderNo = ?"),
    QStringLiteral("SELECT ServiceID, CrewID, Name, CostCenterID, SeparateWo, LaborEstimate, "
                   "CostEstimate, Note, Period, JobNo, ServiceUsedID FROM tblServiceUsed "
                   "WHERE ServiceUsedID = ?"),
    QStringLiteral("SELECT PartID, QuantityRequired, Price, SupplierID FROM tblServiceUsedPart "
                   "WHERE PartID IS NOT NULL AND ServiceUsedID = ?")};

QVariant numberOrNull(const QString& text)
{
    bool ok = false;
    const double number = text.trimmed().toDouble(&ok);
    return ok ? QVariant(number) : QVariant(QMetaType(QMetaType::Double));
}

/** "?, ?, ?" for count values. */
QString placeholders(qsizetype count)
{
    return QStringList(count, QStringLiteral("?")).join(QStringLiteral(", "));
}

} // namespace

qint64 WorkOrderRecords::insertHeader(WriteScope& write, qint64 equipmentId, const QDate& day)
{
    QVariant number;
    // Dated by the program's day rather than the column's default, the engine's clock.
    write.exec(QStringLiteral("INSERT INTO tblWorkorder (EquipmentID, Printed, WoDate) "
                              "VALUES (?, ?, ?) RETURNING WorkOrderNo"),
               {equipmentId, SqlValue::yesNo(false), SqlValue::date(day)}, &number);
    return write.ok() ? number.toLongLong() : 0;
}

qint64 WorkOrderRecords::addWorkOrder(qint64 equipmentId)
{
    WriteScope write(m_session, Module, QStringLiteral("AddWorkorderRecord"));
    const qint64 number = insertHeader(write, equipmentId, m_session.today());
    return write.commit() ? number : 0;
}

bool WorkOrderRecords::addUnscheduled(const QList<qint64>& equipmentIds, QList<qint64>* numbers)
{
    WriteScope write(m_session, Module, QStringLiteral("AddWorkorderRecord"));
    QList<qint64> made;
    for (qint64 equipmentId : equipmentIds) {
        made.append(insertHeader(write, equipmentId, m_session.today()));
    }
    if (!write.commit()) {
        return false;
    }
    numbers->append(made);
    return true;
}

bool WorkOrderRecords::workOrderExists(qint64 workOrderNo)
{
    return DataHelpers::recordCount(m_session, QStringLiteral("tblWorkorder"),
                                    {QStringLiteral("WorkOrderNo = ?"), {workOrderNo}}) > 0;
}

bool WorkOrderRecords::addServices(qint64 workOrderNo, qint64 equipmentId, const ServicePick& pick,
                                   bool completed)
{
    WriteScope write(m_session, Module, QStringLiteral("AddServiceRecord"));
    const bool fromMasterList = pick.source == EquipmentServices::FromServiceList;
    for (qint64 id : pick.ids) {
        addService(write, workOrderNo, equipmentId, id, fromMasterList, completed);
    }
    return write.commit();
}

void WorkOrderRecords::addService(WriteScope& write, qint64 workOrderNo, qint64 equipmentId,
                                  qint64 id, bool fromMasterList, bool completed)
{
    const ServiceSource& source = fromMasterList ? MasterList : MachineList;
    if (!write.select(source.existing, {id, workOrderNo}).isEmpty()) {
        return;
    }
    const Rows rows = write.select(source.row, {id});
    if (rows.isEmpty()) {
        return;
    }
    const QSqlRecord& s = rows.first();
    QVariantList values{workOrderNo, equipmentId, SqlValue::date(m_session.today()),
                        SqlValue::yesNo(completed)};
    for (int column = 0; column < s.count(); ++column) {
        values.append(s.value(column));
    }
    QVariant lineId;
    write.exec(QStringLiteral("INSERT INTO tblWoServiceUsed (WorkOrderNo, EquipmentID, "
                              "NextScheduledDate, Completed, ServiceID, CrewID, Name, "
                              "CostCenterID, SeparateWo, LaborEstimate, CostEstimate, Note, "
                              "Period, JobNo, ServiceUsedID) VALUES (%1) RETURNING NserviceUsedID")
                   .arg(placeholders(values.size())),
               values, &lineId);
    for (const QSqlRecord& part : write.select(source.parts, {id})) {
        write.exec(
            QStringLiteral("INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, "
                           "QuantityRequired, QuantityUsed, Price, SupplierID) "
                           "VALUES (?, ?, ?, ?, ?, ?)"),
            {lineId, part.value(0), part.value(1), part.value(1), part.value(2), part.value(3)});
    }
}

bool WorkOrderRecords::addParts(qint64 lineId, const QString& pickedParts, bool used)
{
    WriteScope write(m_session, Module, QStringLiteral("AddPartRecord"));
    for (const QString& record :
         pickedParts.split(PartPicker::RecordSeparator, Qt::SkipEmptyParts)) {
        const QStringList f = record.split(PartPicker::FieldSeparator);
        const QVariant quantity = numberOrNull(f.value(1));
        write.exec(QStringLiteral("INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, "
                                  "QuantityRequired, QuantityUsed, Price, Used, SupplierID) "
                                  "VALUES (?, ?, ?, ?, ?, ?, ?)"),
                   {lineId, f.value(0), quantity, quantity, numberOrNull(f.value(2)),
                    SqlValue::yesNo(used), numberOrNull(f.value(3))});
    }
    return write.commit();
}

bool WorkOrderRecords::deleteLine(qint64 lineId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteServiceRecord"));
    write.exec(QStringLiteral("DELETE FROM tblWoServiceUsed WHERE NserviceUsedID = ?"), {lineId});
    write.exec(QStringLiteral("DELETE FROM tblWoPartUsed WHERE ServiceUsedID = ?"), {lineId});
    return write.commit();
}

bool WorkOrderRecords::deletePart(qint64 lineId, const QString& partId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeletePartRecord"));
    write.exec(QStringLiteral("DELETE FROM tblWoPartUsed WHERE ServiceUsedID = ? AND PartID = ?"),
               {lineId, partId});
    return write.commit();
}

bool WorkOrderRecords::deleteWorkOrder(qint64 workOrderNo)
{
    WriteScope write(m_session, Module, QStringLiteral("cmdDelete_Click"));
    // Parts hang on the lines' own keys (lineIds).
    write.exec(QStringLiteral("DELETE FROM tblWoPartUsed WHERE ServiceUsedID IN (SELECT "
                              "NserviceUsedID FROM tblWoServiceUsed WHERE WorkOrderNo = ?)"),
               {workOrderNo});
    write.exec(QStringLiteral("DELETE FROM tblWoServiceUsed WHERE WorkOrderNo = ?"), {workOrderNo});
    write.exec(QStringLiteral("DELETE FROM tblWorkorder WHERE WorkOrderNo = ?"), {workOrderNo});
    return write.commit();
}

bool WorkOrderRecords::markPrinted(const QList<qint64>& workOrderNos)
{
    if (workOrderNos.isEmpty()) {
        return true;
    }
    QVariantList values{SqlValue::yesNo(true)};
    for (qint64 number : workOrderNos) {
        values.append(number);
    }
    WriteScope write(m_session, Module, QStringLiteral("UpdatePrintColInWorkOrder"));
    write.exec(QStringLiteral("UPDATE tblWorkorder SET Printed = ? WHERE WorkOrderNo IN (%1)")
                   .arg(placeholders(workOrderNos.size())),
               values);
    return write.commit();
}
