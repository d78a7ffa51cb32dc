#include "NextDateCalculator.h"
#include "Sql.h"
#include "SqlValue.h"
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
const QStringList NumberColumns{u"EquipmentID"_s, u"EInterval"_s, u"NextScheduledCount"_s,
                                u"DOM1"_s, u"DOM2"_s};
const std::pair<QString, QStringList> Selections[] = {
    {u"months"_s, u"Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dece"_s.split(u' ')},
    {u"weeks"_s, u"FirstW SecondW ThirdW ForthW LastW"_s.split(u' ')},
    {u"days"_s, u"Sun Mon Tue Wed Thu Fri Sat"_s.split(u' ')}};

/** Writes machines, services and readings with bound statements. */
class ScheduleData
{
public:
    explicit ScheduleData(Session& session) : m_session(session) {}

    QString error() const { return m_error; }

    /** Runs a statement; with key, also reads the first value of its first row into it. */
    bool run(const QString& sql, const QVariantList& values = {}, qint64* key = nullptr)
    {
        QSqlQuery q(m_session.db());
        if (!Sql::exec(q, sql, values) || (key && !q.next())) {
            m_error = q.lastError().text();
            return false;
        }
        if (key) {
            *key = q.value(0).toLongLong();
        }
        return true;
    }

    bool addMachine(qint64 id, const QString& name, const QString& unitNo)
    {
        return run(u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, Inactive) "
                   "VALUES (?, ?, ?, '0')"_s,
                   {id, name, unitNo});
    }

    /**
     * A daily service on machine 7 on every day, changed by "Column=value ...". months=,
     * weeks= and days= set a selection from a mask: '1' stores "1", 'x' "-1", any other or
     * missing character "0". Its ServiceUsedID, or 0 when it could not be written.
     */
    qint64 addService(const QString& changes)
    {
        // The stored next date is one the calculator must leave alone.
        QVariantMap row{{u"ServiceID"_s, 0},
                        {u"JobNo"_s, u"J-12"_s},
                        {u"Name"_s, u"Blade sharpening"_s},
                        {u"NextScheduledDate"_s, u"2024-05-02"_s},
                        {u"Inactive"_s, 0}};
        const QString defaults = u"EquipmentID=7 Period=D EInterval=1 RenewalOn=W Dom=0 "
                                 "months=111111111111 weeks=11111 days=1111111 "_s;
        for (const QString& change : (defaults + changes).split(u' ', Qt::SkipEmptyParts)) {
            const QString column = change.section(u'=', 0, 0), value = change.section(u'=', 1);
            row[column] = NumberColumns.contains(column) ? QVariant(value.toLongLong()) : value;
            for (const auto& [name, columns] : Selections) {
                for (qsizetype i = 0; name == column && i < columns.size(); ++i) {
                    const QChar flag = i < value.size() ? value.at(i) : QChar();
                    row[columns[i]] = flag == u'1' ? u"1"_s : flag == u'x' ? u"-1"_s : u"0"_s;
                }
                row.remove(name);
            }
        }
        qint64 id = 0;
        run(u"INSERT INTO tblServiceUsed (%1) VALUES (%2) RETURNING ServiceUsedID"_s.arg(
                row.keys().join(u", "), QStringList(row.size(), u"?"_s).join(u", ")),
            row.values(), &id);
        return id;
    }

    /**
     * Readings as "yyyy-MM-dd Type value, ...": "null" for a missing date or value,
     * "empty" for an empty type.
     */
    bool addReadings(const QString& readings, qint64 equipmentId = 7)
    {
        for (const QString& reading : readings.split(u", "_s, Qt::SkipEmptyParts)) {
            const QStringList parts = reading.split(u' ');
            const QVariant value = parts[2] == u"null" ? QVariant(QMetaType::fromType<qlonglong>())
                                                       : QVariant(parts[2].toLongLong());
            if (!run(u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                     "CountValue) VALUES (?, ?, ?, ?)"_s,
                     {equipmentId, SqlValue::date(QDate::fromString(parts[0], Qt::ISODate)),
                      parts[1] == u"empty" ? u""_s : parts[1], value})) {
                return false;
            }
        }
        return true;
    }

    /** The whole schedule row as text, to see that nothing changed. */
    QString snapshot(qint64 serviceUsedId)
    {
        QSqlQuery q(m_session.db());
        QStringList fields;
        if (Sql::exec(q, u"SELECT * FROM tblServiceUsed WHERE ServiceUsedID = ?"_s,
                      {serviceUsedId}) &&
            q.next()) {
            for (int i = 0; i < q.record().count(); ++i) {
                fields.append(q.value(i).toString());
            }
        }
        return fields.join(u'|');
    }

private:
    Session& m_session;
    QString m_error;
};

QString emptySelectionText(const QString& selection, const QString& unitNo = u"U-7"_s,
                           const QString& equipmentName = u"Mower 3"_s)
{
    return u"Service \"J-12\" doesn't have any "_s + selection +
           u" selected in service schedule, system can not\ncalculate the next schedule date.\n"
           "Service detail is given below.\nUnit No : - "_s +
           unitNo + u"\nEquipment Name : - "_s + equipmentName +
           u"\nService Job No : - J-12\nService Description : - Blade sharpening"_s;
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
        QTest::addColumn<QString>("service"); // as ScheduleData::addService takes it
        QTest::addColumn<QString>(
            "readings");                  // machine 7's, as ScheduleData::addReadings takes them
        QTest::addColumn<QDate>("given"); // NotGiven: the stored dates count
        QTest::addColumn<QDate>("expected");
        QTest::addColumn<QString>("told"); // the one message shown, if any
        const auto row = [](const char* name, const char* service, QDate expected,
                            const QString& told = QString(), const char* readings = "",
                            QDate given = NotGiven) {
            QTest::newRow(name) << QString::fromLatin1(service) << QString::fromLatin1(readings)
                                << given << expected << told;
        };

        // The steps themselves are the walks' tests; these show each column reaches them.
        row("Jan, week 3, Wed",
            "Period=W LastDatePerformed=2023-12-20 months=1 weeks=001 days=0001", {2024, 1, 17});
        row("DOM list ignores months",
            "Period=M LastDatePerformed=2024-01-01 months=0000001 Dom=1 DOM1=20 DOM2=5",
            {2024, 2, 5});

        // Meters: the latest reading of the service's type on its own machine decides.
        const QDate march3(2024, 3, 3);
        const auto meter = [&](const char* name, const char* service, const char* readings,
                               QDate expected) { row(name, service, expected, {}, readings); };
        const char* hours =
            "2024-02-01 Hours 400, 2024-03-03 Hours 510, 2024-03-10 Kilometers 9999";
        meter("meter count reached exactly", "Period=H NextScheduledCount=510", hours, march3);
        meter("meter count not reached", "Period=H NextScheduledCount=511", hours, QDate());
        meter("tie of date: higher count wins", "Period=H NextScheduledCount=510",
              "2024-03-03 Hours 500, 2024-03-03 Hours 520", march3);
        meter("latest date beats higher count", "Period=H NextScheduledCount=500",
              "2024-03-01 Hours 900, 2024-03-03 Hours 100", QDate());
        meter("null count reached by any reading", "Period=H", "2024-03-03 Hours 5", march3);
        meter("undated reading never latest", "Period=H NextScheduledCount=500",
              "null Hours 100, 2024-03-03 Hours 900", march3);
        meter("type in other case", "Period=H NextScheduledCount=500", "2024-03-03 hours 900",
              march3);
        meter("unknown period", "Period=X NextScheduledCount=0",
              "2024-03-03 empty 900, 2024-03-03 Hours 900", QDate());

        // The renewal rule picks the base date; a given date stands for both.
        const auto renew = [&](const char* name, const char* code, QDate given, QDate expected) {
            row(name,
                qPrintable(u"EInterval=10 LastDateScheduled=2024-02-01 RenewalOn="_s +
                           QLatin1String(code)),
                expected, {}, "", given);
        };
        renew("S: scheduled", "S LastDatePerformed=2024-01-01", NotGiven, {2024, 2, 11});
        renew("W: performed", "W LastDatePerformed=2024-01-01", NotGiven, {2024, 1, 11});
        renew("null performed: today", "W", NotGiven, Today.addDays(10));
        renew("given date under S", "S LastDatePerformed=2024-01-01", {2024, 6, 1}, {2024, 6, 11});
        renew("empty given date: today", "W LastDatePerformed=2024-01-01", QDate(),
              Today.addDays(10));

        // An empty selection is told once, the first empty one only, and answers tomorrow.
        const QString noMonth = emptySelectionText(u"MOY(month of the year)"_s);
        row("no month", "months=", Tomorrow, noMonth);
        row("no day", "days=", Tomorrow, emptySelectionText(u"DOW(day of the week)"_s));
        row("none of the three: months only", "months= weeks= days=", Tomorrow, noMonth);
        row("a flag on is 1 only", "weeks=xxxxx", Tomorrow,
            emptySelectionText(u"WOM(week of the month)"_s));
        row("machine gone", "months= EquipmentID=99", Tomorrow,
            emptySelectionText(u"MOY(month of the year)"_s, QString(), QString()));

        // Any number but 0 in Dom picks the day list over the selections.
        row("Dom 5", "months= weeks= days= Dom=5 DOM1=15", {2025, 3, 15});
        row("Dom text", "months= weeks= days= Dom=on DOM1=15", Tomorrow, noMonth);
    }
    void nextScheduledDate()
    {
        QFETCH(QString, service);
        QFETCH(QString, readings);
        QFETCH(QDate, given);
        QFETCH(QDate, expected);
        QFETCH(QString, told);
        TANDRILL_INSTALLATION(t);
        ScheduleData data(t.session());
        // Another machine's newer reading must never count.
        QVERIFY2(data.addMachine(7, u"Mower 3"_s, u"U-7"_s) &&
                     data.addMachine(8, u"Truck"_s, u"T-1"_s) && data.addReadings(readings) &&
                     data.addReadings(u"2024-12-31 Hours 99999"_s, 8),
                 qPrintable(data.error()));
        const qint64 id = data.addService(service);
        QVERIFY2(id > 0, qPrintable(data.error()));
        const QString before = data.snapshot(id);

        // Without useGivenDate the given date plays no part.
        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id, given != NotGiven, given),
                 expected);
        QCOMPARE(t.prompter().texts(), told.isEmpty() ? QStringList() : QStringList{told});
        if (!told.isEmpty()) {
            const ScriptedPrompter::Shown& shown = t.prompter().shown().constFirst();
            QCOMPARE(shown.icon, Prompter::Icon::Information);
            QCOMPARE(shown.buttons, Prompter::Buttons::Ok);
            QVERIFY(shown.title.isEmpty());
        }
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(data.snapshot(id), before);
    }

    // A work order line counts even when its order is gone; an id without a row answers today.
    void serviceInWorkOrderAndUnknownIds()
    {
        TANDRILL_INSTALLATION(t);
        ScheduleData data(t.session());
        const qint64 onOrder = data.addService({});
        const qint64 without = data.addService({});
        QVERIFY2(without > 0 && data.run(u"INSERT INTO tblWoServiceUsed (WorkOrderNo, "
                                         "ServiceUsedID, EquipmentID) VALUES (4242, ?, 7)"_s,
                                         {onOrder}),
                 qPrintable(data.error()));
        NextDateCalculator calculator(t.session());
        QVERIFY(calculator.serviceInWorkOrder(onOrder));
        QVERIFY(!calculator.serviceInWorkOrder(without));
        QCOMPARE(calculator.nextScheduledDate(99999, true, Tomorrow), Today);
        QVERIFY(t.prompter().shown().isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void failuresAreReportedAndChangeNothing_data()
    {
        QTest::addColumn<QString>("service");
        QTest::addColumn<QString>("spoil"); // what breaks the data after the service is written
        QTest::addColumn<QString>("procedure");
        QTest::addColumn<qint64>("number");        // 0: any
        QTest::addColumn<QStringList>("mentions"); // what the description names
        const QString nextDate = u"GetNextScheduledDate"_s;
        QTest::addRow("schedule row unreadable")
            << QString() << u"DROP TABLE tblServiceUsed"_s << nextDate << 0LL << QStringList();
        QTest::addRow("meter reading unreadable")
            << u"Period=H NextScheduledCount=0"_s << u"DROP TABLE tblEquipmentCount"_s
            << u"CheckMeterLogic"_s << 0LL << QStringList();
        QTest::addRow("interval beyond the calendar")
            << u"Period=Y EInterval=20000"_s << QString() << nextDate << 6LL << QStringList();
        QTest::addRow("a date that is no date")
            << QString() << u"UPDATE tblServiceUsed SET LastDatePerformed = 'soon'"_s << nextDate
            << 13LL << QStringList{u"LastDatePerformed"_s, u"soon"_s};
    }
    // Each answers today.
    void failuresAreReportedAndChangeNothing()
    {
        QFETCH(QString, service);
        QFETCH(QString, spoil);
        QFETCH(QString, procedure);
        QFETCH(qint64, number);
        QFETCH(QStringList, mentions);
        TANDRILL_INSTALLATION(t);
        if (!mentions.isEmpty() && !t.session().dialect().isSqlite()) {
            QSKIP("PostgreSQL's typed columns refuse values that are no number or date");
        }
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(7, u"Mower 3"_s, u"U-7"_s), qPrintable(data.error()));
        const qint64 id = data.addService(service);
        QVERIFY2(id > 0 && (spoil.isEmpty() || data.run(spoil)), qPrintable(data.error()));
        const QString before = data.snapshot(id);

        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), Today);
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure failure = t.failures().failures().constFirst();
        QCOMPARE(failure.module, u"General Function"_s);
        QCOMPARE(failure.procedure, procedure);
        QVERIFY(number ? failure.number == number : failure.number != 0);
        for (const QString& word : mentions) {
            QVERIFY2(failure.description.contains(word), qPrintable(failure.description));
        }
        QVERIFY(t.prompter().shown().isEmpty());
        QCOMPARE(data.snapshot(id), before);
    }

    void helpersReportTheirOwnFailures()
    {
        TANDRILL_INSTALLATION(t);
        ScheduleData data(t.session());
        QVERIFY2(data.run(u"DROP TABLE tblEquipmentCount"_s) &&
                     data.run(u"DROP TABLE tblWoServiceUsed"_s),
                 qPrintable(data.error()));
        NextDateCalculator calculator(t.session());
        QCOMPARE(calculator.equipmentCount(7, u"Hours"_s), qint64(0));
        QCOMPARE(calculator.serviceInWorkOrder(1), false);
        QStringList procedures;
        for (const Failure& f : t.failures().failures()) {
            procedures.append(f.procedure);
        }
        QCOMPARE(procedures, (QStringList{u"GetEquipmentCount"_s, u"ServiceInWorkOrder"_s}));
    }
};

QTEST_GUILESS_MAIN(TestNextDateCalculator)
#include "tst_nextdatecalculator.moc"
