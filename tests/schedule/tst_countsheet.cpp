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

QVariant value(Session& s, const QString& sql)
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql) && q.next() ? q.value(0) : QVariant();
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

/** The count sheet: which machines are due for a reading, and its all-or-nothing walk. */
class TestCountSheet : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

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

    void countBelowTheLineIsRefused()
    {
        const CountSheet::Line line{1, u"U-1"_s, u"Mower"_s, u"Hours"_s, {}, 200};
        QCOMPARE(CountSheet::countRefusal(line, u"199"_s),
                 u"Count value should be more than or equal to Last value"_s);
        for (const QString& count : {u"200"_s, QString(), CountSheet::Blank}) {
            QCOMPARE(CountSheet::countRefusal(line, count), QString());
        }
    }

    void walkStoresWrittenCountsAndSkipsTheRest()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
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

QTEST_GUILESS_MAIN(TestCountSheet)
#include "tst_countsheet.moc"
