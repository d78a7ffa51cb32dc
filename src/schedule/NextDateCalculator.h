#pragma once

#include <QDate>
#include <QString>
#include <QVariant>
#include <array>
#include <memory>

class QSqlQuery;
class Session;

/**
 * Turns a service on a machine (a row of tblServiceUsed) into its next due date.
 * The empty date (a null QDate) means "no date": a meter service not yet due.
 * Reads the data but never writes it; storing the answer is the caller's work.
 *
 * A calendar schedule adds its interval to a base date and then moves the sum
 * forward, never back, to the first day its selection of months, weeks of the
 * month and days of the week (or its list of days of the month) allows. A meter
 * schedule is due on the date of the latest reading that reached its count.
 */
class NextDateCalculator
{
public:
    using Months = std::array<bool, 12>; ///< January first
    using Weeks = std::array<bool, 5>;   ///< weeks 1 to 5 of the month, as weekNo() counts
    using Days = std::array<bool, 7>;    ///< Sunday first
    using DomList = std::array<int, 5>;  ///< days of the month; values outside 1..31 match no day

    explicit NextDateCalculator(Session& session);
    ~NextDateCalculator();

    /**
     * The next date of the service row serviceUsedId. With useGivenDate the given
     * day stands for both base dates (an empty one for today) and the stored ones
     * are not read. An id without a row answers today; a selection with no month,
     * week or day tells the user once and answers tomorrow, so that the service
     * soon shows up as due and can be mended. A failure is reported and answers today.
     */
    QDate nextScheduledDate(qint64 serviceUsedId, bool useGivenDate = false,
                            const QDate& givenDate = QDate());

    // The steps of the calculation, each usable alone.

    /**
     * The interval step: days, weeks, calendar months or years by period code.
     * Months and years keep the day, clamped to the end of the target month.
     * The empty date for a code that is no calendar period or a sum beyond year 9999.
     */
    static QDate addDay(const QString& period, qint64 interval, const QDate& date);
    /**
     * The week of the month by the schedule's own rounding, not in seven-day blocks:
     * the 7th, 14th, 21st and 28th close a week, the 4th to 6th already count as week 2.
     */
    static int weekNo(const QDate& date);
    /** The date if its month is selected, else the 1st of the next selected one (none: empty). */
    static QDate checkMonth(const Months& months, const QDate& date);
    /**
     * The date if its week is selected, else the first day (1st, 8th, 15th, 22nd, 29th)
     * of the next selected week; monthEnded and the 1st of the next month when the
     * month has no such week left.
     */
    static QDate checkWeek(const Weeks& weeks, const QDate& date, bool* monthEnded);
    /**
     * The first selected weekday from the date on. Stops early on the 1st of the next
     * month (monthEnded) or on the next seven-day boundary of the month (weekWrapped),
     * where the week must be looked at again.
     */
    static QDate checkDay(const Days& days, const QDate& date, bool* monthEnded, bool* weekWrapped);
    /** The first listed day on or after the date; empty if no listed value is a day 1-31. */
    static QDate checkDom(const DomList& list, const QDate& date);
    /**
     * The first day on or after the date that the month, week and day selections all
     * allow; empty when one of them is empty.
     */
    static QDate checkSchDate(const Months& months, const Weeks& weeks, const Days& days,
                              const QDate& date);
    /** Minutes as the time text "h:mm"; a day or more keeps counting hours ("25:30"). */
    static QString changeMinuteInHour(int minutes);

    /**
     * The date of the latest reading of that type if it reached the count (ties of date
     * go to the highest count), else the empty date. A failure is reported, answers the
     * empty date too and sets failed, when given.
     */
    QDate checkMeterLogic(qint64 equipmentId, const QString& countType, qint64 nextScheduledCount,
                          bool* failed = nullptr);
    /** The latest reading of one count type ("Hours"...); 0 when there is none or it is null. */
    qint64 equipmentCount(qint64 equipmentId, const QString& countType);
    /** The latest reading for a period code; calendar codes find no readings and give 0. */
    qint64 equipmentCountByPeriod(qint64 equipmentId, const QString& periodCode);
    /** True when the service row stands on a work order line. */
    bool serviceInWorkOrder(qint64 serviceUsedId);

private:
    enum class Selection { Months, Weeks, Days };
    struct LatestReading;

    LatestReading latestReading(const QString& procedure, qint64 equipmentId,
                                const QString& countType);
    qint64 readingValue(const QString& procedure, const QVariant& value, bool* ok);
    void tellEmptySelection(qint64 serviceUsedId, Selection selection, const QString& jobNo,
                            const QString& name);

    Session& m_session;
    /** The service row's read, prepared once for a calculator that dates many services. */
    std::unique_ptr<QSqlQuery> m_serviceRow;
};
