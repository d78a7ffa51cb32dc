#include "NextDateCalculator.h"
#include "ScheduleCodes.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QDate Today(2025, 3, 1); // the fixed day of every test installation
constexpr qint64 MachineId = 7;

enum Weekday { Sun = 1, Mon, Tue, Wed, Thu, Fri, Sat };

/** A flag mask, one character a flag: "1" on, "0" off. */
QString only(int size, std::initializer_list<int> on)
{
    QString mask(size, u'0');
    for (int i : on) {
        mask[i - 1] = u'1';
    }
    return mask;
}
QString all(int size)
{
    return QString(size, u'1');
}
QString none(int size)
{
    return QString(size, u'0');
}
QString monthRange(int first, int last)
{
    QString mask = none(12);
    for (int m = first; m <= last; ++m) {
        mask[m - 1] = u'1';
    }
    return mask;
}

QVariant nullNumber()
{
    return QVariant(QMetaType::fromType<qlonglong>());
}

/** A service row as the test writes it into tblServiceUsed. */
struct Schedule
{
    QString period = u"D"_s;
    QVariant interval = 1;
    QString renewalOn = u"W"_s;
    QString months = all(12); ///< January first
    QString weeks = all(5);
    QString days = all(7);      ///< Sunday first
    QVariant offValue = u"0"_s; ///< what a '0' of a mask stores
    QVariant dom = u"0"_s;
    QVariantList domList; ///< DOM1 onwards; missing ones are null
    QVariant lastPerformed = SqlValue::nullText();
    QVariant lastScheduled = SqlValue::nullText();
    QVariant nextCount = nullNumber();
    QVariant nextDate = SqlValue::nullText();
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
    qint64 addService(const Schedule& s, qint64 equipmentId = MachineId)
    {
        QStringList columns = {u"EquipmentID"_s,
                               u"ServiceID"_s,
                               u"JobNo"_s,
                               u"Name"_s,
                               u"Period"_s,
                               u"EInterval"_s,
                               u"RenewalOn"_s,
                               u"Dom"_s,
                               u"LastDatePerformed"_s,
                               u"LastDateScheduled"_s,
                               u"NextScheduledCount"_s,
                               u"NextScheduledDate"_s,
                               u"Inactive"_s};
        QVariantList values = {
            equipmentId, 0,           u"J-12"_s, u"Blade sharpening"_s, s.period,
            s.interval,  s.renewalOn, s.dom,     s.lastPerformed,       s.lastScheduled,
            s.nextCount, s.nextDate,  0};
        const auto addFlags = [&](const QStringList& names, const QString& mask) {
            for (int i = 0; i < names.size(); ++i) {
                columns.append(names[i]);
                values.append(mask[i] == u'1' ? QVariant(u"1"_s) : s.offValue);
            }
        };
        addFlags({u"Jan"_s, u"Feb"_s, u"Mar"_s, u"Apr"_s, u"May"_s, u"Jun"_s, u"Jul"_s, u"Aug"_s,
                  u"Sep"_s, u"Oct"_s, u"Nov"_s, u"Dece"_s},
                 s.months);
        addFlags({u"FirstW"_s, u"SecondW"_s, u"ThirdW"_s, u"ForthW"_s, u"LastW"_s}, s.weeks);
        addFlags({u"Sun"_s, u"Mon"_s, u"Tue"_s, u"Wed"_s, u"Thu"_s, u"Fri"_s, u"Sat"_s}, s.days);
        for (int i = 0; i < 5; ++i) {
            columns.append(u"DOM%1"_s.arg(i + 1));
            values.append(s.domList.value(i, QVariant(QMetaType::fromType<int>())));
        }
        const QString marks = QStringList(columns.size(), u"?"_s).join(u", ");
        QSqlQuery q(m_session.db());
        if (!Sql::exec(q,
                       u"INSERT INTO tblServiceUsed (%1) VALUES (%2) RETURNING ServiceUsedID"_s.arg(
                           columns.join(u", "), marks),
                       values) ||
            !q.next()) {
            m_error = q.lastError().text();
            return 0;
        }
        return q.value(0).toLongLong();
    }

    /** A reading written as "yyyy-MM-dd Type value"; "null" stands for a missing date or value. */
    bool addReading(const QString& reading, qint64 equipmentId = MachineId)
    {
        const QStringList parts = reading.split(u' ');
        const QVariant date = parts[0] == u"null"
                                  ? SqlValue::nullText()
                                  : SqlValue::date(QDate::fromString(parts[0], Qt::ISODate));
        const QVariant value = parts[2] == u"null" ? nullNumber() : QVariant(parts[2].toLongLong());
        const QString type = parts[1] == u"empty" ? QString(u""_s) : parts[1];
        return run(
            u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, CountValue) "
            "VALUES (?, ?, ?, ?)"_s,
            {equipmentId, date, type, value});
    }

    bool addReadings(const QStringList& readings, qint64 equipmentId = MachineId)
    {
        for (const QString& r : readings) {
            if (!addReading(r, equipmentId)) {
                return false;
            }
        }
        return true;
    }

    bool addWorkOrderLine(qint64 serviceUsedId, bool withOrder)
    {
        qint64 orderNo = 4242;
        if (withOrder) {
            QSqlQuery q(m_session.db());
            if (!Sql::exec(
                    q, u"INSERT INTO tblWorkorder (EquipmentID) VALUES (?) RETURNING WorkOrderNo"_s,
                    {MachineId}) ||
                !q.next()) {
                m_error = q.lastError().text();
                return false;
            }
            orderNo = q.value(0).toLongLong();
        }
        return run(u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID, EquipmentID) "
                   "VALUES (?, ?, ?)"_s,
                   {orderNo, serviceUsedId, MachineId});
    }

    /** The whole schedule row as text, to see that nothing changed. */
    QString snapshot(qint64 serviceUsedId)
    {
        QSqlQuery q(m_session.db());
        if (!Sql::exec(q, u"SELECT * FROM tblServiceUsed WHERE ServiceUsedID = ?"_s,
                       {serviceUsedId}) ||
            !q.next()) {
            return QString();
        }
        QStringList fields;
        for (int i = 0; i < q.record().count(); ++i) {
            fields.append(q.value(i).toString());
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
    Session& m_session;
    QString m_error;
};

QString emptySelectionText(const QString& reason, const QString& unitNo = u"U-7"_s,
                           const QString& equipmentName = u"Mower 3"_s)
{
    return u"Service \"J-12"_s + reason +
           u"system can not\ncalculate the next schedule date.\nService detail is given below.\n"
           "Unit No : - "_s +
           unitNo + u"\nEquipment Name : - "_s + equipmentName +
           u"\nService Job No : - J-12\nService Description : - Blade sharpening"_s;
}

const QString NoMonth =
    u"\" doesn't have any MOY(month of the year) selected in service schedule, "_s;
const QString NoWeek =
    u"\" doesn't have any WOM(week of the month) selected in service schedule, "_s;
const QString NoDay = u"\" doesn't have any DOW(day of the week) selected in service schedule, "_s;

} // namespace

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
        for (const QString& table : {u"tblServiceUsed"_s, u"tblEquipment"_s, u"tblEquipmentCount"_s,
                                     u"tblWoServiceUsed"_s, u"tblWorkorder"_s}) {
            QVERIFY2(data.run(u"DELETE FROM "_s + table), qPrintable(data.error()));
        }
        m_shared->prompter().clear();
        m_shared->failures().clear();
    }

    void cleanupTestCase() { m_shared.reset(); }

    void workedExamples_data()
    {
        QTest::addColumn<QDate>("base");
        QTest::addColumn<QString>("period");
        QTest::addColumn<int>("interval");
        QTest::addColumn<QString>("months");
        QTest::addColumn<QString>("weeks");
        QTest::addColumn<QString>("days");
        QTest::addColumn<QVariantList>("domList"); // empty: DOM off
        QTest::addColumn<QVariant>("nextCount");
        QTest::addColumn<QDate>("expected");
        const QVariantList noDom;
        const QVariant noCount = nullNumber();
        const auto row = [&](const char* name, QDate base, const QString& period, int interval,
                             const QString& months, const QString& weeks, const QString& days,
                             const QVariantList& dom, QDate expected) {
            QTest::newRow(name) << base << period << interval << months << weeks << days << dom
                                << noCount << expected;
        };
        row("15 Jan + 30 days", {2024, 1, 15}, u"D"_s, 30, all(12), all(5), all(7), noDom,
            {2024, 2, 14});
        row("31 Jan + 1 month", {2024, 1, 31}, u"M"_s, 1, all(12), all(5), all(7), noDom,
            {2024, 2, 29});
        row("29 Feb + 1 year", {2024, 2, 29}, u"Y"_s, 1, all(12), all(5), all(7), noDom,
            {2025, 2, 28});
        row("2 weeks, Mon only", {2024, 3, 6}, u"W"_s, 2, all(12), all(5), only(7, {Mon}), noDom,
            {2024, 3, 25});
        row("1 month, Apr to Oct", {2024, 10, 15}, u"M"_s, 1, monthRange(4, 10), all(5), all(7),
            noDom, {2025, 4, 1});
        row("Jan, week 3, Wed", {2023, 12, 20}, u"W"_s, 1, only(12, {1}), only(5, {3}),
            only(7, {Wed}), noDom, {2024, 1, 17});
        row("week 1, 5th is week 2", {2024, 1, 4}, u"D"_s, 1, all(12), only(5, {1}), all(7), noDom,
            {2024, 2, 1});
        row("week 1, 7th is week 1", {2024, 1, 6}, u"D"_s, 1, all(12), only(5, {1}), all(7), noDom,
            {2024, 1, 7});
        row("week 2 takes the 5th", {2024, 1, 4}, u"D"_s, 1, all(12), only(5, {2}), all(7), noDom,
            {2024, 1, 5});
        row("week 2, Mon", {2024, 1, 4}, u"D"_s, 1, all(12), only(5, {2}), only(7, {Mon}), noDom,
            {2024, 1, 8});
        row("week 3, Fri", {2024, 3, 1}, u"D"_s, 1, all(12), only(5, {3}), only(7, {Fri}), noDom,
            {2024, 3, 15});
        row("week 1, Tue", {2024, 7, 3}, u"W"_s, 1, all(12), only(5, {1}), only(7, {Tue}), noDom,
            {2024, 8, 6});
        row("week 5, Sat", {2024, 3, 1}, u"D"_s, 1, all(12), only(5, {5}), only(7, {Sat}), noDom,
            {2024, 3, 30});
        row("week 5, 28-day Feb", {2023, 2, 1}, u"D"_s, 1, all(12), only(5, {5}), all(7), noDom,
            {2023, 3, 29});
        row("week 5, 29-day Feb", {2024, 2, 1}, u"D"_s, 1, all(12), only(5, {5}), all(7), noDom,
            {2024, 2, 29});
        row("DOM 15", {2024, 1, 10}, u"D"_s, 10, all(12), all(5), all(7), {15}, {2024, 2, 15});
        row("DOM 31", {2024, 1, 31}, u"D"_s, 1, all(12), all(5), all(7), {31}, {2024, 3, 31});
        row("DOM 5 and 20", {2024, 1, 1}, u"D"_s, 5, all(12), all(5), all(7), {5, 20},
            {2024, 1, 20});
        row("DOM ignores months", {2024, 1, 1}, u"M"_s, 1, only(12, {7}), all(5), all(7), {15},
            {2024, 2, 15});
        row("interval 0 keeps the base", {2024, 6, 12}, u"D"_s, 0, all(12), all(5), all(7), noDom,
            {2024, 6, 12});

        // The machine's latest Hours reading is 510 on 3 Mar 2024.
        const auto meter = [](const char* name, const QString& period, const QVariant& count,
                              QDate expected) {
            QTest::newRow(name) << QDate(2024, 1, 1) << period << 0 << all(12) << all(5) << all(7)
                                << QVariantList() << count << expected;
        };
        meter("meter 500 reached", u"H"_s, 500, {2024, 3, 3});
        meter("meter 510 reached", u"H"_s, 510, {2024, 3, 3});
        meter("meter 511 not reached", u"H"_s, 511, QDate());
        meter("meter without readings of its type", u"C"_s, 500, QDate());
    }
    void workedExamples()
    {
        QFETCH(QDate, base);
        QFETCH(QString, period);
        QFETCH(int, interval);
        QFETCH(QString, months);
        QFETCH(QString, weeks);
        QFETCH(QString, days);
        QFETCH(QVariantList, domList);
        QFETCH(QVariant, nextCount);
        QFETCH(QDate, expected);

        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        QVERIFY2(data.addReadings({u"2024-02-01 Hours 400"_s, u"2024-03-03 Hours 510"_s,
                                   u"2024-03-10 Kilometers 9999"_s}),
                 qPrintable(data.error()));
        Schedule s;
        s.period = period;
        s.interval = interval;
        s.months = months;
        s.weeks = weeks;
        s.days = days;
        s.dom = domList.isEmpty() ? u"0"_s : u"1"_s;
        s.domList = domList;
        s.lastPerformed = SqlValue::date(base);
        s.nextCount = nextCount;
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));

        NextDateCalculator calculator(t.session());
        QCOMPARE(calculator.nextScheduledDate(id), expected);
        QVERIFY(t.prompter().shown().isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void renewalOnPicksTheBaseDate_data()
    {
        QTest::addColumn<QString>("renewalOn");
        QTest::addColumn<QDate>("performed");
        QTest::addColumn<QDate>("scheduled");
        QTest::addColumn<bool>("useGiven");
        QTest::addColumn<QDate>("given");
        QTest::addColumn<QDate>("expected");
        const QDate performed(2024, 1, 1);
        const QDate scheduled(2024, 2, 1);
        const QDate given(2024, 6, 1);
        QTest::addRow("S: scheduled")
            << u"S"_s << performed << scheduled << false << QDate() << QDate(2024, 2, 11);
        QTest::addRow("s: scheduled")
            << u"s"_s << performed << scheduled << false << QDate() << QDate(2024, 2, 11);
        QTest::addRow("W: performed")
            << u"W"_s << performed << scheduled << false << QDate() << QDate(2024, 1, 11);
        QTest::addRow("empty: performed")
            << QString() << performed << scheduled << false << QDate() << QDate(2024, 1, 11);
        QTest::addRow("D: performed")
            << u"D"_s << performed << scheduled << false << QDate() << QDate(2024, 1, 11);
        QTest::addRow("null performed: today")
            << u"W"_s << QDate() << scheduled << false << QDate() << Today.addDays(10);
        QTest::addRow("null scheduled: today")
            << u"S"_s << performed << QDate() << false << QDate() << Today.addDays(10);
        QTest::addRow("given date under S")
            << u"S"_s << performed << scheduled << true << given << QDate(2024, 6, 11);
        QTest::addRow("given date under W")
            << u"W"_s << performed << scheduled << true << given << QDate(2024, 6, 11);
        QTest::addRow("given date ignored")
            << u"W"_s << performed << scheduled << false << given << QDate(2024, 1, 11);
        QTest::addRow("empty given date: today")
            << u"W"_s << performed << scheduled << true << QDate() << Today.addDays(10);
    }
    void renewalOnPicksTheBaseDate()
    {
        QFETCH(QString, renewalOn);
        QFETCH(QDate, performed);
        QFETCH(QDate, scheduled);
        QFETCH(bool, useGiven);
        QFETCH(QDate, given);
        QFETCH(QDate, expected);

        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        Schedule s;
        s.interval = 10;
        s.renewalOn = renewalOn;
        s.lastPerformed = SqlValue::date(performed);
        s.lastScheduled = SqlValue::date(scheduled);
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id, useGiven, given), expected);
        QVERIFY(t.failures().isEmpty());
    }

    void unknownPeriodGivesEmptyDate_data()
    {
        QTest::addColumn<QString>("period");
        QTest::addRow("lower case d") << u"d"_s;
        QTest::addRow("lower case h") << u"h"_s;
        QTest::addRow("letter X") << u"X"_s;
        QTest::addRow("empty") << QString();
    }
    void unknownPeriodGivesEmptyDate()
    {
        QFETCH(QString, period);
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        // Readings of every kind, one with an empty type: none may answer for an unknown code.
        QVERIFY2(data.addReadings({u"2024-03-03 empty 900"_s, u"2024-03-03 Hours 900"_s,
                                   u"2024-03-03 Days 900"_s}),
                 qPrintable(data.error()));
        Schedule s;
        s.period = period;
        s.nextCount = 0;
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), QDate());
        QVERIFY(t.prompter().shown().isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void idWithoutRowGivesToday_data()
    {
        QTest::addColumn<qint64>("id");
        QTest::addRow("zero") << 0LL;
        QTest::addRow("unused") << 99999LL;
        QTest::addRow("negative") << -1LL;
    }
    void idWithoutRowGivesToday()
    {
        QFETCH(qint64, id);
        TestInstallation& t = *m_shared;
        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id, true, QDate(2020, 1, 1)),
                 Today);
        QVERIFY(t.prompter().shown().isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void emptySelectionIsToldOnceAndGivesTomorrow_data()
    {
        QTest::addColumn<QString>("months");
        QTest::addColumn<QString>("weeks");
        QTest::addColumn<QString>("days");
        QTest::addColumn<QVariant>("offValue");
        QTest::addColumn<bool>("withMachine");
        QTest::addColumn<QString>("message");
        QTest::addRow("no month") << none(12) << all(5) << all(7) << QVariant(u"0"_s) << true
                                  << emptySelectionText(NoMonth);
        QTest::addRow("no week") << all(12) << none(5) << all(7) << QVariant(u"0"_s) << true
                                 << emptySelectionText(NoWeek);
        QTest::addRow("no day") << all(12) << all(5) << none(7) << QVariant(u"0"_s) << true
                                << emptySelectionText(NoDay);
        QTest::addRow("none of the three: months only")
            << none(12) << none(5) << none(7) << QVariant(u"0"_s) << true
            << emptySelectionText(NoMonth);
        QTest::addRow("weeks and days: weeks only")
            << all(12) << none(5) << none(7) << QVariant(u"0"_s) << true
            << emptySelectionText(NoWeek);
        QTest::addRow("flags stored as -1") << none(12) << all(5) << all(7) << QVariant(u"-1"_s)
                                            << true << emptySelectionText(NoMonth);
        QTest::addRow("flags stored as 2") << all(12) << none(5) << all(7) << QVariant(u"2"_s)
                                           << true << emptySelectionText(NoWeek);
        QTest::addRow("flags stored as yes") << all(12) << all(5) << none(7) << QVariant(u"yes"_s)
                                             << true << emptySelectionText(NoDay);
        QTest::addRow("flags null") << none(12) << all(5) << all(7) << SqlValue::nullText() << true
                                    << emptySelectionText(NoMonth);
        QTest::addRow("machine gone") << none(12) << all(5) << all(7) << QVariant(u"0"_s) << false
                                      << emptySelectionText(NoMonth, QString(), QString());
    }
    void emptySelectionIsToldOnceAndGivesTomorrow()
    {
        QFETCH(QString, months);
        QFETCH(QString, weeks);
        QFETCH(QString, days);
        QFETCH(QVariant, offValue);
        QFETCH(bool, withMachine);
        QFETCH(QString, message);

        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        if (withMachine) {
            QVERIFY2(data.addMachine(), qPrintable(data.error()));
        }
        Schedule s;
        s.months = months;
        s.weeks = weeks;
        s.days = days;
        s.offValue = offValue;
        s.lastPerformed = SqlValue::date(QDate(2024, 5, 1));
        s.nextDate = SqlValue::date(QDate(2024, 5, 2));
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        const QString before = data.snapshot(id);

        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), Today.addDays(1));
        QCOMPARE(t.prompter().shown().size(), 1);
        const ScriptedPrompter::Shown& shown = t.prompter().shown().constFirst();
        QCOMPARE(shown.text, message);
        QCOMPARE(shown.icon, Prompter::Icon::Information);
        QCOMPARE(shown.buttons, Prompter::Buttons::Ok);
        QVERIFY(shown.title.isEmpty());
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(data.snapshot(id), before);
    }

    void domFlagDecidesAlone_data()
    {
        QTest::addColumn<QVariant>("dom");
        QTest::addColumn<bool>("on");
        QTest::addRow("1") << QVariant(u"1"_s) << true;
        QTest::addRow("-1") << QVariant(u"-1"_s) << true;
        QTest::addRow("5") << QVariant(u"5"_s) << true;
        QTest::addRow("0") << QVariant(u"0"_s) << false;
        QTest::addRow("null") << SqlValue::nullText() << false;
        QTest::addRow("text") << QVariant(u"on"_s) << false;
    }
    void domFlagDecidesAlone()
    {
        QFETCH(QVariant, dom);
        QFETCH(bool, on);
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        Schedule s;
        s.months = none(12);
        s.weeks = none(5);
        s.days = none(7);
        s.dom = dom;
        s.domList = {15};
        s.lastPerformed = SqlValue::date(QDate(2024, 1, 1));
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        const QDate answer = NextDateCalculator(t.session()).nextScheduledDate(id);
        QCOMPARE(answer, on ? QDate(2024, 1, 15) : Today.addDays(1));
        QCOMPARE(t.prompter().shown().size(), on ? 0 : 1);
    }

    void unmatchableDomListGivesEmptyDate_data()
    {
        QTest::addColumn<QVariantList>("domList");
        QTest::addRow("all null") << QVariantList();
        QTest::addRow("zeros") << QVariantList{0, 0, 0, 0, 0};
        QTest::addRow("out of range") << QVariantList{32, -1, 99, 0, 1000};
    }
    void unmatchableDomListGivesEmptyDate()
    {
        QFETCH(QVariantList, domList);
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        Schedule s;
        s.dom = u"1"_s;
        s.domList = domList;
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), QDate());
        QVERIFY(t.prompter().shown().isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void meterReadings_data()
    {
        QTest::addColumn<QString>("period");
        QTest::addColumn<QStringList>("readings");
        QTest::addColumn<QVariant>("nextCount");
        QTest::addColumn<QDate>("expected");
        const QDate march3(2024, 3, 3);
        QTest::addRow("tie: higher count wins")
            << u"H"_s << QStringList{u"2024-03-03 Hours 520"_s, u"2024-03-03 Hours 500"_s}
            << QVariant(510) << march3;
        QTest::addRow("tie: written the other way")
            << u"H"_s << QStringList{u"2024-03-03 Hours 500"_s, u"2024-03-03 Hours 520"_s}
            << QVariant(510) << march3;
        QTest::addRow("tie: both short")
            << u"H"_s << QStringList{u"2024-03-03 Hours 505"_s, u"2024-03-03 Hours 500"_s}
            << QVariant(510) << QDate();
        QTest::addRow("latest date beats higher count")
            << u"H"_s << QStringList{u"2024-03-01 Hours 900"_s, u"2024-03-03 Hours 100"_s}
            << QVariant(500) << QDate();
        QTest::addRow("count 0 reached by any reading")
            << u"H"_s << QStringList{u"2024-03-03 Hours 5"_s} << QVariant(0) << march3;
        QTest::addRow("null count reached by any reading")
            << u"H"_s << QStringList{u"2024-03-03 Hours 5"_s} << nullNumber() << march3;
        QTest::addRow("null reading counts as 0")
            << u"H"_s << QStringList{u"2024-03-03 Hours null"_s} << QVariant(0) << march3;
        QTest::addRow("null reading short of 1")
            << u"H"_s << QStringList{u"2024-03-03 Hours null"_s} << QVariant(1) << QDate();
        QTest::addRow("null reading loses a tie")
            << u"H"_s << QStringList{u"2024-03-03 Hours null"_s, u"2024-03-03 Hours 505"_s}
            << QVariant(505) << march3;
        QTest::addRow("undated reading never latest")
            << u"H"_s << QStringList{u"null Hours 100"_s, u"2024-03-03 Hours 900"_s}
            << QVariant(500) << march3;
        QTest::addRow("count 0 without readings")
            << u"H"_s << QStringList() << QVariant(0) << QDate();
        QTest::addRow("other type ignored")
            << u"H"_s << QStringList{u"2024-03-03 Kilometers 900"_s} << QVariant(500) << QDate();
        QTest::addRow("I reads Miles")
            << u"I"_s << QStringList{u"2024-03-03 Miles 900"_s} << QVariant(500) << march3;
        QTest::addRow("K reads Kilometers")
            << u"K"_s << QStringList{u"2024-03-03 Kilometers 900"_s} << QVariant(500) << march3;
        QTest::addRow("C reads Counts")
            << u"C"_s << QStringList{u"2024-03-03 Counts 900"_s} << QVariant(500) << march3;
        QTest::addRow("type in other case")
            << u"H"_s << QStringList{u"2024-03-03 hours 900"_s} << QVariant(500) << march3;
    }
    void meterReadings()
    {
        QFETCH(QString, period);
        QFETCH(QStringList, readings);
        QFETCH(QVariant, nextCount);
        QFETCH(QDate, expected);
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine() && data.addMachine(8, u"Truck"_s, u"T-1"_s),
                 qPrintable(data.error()));
        QVERIFY2(data.addReadings(readings), qPrintable(data.error()));
        // Another machine's newer reading must not count.
        QVERIFY2(data.addReading(u"2024-12-31 Hours 99999"_s, 8), qPrintable(data.error()));
        Schedule s;
        s.period = period;
        s.interval = 250;
        s.nextCount = nextCount;
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), expected);
        QVERIFY(t.failures().isEmpty());
    }

    void equipmentCountReadsLatest_data()
    {
        QTest::addColumn<QStringList>("readings");
        QTest::addColumn<QString>("code");
        QTest::addColumn<qint64>("count");
        const QStringList readings = {u"2024-03-01 Hours 900"_s, u"2024-03-03 Hours 100"_s,
                                      u"2024-03-03 Hours 120"_s, u"2024-03-05 Miles 40"_s};
        QTest::addRow("latest, tie to highest") << readings << u"H"_s << 120LL;
        QTest::addRow("Miles by I") << readings << u"I"_s << 40LL;
        QTest::addRow("no readings of type") << readings << u"C"_s << 0LL;
        QTest::addRow("calendar code") << readings << u"D"_s << 0LL;
        QTest::addRow("unknown code") << readings << u"X"_s << 0LL;
        QTest::addRow("null value") << QStringList{u"2024-03-03 Hours null"_s} << u"H"_s << 0LL;
    }
    void equipmentCountReadsLatest()
    {
        QFETCH(QStringList, readings);
        QFETCH(QString, code);
        QFETCH(qint64, count);
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addReadings(readings) && data.addReading(u"2025-01-01 Hours 5000"_s, 8),
                 qPrintable(data.error()));
        NextDateCalculator calculator(t.session());
        QCOMPARE(calculator.equipmentCountByPeriod(MachineId, code), count);
        const QString type = ScheduleCodes::periodText(code);
        QCOMPARE(calculator.equipmentCount(MachineId, type), count);
        QVERIFY(t.failures().isEmpty());
    }

    void emptyCountTypeFindsNoReadings()
    {
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addReading(u"2024-03-03 empty 900"_s), qPrintable(data.error()));
        NextDateCalculator calculator(t.session());
        const QString emptyType =
            u""_s; // empty, not null: a null binds as NULL and matches nothing anyway
        QCOMPARE(calculator.equipmentCount(MachineId, emptyType), qint64(0));
        QCOMPARE(calculator.checkMeterLogic(MachineId, emptyType, 0), QDate());
        QVERIFY(t.failures().isEmpty());
    }

    void serviceInWorkOrder_data()
    {
        QTest::addColumn<bool>("onLine");
        QTest::addColumn<bool>("withOrder");
        QTest::addColumn<bool>("otherService");
        QTest::addColumn<bool>("expected");
        QTest::addRow("on an order") << true << true << false << true;
        QTest::addRow("line without its order") << true << false << false << true;
        QTest::addRow("no line") << false << false << false << false;
        QTest::addRow("only another service") << false << true << true << false;
    }
    void serviceInWorkOrder()
    {
        QFETCH(bool, onLine);
        QFETCH(bool, withOrder);
        QFETCH(bool, otherService);
        QFETCH(bool, expected);
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        const qint64 id = data.addService(Schedule());
        const qint64 other = data.addService(Schedule());
        QVERIFY2(id > 0 && other > 0, qPrintable(data.error()));
        if (onLine) {
            QVERIFY2(data.addWorkOrderLine(id, withOrder), qPrintable(data.error()));
        }
        if (otherService) {
            QVERIFY2(data.addWorkOrderLine(other, withOrder), qPrintable(data.error()));
        }
        QCOMPARE(NextDateCalculator(t.session()).serviceInWorkOrder(id), expected);
        QVERIFY(t.failures().isEmpty());
    }

    void unreadableDataIsReported_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("period");
        QTest::addColumn<QString>("procedure");
        QTest::addColumn<QDate>("expected");
        QTest::addRow("schedule row")
            << u"tblServiceUsed"_s << u"D"_s << u"GetNextScheduledDate"_s << Today;
        QTest::addRow("meter reading")
            << u"tblEquipmentCount"_s << u"H"_s << u"CheckMeterLogic"_s << QDate();
    }
    void unreadableDataIsReported()
    {
        QFETCH(QString, table);
        QFETCH(QString, period);
        QFETCH(QString, procedure);
        QFETCH(QDate, expected);
        TANDRILL_INSTALLATION(t);
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        Schedule s;
        s.period = period;
        s.nextCount = 0;
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        QVERIFY2(data.run(u"DROP TABLE "_s + table), qPrintable(data.error()));

        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), expected);
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure failure = t.failures().failures().constFirst();
        QCOMPARE(failure.module, u"General Function"_s);
        QCOMPARE(failure.procedure, procedure);
        QVERIFY(failure.number != 0);
        QVERIFY(t.prompter().shown().isEmpty());
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

    void intervalBeyondTheCalendarIsReported()
    {
        TestInstallation& t = *m_shared;
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        Schedule s;
        s.period = u"Y"_s;
        s.interval = 20000;
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        const QString before = data.snapshot(id);
        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), Today);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures().constFirst().procedure, u"GetNextScheduledDate"_s);
        QCOMPARE(t.failures().failures().constFirst().number, qint64(6));
        QCOMPARE(data.snapshot(id), before);
    }

    void valuesThatAreNoNumbersOrDatesAreReported_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("period");
        QTest::addRow("LastDatePerformed") << u"LastDatePerformed"_s << u"D"_s;
        QTest::addRow("EInterval") << u"EInterval"_s << u"D"_s;
        QTest::addRow("NextScheduledCount") << u"NextScheduledCount"_s << u"H"_s;
    }
    void valuesThatAreNoNumbersOrDatesAreReported()
    {
        QFETCH(QString, column);
        QFETCH(QString, period);
        TestInstallation& t = *m_shared;
        if (t.session().dialect().engine() != SqlDialect::Engine::SQLite) {
            QSKIP("PostgreSQL's typed columns refuse such values");
        }
        ScheduleData data(t.session());
        QVERIFY2(data.addMachine(), qPrintable(data.error()));
        Schedule s;
        s.period = period;
        const qint64 id = data.addService(s);
        QVERIFY2(id > 0, qPrintable(data.error()));
        QVERIFY2(data.run(u"UPDATE tblServiceUsed SET %1 = ? WHERE ServiceUsedID = ?"_s.arg(column),
                          {u"soon"_s, id}),
                 qPrintable(data.error()));
        const QString before = data.snapshot(id);

        QCOMPARE(NextDateCalculator(t.session()).nextScheduledDate(id), Today);
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure failure = t.failures().failures().constFirst();
        QCOMPARE(failure.procedure, u"GetNextScheduledDate"_s);
        QCOMPARE(failure.number, qint64(13));
        QVERIFY2(failure.description.contains(column) && failure.description.contains(u"soon"_s),
                 qPrintable(failure.description));
        QCOMPARE(data.snapshot(id), before);
    }

private:
    std::unique_ptr<TestInstallation> m_shared;
};

QTEST_GUILESS_MAIN(TestNextDateCalculator)
#include "tst_nextdatecalculator.moc"
