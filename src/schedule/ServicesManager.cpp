#include "ServicesManager.h"

#include "LabourCost.h"
#include "NextDateCalculator.h"
#include "PartPicker.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

#include <QStringList>

namespace {

const QString Module = QStringLiteral("clsServicesManager");

// The schedule columns in the order every statement names them.
const char* const DayColumns[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const WeekColumns[] = {"FirstW", "SecondW", "ThirdW", "ForthW", "LastW"};
const char* const MonthColumns[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dece"};

/** Table and key names are program text chosen by kind, never taken from data. */
struct Names
{
    QString table;
    QString key;
    QString partTable;
};

Names names(ServicesManager::Kind kind)
{
    if (kind == ServicesManager::Kind::Master) {
        return {QStringLiteral("tblServices"), QStringLiteral("ServiceID"),
                QStringLiteral("tblServicesPart")};
    }
    return {QStringLiteral("tblServiceUsed"), QStringLiteral("ServiceUsedID"),
            QStringLiteral("tblServiceUsedPart")};
}

QVariant pattern(bool on)
{
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

/** The schedule columns shared by both tables with their values, in the stored order. */
QList<std::pair<QString, QVariant>> scheduleValues(const Service& s)
{
    QList<std::pair<QString, QVariant>> v{{QStringLiteral("Name"), s.name},
                                          {QStringLiteral("CrewID"), s.crew},
                                          {QStringLiteral("CostCenterID"), s.costCenter},
                                          {QStringLiteral("Period"), s.renewalPeriod},
                                          {QStringLiteral("EInterval"), s.renewalInterval},
                                          {QStringLiteral("RenewalOn"), s.renewalBasedOn}};
    for (int i = 0; i < 7; ++i) {
        v.append({QString::fromLatin1(DayColumns[i]), pattern(s.days[i])});
    }
    for (int i = 0; i < 5; ++i) {
        v.append({QString::fromLatin1(WeekColumns[i]), pattern(s.weeks[i])});
    }
    for (int i = 0; i < 5; ++i) {
        v.append({QStringLiteral("DOM%1").arg(i + 1), s.dom[i]});
    }
    for (int i = 0; i < 12; ++i) {
        v.append({QString::fromLatin1(MonthColumns[i]), pattern(s.months[i])});
    }
    v += {{QStringLiteral("SeparateWo"), SqlValue::flag(s.separateWorkOrder)},
          {QStringLiteral("LaborEstimate"), s.budgetedLabor},
          {QStringLiteral("CostEstimate"), s.budgetedCost},
          {QStringLiteral("Note"), s.notes},
          {QStringLiteral("Dom"), pattern(s.dayOfMonth)},
          {QStringLiteral("JobNo"), s.jobNo}};
    return v;
}

/** "UPDATE table SET a = ?, b = ? WHERE key = ?" with the values and the id bound. */
bool updateRow(WriteScope& write, const Names& n, QList<std::pair<QString, QVariant>> values,
               qint64 id)
{
    QStringList sets;
    QVariantList bound;
    for (const auto& [column, value] : values) {
        sets.append(column + QStringLiteral(" = ?"));
        bound.append(value);
    }
    bound.append(id);
    return write.exec(QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
                          .arg(n.table, sets.join(QStringLiteral(", ")), n.key),
                      bound);
}

QVariant numberOrNull(const QString& text)
{
    return text.trimmed().isEmpty() ? QVariant() : QVariant(text.toDouble());
}

} // namespace

Rows ServicesManager::list()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblServices"), {},
                                  QStringLiteral("ServiceID"));
}

Rows ServicesManager::copyRow(qint64 serviceUsedId)
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblServiceUsed"),
                                  {QStringLiteral("ServiceUsedID = ?"), {serviceUsedId}});
}

Rows ServicesManager::pickList(const QString& source, const QList<qint64>& excluded,
                               qint64 equipmentId)
{
    const bool master = source == QStringLiteral("SL");
    const QString table = names(master ? Kind::Master : Kind::Copy).table;
    QString sql =
        QStringLiteral(
            "SELECT %1.ServiceID, %1.JobNo, %1.Name, "
            "CAST(tblCrew.CrewNumber AS TEXT) || '   ' || tblCrew.Description AS Crew, "
            "tblCostCenter.Description AS CostCenter, %1.EInterval, "
            "CASE %1.RenewalOn WHEN 'W' THEN 'Work Order Completion' "
            "WHEN 'S' THEN 'Service Original Scheduled' END AS RenewalOn, %1.SeparateWo, "
            "%1.LaborEstimate, %1.CostEstimate%2 "
            "FROM (%1 LEFT JOIN tblCrew ON %1.CrewID = tblCrew.CrewID) "
            "LEFT JOIN tblCostCenter ON %1.CostCenterID = tblCostCenter.CostCenterID WHERE 1 = 1")
            .arg(table, master ? QString() : QStringLiteral(", tblServiceUsed.ServiceUsedID"));
    QVariantList values;
    if (!master) {
        sql += QStringLiteral(" AND tblServiceUsed.EquipmentID = ?");
        values.append(equipmentId);
    }
    if (!excluded.isEmpty()) {
        sql += QStringLiteral(" AND NOT %1.ServiceID IN (%2)")
                   .arg(table, QStringList(excluded.size(), QStringLiteral("?")).join(u','));
        for (qint64 id : excluded) {
            values.append(id);
        }
    }
    sql += QStringLiteral(" ORDER BY %1.ServiceID").arg(table);
    return DataHelpers::read(m_session, Module, QStringLiteral("FillGrid"), sql, values);
}

Rows ServicesManager::machineNameAndUnit(qint64 equipmentId)
{
    return DataHelpers::read(
        m_session, Module, QStringLiteral("optEquipmentService_Click"),
        QStringLiteral("SELECT EquipmentName, UnitNo FROM tblEquipment WHERE EquipmentID = ?"),
        {equipmentId});
}

Rows ServicesManager::costCenterInfo()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblCostCenter"), {},
                                  QStringLiteral("CostCenterID"));
}

QString ServicesManager::nextJobNo()
{
    // JobNo is text, so the engine's MAX would rank "9" above "10".
    qint64 highest = 0;
    for (const QSqlRecord& row :
         DataHelpers::read(m_session, Module, QStringLiteral("GenerateID"),
                           QStringLiteral("SELECT JobNo FROM tblServices"))) {
        highest = std::max(highest, row.value(0).toString().trimmed().toLongLong());
    }
    return QString::number(highest + 1);
}

bool ServicesManager::saveRecord(Service& service, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    const Names n = names(Kind::Master);
    if (!adding) {
        updateRow(write, n, scheduleValues(service), service.serviceId);
        return write.commit();
    }
    // Another workstation may have taken the proposed number meanwhile.
    const QString fresh = nextJobNo();
    const QString proposed = service.jobNo;
    Service added = service;
    added.jobNo = fresh;
    added.serviceId = DataHelpers::generateUniqueId(m_session.clock().now());
    QStringList columns{n.key};
    QVariantList values{added.serviceId};
    for (const auto& [column, value] : scheduleValues(added)) {
        columns.append(column);
        values.append(value);
    }
    QStringList marks(columns.size(), QStringLiteral("?"));
    write.exec(QStringLiteral("INSERT INTO tblServices (%1) VALUES (%2)")
                   .arg(columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", "))),
               values);
    if (!write.commit()) {
        return false;
    }
    service = added;
    if (fresh != proposed) {
        m_session.prompter().inform(
            QStringLiteral("Service no ") + proposed +
            QStringLiteral(" is already being used the new service number is ") + fresh + u'.');
    }
    return true;
}

bool ServicesManager::saveServiceUsed(const Service& service, const ServiceCopy& copy,
                                      const MeterReadings::ServiceCountAsker& ask)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    auto values = scheduleValues(service);
    values += {{QStringLiteral("Inactive"), copy.inactive ? 1 : 0},
               {QStringLiteral("NextScheduledCount"), copy.nextScheduledCount}};
    if (updateRow(write, names(Kind::Copy), values, service.serviceId)) {
        renewSchedule(write, service, copy, ask);
    }
    return write.commit();
}

void ServicesManager::renewSchedule(WriteScope& write, const Service& service,
                                    const ServiceCopy& copy,
                                    const MeterReadings::ServiceCountAsker& ask)
{
    const QString countType = ScheduleCodes::countType(service.renewalPeriod);
    if (!countType.isEmpty()) {
        MeterReadings readings(m_session);
        bool missing = false;
        if (!readings.ensureReading(copy.equipmentId, service.serviceId, service.name, countType,
                                    ask, &missing)) {
            write.fail(QStringLiteral("The machine's count could not be kept."));
        } else if (missing) {
            const qint64 next =
                readings.latest(copy.equipmentId, countType).value + service.renewalInterval;
            write.exec(QStringLiteral("UPDATE tblServiceUsed SET NextScheduledCount = ? "
                                      "WHERE ServiceUsedID = ?"),
                       {next, service.serviceId});
        }
        return;
    }
    if (copy.nextDate.isValid()) {
        return;
    }
    const QDate next = NextDateCalculator(m_session).nextScheduledDate(service.serviceId);
    if (next.isValid()) {
        write.exec(QStringLiteral("UPDATE tblServiceUsed SET NextScheduledDate = ? "
                                  "WHERE ServiceUsedID = ?"),
                   {SqlValue::date(next), service.serviceId});
    }
}

bool ServicesManager::saveServiceUsedRecord(qint64 serviceUsedId, const QDate& lastDateScheduled,
                                            const QDate& lastDatePerformed,
                                            const QDate& nextScheduledDate)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveServiceUsedRecord"));
    write.exec(QStringLiteral("UPDATE tblServiceUsed SET LastDateScheduled = ?, "
                              "LastDatePerformed = ?, NextScheduledDate = ? "
                              "WHERE ServiceUsedID = ?"),
               {SqlValue::date(lastDateScheduled), SqlValue::date(lastDatePerformed),
                SqlValue::date(nextScheduledDate), serviceUsedId});
    return write.commit();
}

QString ServicesManager::canDeleteServices(qint64 serviceId)
{
    return DataHelpers::isRecordUsed(m_session, QStringLiteral("tblServiceUsed"),
                                     QStringLiteral("ServiceID"), serviceId, QStringLiteral("N"))
               ? QStringLiteral("Service Used")
               : QString();
}

bool ServicesManager::deleteRecord(qint64 serviceId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblServices WHERE ServiceID = ?"), {serviceId});
    write.exec(QStringLiteral("DELETE FROM tblServicesPart WHERE ServiceID = ?"), {serviceId});
    return write.commit();
}

bool ServicesManager::updateJobNoForAllService(qint64 serviceId, const QString& newJobNo)
{
    WriteScope write(m_session, Module, QStringLiteral("UpdateJobNoForAllService"));
    write.exec(QStringLiteral("UPDATE tblServiceUsed SET JobNo = ? WHERE ServiceID = ?"),
               {newJobNo, serviceId});
    write.exec(QStringLiteral("UPDATE tblWoServiceUsed SET JobNo = ? WHERE ServiceID = ?"),
               {newJobNo, serviceId});
    return write.commit();
}

Rows ServicesManager::parts(Kind kind, qint64 id)
{
    const Names n = names(kind);
    const QString sql =
        QStringLiteral("SELECT %1.PartID, tblPart.Description, %1.QuantityRequired, %1.Price, "
                       "%1.QuantityRequired * %1.Price AS ExtendedCost "
                       "FROM %1 LEFT JOIN tblPart ON tblPart.PartID = %1.PartID "
                       "WHERE %1.%2 = ? ORDER BY %1.PartID")
            .arg(n.partTable, n.key);
    return DataHelpers::read(m_session, Module, QStringLiteral("FillPartGrid"), sql, {id});
}

QString ServicesManager::partExcludeText(Kind kind, qint64 id)
{
    QStringList quoted;
    for (const QSqlRecord& row : parts(kind, id)) {
        QString part = row.value(0).toString();
        quoted.append(u'\'' + part.replace(u'\'', QStringLiteral("''")) + u'\'');
    }
    return quoted.join(u',');
}

bool ServicesManager::addPicked(Kind kind, qint64 id, const QString& resultText)
{
    const Names n = names(kind);
    WriteScope write(m_session, Module, QStringLiteral("AddPartRecord"));
    for (const QString& record :
         resultText.split(PartPicker::RecordSeparator, Qt::SkipEmptyParts)) {
        const QStringList f = record.split(PartPicker::FieldSeparator);
        write.exec(QStringLiteral("INSERT INTO %1 (PartID, %2, QuantityRequired, Price, "
                                  "SupplierID) VALUES (?, ?, ?, ?, ?)")
                       .arg(n.partTable, n.key),
                   {f.value(0), id, f.value(1).toDouble(), numberOrNull(f.value(2)),
                    numberOrNull(f.value(3))});
    }
    return write.commit();
}

bool ServicesManager::savePartGridChanges(Kind kind, qint64 id, const QString& partId,
                                          double quantity, double price)
{
    const Names n = names(kind);
    WriteScope write(m_session, Module, QStringLiteral("SavePartGirdChanges"));
    write.exec(QStringLiteral("UPDATE %1 SET QuantityRequired = ?, Price = ? "
                              "WHERE PartID = ? AND %2 = ?")
                   .arg(n.partTable, n.key),
               {quantity, price, partId, id});
    return write.commit();
}

bool ServicesManager::removePart(Kind kind, qint64 id, const QString& partId)
{
    const Names n = names(kind);
    WriteScope write(m_session, Module, QStringLiteral("cmdRemove_Click"));
    write.exec(QStringLiteral("DELETE FROM %1 WHERE PartID = ? AND %2 = ?").arg(n.partTable, n.key),
               {partId, id});
    return write.commit();
}

double ServicesManager::partCost(Kind kind, qint64 id)
{
    const Names n = names(kind);
    const Rows rows = DataHelpers::read(
        m_session, Module, QStringLiteral("SetPastCost"),
        QStringLiteral("SELECT SUM(QuantityRequired * %1.Price) FROM %1 "
                       "LEFT JOIN tblPart ON %1.PartID = tblPart.PartID WHERE %1.%2 = ?")
            .arg(n.partTable, n.key),
        {id});
    return rows.isEmpty() ? 0 : rows.first().value(0).toDouble();
}

double ServicesManager::budgetedCost(qint64 crewId, double hours)
{
    return LabourCost::laborCost(m_session, crewId) * hours;
}
