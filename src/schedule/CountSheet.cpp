#include "CountSheet.h"

#include "DataHelpers.h"
#include "MeterReadings.h"
#include "Options.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("EquipmentReading");

bool hasCount(const QString& count)
{
    const QString written = count.trimmed();
    return !written.isEmpty() && written != CountSheet::Blank;
}

} // namespace

CountSheet::CountSheet(Session& session) : m_session(session) {}

int CountSheet::readingDelay()
{
    // An empty (or unreadable) option means no delay.
    return Options::option(m_session, QStringLiteral("COUNT_READING_DELAY")).trimmed().toInt();
}

QList<CountSheet::Line> CountSheet::lines()
{
    // A reading dated d is older than the delay when d <= today - delay: the
    // day counts from its start. Readings are grouped per machine and type,
    // so a type never read is not listed.
    const QString sql =
        QStringLiteral(
            "SELECT due.EquipmentID, e.UnitNo, e.EquipmentName, due.CountType, due.LastDate, "
            "MAX(c.CountValue) FROM (SELECT r.EquipmentID, r.CountType, MAX(r.ChangeDate) AS "
            "LastDate "
            "FROM tblEquipmentCount r WHERE r.EquipmentID IN (SELECT s.EquipmentID FROM "
            "tblServiceUsed s WHERE s.Period IN %1 AND s.ServiceUsedID NOT IN (SELECT "
            "w.ServiceUsedID FROM tblWoServiceUsed w WHERE w.ServiceUsedID IS NOT NULL)) "
            "GROUP BY r.EquipmentID, r.CountType HAVING MAX(r.ChangeDate) <= ?) due "
            "JOIN tblEquipment e ON e.EquipmentID = due.EquipmentID AND e.Inactive = '0' "
            "JOIN tblEquipmentCount c ON c.EquipmentID = due.EquipmentID AND "
            "c.CountType = due.CountType AND c.ChangeDate = due.LastDate "
            "GROUP BY due.EquipmentID, e.UnitNo, e.EquipmentName, due.CountType, due.LastDate "
            "ORDER BY e.UnitNo, due.EquipmentID, due.CountType")
            .arg(ScheduleCodes::meterPeriodsSql());
    const QDate cutoff = m_session.today().addDays(-readingDelay());
    QList<Line> result;
    for (const QSqlRecord& row :
         DataHelpers::read(m_session, Module, QStringLiteral("RefreshRecordSet"), sql,
                           {SqlValue::date(cutoff)})) {
        result.append({row.value(0).toLongLong(), row.value(1).toString(), row.value(2).toString(),
                       row.value(3).toString(), SqlValue::toDate(row.value(4)),
                       row.value(5).toLongLong()});
    }
    return result;
}

QString CountSheet::countRefusal(const Line& line, const QString& count)
{
    return hasCount(count) && count.trimmed().toLongLong() < line.lastCount ? BelowLast : QString();
}

bool CountSheet::record(const QList<Entry>& entries)
{
    WriteScope write(m_session, Module, QStringLiteral("cmdUpdate_Click"));
    if (!write.ok()) {
        return false;
    }
    MeterReadings readings(m_session);
    for (const Entry& entry : entries) {
        if (!hasCount(entry.count)) {
            continue;
        }
        if (readings.serviceInProcess(entry.equipmentId, entry.countType)) {
            m_session.prompter().inform(ReadingMessages::ServiceInProcess);
            continue;
        }
        // addCount has reported its failure; leaving without commit undoes the whole walk.
        if (!readings.addCount(entry.equipmentId, m_session.today(), entry.countType,
                               entry.count.trimmed().toLongLong())) {
            return false;
        }
    }
    return write.commit();
}
