#include "NextDateCalculator.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QDate Today(2025, 3, 1); // the fixed day of every test installation
const QDate Tomorrow = Today.addDays(1);
const QDate NotGiven(1999, 9, 9); // handed over without useGivenDate: it must play no part
// A selection's name sets every flag of it.
const QMap<QString, QStringList> Selections = {
    {u"months"_s, u"Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dece"_s.split(u' ')},
    {u"weeks"_s, u"FirstW SecondW ThirdW ForthW LastW"_s.split(u' ')},
    {u"days"_s, u"Sun Mon Tue Wed Thu Fri Sat"_s.split(u' ')}};

/** Runs a statement; with key, also reads the first value of its first row into it. */
bool run(Session& s, const QString& sql, const QVariantList& values = {}, qint64* key = nullptr)
{
    QSqlQuery q(s.db());
    const bool ok = Sql::exec(q, sql, values) && (!key || q.next());
    if (!ok) {
        qWarning("%s", qPrintable(q.lastError().text()));
    } else if (key) {
        *key = q.value(0).toLongLong();
    }
    return ok;
}

/**
 * Machines 7 and 8, and readings on 7 as "yyyy-MM-dd Type value, ...": "null" for a missing
 * date or value, "empty" for an empty type. Machine 8's newer reading must never count.
 */
bool addMachinesAndReadings(Session& s, const QString& readings)
{
    QVariantList values{8, u"2024-12-31"_s, u"Hours"_s, 99999};
    for (const QString& reading : readings.split(u", "_s, Qt::SkipEmptyParts)) {
        values.append(7);
        for (const QString& part : reading.split(u' ')) {
            values.append(part == u"null" ? QVariant() : part == u"empty" ? u""_s : part);
        }
    }
    return run(s,
               u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, Inactive) "
               "VALUES (7, ?, ?, '0'), (8, ?, ?, '0')"_s,
               {u"Mower 3"_s, u"U-7"_s, u"Truck"_s, u"T-1"_s}) &&
           run(s,
               u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, CountValue) "
               "VALUES "_s +
                   QStringList(values.size() / 4, u"(?, ?, ?, ?)"_s).join(u", "),
               values);
}

/** A daily service on machine 7 on every day, changed by "Column=value ...": its id, or 0. */
qint64 addService(Session& s, const QString& changes)
{
    // The stored next date is one the calculator must leave alone.
    QVariantMap row{{u"Name"_s, u"Blade sharpening"_s}};
    const QString defaults = u"EquipmentID=7 JobNo=J-12 NextScheduledDate=2024-05-02 Period=D "
                             "EInterval=1 RenewalOn=W Dom=0 months=1 weeks=1 days=1 "_s;
    for (const QString& change : (defaults + changes).split(u' ', Qt::SkipEmptyParts)) {
        const QString column = change.section(u'=', 0, 0);
        for (const QString& flag : Selections.value(column, {column})) {
            row[flag] = change.section(u'=', 1);
        }
    }
    qint64 id = 0;
    run(s,
        u"INSERT INTO tblServiceUsed (%1) VALUES (%2) RETURNING ServiceUsedID"_s.arg(
            row.keys().join(u", "), QStringList(row.size(), u"?"_s).join(u", ")),
        row.values(), &id);
    return id;
}

/** The whole schedule row as text, to see that nothing changed. */
QString snapshot(Session& s, qint64 serviceUsedId)
{
    QSqlQuery q(s.db());
    QStringList fields;
    if (Sql::exec(q, u"SELECT * FROM tblServiceUsed WHERE ServiceUsedID = ?"_s, {serviceUsedId}) &&
        q.next()) {
        for (int i = 0; i < q.record().count(); ++i) {
            fields.append(q.value(i).toString());
        }
    }
    return fields.join(u'|');
}

} // namespace

/** The next due date of services on machines, read from the data on either engine. */
class TestNextDateCalculator : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void nextScheduledDate_data()
    {
        QTest::addColumn<QString>("service"); // as addService takes it
        QTest::addColumn<QDate>("expected");
        QTest::addColumn<QString>("readings"); // as addMachinesAndReadings takes them
        QTest::addColumn<QStringList>("told"); // found in the one message shown, if any
        QTest::addColumn<QDate>("given");      // NotGiven: the stored dates count
        QTest::addColumn<QString>("spoil");    // what breaks the data after the service is written
        QTest::addColumn<QString>("failure");  // the procedure and number of the one failure
        const auto row = [](const char* name, const QString& service, QDate expected,
                            const char* readings = "", const QStringList& told = {},
                            QDate given = NotGiven, const QString& spoil = {},
                            const QString& failure = {}) {
            QTest::newRow(name) << service << expected << QString::fromLatin1(readings) << told
                                << given << spoil << failure;
        };

        // The steps themselves are the walks' tests; these show each column reaches them.
        row("Jan, week 3, Wed",
            u"Period=W LastDatePerformed=2023-12-20 months=0 Jan=1 weeks=0 ThirdW=1 days=0 Wed=1"_s,
            {2024, 1, 17});
        row("any Dom number: DOM list, selections unread",
            u"Period=M LastDatePerformed=2024-01-01 months=0 Dom=5 DOM1=20 DOM2=5"_s, {2024, 2, 5});
        row("Dom text: selections", u"Dom=on DOM1=15"_s, Tomorrow);

        // Meters: the latest reading of the service's type on its own machine decides.
        const QDate march3(2024, 3, 3);
        const char* hours =
            "2024-02-01 Hours 400, 2024-03-03 Hours 510, 2024-03-10 Kilometers 9999";
        row("meter count reached exactly", u"Period=H NextScheduledCount=510"_s, march3, hours);
        row("meter count not reached", u"Period=H NextScheduledCount=511"_s, QDate(), hours);
        row("latest date, then higher count, undated last", u"Period=H NextScheduledCount=510"_s,
            march3,
            "2024-03-01 Hours 900, null Hours 900, 2024-03-03 Hours 500, 2024-03-03 Hours 520");
        row("null count, type in other case", u"Period=H"_s, march3, "2024-03-03 hours 5");
        row("unknown period", u"Period=X NextScheduledCount=0"_s, QDate(), "2024-03-03 empty 9");

        // The renewal rule picks the base date; a given date stands for both.
        const QString renew = u"EInterval=10 LastDateScheduled=2024-02-01 RenewalOn="_s;
        const QString performed = u" LastDatePerformed=2024-01-01"_s;
        row("s: scheduled", renew + u"s"_s + performed, {2024, 2, 11});
        row("W: performed", renew + u"W"_s + performed, {2024, 1, 11});
        row("null performed: today", renew + u"W"_s, Today.addDays(10));
        row("given date under S", renew + u"S"_s + performed, {2024, 6, 11}, "", {}, {2024, 6, 1});

        // An empty selection is told once, the first empty one only, and answers tomorrow.
        row("none of the three: months only", u"months=0 weeks=0 days=0"_s, Tomorrow, "",
            {u"Service \"J-12\" doesn't have any MOY(month of the year) selected in service "
             "schedule, system can not\ncalculate the next schedule date.\nService detail is "
             "given below.\nUnit No : - U-7\nEquipment Name : - Mower 3\nService Job No : - "
             "J-12\nService Description : - Blade sharpening"_s});
        row("a flag on is 1 only, machine gone", u"weeks=-1 EquipmentID=99"_s, Tomorrow, "",
            {u"WOM(week of the month)"_s, u"Unit No : - \nEquipment Name : - \n"_s});
        row("no day", u"days=0"_s, Tomorrow, "", {u"DOW(day of the week)"_s});

        // A failure is reported once and answers today; 0 stands for the engine's number.
        const auto failed = [&](const char* name, const QString& service, const QString& spoil,
                                const QString& failure) {
            row(name, service, Today, "", {}, NotGiven, spoil, failure);
        };
        failed("schedule row unreadable", {}, u"DROP TABLE tblServiceUsed"_s,
               u"GetNextScheduledDate 0"_s);
        failed("meter reading unreadable", u"Period=H"_s, u"DROP TABLE tblEquipmentCount"_s,
               u"CheckMeterLogic 0"_s);
        failed("interval beyond the calendar", u"Period=Y EInterval=20000"_s, {},
               u"GetNextScheduledDate 6"_s);
        failed("a date that is no date", {},
               u"UPDATE tblServiceUsed SET LastDatePerformed = 'soon'"_s,
               u"GetNextScheduledDate 13"_s);
    }
    void nextScheduledDate()
    {
        QFETCH(QString, service);
        QFETCH(QDate, expected);
        QFETCH(QString, readings);
        QFETCH(QStringList, told);
        QFETCH(QDate, given);
        QFETCH(QString, spoil);
        QFETCH(QString, failure);
        TANDRILL_INSTALLATION(t);
        if (failure.endsWith(u" 13") && !t.session().dialect().isSqlite()) {
            QSKIP("PostgreSQL's typed columns refuse values that are no number or date");
        }
        QVERIFY(addMachinesAndReadings(t.session(), readings));
        const qint64 id = addService(t.session(), service);
        QVERIFY(id > 0 && (spoil.isEmpty() || run(t.session(), spoil)));
        const QString before = snapshot(t.session(), id);

        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id, given != NotGiven, given),
                 expected);
        const QStringList texts = t.prompter().texts();
        QCOMPARE(texts.size(), told.isEmpty() ? 0 : 1);
        for (const QString& words : told) {
            QVERIFY2(texts.constFirst().contains(words), qPrintable(texts.constFirst()));
        }
        QCOMPARE(t.failures().failures().size(), failure.isEmpty() ? 0 : 1);
        if (!failure.isEmpty()) {
            const Failure& f = t.failures().failures().constFirst();
            const qint64 number = failure.section(u' ', 1).toLongLong();
            QCOMPARE(f.module + u' ' + f.procedure,
                     u"General Function "_s + failure.section(u' ', 0, 0));
            QVERIFY(number ? f.number == number : f.number != 0);
            QVERIFY(number != 13 || f.description.contains(u"LastDatePerformed holds \"soon\""_s));
        }
        QCOMPARE(snapshot(t.session(), id), before);
    }

    // A work order line counts even when its order is gone; an id without a row answers today.
    void helpersAnswerAndReportTheirOwnFailures()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const qint64 onOrder = addService(s, {});
        QVERIFY(addMachinesAndReadings(s, u"2024-03-03 Hours 42"_s) &&
                run(s, u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID) VALUES (9, ?)"_s,
                    {onOrder}));
        NextDateCalculator calculator(s);
        QVERIFY(calculator.serviceInWorkOrder(onOrder));
        QVERIFY(!calculator.serviceInWorkOrder(onOrder + 1));
        QCOMPARE(calculator.equipmentCount(7, u"Hours"_s), qint64(42));
        QCOMPARE(calculator.nextScheduledDate(onOrder + 1, true, Tomorrow), Today);
        QVERIFY(t.prompter().shown().isEmpty() && t.failures().isEmpty());

        QVERIFY(run(s, u"DROP TABLE tblEquipmentCount"_s) &&
                run(s, u"DROP TABLE tblWoServiceUsed"_s));
        QCOMPARE(calculator.equipmentCount(7, u"Hours"_s), qint64(0));
        QCOMPARE(calculator.serviceInWorkOrder(onOrder), false);
        QStringList procedures;
        for (const Failure& f : t.failures().failures()) {
            procedures.append(f.procedure);
        }
        QCOMPARE(procedures, (QStringList{u"GetEquipmentCount"_s, u"ServiceInWorkOrder"_s}));
    }
};

QTEST_GUILESS_MAIN(TestNextDateCalculator)
#include "tst_nextdatecalculator.moc"
