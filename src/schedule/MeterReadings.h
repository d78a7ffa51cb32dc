#pragma once

#include <QDate>
#include <QString>
#include <functional>

class Session;
class WriteScope;

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

private:
    static void insertReading(WriteScope& write, qint64 equipmentId, const QDate& date,
                              const QString& countType, qint64 value);

    Session& m_session;
};
