#include "MeterReadings.h"
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

} // namespace

/** Readings, the latest of them, and the rule that makes meter services due. */
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
};

QTEST_GUILESS_MAIN(TestMeterReadings)
#include "tst_meterreadings.moc"
