#include "CountSheet.h"
#include "MeterReadings.h"
#include "Options.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool run(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    const bool ok = Sql::exec(q, sql, values);
    if (!ok) {
        qWarning("%s", qPrintable(q.lastError().text()));
    }
    return ok;
}

QVariant value(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql, values) && q.next() ? q.value(0) : QVariant();
}

/** Machine 7 with an hour service (id 1) waiting for count 550, and a dated one (id 2). */
bool addMachineAndServices(Session& s)
{
    return run(s, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, Inactive) "
                  "VALUES (7, 'Mower', 'U-7', '0')"_s) &&
           run(s,
               u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, Period, EInterval, "
               "RenewalOn, NextScheduledCount, NextScheduledDate) VALUES "
               "(1, 7, 'Oil', 'H', 100, 'W', 550, NULL), (2, 7, 'Belt', 'H', 100, 'W', 10, ?)"_s,
               {SqlValue::date({2024, 1, 2})});
}

QDate nextDate(Session& s, int serviceUsedId)
{
    return SqlValue::toDate(
        value(s, u"SELECT NextScheduledDate FROM tblServiceUsed WHERE ServiceUsedID = ?"_s,
              {serviceUsedId}));
}

/**
 * Machines 1 to 6 (U-1 ... U-6). 1: an hour service (due at 240), hours read
 * 10 and 3 days ago (200 over 150 that day) and miles today. 2: its hour
 * service on a work order. 3: inactive. 4: a calendar service only. 5: one
 * meter service on a work order and one not. 6: a meter service, no readings.
 */
bool addFleet(Session& s)
{
    const QDate today = s.today();
    const auto day = [today](int offset) { return SqlValue::date(today.addDays(-offset)); };
    return run(s,
               u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, Inactive) VALUES "
               "(1, 'Mower', 'U-1', '0'), (2, 'Truck', 'U-2', '0'), (3, 'Old', 'U-3', '1'), "
               "(4, 'Trailer', 'U-4', '0'), (5, 'Loader', 'U-5', '0'), (6, 'New', 'U-6', '0')"_s) &&
           run(s, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, Period, "
                  "EInterval, RenewalOn, NextScheduledCount) VALUES (1, 1, 'Oil', 'H', 100, 'W', "
                  "240), (2, 2, 'Oil', 'H', 100, 'W', 900), (3, 3, 'Oil', 'H', 100, 'W', 900), "
                  "(4, 4, 'Wash', 'M', 1, 'W', 0), (5, 5, 'Oil', 'H', 100, 'W', 900), "
                  "(6, 5, 'Tyres', 'K', 100, 'W', 900), (7, 6, 'Oil', 'H', 100, 'W', 900)"_s) &&
           run(s, u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID, EquipmentID, "
                  "Period) VALUES (1, 2, 2, 'H'), (2, 5, 5, 'H')"_s) &&
           run(s,
               u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, CountValue) "
               "VALUES (1, ?, 'Hours', 100), (1, ?, 'Hours', 200), (1, ?, 'Hours', 150), "
               "(1, ?, 'Miles', 50), (2, ?, 'Hours', 10), (3, ?, 'Hours', 10), "
               "(4, ?, 'Hours', 10), (5, ?, 'Hours', 10)"_s,
               {day(10), day(3), day(3), day(0), day(20), day(20), day(20), day(30)});
}

QString shown(const QList<CountSheet::Line>& lines)
{
    QStringList texts;
    for (const CountSheet::Line& line : lines) {
        texts.append(u"%1 %2 %3"_s.arg(line.unitNo, line.countType).arg(line.lastCount));
    }
    return texts.join(u'|');
}

} // namespace

/** Readings, their checks, the rule that makes meter services due, and the count sheet. */
class TestMeterReadings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void readingMakesServiceDueOnceCountIsReached()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(addMachineAndServices(t.session()));
        MeterReadings readings(t.session());

        QVERIFY(readings.addCount(7, {2024, 5, 1}, u"Hours"_s, 520));
        QCOMPARE(nextDate(t.session(), 1), QDate());
        // Another type leaves the hour service waiting.
        QVERIFY(readings.addCount(7, {2024, 5, 10}, u"Miles"_s, 9000));
        QCOMPARE(nextDate(t.session(), 1), QDate());
        QVERIFY(readings.addCount(7, {2024, 5, 12}, u"Hours"_s, 560));
        QCOMPARE(nextDate(t.session(), 1), QDate(2024, 5, 12));
        // A service that has a date keeps it, however far the count has run.
        QCOMPARE(nextDate(t.session(), 2), QDate(2024, 1, 2));
        QCOMPARE(value(t.session(),
                       u"SELECT NextScheduledCount FROM tblServiceUsed WHERE ServiceUsedID = 1"_s)
                     .toInt(),
                 550);
    }

    void latestIsNewestDateThenHighestValue()
    {
        TANDRILL_INSTALLATION(t);
        MeterReadings readings(t.session());
        QVERIFY(!readings.latest(7, u"Hours"_s).exists);
        QVERIFY(run(t.session(),
                    u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                    "CountValue) VALUES (7, ?, 'Hours', 900), (7, ?, 'Hours', 300), "
                    "(7, ?, 'Hours', 310), (8, ?, 'Hours', 5000)"_s,
                    {SqlValue::date({2024, 1, 1}), SqlValue::date({2024, 2, 1}),
                     SqlValue::date({2024, 2, 1}), SqlValue::date({2024, 3, 1})}));
        const MeterReadings::Reading latest = readings.latest(7, u"Hours"_s);
        QVERIFY(latest.exists);
        QCOMPARE(latest.date, QDate(2024, 2, 1));
        QCOMPARE(latest.value, 310);
    }

    void missingReadingIsAskedOrMarkedWithZero_data()
    {
        QTest::addColumn<bool>("answered");
        QTest::addColumn<int>("stored");
        QTest::newRow("count given") << true << 450;
        QTest::newRow("no answer") << false << 0;
    }

    void missingReadingIsAskedOrMarkedWithZero()
    {
        QFETCH(bool, answered);
        QFETCH(int, stored);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addMachineAndServices(t.session()));
        MeterReadings readings(t.session());
        t.prompter().queueInput(answered ? std::optional<QString>(u"450"_s) : std::nullopt);
        bool missing = false;
        QVERIFY(readings.ensureReading(7, 1, u"Oil"_s, u"Kilometers"_s, readings.promptedAsker(),
                                       &missing));
        QVERIFY(missing);
        const MeterReadings::Reading reading = readings.latest(7, u"Kilometers"_s);
        QCOMPARE(reading.value, stored);
        QCOMPARE(reading.date, t.session().today());
        // An answered count keeps the service on the type that was read.
        QCOMPARE(value(t.session(), u"SELECT Period FROM tblServiceUsed WHERE ServiceUsedID = 1"_s)
                     .toString(),
                 answered ? u"K"_s : u"H"_s);

        // Once a reading exists nobody is asked again.
        QVERIFY(readings.ensureReading(7, 2, u"Belt"_s, u"Kilometers"_s, readings.promptedAsker(),
                                       &missing));
        QVERIFY(!missing);
        QCOMPARE(t.prompter().texts(),
                 QStringList{u"Enter the last count that this service was performed."_s});
    }

    void typedReadingIsCheckedInOrder_data()
    {
        QTest::addColumn<int>("count"); // -1: left blank
        QTest::addColumn<int>("dayOffset");
        QTest::addColumn<bool>("onWorkOrder");
        QTest::addColumn<QString>("refusal");
        QTest::addColumn<int>("movedTo"); // the date the date check leaves, as an offset
        // The last hour reading is 500, ten days ago.
        QTest::newRow("blank before all") << -1 << 5 << true << ReadingMessages::CountBlank << 0;
        QTest::newRow("below last before work order")
            << 499 << 0 << true << ReadingMessages::CountBelowLast << 0;
        QTest::newRow("work order line of the period")
            << 900 << 0 << true << ReadingMessages::ServiceInProcess << 0;
        QTest::newRow("date before last")
            << 900 << -11 << false << ReadingMessages::DateBeforeLast << -10;
        QTest::newRow("date after today")
            << 900 << 1 << false << ReadingMessages::DateAfterToday << 0;
        QTest::newRow("equal count on last date") << 500 << -10 << false << QString() << -10;
    }

    void typedReadingIsCheckedInOrder()
    {
        QFETCH(int, count);
        QFETCH(int, dayOffset);
        QFETCH(bool, onWorkOrder);
        QFETCH(QString, refusal);
        QFETCH(int, movedTo);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addMachineAndServices(s));
        const QDate today = s.today();
        QVERIFY(run(s,
                    u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                    "CountValue) VALUES (7, ?, 'Hours', 500)"_s,
                    {SqlValue::date(today.addDays(-10))}));
        // A line of another period or machine does not hold the readings back.
        QVERIFY(run(s, u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID, EquipmentID, "
                       "Period) VALUES (1, 5, 7, 'I'), (1, 6, 8, 'H')"_s));
        if (onWorkOrder) {
            QVERIFY(run(s, u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID, "
                           "EquipmentID, Period) VALUES (2, 1, 7, 'H')"_s));
        }
        MeterReadings readings(s);
        const QDate day = today.addDays(dayOffset);
        QCOMPARE(readings.checkDate(7, u"Hours"_s, day).date, today.addDays(movedTo));
        QString refused;
        const bool stored = readings.addCheckedCount(
            7, day, u"Hours"_s, count < 0 ? std::nullopt : std::optional<qint64>(count), &refused);
        QCOMPARE(refused, refusal);
        QCOMPARE(stored, refusal.isEmpty());
        QCOMPARE(value(s, u"SELECT COUNT(*) FROM tblEquipmentCount"_s).toInt(), stored ? 2 : 1);
    }

    void listsTypesReadBeforeTheDelay_data()
    {
        QTest::addColumn<QString>("delay");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty lists today's readings too")
            << QString() << u"U-1 Hours 200|U-1 Miles 50|U-5 Hours 10"_s;
        QTest::newRow("0") << u"0"_s << u"U-1 Hours 200|U-1 Miles 50|U-5 Hours 10"_s;
        QTest::newRow("read on the day the delay ends")
            << u"3"_s << u"U-1 Hours 200|U-5 Hours 10"_s;
        QTest::newRow("read a day later") << u"4"_s << u"U-5 Hours 10"_s;
    }

    void listsTypesReadBeforeTheDelay()
    {
        QFETCH(QString, delay);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addFleet(t.session()));
        Options::setOption(t.session(), u"COUNT_READING_DELAY"_s, delay);
        const QList<CountSheet::Line> lines = CountSheet(t.session()).lines();
        QCOMPARE(shown(lines), expected);
        QCOMPARE(lines.last().lastDate, t.session().today().addDays(-30));
    }

    void walkStoresWrittenCountsAndSkipsTheRest()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        const CountSheet::Line line{1, u"U-1"_s, u"Mower"_s, u"Hours"_s, {}, 200};
        QCOMPARE(CountSheet::countRefusal(line, u"199"_s), CountSheet::BelowLast);
        QCOMPARE(CountSheet::countRefusal(line, u"200"_s) +
                     CountSheet::countRefusal(line, CountSheet::Blank),
                 QString());
        QVERIFY(CountSheet(s).record({{1, u"Hours"_s, u"250"_s},
                                      {1, u"Miles"_s, CountSheet::Blank},
                                      {2, u"Hours"_s, u"300"_s},
                                      {5, u"Kilometers"_s, u"70"_s},
                                      {6, u"Hours"_s, QString()}}));
        // Machine 2 has an hour line open; machine 5's line is of another period.
        QCOMPARE(t.prompter().texts(), QStringList{ReadingMessages::ServiceInProcess});
        QCOMPARE(value(s, u"SELECT COUNT(*) FROM tblEquipmentCount"_s).toInt(), 10);
        MeterReadings readings(s);
        QCOMPARE(readings.latest(1, u"Hours"_s).value, 250);
        QCOMPARE(readings.latest(1, u"Hours"_s).date, s.today());
        QCOMPARE(readings.latest(5, u"Kilometers"_s).value, 70);
        // The rule ran: 250 reached the oil service's 240.
        QCOMPARE(SqlValue::toDate(value(
                     s, u"SELECT NextScheduledDate FROM tblServiceUsed WHERE ServiceUsedID = 1"_s)),
                 s.today());
    }

    void failedLineUndoesTheWholeWalk()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        // Machine 1 read 50 miles today: the same reading again cannot go in.
        QVERIFY(run(s, u"CREATE UNIQUE INDEX no_twice ON tblEquipmentCount "
                       "(EquipmentID, CountType, ChangeDate, CountValue)"_s));
        QVERIFY(!CountSheet(s).record({{1, u"Hours"_s, u"250"_s}, {1, u"Miles"_s, u"50"_s}}));
        QCOMPARE(value(s, u"SELECT COUNT(*) FROM tblEquipmentCount"_s).toInt(), 8);
        QVERIFY(value(s, u"SELECT NextScheduledDate FROM tblServiceUsed WHERE ServiceUsedID = 1"_s)
                    .isNull());
    }
};

QTEST_GUILESS_MAIN(TestMeterReadings)
#include "tst_meterreadings.moc"
