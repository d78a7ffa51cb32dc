#include "Options.h"
#include "ServiceTime.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"
#include "WorkOrderRecording.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

using namespace Qt::StringLiterals;
using Edit = WorkOrderRecording::Edit;

namespace {

bool run(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql, values);
}

/** Each row as its values joined by '|'. */
QStringList rows(Session& s, const QString& sql)
{
    QSqlQuery q(s.db());
    QStringList result;
    Sql::exec(q, sql);
    while (q.next()) {
        QStringList values;
        for (int i = 0; i < q.record().count(); ++i) {
            values.append(q.isNull(i) ? QString() : q.value(i).toString());
        }
        result.append(values.join(u'|'));
    }
    return result;
}

/**
 * Order 1 on machine 7 (hours read 100): line 1 Oil (hours, 2 h budgeted, part F-1),
 * line 2 Belt (part B-1), line 3 Wash skipped (part W-1). Order 2 with line 4 (part X-1).
 * Crew 1 costs 25 an hour.
 */
bool addOrders(Session& s)
{
    return run(s, u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (1, 1)"_s) &&
           run(s, u"INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, Inactive, "
                  "IncludeWoList) VALUES ('a', 1, 20, '0', '1'), ('b', 1, 30, '0', '1')"_s) &&
           run(s, u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID, Printed) VALUES "
                  "(1, 7, 0), (2, 7, 0)"_s) &&
           run(s, u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, ServiceUsedID, "
                  "EquipmentID, Name, Period, LaborEstimate, CrewID, Skip, Note) VALUES "
                  "(1, 1, 0, 7, 'Oil', 'H', 2, 0, NULL, NULL), (2, 1, 0, 7, 'Belt', 'M', 1, 1, 0, "
                  "NULL), (3, 1, 0, 7, 'Wash', 'M', 1, 1, -1, 'rain'), "
                  "(4, 2, 0, 7, 'Tyre', 'M', 1, 1, 0, NULL)"_s) &&
           run(s, u"INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, QuantityRequired, "
                  "QuantityUsed, Price, Used) VALUES (1, 'F-1', 2, 2, 5, 0), (2, 'B-1', 1, 1, 9, "
                  "0), (3, 'W-1', 1, 1, 1, 0), (4, 'X-1', 1, 1, 1, 0)"_s) &&
           run(s, u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                  "CountValue) VALUES (7, '2025-01-01', 'Hours', 100)"_s);
}

/** Per line: Completed|Skip|Note|the line's parts Used|QuantityUsed. */
QStringList lineStates(Session& s)
{
    return rows(s, u"SELECT l.Completed, l.Skip, l.Note, p.Used, p.QuantityUsed FROM "
                   "tblWoServiceUsed l JOIN tblWoPartUsed p ON p.ServiceUsedID = "
                   "l.NserviceUsedID ORDER BY l.NserviceUsedID"_s);
}

QStringList headers(Session& s)
{
    return rows(s, u"SELECT Complete, CompletedDate FROM tblWorkorder ORDER BY WorkOrderNo"_s);
}

} // namespace

class TestWorkOrderRecording : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void timeEntry_data()
    {
        QTest::addColumn<QTime>("start");
        QTest::addColumn<QTime>("end");
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected"); // start end hours as the boxes show them, message
        const int start = int(ServiceTime::Box::Start), end = int(ServiceTime::Box::End);
        QTest::addRow("end after start")
            << QTime(8, 0) << QTime(0, 0) << end << u"5:30p"_s << u"08:00A 05:30P 09:30A"_s;
        QTest::addRow("padded, mark A by default")
            << QTime(0, 0) << QTime(0, 0) << start << u"9:5"_s << u"09:05A 09:05A 09:05A"_s;
        QTest::addRow("start after end copied; hours before the copy")
            << QTime(8, 0) << QTime(12, 0) << start << u"05:00P"_s << u"05:00P 05:00P 05:00A"_s;
        QTest::addRow("end before start copied")
            << QTime(17, 0) << QTime(0, 0) << end << u"8:00 AM"_s << u"08:00A 08:00A 09:00A"_s;
        QTest::addRow("midnight is never copied")
            << QTime(8, 0) << QTime(9, 0) << end << u"12:00A"_s << u"08:00A 12:00A 08:00A"_s;
        QTest::addRow("blank hour resets the start")
            << QTime(9, 0) << QTime(10, 0) << start << u":30"_s
            << u"08:00A 10:00A 02:00A Invalid Time"_s;
        QTest::addRow("no time resets the end") << QTime(9, 0) << QTime(10, 0) << end << u"13:00"_s
                                                << u"09:00A 12:00A 09:00A Invalid Time"_s;
    }
    void timeEntry()
    {
        QFETCH(QTime, start);
        QFETCH(QTime, end);
        QFETCH(int, box);
        QFETCH(QString, typed);
        const ServiceTime::Leave left =
            ServiceTime::leave({start, end, {}}, ServiceTime::Box(box), typed);
        const ServiceTime::Entry& e = left.entry;
        QStringList shown = {ServiceTime::display(e.start), ServiceTime::display(e.end),
                             ServiceTime::display(e.hours), left.message};
        QTEST(shown.join(u' ').trimmed(), "expected");
    }

    void completedDateRule_data()
    {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<bool>("allowed");
        QTest::addRow("49 years back") << QDate(1976, 3, 1) << true;
        QTest::addRow("just 50 years back") << QDate(1975, 3, 1) << true;
        QTest::addRow("51 years back") << QDate(1974, 3, 1) << false;
        QTest::addRow("a future date") << QDate(2030, 1, 1) << true;
        QTest::addRow("no date") << QDate() << true;
    }
    void completedDateRule()
    {
        QFETCH(QDate, date);
        QTEST(WorkOrderRecording::completedDateAllowed(date, {2025, 3, 1}), "allowed");
    }

    void lateness_data()
    {
        QTest::addColumn<QString>("red");
        QTest::addColumn<QString>("yellow");
        QTest::addColumn<QList<int>>("daysDue");
        QTest::addColumn<bool>("late");
        QTest::addRow("two lines due long enough") << u"10"_s << u"5"_s << QList{5, 6} << true;
        QTest::addRow("one late line alone") << u"10"_s << u"5"_s << QList{30, 0} << false;
        QTest::addRow("the smaller option counts") << u"3"_s << u"10"_s << QList{3, 4} << true;
        QTest::addRow("one day short") << u"5"_s << u"5"_s << QList{5, 4} << false;
        QTest::addRow("a blank option turns it off")
            << QString() << u"5"_s << QList{30, 30} << false;
    }
    void lateness()
    {
        QFETCH(QString, red);
        QFETCH(QString, yellow);
        QFETCH(QList<int>, daysDue);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Options::setOption(s, u"SERVICE_LATE_RED"_s, red);
        Options::setOption(s, u"SERVICE_LATE_YELLOW"_s, yellow);
        QVERIFY(
            run(s, u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID) VALUES (1, 7), (2, 7)"_s));
        for (int days : daysDue) {
            QVERIFY(run(
                s, u"INSERT INTO tblWoServiceUsed (WorkOrderNo, NextScheduledDate) VALUES (2, ?)"_s,
                {SqlValue::date(s.today().addDays(-days))}));
        }
        const QList<WorkOrderRecording::Order> orders = WorkOrderRecording(s).openOrders();
        QCOMPARE(orders.first().workOrderNo, 2); // newest first
        QTEST(orders.first().late, "late");
    }

    void orderIsCompletedAndClearedWithItsLines()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addOrders(s));
        WorkOrderRecording r(s);
        QCOMPARE(r.setComplete(1, true), Edit::Stored);
        QCOMPARE(headers(s), QStringList({u"-1|2025-03-01"_s, u"0|"_s}));
        // The skipped line keeps its state; the other order is not touched.
        QCOMPARE(lineStates(s),
                 QStringList({u"-1|||-1|2"_s, u"-1|0||-1|1"_s, u"0|-1|rain|0|1"_s, u"0|0||0|1"_s}));
        QCOMPARE(r.setCompletedDate(1, {2025, 3, 1}), Edit::Unchanged);
        QCOMPARE(r.setCompletedDate(1, {1974, 3, 1}), Edit::Refused);
        QCOMPARE(t.prompter().texts(),
                 QStringList(u"Complete date cann't less than to 50 year of Current Date."_s));
        QCOMPARE(headers(s).first(), u"-1|2025-03-01"_s);
        QCOMPARE(r.setCompletedDate(1, QDate()), Edit::Stored);
        QCOMPARE(headers(s).first(), u"0|"_s);
        QCOMPARE(lineStates(s),
                 QStringList({u"0|||0|2"_s, u"0|0||0|1"_s, u"0|-1|rain|0|1"_s, u"0|0||0|1"_s}));
        QVERIFY(r.updateWorkorder(2, {2025, 2, 1}, WorkOrderRecording::Reach::HeaderOnly));
        QCOMPARE(headers(s).last(), u"-1|2025-02-01"_s);
        QCOMPARE(lineStates(s).last(), u"0|0||0|1"_s);
    }

    void completedAndSkipExcludeEachOther_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("line"); // line 1 as lineStates shows it
        QTest::addRow("tick") << u"complete"_s << u"-1|0||-1|2"_s;
        QTest::addRow("untick") << u"complete uncomplete"_s << u"0|0||0|2"_s;
        QTest::addRow("skip a done line") << u"complete skip"_s << u"0|-1|worn|0|2"_s;
        QTest::addRow("tick a skipped line") << u"skip complete"_s << u"-1|0|worn|-1|2"_s;
        QTest::addRow("unskip leaves it open") << u"skip unskip"_s << u"0|0|worn|0|2"_s;
        QTest::addRow("blank reason changes nothing") << u"blank"_s << u"0|||0|2"_s;
    }
    void completedAndSkipExcludeEachOther()
    {
        QFETCH(QString, steps);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addOrders(s));
        WorkOrderRecording r(s);
        const bool blank = steps == u"blank"_s;
        for (const QString& step : steps.split(u' ')) {
            const Edit edit = step == u"complete"_s     ? r.setLineCompleted(1, true)
                              : step == u"uncomplete"_s ? r.setLineCompleted(1, false)
                              : step == u"skip"_s       ? r.skipLine(1, u"worn"_s)
                              : step == u"unskip"_s     ? r.unskipLine(1)
                                                        : r.skipLine(1, u"  "_s);
            QCOMPARE(edit, blank ? Edit::Refused : Edit::Stored);
        }
        QTEST(lineStates(s).first(), "line");
        // The first line ticked or skipped completes the order alone; the others stay open.
        QCOMPARE(headers(s).first(), blank ? u"0|"_s : u"-1|2025-03-01"_s);
        QCOMPARE(lineStates(s).at(1), u"0|0||0|1"_s);
    }

    void skippedLineNeedsANote_data()
    {
        QTest::addColumn<int>("lineId");
        QTest::addColumn<QString>("note");
        QTest::addColumn<bool>("stored");
        QTest::addRow("skipped, blank") << 3 << u" "_s << false;
        QTest::addRow("skipped, with a quote") << 3 << u"O'Neil's"_s << true;
        QTest::addRow("not skipped, blank") << 2 << QString() << true;
    }
    void skippedLineNeedsANote()
    {
        QFETCH(int, lineId);
        QFETCH(QString, note);
        QFETCH(bool, stored);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addOrders(t.session()));
        WorkOrderRecording r(t.session());
        QCOMPARE(r.setNote(lineId, note), stored ? Edit::Stored : Edit::Refused);
        QCOMPARE(r.line(lineId)->note, stored ? note : (lineId == 3 ? u"rain"_s : QString()));
        QCOMPARE(t.prompter().texts(),
                 stored ? QStringList()
                        : QStringList(u"Note Field Cann't left blank. When Service has Skiped."_s));
        QVERIFY(stored || t.prompter().shown().first().icon == Prompter::Icon::Critical);
    }

    void countCrewPartsAndSkipAll()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addOrders(s));
        WorkOrderRecording r(s);
        t.prompter().queueAnswer(Prompter::Answer::No);
        QCOMPARE(r.setLineCount(1, 99), Edit::Refused);
        QCOMPARE(
            t.prompter().texts(),
            QStringList(
                u"Enter count is smaller than previous count(100). Do you want to continue ?"_s));
        t.prompter().queueAnswer(Prompter::Answer::Yes);
        QCOMPARE(r.setLineCount(1, 99), Edit::Stored);
        QCOMPARE(r.line(1)->countValue.toLongLong(), 99);
        QCOMPARE(r.setLineCount(1, 100), Edit::Stored); // not below: no question
        QCOMPARE(t.prompter().texts().size(), 2);

        QCOMPARE(r.setLineCrew(1, 1), Edit::Stored);
        QCOMPARE(r.line(1)->costEstimate, 50.0); // 2 hours at 25

        QCOMPARE(r.setPartUsed(1, u"F-1"_s, true), Edit::Refused); // line not done
        QCOMPARE(r.setPartQuantityUsed(1, u"F-1"_s, u"2"_s), Edit::Unchanged);
        QCOMPARE(r.setPartQuantityUsed(1, u"F-1"_s, QString()), Edit::Stored);
        QCOMPARE(r.setPartPrice(1, u"F-1"_s, 7.5), Edit::Stored);
        QCOMPARE(r.setLineCompleted(1, true), Edit::Stored);
        QCOMPARE(r.setPartUsed(1, u"F-1"_s, false), Edit::Stored);
        QCOMPARE(
            rows(s, u"SELECT Used, QuantityUsed, Price FROM tblWoPartUsed WHERE PartID = 'F-1'"_s),
            QStringList(u"0|0|7.5"_s));

        QCOMPARE(r.skipAll(1, u"flood"_s), Edit::Stored);
        QCOMPARE(lineStates(s), QStringList({u"0|-1|flood|0|0"_s, u"0|-1|flood|0|1"_s,
                                             u"0|-1|flood|0|1"_s, u"0|0||0|1"_s}));
    }

    void timesReplaceTheBudgetedCost()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addOrders(s));
        QVERIFY(ServiceTime::save(s, 2, QString(), {QTime(8, 0), QTime(17, 30), QTime(9, 30)}));
        QCOMPARE(rows(s, u"SELECT StartTime, EndTime, Workhrs, CostEstimate FROM tblWoServiceUsed "
                         "WHERE NserviceUsedID = 2"_s),
                 QStringList(u"08:00|17:30|09:30|237.5"_s));
        QCOMPARE(WorkOrderRecording(s).line(2)->workHours, QTime(9, 30));
        QVERIFY(!ServiceTime::save(s, 2, u"tblServiceUsed"_s, {}));
        QCOMPARE(t.failures().failures().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderRecording)
#include "tst_workorderrecording.moc"
