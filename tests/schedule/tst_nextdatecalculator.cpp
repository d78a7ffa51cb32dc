#include "NextDateCalculator.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QDate Today(2025, 3, 1); // the fixed day of every test installation
const QDate Tomorrow = Today.addDays(1);
constexpr qint64 MachineId = 7;

enum Weekday { Sun = 1, Mon, Tue, Wed, Thu, Fri, Sat };

/** A flag mask, one character a flag, with only the flags counted from 1 in on set. */
QString only(int size, std::initializer_list<int> on)
{
    QString mask(size, u'0');
    for (int i : on) {
        mask[i - 1] = u'1';
    }
    return mask;
}

QVariant nullNumber()
{
    return QVariant(QMetaType::fromType<qlonglong>());
}

/** A service row on machine 7, with the readings and machine around it. */
struct Service
{
    QString period = u"D"_s;
    QVariant interval = 1;
    QString renewalOn = u"W"_s;
    QDate performed{}; ///< LastDatePerformed; the empty date stores null
    QDate scheduled{}; ///< LastDateScheduled
    // Flag masks, one character a flag, '1' on; missing characters are off.
    QString months = QString(12, u'1'); ///< January first
    QString weeks = QString(5, u'1');
    QString days = QString(7, u'1'); ///< Sunday first
    QVariant dom = u"0"_s;
    QVariantList domList{}; ///< DOM1 onwards; missing ones are null
    QVariant nextCount = nullNumber();
    QVariant offValue = u"0"_s;   ///< what a '0' of a mask stores
    QString readings{};           ///< machine 7's, as ScheduleData::addReadings takes them
    bool machine = true;          ///< false: the machine row is gone
    std::optional<QDate> given{}; ///< handed to the calculator in place of the stored dates
};

/** Writes machines, services and readings with bound inserts. */
class ScheduleData
{
public:
    explicit ScheduleData(Session& session) : m_session(session) {}

    QString error() const { return m_error; }

    bool addMachine(qint64 id = MachineId, const QString& name = u"Mower 3"_s,
                    const QString& unitNo = u"U-7"_s)
    {
        return run(u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, Inactive) "
                   "VALUES (?, ?, ?, '0')"_s,
                   {id, name, unitNo});
    }

    /** The new row's ServiceUsedID, or 0 when it could not be written. */
    qint64 addService(const Service& s)
    {
        QStringList columns = u"EquipmentID ServiceID JobNo Name Period EInterval RenewalOn Dom "
                              "LastDatePerformed LastDateScheduled NextScheduledCount "
                              "NextScheduledDate Inactive"_s.split(u' ');
        QVariantList values{MachineId, 0,          u"J-12"_s,   u"Blade sharpening"_s,
                            s.period,  s.interval, s.renewalOn, s.dom};
        // The stored next date is one the calculator must leave alone.
        values << SqlValue::date(s.performed) << SqlValue::date(s.scheduled) << s.nextCount
               << SqlValue::date(QDate(2024, 5, 2)) << 0;
        const QString masks = s.months.leftJustified(12, u'0') + s.weeks.leftJustified(5, u'0') +
                              s.days.leftJustified(7, u'0');
        const QStringList flags =
            u"Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dece FirstW "
            "SecondW ThirdW ForthW LastW Sun Mon Tue Wed Thu Fri Sat"_s.split(u' ');
        for (int i = 0; i < flags.size(); ++i) {
            columns.append(flags[i]);
            values.append(masks[i] == u'1' ? QVariant(u"1"_s) : s.offValue);
        }
        for (int i = 0; i < 5; ++i) {
            columns.append(u"DOM%1"_s.arg(i + 1));
            values.append(s.domList.value(i, QVariant(QMetaType::fromType<int>())));
        }
        return insert(u"INSERT INTO tblServiceUsed (%1) VALUES (%2) RETURNING ServiceUsedID"_s.arg(
                          columns.join(u", "), QStringList(columns.size(), u"?"_s).join(u", ")),
                      values);
    }

    /**
     * Readings as "yyyy-MM-dd Type value, ...": "null" for a missing date or value,
     * "empty" for an empty type.
     */
    bool addReadings(const QString& readings, qint64 equipmentId = MachineId)
    {
        for (const QString& reading : readings.split(u", "_s, Qt::SkipEmptyParts)) {
            const QStringList parts = reading.split(u' ');
            const QDate date = QDate::fromString(parts[0], Qt::ISODate);
            const QVariant value =
                parts[2] == u"null" ? nullNumber() : QVariant(parts[2].toLongLong());
            const QString type = parts[1] == u"empty" ? u""_s : parts[1];
            if (!run(u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                     "CountValue) VALUES (?, ?, ?, ?)"_s,
                     {equipmentId, SqlValue::date(date), type, value})) {
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

    bool run(const QString& sql, const QVariantList& values = {})
    {
        QSqlQuery q(m_session.db());
        if (!Sql::exec(q, sql, values)) {
            m_error = q.lastError().text();
            return false;
        }
        return true;
    }

private:
    /** The key an insert returns, or 0 when it failed. */
    qint64 insert(const QString& sql, const QVariantList& values)
    {
        QSqlQuery q(m_session.db());
        if (!Sql::exec(q, sql, values) || !q.next()) {
            m_error = q.lastError().text();
            return 0;
        }
        return q.value(0).toLongLong();
    }

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

Q_DECLARE_METATYPE(Service)

/** The next due date of services on machines, read from the data on either engine. */
class TestNextDateCalculator : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        TANDRILL_REQUIRE_ENGINE();
        m_shared = std::make_unique<TestInstallation>();
        QVERIFY2(m_shared->isValid(), qPrintable(m_shared->error()));
    }

    // One data file serves the table-driven cases; each starts from empty tables.
    void init()
    {
        if (!m_shared) {
            return;
        }
        ScheduleData data(m_shared->session());
        for (const char* table : {"tblServiceUsed", "tblEquipment", "tblEquipmentCount",
                                  "tblWoServiceUsed", "tblWorkorder"}) {
            QVERIFY2(data.run(u"DELETE FROM "_s + QLatin1String(table)), qPrintable(data.error()));
        }
        m_shared->prompter().clear();
        m_shared->failures().clear();
    }

    void cleanupTestCase() { m_shared.reset(); }

    void nextScheduledDate_data()
    {
        QTest::addColumn<Service>("service");
        QTest::addColumn<QDate>("expected");
        QTest::addColumn<QString>("told"); // the one message shown, if any
        const auto row = [](const char* name, const Service& s, QDate expected,
                            const QString& told = QString()) {
            QTest::newRow(name) << s << expected << told;
        };

        // The steps themselves are the walks' tests; these show the data reaches them.
        row("15 Jan + 30 days", {.interval = 30, .performed = {2024, 1, 15}}, {2024, 2, 14});
        row("31 Jan + 1 month", {.period = u"M"_s, .performed = {2024, 1, 31}}, {2024, 2, 29});
        row("2 weeks, Mon only",
            {.period = u"W"_s, .interval = 2, .performed = {2024, 3, 6}, .days = only(7, {Mon})},
            {2024, 3, 25});
        row("1 month, Apr to Oct",
            {.period = u"M"_s,
             .performed = {2024, 10, 15},
             .months = only(12, {4, 5, 6, 7, 8, 9, 10})},
            {2025, 4, 1});
        row("Jan, week 3, Wed",
            {.period = u"W"_s,
             .performed = {2023, 12, 20},
             .months = only(12, {1}),
             .weeks = only(5, {3}),
             .days = only(7, {Wed})},
            {2024, 1, 17});
        const QVariant on = u"1"_s;
        row("DOM 5 and 20",
            {.interval = 5, .performed = {2024, 1, 1}, .dom = on, .domList = {5, 20}},
            {2024, 1, 20});
        row("DOM ignores months",
            {.period = u"M"_s,
             .performed = {2024, 1, 1},
             .months = only(12, {7}),
             .dom = on,
             .domList = {15}},
            {2024, 2, 15});
        row("DOM list out of range", {.dom = on, .domList = {32, -1, 99, 0, 1000}}, QDate());

        // Meters: the latest reading of the service's type on its own machine decides.
        const QDate march3(2024, 3, 3);
        const auto meter = [&](const char* name, const QString& period, const QVariant& count,
                               const char* readings, QDate expected) {
            const QString text = QString::fromLatin1(readings);
            row(name, {.period = period, .interval = 250, .nextCount = count, .readings = text},
                expected);
        };
        const char* hours =
            "2024-02-01 Hours 400, 2024-03-03 Hours 510, 2024-03-10 Kilometers 9999";
        meter("meter count reached exactly", u"H"_s, 510, hours, march3);
        meter("meter count not reached", u"H"_s, 511, hours, QDate());
        meter("tie: higher count wins", u"H"_s, 510, "2024-03-03 Hours 520, 2024-03-03 Hours 500",
              march3);
        meter("tie: written the other way", u"H"_s, 510,
              "2024-03-03 Hours 500, 2024-03-03 Hours 520", march3);
        meter("latest date beats higher count", u"H"_s, 500,
              "2024-03-01 Hours 900, 2024-03-03 Hours 100", QDate());
        meter("null count reached by any reading", u"H"_s, nullNumber(), "2024-03-03 Hours 5",
              march3);
        meter("undated reading never latest", u"H"_s, 500, "null Hours 100, 2024-03-03 Hours 900",
              march3);
        meter("I reads Miles", u"I"_s, 500, "2024-03-03 Miles 900", march3);
        meter("type in other case", u"H"_s, 500, "2024-03-03 hours 900", march3);
        meter("unknown period", u"X"_s, 0, "2024-03-03 empty 900, 2024-03-03 Hours 900", QDate());

        // The renewal rule picks the base date; a given date stands for both.
        const QDate jan1(2024, 1, 1), feb1(2024, 2, 1), jun1(2024, 6, 1);
        const auto renew = [&](const char* name, const QString& code, QDate p, QDate s,
                               std::optional<QDate> given, QDate expected) {
            row(name,
                {.interval = 10, .renewalOn = code, .performed = p, .scheduled = s, .given = given},
                expected);
        };
        renew("S: scheduled", u"S"_s, jan1, feb1, {}, {2024, 2, 11});
        renew("W: performed", u"W"_s, jan1, feb1, {}, {2024, 1, 11});
        renew("null performed: today", u"W"_s, QDate(), feb1, {}, Today.addDays(10));
        renew("given date under S", u"S"_s, jan1, feb1, jun1, {2024, 6, 11});
        renew("empty given date: today", u"W"_s, jan1, feb1, QDate(), Today.addDays(10));

        // An empty selection is told once, the first empty one only, and answers tomorrow.
        const QString noMonth = emptySelectionText(u"MOY(month of the year)"_s);
        const QString noWeek = emptySelectionText(u"WOM(week of the month)"_s);
        row("no month", {.months = {}}, Tomorrow, noMonth);
        row("no week", {.weeks = {}}, Tomorrow, noWeek);
        row("no day", {.days = {}}, Tomorrow, emptySelectionText(u"DOW(day of the week)"_s));
        row("none of the three: months only", {.months = {}, .weeks = {}, .days = {}}, Tomorrow,
            noMonth);
        row("a flag on is 1 only", {.weeks = {}, .offValue = u"-1"_s}, Tomorrow, noWeek);
        row("machine gone", {.months = {}, .machine = false}, Tomorrow,
            emptySelectionText(u"MOY(month of the year)"_s, QString(), QString()));

        // Any number but 0 in Dom picks the day list over the selections.
        const auto domFlag = [&](const char* name, const QVariant& dom, bool listUsed) {
            row(name, {.months = {}, .weeks = {}, .days = {}, .dom = dom, .domList = {15}},
                listUsed ? QDate(2025, 3, 15) : Tomorrow, listUsed ? QString() : noMonth);
        };
        domFlag("Dom 5", u"5"_s, true);
        domFlag("Dom 0", u"0"_s, false);
        domFlag("Dom text", u"on"_s, false);
    }
    void nextScheduledDate()
    {
        QFETCH(Service, service);
        QFETCH(QDate, expected);
        QFETCH(QString, told);
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        // Another machine's newer reading must never count.
        QVERIFY2((!service.machine || data.addMachine()) &&
                     data.addMachine(8, u"Truck"_s, u"T-1"_s) &&
                     data.addReadings(service.readings) &&
                     data.addReadings(u"2024-12-31 Hours 99999"_s, 8),
                 qPrintable(data.error()));
        const qint64 id = data.addService(service);
        QVERIFY2(id > 0, qPrintable(data.error()));
        const QString before = data.snapshot(id);

        // Without useGivenDate the given date plays no part.
        QCOMPARE(NextDateCalculator(t.session())
                     .nextScheduledDate(id, service.given.has_value(),
                                        service.given.value_or(QDate(1999, 9, 9))),
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

    void idWithoutRowGivesToday()
    {
        NextDateCalculator calculator(m_shared->session());
        for (const qint64 id : {0LL, 99999LL, -1LL}) {
            QCOMPARE(calculator.nextScheduledDate(id, true, QDate(2020, 1, 1)), Today);
        }
        QVERIFY(m_shared->prompter().shown().isEmpty());
        QVERIFY(m_shared->failures().isEmpty());
    }

    void serviceInWorkOrderLooksForALine()
    {
        ScheduleData data(m_shared->session());
        const qint64 onOrder = data.addService({});
        const qint64 without = data.addService({});
        // A line counts even when its order is gone; another service's line does not.
        QVERIFY2(without > 0 && data.run(u"INSERT INTO tblWoServiceUsed (WorkOrderNo, "
                                         "ServiceUsedID, EquipmentID) VALUES (4242, ?, ?)"_s,
                                         {onOrder, MachineId}),
                 qPrintable(data.error()));
        NextDateCalculator calculator(m_shared->session());
        QVERIFY(calculator.serviceInWorkOrder(onOrder));
        QVERIFY(!calculator.serviceInWorkOrder(without));
        QVERIFY(m_shared->failures().isEmpty());
    }

    void failuresAreReportedAndChangeNothing_data()
    {
        QTest::addColumn<Service>("service");
        QTest::addColumn<QString>("spoil"); // what breaks the data after the service is written
        QTest::addColumn<QString>("procedure");
        QTest::addColumn<qint64>("number"); // 0: any
        QTest::addColumn<QDate>("expected");
        QTest::addColumn<QStringList>("mentions"); // what the description names
        const QString nextDate = u"GetNextScheduledDate"_s;
        QTest::addRow("schedule row unreadable") << Service() << u"DROP TABLE tblServiceUsed"_s
                                                 << nextDate << 0LL << Today << QStringList();
        QTest::addRow("meter reading unreadable")
            << Service{.period = u"H"_s, .nextCount = 0} << u"DROP TABLE tblEquipmentCount"_s
            << u"CheckMeterLogic"_s << 0LL << Today << QStringList();
        QTest::addRow("interval beyond the calendar")
            << Service{.period = u"Y"_s, .interval = 20000} << QString() << nextDate << 6LL << Today
            << QStringList();
        QTest::addRow("a date that is no date")
            << Service() << u"UPDATE tblServiceUsed SET LastDatePerformed = 'soon'"_s << nextDate
            << 13LL << Today << QStringList{u"LastDatePerformed"_s, u"soon"_s};
    }

    void failuresAreReportedAndChangeNothing()
    {
        QFETCH(Service, service);
        QFETCH(QString, spoil);
        QFETCH(QString, procedure);
        QFETCH(qint64, number);
        QFETCH(QDate, expected);
        QFETCH(QStringList, mentions);
        TANDRILL_INSTALLATION(t);
        if (!mentions.isEmpty() && !t.session().dialect().isSqlite()) {
            QSKIP("PostgreSQL's typed columns refuse values that are no number or date");
        }
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        const qint64 id = data.addService(service);
        QVERIFY2(id > 0 && (spoil.isEmpty() || data.run(spoil)), qPrintable(data.error()));
        const QString before = data.snapshot(id);

        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), expected);
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
        QCOMPARE(calculator.equipmentCount(MachineId, u"Hours"_s), qint64(0));
        QCOMPARE(calculator.serviceInWorkOrder(1), false);
        QStringList procedures;
        for (const Failure& f : t.failures().failures()) {
            procedures.append(f.procedure);
        }
        QCOMPARE(procedures, (QStringList{u"GetEquipmentCount"_s, u"ServiceInWorkOrder"_s}));
    }

private:
    std::unique_ptr<TestInstallation> m_shared;
};

QTEST_GUILESS_MAIN(TestNextDateCalculator)
#include "tst_nextdatecalculator.moc"
