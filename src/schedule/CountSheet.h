#pragma once

#include <QDate>
#include <QList>
#include <QString>

class Session;

/**
 * The count sheet: the machines and count types whose latest reading is
 * older than the reading delay, and the walk that stores the counts written
 * on it, all or nothing.
 */
class CountSheet
{
public:
    /** One machine and count type due for a reading. */
    struct Line
    {
        qint64 equipmentId = 0;
        QString unitNo;
        QString equipmentName;
        QString countType;
        QDate lastDate;
        qint64 lastCount = 0;
    };

    /** A count written on the sheet for one machine and type. */
    struct Entry
    {
        qint64 equipmentId = 0;
        QString countType;
        QString count; ///< as written; empty or the blank to write on means none
    };

    /** What a printed sheet leaves to write on; a line still holding it has no count. */
    static inline const QString Blank = QStringLiteral("______________");
    static inline const QString BelowLast =
        QStringLiteral("Count value should be more than or equal to Last value");

    explicit CountSheet(Session& session);

    /**
     * The lines by unit number: active machines with a meter service that is
     * not on a work order, one a count type they have readings of, whose
     * latest reading is at least COUNT_READING_DELAY days old (0 when the
     * option is empty, so that readings of today are listed too).
     */
    QList<Line> lines();

    /** Why a count written on a line cannot stand; empty when it can (or none is written). */
    static QString countRefusal(const Line& line, const QString& count);

    /**
     * Stores every written count with today's date and runs the reading rule,
     * in one transaction. A line whose machine has a work order line of the
     * type's period open is refused with its message and the walk goes on.
     * False (reported) on a failure, and then nothing of the walk is kept.
     */
    bool record(const QList<Entry>& entries);

private:
    int readingDelay();

    Session& m_session;
};
