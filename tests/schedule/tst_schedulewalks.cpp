#include "NextDateCalculator.h"
#include "ScheduleCodes.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Calc = NextDateCalculator;

namespace {

enum Weekday { Sun = 1, Mon, Tue, Wed, Thu, Fri, Sat };

template <std::size_t N> std::array<bool, N> only(std::initializer_list<int> on)
{
    std::array<bool, N> flags{};
    for (int i : on) {
        flags[i - 1] = true;
    }
    return flags;
}

template <std::size_t N> std::array<bool, N> all()
{
    std::array<bool, N> flags;
    flags.fill(true);
    return flags;
}

} // namespace

Q_DECLARE_METATYPE(Calc::Months)
Q_DECLARE_METATYPE(Calc::Weeks)
Q_DECLARE_METATYPE(Calc::Days)
Q_DECLARE_METATYPE(Calc::DomList)

/** The date steps of the schedule, without any data behind them. */
class TestScheduleWalks : public QObject
{
    Q_OBJECT

private slots:
    void weekNoFollowsItsRoundingTable_data()
    {
        QTest::addColumn<int>("day");
        QTest::addColumn<int>("week");
        const QList<QList<int>> weeks = {{1, 2, 3, 7},
                                         {4, 5, 6, 8, 9, 10, 14},
                                         {11, 12, 13, 15, 16, 17, 21},
                                         {18, 19, 20, 22, 23, 24, 28},
                                         {25, 26, 27, 29, 30, 31}};
        for (int week = 1; week <= 5; ++week) {
            for (int day : weeks[week - 1]) {
                QTest::addRow("day %d", day) << day << week;
            }
        }
    }
    void weekNoFollowsItsRoundingTable()
    {
        QFETCH(int, day);
        QFETCH(int, week);
        QCOMPARE(Calc::weekNo(QDate(2024, 1, day)), week);
    }

    void addDayStepsAndClamps_data()
    {
        QTest::addColumn<QString>("period");
        QTest::addColumn<qint64>("interval");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        QTest::addRow("30 days") << u"D"_s << 30LL << QDate(2024, 1, 15) << QDate(2024, 2, 14);
        QTest::addRow("2 weeks") << u"W"_s << 2LL << QDate(2024, 3, 6) << QDate(2024, 3, 20);
        QTest::addRow("31 Jan + 1 month, leap")
            << u"M"_s << 1LL << QDate(2024, 1, 31) << QDate(2024, 2, 29);
        QTest::addRow("31 Jan + 1 month")
            << u"M"_s << 1LL << QDate(2023, 1, 31) << QDate(2023, 2, 28);
        QTest::addRow("31 Jan + 13 months")
            << u"M"_s << 13LL << QDate(2023, 1, 31) << QDate(2024, 2, 29);
        QTest::addRow("31 Mar - 1 month")
            << u"M"_s << -1LL << QDate(2024, 3, 31) << QDate(2024, 2, 29);
        QTest::addRow("31 Aug + 1 month")
            << u"M"_s << 1LL << QDate(2024, 8, 31) << QDate(2024, 9, 30);
        QTest::addRow("29 Feb + 1 year")
            << u"Y"_s << 1LL << QDate(2024, 2, 29) << QDate(2025, 2, 28);
        QTest::addRow("29 Feb + 4 years")
            << u"Y"_s << 4LL << QDate(2024, 2, 29) << QDate(2028, 2, 29);
        QTest::addRow("interval 0") << u"D"_s << 0LL << QDate(2024, 5, 5) << QDate(2024, 5, 5);
        QTest::addRow("lower case code") << u"d"_s << 1LL << QDate(2024, 5, 5) << QDate();
        QTest::addRow("meter code") << u"H"_s << 1LL << QDate(2024, 5, 5) << QDate();
        QTest::addRow("empty date") << u"D"_s << 1LL << QDate() << QDate();
        QTest::addRow("beyond year 9999") << u"Y"_s << 8000LL << QDate(2024, 5, 5) << QDate();
        QTest::addRow("huge weeks")
            << u"W"_s << 4'000'000'000'000'000'000LL << QDate(2024, 5, 5) << QDate();
    }
    void addDayStepsAndClamps()
    {
        QFETCH(QString, period);
        QFETCH(qint64, interval);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QCOMPARE(Calc::addDay(period, interval, date), expected);
    }

    void checkMonthMovesToFirstOfNextSelected_data()
    {
        QTest::addColumn<Calc::Months>("months");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        QTest::addRow("selected stays")
            << only<12>({3}) << QDate(2024, 3, 17) << QDate(2024, 3, 17);
        QTest::addRow("later this year")
            << only<12>({6, 9}) << QDate(2024, 7, 17) << QDate(2024, 9, 1);
        QTest::addRow("next year") << only<12>({4}) << QDate(2024, 11, 15) << QDate(2025, 4, 1);
        QTest::addRow("none selected") << Calc::Months{} << QDate(2024, 11, 15) << QDate();
    }
    void checkMonthMovesToFirstOfNextSelected()
    {
        QFETCH(Calc::Months, months);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QCOMPARE(Calc::checkMonth(months, date), expected);
    }

    void checkWeekJumpsToWeekStart_data()
    {
        QTest::addColumn<Calc::Weeks>("weeks");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        QTest::addColumn<bool>("monthEnded");
        QTest::addRow("7th is week 1")
            << only<5>({1}) << QDate(2024, 1, 7) << QDate(2024, 1, 7) << false;
        QTest::addRow("5th is week 2")
            << only<5>({1}) << QDate(2024, 1, 5) << QDate(2024, 2, 1) << true;
        QTest::addRow("to week 3")
            << only<5>({3}) << QDate(2024, 1, 4) << QDate(2024, 1, 15) << false;
        QTest::addRow("to week 5")
            << only<5>({5}) << QDate(2024, 4, 2) << QDate(2024, 4, 29) << false;
        QTest::addRow("week 5 of 28-day Feb")
            << only<5>({5}) << QDate(2023, 2, 2) << QDate(2023, 3, 1) << true;
        QTest::addRow("week 5 of 29-day Feb")
            << only<5>({5}) << QDate(2024, 2, 2) << QDate(2024, 2, 29) << false;
        QTest::addRow("past the last week")
            << only<5>({2}) << QDate(2024, 12, 20) << QDate(2025, 1, 1) << true;
        QTest::addRow("none selected")
            << Calc::Weeks{} << QDate(2024, 12, 20) << QDate(2025, 1, 1) << true;
    }
    void checkWeekJumpsToWeekStart()
    {
        QFETCH(Calc::Weeks, weeks);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QFETCH(bool, monthEnded);
        bool ended = !monthEnded;
        QCOMPARE(Calc::checkWeek(weeks, date, &ended), expected);
        QCOMPARE(ended, monthEnded);
    }

    void checkDayStopsAtMonthEndOrBlockEdge_data()
    {
        QTest::addColumn<Calc::Days>("days");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        QTest::addColumn<bool>("monthEnded");
        QTest::addColumn<bool>("weekWrapped");
        // March 2024 begins on a Friday, so its blocks start on Fridays.
        QTest::addRow("selected stays")
            << only<7>({Fri}) << QDate(2024, 3, 1) << QDate(2024, 3, 1) << false << false;
        QTest::addRow("later in block")
            << only<7>({Mon}) << QDate(2024, 3, 1) << QDate(2024, 3, 4) << false << false;
        QTest::addRow("block edge")
            << only<7>({Thu}) << QDate(2024, 3, 8) << QDate(2024, 3, 14) << false << false;
        QTest::addRow("wraps at the 15th")
            << only<7>({Wed}) << QDate(2024, 3, 14) << QDate(2024, 3, 15) << false << true;
        QTest::addRow("month ends")
            << only<7>({Mon}) << QDate(2024, 3, 29) << QDate(2024, 4, 1) << true << false;
        QTest::addRow("none selected")
            << Calc::Days{} << QDate(2024, 3, 10) << QDate(2024, 3, 15) << false << true;
    }
    void checkDayStopsAtMonthEndOrBlockEdge()
    {
        QFETCH(Calc::Days, days);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QFETCH(bool, monthEnded);
        QFETCH(bool, weekWrapped);
        bool ended = !monthEnded;
        bool wrapped = !weekWrapped;
        QCOMPARE(Calc::checkDay(days, date, &ended, &wrapped), expected);
        QCOMPARE(ended, monthEnded);
        QCOMPARE(wrapped, weekWrapped);
    }

    void checkSchDateWalksUntilAllAgree_data()
    {
        QTest::addColumn<Calc::Months>("months");
        QTest::addColumn<Calc::Weeks>("weeks");
        QTest::addColumn<Calc::Days>("days");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        // A block runs on past what weekNo says of its last days.
        QTest::addRow("week 2 block takes the 6th") << all<12>() << only<5>({2}) << only<7>({Mon})
                                                    << QDate(2024, 5, 5) << QDate(2024, 5, 6);
        QTest::addRow("week 2 block takes the 7th") << all<12>() << only<5>({2}) << only<7>({Mon})
                                                    << QDate(2024, 10, 5) << QDate(2024, 10, 7);
        QTest::addRow("week 5 skips 28-day Feb")
            << all<12>() << only<5>({5}) << all<7>() << QDate(2025, 2, 1) << QDate(2025, 3, 29);
        QTest::addRow("Feb week 5 waits for leap year")
            << only<12>({2}) << only<5>({5}) << all<7>() << QDate(2025, 2, 1) << QDate(2028, 2, 29);
        QTest::addRow("Feb week 5 on a Sunday") << only<12>({2}) << only<5>({5}) << only<7>({Sun})
                                                << QDate(2025, 2, 1) << QDate(2032, 2, 29);
        QTest::addRow("Feb week 5 on a Saturday") << only<12>({2}) << only<5>({5}) << only<7>({Sat})
                                                  << QDate(2025, 2, 1) << QDate(2048, 2, 29);
        QTest::addRow("no month") << Calc::Months{} << all<5>() << all<7>() << QDate(2025, 2, 1)
                                  << QDate();
        QTest::addRow("no week") << all<12>() << Calc::Weeks{} << all<7>() << QDate(2025, 2, 1)
                                 << QDate();
        QTest::addRow("no day") << all<12>() << all<5>() << Calc::Days{} << QDate(2025, 2, 1)
                                << QDate();
    }
    void checkSchDateWalksUntilAllAgree()
    {
        QFETCH(Calc::Months, months);
        QFETCH(Calc::Weeks, weeks);
        QFETCH(Calc::Days, days);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QCOMPARE(Calc::checkSchDate(months, weeks, days, date), expected);
    }

    void checkDomFindsFirstListedDay_data()
    {
        QTest::addColumn<Calc::DomList>("list");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        QTest::addRow("same day") << Calc::DomList{15} << QDate(2024, 1, 15) << QDate(2024, 1, 15);
        QTest::addRow("next month")
            << Calc::DomList{15} << QDate(2024, 1, 20) << QDate(2024, 2, 15);
        QTest::addRow("31 skips short months")
            << Calc::DomList{31} << QDate(2024, 4, 1) << QDate(2024, 5, 31);
        QTest::addRow("29 in leap Feb")
            << Calc::DomList{29} << QDate(2024, 2, 2) << QDate(2024, 2, 29);
        QTest::addRow("29 skips plain Feb")
            << Calc::DomList{29} << QDate(2023, 2, 2) << QDate(2023, 3, 29);
        QTest::addRow("later slot")
            << Calc::DomList{0, 0, 0, 0, 9} << QDate(2024, 1, 1) << QDate(2024, 1, 9);
        QTest::addRow("no real day")
            << Calc::DomList{0, 32, -1, 99, 0} << QDate(2024, 1, 1) << QDate();
    }
    void checkDomFindsFirstListedDay()
    {
        QFETCH(Calc::DomList, list);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QCOMPARE(Calc::checkDom(list, date), expected);
    }

    void changeMinuteInHourFormats_data()
    {
        QTest::addColumn<int>("minutes");
        QTest::addColumn<QString>("text");
        QTest::addRow("zero") << 0 << u"0:00"_s;
        QTest::addRow("minutes only") << 5 << u"0:05"_s;
        QTest::addRow("hour and minutes") << 65 << u"1:05"_s;
        QTest::addRow("whole hours") << 600 << u"10:00"_s;
        QTest::addRow("last of a day") << 1439 << u"23:59"_s;
        QTest::addRow("a day or more") << 1530 << u"25:30"_s;
        QTest::addRow("negative") << -5 << u"-0:05"_s;
    }
    void changeMinuteInHourFormats()
    {
        QFETCH(int, minutes);
        QFETCH(QString, text);
        QCOMPARE(Calc::changeMinuteInHour(minutes), text);
    }

    void periodCodes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("meter");
        QTest::addColumn<QString>("countType");
        QTest::addRow("D") << u"D"_s << u"Days"_s << false << QString();
        QTest::addRow("W") << u"W"_s << u"Weeks"_s << false << QString();
        QTest::addRow("M") << u"M"_s << u"Months"_s << false << QString();
        QTest::addRow("Y") << u"Y"_s << u"Years"_s << false << QString();
        QTest::addRow("C") << u"C"_s << u"Counts"_s << true << u"Counts"_s;
        QTest::addRow("H") << u"H"_s << u"Hours"_s << true << u"Hours"_s;
        QTest::addRow("K") << u"K"_s << u"Kilometers"_s << true << u"Kilometers"_s;
        QTest::addRow("I is Miles") << u"I"_s << u"Miles"_s << true << u"Miles"_s;
        QTest::addRow("lower case") << u"h"_s << QString() << false << QString();
        QTest::addRow("empty") << QString() << QString() << false << QString();
    }
    void periodCodes()
    {
        QFETCH(QString, code);
        QFETCH(QString, text);
        QFETCH(bool, meter);
        QFETCH(QString, countType);
        QCOMPARE(ScheduleCodes::periodText(code), text);
        QCOMPARE(ScheduleCodes::isMeterPeriod(code), meter);
        QCOMPARE(ScheduleCodes::isCalendarPeriod(code), !text.isEmpty() && !meter);
        QCOMPARE(ScheduleCodes::countType(code), countType);
        if (!text.isEmpty()) {
            QCOMPARE(ScheduleCodes::periodCode(text), code);
        }
    }

    void renewalOnCodes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("fromScheduled");
        QTest::addColumn<bool>("again");
        QTest::addRow("W") << u"W"_s << u"Work Order Completion"_s << false << true;
        QTest::addRow("S") << u"S"_s << u"Service Original Scheduled"_s << true << true;
        QTest::addRow("s") << u"s"_s << QString() << true << true;
        QTest::addRow("D") << u"D"_s << u"Don't Schedule Again"_s << false << false;
        QTest::addRow("empty") << QString() << QString() << false << true;
    }
    void renewalOnCodes()
    {
        QFETCH(QString, code);
        QFETCH(QString, text);
        QFETCH(bool, fromScheduled);
        QFETCH(bool, again);
        QCOMPARE(ScheduleCodes::renewalOnText(code), text);
        QCOMPARE(ScheduleCodes::renewsFromScheduledDate(code), fromScheduled);
        QCOMPARE(ScheduleCodes::schedulesAgain(code), again);
    }
};

QTEST_GUILESS_MAIN(TestScheduleWalks)
#include "tst_schedulewalks.moc"
