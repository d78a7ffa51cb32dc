#include "MeterReadings.h"

#include "NextDateCalculator.h"
#include "Prompter.h"
#include "ScheduleCodes.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("Count Reading");
const QString ServiceCountPrompt =
    QStringLiteral("Enter the last count that this service was performed.");

} // namespace

MeterReadings::MeterReadings(Session& session) : m_session(session) {}

MeterReadings::Reading MeterReadings::latest(qint64 equipmentId, const QString& countType)
{
    const Rows rows = DataHelpers::read(
        m_session, Module, QStringLiteral("RefreshCountForm"),
        QStringLiteral("SELECT ChangeDate, CountValue FROM tblEquipmentCount "
                       "WHERE EquipmentID = ? AND LOWER(CountType) = LOWER(?) "
                       "ORDER BY ChangeDate DESC NULLS LAST, CountValue DESC NULLS LAST LIMIT 1"),
        {equipmentId, countType});
    Reading reading;
    if (!rows.isEmpty()) {
        reading.exists = true;
        reading.date = SqlValue::toDate(rows.first().value(0));
        reading.value = rows.first().value(1).toLongLong();
    }
    return reading;
}

bool MeterReadings::addCount(qint64 equipmentId, const QDate& date, const QString& countType,
                             qint64 value, qint64 serviceUsedId)
{
    WriteScope write(m_session, Module, QStringLiteral("AddCount"));
    insertReading(write, equipmentId, date, countType, value);
    if (serviceUsedId != 0) {
        write.exec(QStringLiteral("UPDATE tblServiceUsed SET Period = ? WHERE ServiceUsedID = ?"),
                   {ScheduleCodes::periodCode(countType), serviceUsedId});
    }
    return write.ok() && applyReadingRule(equipmentId) && write.commit();
}

QString MeterReadings::countRefusal(qint64 equipmentId, const QString& countType,
                                    const std::optional<qint64>& value)
{
    if (!value) {
        return ReadingMessages::CountBlank;
    }
    if (*value < latest(equipmentId, countType).value) {
        return ReadingMessages::CountBelowLast;
    }
    if (serviceInProcess(equipmentId, countType)) {
        return ReadingMessages::ServiceInProcess;
    }
    return QString();
}

bool MeterReadings::serviceInProcess(qint64 equipmentId, const QString& countType)
{
    return DataHelpers::recordCount(m_session, QStringLiteral("tblWoServiceUsed"),
                                    {QStringLiteral("Period = ? AND EquipmentID = ?"),
                                     {ScheduleCodes::periodCode(countType), equipmentId}}) > 0;
}

MeterReadings::DateCheck MeterReadings::checkDate(qint64 equipmentId, const QString& countType,
                                                  const QDate& date)
{
    const Reading last = latest(equipmentId, countType);
    if (last.exists && last.date.isValid() && date < last.date) {
        return {last.date, ReadingMessages::DateBeforeLast};
    }
    if (date > m_session.today()) {
        return {m_session.today(), ReadingMessages::DateAfterToday};
    }
    return {date, QString()};
}

bool MeterReadings::addCheckedCount(qint64 equipmentId, const QDate& date, const QString& countType,
                                    const std::optional<qint64>& value, QString* refusal,
                                    qint64 serviceUsedId)
{
    *refusal = countRefusal(equipmentId, countType, value);
    if (refusal->isEmpty()) {
        *refusal = checkDate(equipmentId, countType, date).refusal;
    }
    return refusal->isEmpty() && addCount(equipmentId, date, countType, *value, serviceUsedId);
}

bool MeterReadings::applyReadingRule(qint64 equipmentId)
{
    WriteScope write(m_session, Module, QStringLiteral("CheckMeterLogic"));
    const Rows waiting = write.select(
        QStringLiteral("SELECT ServiceUsedID FROM tblServiceUsed WHERE EquipmentID = ? AND "
                       "NextScheduledDate IS NULL AND Period IN ") +
            ScheduleCodes::meterPeriodsSql(),
        {equipmentId});
    NextDateCalculator calculator(m_session);
    for (const QSqlRecord& row : waiting) {
        const qint64 serviceUsedId = row.value(0).toLongLong();
        const QDate due = calculator.nextScheduledDate(serviceUsedId);
        if (due.isValid()) {
            write.exec(QStringLiteral("UPDATE tblServiceUsed SET NextScheduledDate = ? "
                                      "WHERE ServiceUsedID = ?"),
                       {SqlValue::date(due), serviceUsedId});
        }
    }
    return write.commit();
}

bool MeterReadings::ensureReading(qint64 equipmentId, qint64 serviceUsedId,
                                  const QString& serviceName, const QString& countType,
                                  const ServiceCountAsker& ask, bool* missing)
{
    const bool none = !latest(equipmentId, countType).exists;
    if (missing) {
        *missing = none;
    }
    if (!none || ask(equipmentId, serviceUsedId, serviceName, countType)) {
        return true;
    }
    // Only a mark that the machine had no count: no service can be due on it.
    WriteScope write(m_session, Module, QStringLiteral("AddServiceRecord"));
    insertReading(write, equipmentId, m_session.today(), countType, 0);
    return write.commit();
}

void MeterReadings::insertReading(WriteScope& write, qint64 equipmentId, const QDate& date,
                                  const QString& countType, qint64 value)
{
    write.exec(QStringLiteral("INSERT INTO tblEquipmentCount(EquipmentID, ChangeDate, CountType, "
                              "CountValue) VALUES (?, ?, ?, ?)"),
               {equipmentId, SqlValue::date(date), countType, value});
}

MeterReadings::ServiceCountAsker MeterReadings::promptedAsker()
{
    return [this](qint64 equipmentId, qint64 serviceUsedId, const QString& serviceName,
                  const QString& countType) {
        const std::optional<QString> answer =
            m_session.prompter().input(ServiceCountPrompt, serviceName);
        bool ok = false;
        const qint64 value = answer ? answer->trimmed().toLongLong(&ok) : 0;
        return ok && value >= 0 &&
               addCount(equipmentId, m_session.today(), countType, value, serviceUsedId);
    };
}
