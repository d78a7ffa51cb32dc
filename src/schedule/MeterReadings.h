#pragma once

#include <QDate>
#include <QString>
#include <functional>
#include <optional>

class Session;
class WriteScope;

/** Why a reading is refused; each is shown as it stands. */
namespace ReadingMessages {
inline const QString CountBlank = QStringLiteral("New count value shouldn't be blank.");
inline const QString CountBelowLast =
    QStringLiteral("New count value should be greater than or equal to last count value.");
inline const QString ServiceInProcess =
    QStringLiteral("Service is in-proccess for this equipment counts cann't be added till the "
                   "service over.");
inline const QString DateBeforeLast =
    QStringLiteral("New  date cann't be less than to last count date.");
inline const QString DateAfterToday =
    QStringLiteral("New  date cann't be greater than to current date.");
} // namespace ReadingMessages

/**
 * The meter readings of the machines (tblEquipmentCount) and the rule that
 * follows every new reading: a meter service whose count has been reached
 * gets the date of that reading, which makes it due. A reading never moves
 * NextScheduledCount; only posting a work order does.
 */
class MeterReadings
{
public:
    /** The latest reading: highest date, and among equal dates the highest value. */
    struct Reading
    {
        bool exists = false;
        QDate date;
        qint64 value = 0;
    };

    /**
     * Asks the count at which a meter service was last done on a machine that has no
     * reading of its type yet, and stores it through addCount with the service's id.
     * True when a reading was stored; false when the user gave none.
     */
    using ServiceCountAsker =
        std::function<bool(qint64 equipmentId, qint64 serviceUsedId, const QString& serviceName,
                           const QString& countType)>;

    explicit MeterReadings(Session& session);

    Reading latest(qint64 equipmentId, const QString& countType);

    /**
     * Stores one reading and runs the reading rule for the machine. With a service id,
     * that service is also kept on the period of the count type entered. Joins an open
     * transaction; false (reported) on a failure, with nothing of it kept.
     */
    bool addCount(qint64 equipmentId, const QDate& date, const QString& countType, qint64 value,
                  qint64 serviceUsedId = 0);

    /** A date a reading may take, and why the one asked for was moved there. */
    struct DateCheck
    {
        QDate date;
        QString refusal; ///< empty when the date asked for stands
    };

    /**
     * Why a typed count cannot be stored, in the order the user is told: blank
     * (no value), below the latest reading, or a work order line of the type's
     * period open on the machine. Empty when it can be stored; an equal count can.
     */
    QString countRefusal(qint64 equipmentId, const QString& countType,
                         const std::optional<qint64>& value);
    /** True while an open work order line of the count type's period stands on the machine. */
    bool serviceInProcess(qint64 equipmentId, const QString& countType);
    /** A reading is dated neither before the latest one of its type nor after today. */
    DateCheck checkDate(qint64 equipmentId, const QString& countType, const QDate& date);

    /**
     * A reading typed by the user: the count checks, then the date check, then
     * addCount. True when stored; false with refusal set when refused, or with
     * it empty after a reported failure. Nothing is written when refused.
     */
    bool addCheckedCount(qint64 equipmentId, const QDate& date, const QString& countType,
                         const std::optional<qint64>& value, QString* refusal,
                         qint64 serviceUsedId = 0);

    /** Gives every meter service of the machine without a date the date its count was reached. */
    bool applyReadingRule(qint64 equipmentId);

    /**
     * Before a meter service starts on a machine: when the machine has no reading of the
     * type, asks for one; with no answer a zero reading dated today is stored, the sign
     * that the machine had no count. missing tells whether a reading was missing.
     */
    bool ensureReading(qint64 equipmentId, qint64 serviceUsedId, const QString& serviceName,
                       const QString& countType, const ServiceCountAsker& ask,
                       bool* missing = nullptr);

    /**
     * The asker for callers without a screen of their own: the prompter's input box,
     * whose whole number is stored with today's date. Anything else counts as no answer.
     */
    ServiceCountAsker promptedAsker();

    /**
     * Writes one reading as it stands, without the reading rule: posting stores the counts
     * taken with the work this way, and the next reading entered dates the services.
     */
    static void insertReading(WriteScope& write, qint64 equipmentId, const QDate& date,
                              const QString& countType, qint64 value);

private:
    Session& m_session;
};
