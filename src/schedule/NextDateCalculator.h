#pragma once

#include <QDate>
#include <QString>
#include <array>

class Session;

/**
 * Turns a service on a machine (a row of tblServiceUsed) into its next due date.
 * The empty date (a null QDate) means "no date": a meter service not yet due.
 * Reads the data but never writes it.
 */
class NextDateCalculator
{
public:
    using Months = std::array<bool, 12>; ///< January first
    using Weeks = std::array<bool, 5>;   ///< weeks 1 to 5 of the month
    using Days = std::array<bool, 7>;    ///< Sunday first
    using DomList = std::array<int, 5>;

    explicit NextDateCalculator(Session& session);

    /** The next date of the service row; with useGivenDate the given day stands for both base dates. */
    QDate nextScheduledDate(qint64 serviceUsedId, bool useGivenDate = false,
                            const QDate& givenDate = QDate());

    // The helpers below are the steps of the calculation, each usable alone.
    static QDate addDay(const QString& period, qint64 interval, const QDate& date);
    static int weekNo(const QDate& date);
    static QDate checkMonth(const Months& months, const QDate& date);
    static QDate checkWeek(const Weeks& weeks, const QDate& date, bool* monthEnded);
    static QDate checkDay(const Days& days, const QDate& date, bool* monthEnded, bool* weekWrapped);
    static QDate checkDom(const DomList& list, const QDate& date);
    static QDate checkSchDate(const Months& months, const Weeks& weeks, const Days& days,
                              const QDate& date);
    static QString changeMinuteInHour(int minutes);

    QDate checkMeterLogic(qint64 equipmentId, const QString& countType, qint64 nextScheduledCount);
    qint64 equipmentCount(qint64 equipmentId, const QString& countType);
    qint64 equipmentCountByPeriod(qint64 equipmentId, const QString& periodCode);
    bool serviceInWorkOrder(qint64 serviceUsedId);

private:
    Session& m_session;
};
