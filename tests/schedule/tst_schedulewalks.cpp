#include "NextDateCalculator.h"
#include "ScheduleCodes.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Calc = NextDateCalculator;

namespace {

enum Weekday { Sun = 1, Mon, Tue, Wed, Thu, Fri, Sat };

/** Flags with only the ones counted from 1 in on set; {0} sets all of them. */
template <std::size_t N> std::array<bool, N> flags(const QList<int>& on)
{
    std::array<bool, N> flags{};
    for (int i : on) {
        if (i == 0) {
            flags.fill(true);
        } else {
            flags[i - 1] = true;
        }
    }
    return flags;
}

} // namespace

/** The date steps of the schedule, without any data behind them. */
class TestScheduleWalks : public QObject
{
    Q_OBJECT

private slots:
    // Whole weeks, and a rest of three days or less against four or more.
    void weekNoFollowsItsRoundingTable()
    {
        for (const auto& [day, week] : {std::pair{3, 1}, {4, 2}, {7, 1}, {29, 5}}) {
            QCOMPARE(Calc::weekNo(QDate(2024, 1, day)), week);
        }
    }

    void addDayStepsAndClamps_data()
    {
        QTest::addColumn<QString>("period");
        QTest::addColumn<qint64>("interval");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        const auto row = [](const char* name, const char* period, qint64 interval, QDate date,
                            QDate expected) {
            QTest::newRow(name) << QString::fromLatin1(period) << interval << date << expected;
        };
        row("30 days", "D", 30, {2024, 1, 15}, {2024, 2, 14});
        row("2 weeks", "W", 2, {2024, 3, 6}, {2024, 3, 20});
        row("31 Jan + 1 month, leap", "M", 1, {2024, 1, 31}, {2024, 2, 29});
        row("29 Feb + 1 year", "Y", 1, {2024, 2, 29}, {2025, 2, 28});
        row("lower case code", "d", 1, {2024, 5, 5}, QDate());
        row("beyond year 9999", "Y", 8000, {2024, 5, 5}, QDate());
        row("huge weeks", "W", 4'000'000'000'000'000'000LL, {2024, 5, 5}, QDate());
    }
    void addDayStepsAndClamps()
    {
        QFETCH(QString, period);
        QFETCH(qint64, interval);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QCOMPARE(Calc::addDay(period, interval, date), expected);
    }

    // One walking step at a time: the date it stops at and the flags it raises.
    void stepsStopWhereTheSelectionAllows_data()
    {
        QTest::addColumn<QList<int>>("selected"); // flags counted from 1, or the day list
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        QTest::addColumn<bool>("monthEnded");
        QTest::addColumn<bool>("weekWrapped");
        const auto row = [](const char* name, const QList<int>& selected, QDate date,
                            QDate expected, bool monthEnded = false, bool weekWrapped = false) {
            QTest::newRow(name) << selected << date << expected << monthEnded << weekWrapped;
        };
        row("month: next year", {4}, {2024, 11, 15}, {2025, 4, 1});
        row("month: none selected", {}, {2024, 11, 15}, QDate());
        row("week: 7th is week 1", {1}, {2024, 1, 7}, {2024, 1, 7});
        row("week: to week 5", {5}, {2024, 4, 2}, {2024, 4, 29});
        row("week: week 5 of 28-day Feb", {5}, {2023, 2, 2}, {2023, 3, 1}, true);
        row("week: past the last week", {2}, {2024, 12, 20}, {2025, 1, 1}, true);
        // March 2024 begins on a Friday, so its blocks start on Fridays.
        row("day: block edge", {Thu}, {2024, 3, 8}, {2024, 3, 14});
        row("day: wraps at the 15th", {Wed}, {2024, 3, 14}, {2024, 3, 15}, false, true);
        row("day: month ends", {Mon}, {2024, 3, 29}, {2024, 4, 1}, true);
        row("dom: 31 skips short months", {31}, {2024, 4, 1}, {2024, 5, 31});
        row("dom: no real day", {0, 32, -1, 99, 0}, {2024, 1, 1}, QDate());
    }
    void stepsStopWhereTheSelectionAllows()
    {
        QFETCH(QList<int>, selected);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QFETCH(bool, monthEnded);
        QFETCH(bool, weekWrapped);
        // Start from the wrong flags: each step must set them either way.
        bool ended = !monthEnded;
        bool wrapped = !weekWrapped;
        const QString step = QString::fromLatin1(QTest::currentDataTag()).section(u':', 0, 0);
        if (step == u"month") {
            QCOMPARE(Calc::checkMonth(flags<12>(selected), date), expected);
        } else if (step == u"week") {
            QCOMPARE(Calc::checkWeek(flags<5>(selected), date, &ended), expected);
            QCOMPARE(ended, monthEnded);
        } else if (step == u"day") {
            QCOMPARE(Calc::checkDay(flags<7>(selected), date, &ended, &wrapped), expected);
            QCOMPARE(ended, monthEnded);
            QCOMPARE(wrapped, weekWrapped);
        } else {
            Calc::DomList list{};
            std::copy(selected.begin(), selected.end(), list.begin());
            QCOMPARE(Calc::checkDom(list, date), expected);
        }
    }

    void checkSchDateWalksUntilAllAgree_data()
    {
        QTest::addColumn<QList<int>>("months");
        QTest::addColumn<QList<int>>("weeks");
        QTest::addColumn<QList<int>>("days");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        // A block runs on past what weekNo says of its last days.
        QTest::addRow("week 2 block takes the 6th")
            << QList{0} << QList{2} << QList{Mon} << QDate(2024, 5, 5) << QDate(2024, 5, 6);
        QTest::addRow("Feb week 5 on a Saturday, past 28-day Febs")
            << QList{2} << QList{5} << QList{Sat} << QDate(2025, 2, 1) << QDate(2048, 2, 29);
        QTest::addRow("no month") << QList<int>() << QList{0} << QList{0} << QDate(2025, 2, 1)
                                  << QDate();
    }
    void checkSchDateWalksUntilAllAgree()
    {
        QFETCH(QList<int>, months);
        QFETCH(QList<int>, weeks);
        QFETCH(QList<int>, days);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        QCOMPARE(Calc::checkSchDate(flags<12>(months), flags<5>(weeks), flags<7>(days), date),
                 expected);
    }

    void codesAndTexts()
    {
        QCOMPARE(Calc::changeMinuteInHour(1530), u"25:30"_s); // a day or more keeps counting hours
        QCOMPARE(Calc::changeMinuteInHour(-5), u"-0:05"_s);
        // A meter reads the readings of the type its text names.
        QCOMPARE(ScheduleCodes::countType(u"I"_s), u"Miles"_s);
        QCOMPARE(ScheduleCodes::periodCode(u"Miles"_s), u"I"_s);
        QVERIFY(ScheduleCodes::isCalendarPeriod(u"D"_s) && !ScheduleCodes::isMeterPeriod(u"D"_s));
        QVERIFY(!ScheduleCodes::isCalendarPeriod(u"h"_s) &&
                ScheduleCodes::countType(u"h"_s).isEmpty());
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
