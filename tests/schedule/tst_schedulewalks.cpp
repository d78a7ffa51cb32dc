#include "NextDateCalculator.h"
#include "ScheduleCodes.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Calc = NextDateCalculator;

namespace {

/** Flags from a mask of '1's, Sunday and January first; "*" sets all of them. */
template <std::size_t N> std::array<bool, N> flags(const QString& mask)
{
    std::array<bool, N> flags{};
    for (std::size_t i = 0; i < N; ++i) {
        flags[i] = mask == u"*" || (qsizetype(i) < mask.size() && mask[i] == u'1');
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

    // The interval step, every step of the walk in turn, and the day list, which takes the
    // place of the walk. Arguments: "period interval", "months weeks days" or the day numbers.
    void stepsStopWhereTheSelectionAllows_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("expected");
        const auto row = [](const char* name, const char* arguments, QDate date, QDate expected) {
            QTest::newRow(name) << QString::fromLatin1(arguments) << date << expected;
        };
        row("add: 30 days", "D 30", {2024, 1, 15}, {2024, 2, 14});
        row("add: 2 weeks", "W 2", {2024, 3, 6}, {2024, 3, 20});
        row("add: 31 Jan + 1 month, leap", "M 1", {2024, 1, 31}, {2024, 2, 29});
        row("add: lower case code", "d 1", {2024, 5, 5}, QDate());
        row("add: beyond year 9999", "Y 8000", {2024, 5, 5}, QDate());
        row("add: huge weeks", "W 4000000000000000000", {2024, 5, 5}, QDate());
        row("month: next year", "0001 * *", {2024, 11, 15}, {2025, 4, 1});
        row("no month", "- * *", {2024, 11, 15}, QDate());
        row("week: 7th is week 1", "* 1 *", {2024, 1, 7}, {2024, 1, 7});
        row("week: to week 5", "* 00001 *", {2024, 4, 2}, {2024, 4, 29});
        row("week: 28-day Feb has no week 5", "* 00001 *", {2023, 2, 2}, {2023, 3, 29});
        // March 2024 begins on a Friday, so its blocks start on Fridays.
        row("day: block edge", "* * 00001", {2024, 3, 8}, {2024, 3, 14});
        row("day: wraps at the 15th", "* * 0001", {2024, 3, 14}, {2024, 3, 20});
        row("day: month ends", "* * 01", {2024, 3, 29}, {2024, 4, 1});
        // A block runs on past what weekNo says of its last days.
        row("week 2 block takes the 6th", "* 01 01", {2024, 5, 5}, {2024, 5, 6});
        row("Feb week 5 on a Saturday", "01 00001 0000001", {2025, 2, 1}, {2048, 2, 29});
        row("dom: 31 skips short months", "31", {2024, 4, 1}, {2024, 5, 31});
        row("dom: no real day", "0 32 -1 99 0", {2024, 1, 1}, QDate());
    }
    void stepsStopWhereTheSelectionAllows()
    {
        QFETCH(QString, arguments);
        QFETCH(QDate, date);
        QFETCH(QDate, expected);
        const QStringList a = arguments.split(u' ');
        const QString step = QString::fromLatin1(QTest::currentDataTag()).section(u':', 0, 0);
        if (step == u"add") {
            QCOMPARE(Calc::addDay(a[0], a[1].toLongLong(), date), expected);
        } else if (step == u"dom") {
            Calc::DomList list{};
            std::transform(a.begin(), a.end(), list.begin(), [](auto& n) { return n.toInt(); });
            QCOMPARE(Calc::checkDom(list, date), expected);
        } else {
            QCOMPARE(Calc::checkSchDate(flags<12>(a[0]), flags<5>(a[1]), flags<7>(a[2]), date),
                     expected);
        }
    }

    void codesAndTheirTexts()
    {
        QCOMPARE(Calc::changeMinuteInHour(1530), u"25:30"_s); // a day or more keeps counting hours
        QCOMPARE(Calc::changeMinuteInHour(-5), u"-0:05"_s);
        // A meter reads the readings of the type its text names.
        QCOMPARE(ScheduleCodes::countType(u"I"_s), u"Miles"_s);
        QCOMPARE(ScheduleCodes::periodCode(u"Miles"_s), u"I"_s);
        QVERIFY(ScheduleCodes::isCalendarPeriod(u"D"_s) && !ScheduleCodes::isMeterPeriod(u"D"_s));
        QVERIFY(!ScheduleCodes::isCalendarPeriod(u"h"_s) &&
                ScheduleCodes::countType(u"h"_s).isEmpty());
        // Only the code that counts from the scheduled date is read without regard to case.
        QVERIFY(ScheduleCodes::renewsFromScheduledDate(u"s"_s) &&
                !ScheduleCodes::renewsFromScheduledDate(u"W"_s));
        QVERIFY(!ScheduleCodes::schedulesAgain(u"D"_s) && ScheduleCodes::schedulesAgain(u"W"_s));
        QCOMPARE(ScheduleCodes::renewalOnText(u"D"_s), u"Don't Schedule Again"_s);
        QVERIFY(ScheduleCodes::renewalOnText(u"s"_s).isEmpty());
        QVERIFY(!Calc::checkMonth({}, QDate(2024, 1, 1)).isValid()); // else it walks for ever
    }
};

QTEST_GUILESS_MAIN(TestScheduleWalks)
#include "tst_schedulewalks.moc"
