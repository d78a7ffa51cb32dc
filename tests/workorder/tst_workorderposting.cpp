#include "Sql.h"
#include "TestInstallation.h"
#include "WorkOrderPosting.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** Every row of a query, columns joined by ',', rows by '|'; NULL shows as empty. */
QString dump(Session& s, const QString& sql)
{
    QSqlQuery q(s.db());
    QStringList rows;
    for (Sql::exec(q, sql); q.next();) {
        QStringList cells;
        for (int i = 0; i < q.record().count(); ++i) {
            cells.append(q.isNull(i) ? QString() : q.value(i).toString());
        }
        rows.append(cells.join(u','));
    }
    return rows.join(u'|');
}

bool run(Session& s, const QString& sql)
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql);
}

/**
 * Order 100 (machine 1, done 2025-02-20): line 11 done on schedule 1
 * (W, 30 days) with P1 x2 and untracked P2 x1 used; line 12 skipped on schedule 2 (S,
 * 10 days from 2025-01-01) with P1 x3 not used; line 13 done on schedule 3 (D); line 14
 * open. Order 200: an hour line without its count; schedule 5 on the same machine waits
 * for 600 hours. Order 300: a master-list line using P1 x4. P1 starts at 10, P2 at 5.
 */
bool addFleet(Session& s)
{
    const QString every = u"'1', "_s.repeated(24);
    return run(s, u"INSERT INTO tblCrew (CrewID, CrewNumber, Description) VALUES (1, 11, 'N')"_s) &&
           run(s, u"INSERT INTO tblCostCenter (CostCenterID, Description) VALUES (1, 'Parks')"_s) &&
           run(s, u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (1, 'Acme')"_s) &&
           run(s, u"INSERT INTO tblIndicator (ItemID, ItemName) VALUES (9001, 'Filters')"_s) &&
           run(s,
               u"INSERT INTO tblPart (PartID, PartCategoryID, Description, Quantity, "
               "TrackInventory) VALUES ('P1', 9001, 'Filter', 10, 0), ('P2', 0, 'Rag', 5, -1)"_s) &&
           run(s, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, Period, "
                  "EInterval, RenewalOn, NextScheduledDate, NextScheduledCount, Mon, Tue, Wed, "
                  "Thu, Fri, Sat, Sun, FirstW, SecondW, ThirdW, ForthW, LastW, Jan, Feb, Mar, "
                  "Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece, Dom) VALUES "
                  "(1, 1, 'Oil', 'D', 30, 'W', '2025-02-15', 0, %1'0'), "
                  "(2, 1, 'Blades', 'D', 10, 'S', '2025-01-01', 0, %1'0'), "
                  "(3, 1, 'Inspect', 'D', 10, 'D', '2025-02-01', 0, %1'0'), "
                  "(4, 2, 'Hours', 'H', 100, 'W', '2025-02-18', 500, %1'0'), "
                  "(5, 2, 'Grease', 'H', 50, 'W', NULL, 600, %1'0')"_s.arg(every)) &&
           run(s, u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID, Complete, CompletedDate, "
                  "WoDate) VALUES (100, 1, -1, '2025-02-20', '2025-02-10'), "
                  "(200, 2, -1, '2025-02-20', '2025-02-10'), (300, 2, -1, '2025-02-21', "
                  "'2025-02-11')"_s) &&
           run(s, u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, ServiceUsedID, "
                  "EquipmentID, Name, Period, NextScheduledDate, Completed, Skip, SeparateWo) "
                  "VALUES (11, 100, 1, 1, 'Oil', 'D', '2025-02-15', -1, 0, '0'), (12, 100, 2, 1, "
                  "'Blades', 'D', '2025-01-01', 0, -1, '1'), (13, 100, 3, 1, 'Inspect', 'D', "
                  "'2025-02-01', -1, NULL, '0'), (14, 100, 0, 1, 'Open', 'D', NULL, 0, 0, '0'), "
                  "(21, 200, 4, 2, 'Hours', 'H', '2025-02-18', -1, 0, '0'), (31, 300, 0, 2, "
                  "'Wash', 'D', NULL, -1, 0, '0')"_s) &&
           run(s, u"UPDATE tblWoServiceUsed SET CrewID = 1, CostCenterID = 1, SupplierID = 1, "
                  "StartTime = '08:30', JobNo = 'J1' WHERE NserviceUsedID = 11"_s) &&
           run(s, u"INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, QuantityRequired, "
                  "QuantityUsed, Price, Used, SupplierID) VALUES (11, 'P1', 2, 2, 1.5, -1, 1), "
                  "(11, 'p2', 1, 1, 2, -1, 0), (12, 'P1', 3, 3, 1.5, 0, 0), "
                  "(31, 'P1', 4, 4, 1.5, -1, 0)"_s);
}

const QString ScheduleDump = u"SELECT ServiceUsedID, LastDateScheduled, LastDatePerformed, "
                             "NextScheduledDate, NextScheduledCount, Inactive FROM tblServiceUsed "
                             "ORDER BY ServiceUsedID"_s;

} // namespace

/** Posting work orders: history, schedules, readings, stock and what stays open. */
class TestWorkOrderPosting : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void postsDoneAndSkippedLinesAndHoldsBackMissingCounts()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        WorkOrderPosting posting(s);
        QList<qint64> asked; // schedule, completed day, proposed day
        posting.setDateConfirmation([&asked](qint64 id, const QDate& done, const QDate& proposed) {
            asked << id << done.day() << proposed.day();
            return QDate(2025, 4, 1);
        });

        const WorkOrderPosting::Outcome outcome = posting.postCompleteWorkOrders();
        QCOMPARE(outcome.posted, (QList<qint64>{100, 300}));
        QCOMPARE(outcome.heldBack, QList<qint64>{200});
        // S from 2025-01-01 stays behind the completion: told and asked once.
        QCOMPARE(asked, (QList<qint64>{2, 20, 11}));
        QCOMPARE(t.prompter().texts(),
                 (QStringList{u"You have chosen to reschedule this services based on the scheduled "
                              "date \nrather then on the completed date and the new date is "
                              "already older then\nthe completed date."_s,
                              u"Following Work Orders (200) aren't posted. Enter counts for "
                              "these Work Orders."_s}));
        // The held-back order stays Complete; 100 keeps its open line and is open again.
        QCOMPARE(dump(s, u"SELECT WorkOrderNo, Complete, CompletedDate FROM tblWorkorder "
                         "ORDER BY 1"_s),
                 u"100,0,|200,-1,2025-02-20"_s);
        QCOMPARE(dump(s, u"SELECT NserviceUsedID FROM tblWoServiceUsed ORDER BY 1"_s), u"14|21"_s);
        QCOMPARE(dump(s, u"SELECT * FROM tblWOServiceUsedHistory ORDER BY ServiceUsedID"_s),
                 u"100,11,1,,Oil,1,11,,,2025-02-15,Parks,0,,,,D,J1,,0,08:30,,,1,Acme,2025-02-10,"
                 "2025-02-20|100,12,1,,Blades,,,,,2025-01-01,,1,,,,D,,,-1,,,,,,2025-02-10,"
                 "2025-02-20|100,13,1,,Inspect,,,,,2025-02-01,,0,,,,D,,,0,,,,,,2025-02-10,"
                 "2025-02-20|300,31,2,,Wash,,,,,,,0,,,,D,,,0,,,,,,2025-02-11,2025-02-21"_s);
        // Not used is 0; P1 on two lines ends at 10 less the last line's 4; P2 is untracked.
        QCOMPARE(dump(s, u"SELECT ServiceusedID, PartID, Description, PartCategoryID, SupplierID, "
                         "QuantityUsed FROM tblWoPartHistory ORDER BY 1, 2"_s),
                 u"11,P1,Filter,Filters,Acme,2|11,p2,Rag,,,1|12,P1,Filter,Filters,,0|"
                 "31,P1,Filter,Filters,,4"_s);
        QCOMPARE(dump(s, u"SELECT PartID, Quantity FROM tblPart ORDER BY 1"_s), u"P1,6|P2,5"_s);
        // W counts 30 days from completion, S takes the confirmed date, D retires unmoved.
        QCOMPARE(dump(s, ScheduleDump),
                 u"1,2025-02-15,2025-02-20,2025-03-22,0,0|2,2025-01-01,2025-02-20,2025-04-01,0,0|"
                 "3,2025-02-01,2025-02-20,2025-02-01,0,1|4,,,2025-02-18,500,0|5,,,,600,0"_s);

        // With its count the meter line posts: a reading, the trigger on from 620, no date;
        // the reading dates no other service until one is entered.
        QVERIFY(
            run(s, u"UPDATE tblWoServiceUsed SET CountValue = 620 WHERE NserviceUsedID = 21"_s));
        QCOMPARE(posting.postWorkOrders({200, 999}).posted, QList<qint64>{200});
        QCOMPARE(dump(s, u"SELECT * FROM tblEquipmentCount"_s), u"2,2025-02-20,Hours,620"_s);
        QCOMPARE(dump(s, u"SELECT LastDatePerformed, NextScheduledDate, NextScheduledCount FROM "
                         "tblServiceUsed WHERE ServiceUsedID IN (4, 5) ORDER BY ServiceUsedID"_s),
                 u"2025-02-20,,720|,,600"_s);
    }

    void nothingToPostABadDateAndAFailureKeepEverything()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(WorkOrderPosting(s).postCompleteWorkOrders().ok);
        QCOMPARE(t.prompter().texts(), QStringList{u"No Work Order is selected to post"_s});
        const QDate done(2025, 2, 20);
        QCOMPARE(WorkOrderPosting::checkNextScheduled(done, done.addDays(-1)).date, done);
        QCOMPARE(WorkOrderPosting::checkNextScheduled(done, done.addDays(-1)).refusal,
                 u"Next Scheduled Date cann't be Less than to Complete Date"_s);

        QVERIFY(addFleet(s));
        const auto state = [&s] {
            return dump(s, ScheduleDump) + dump(s, u"SELECT * FROM tblWorkorder ORDER BY 1"_s) +
                   dump(s, u"SELECT * FROM tblWoServiceUsed, tblPart ORDER BY 1, 25"_s) +
                   dump(s, u"SELECT COUNT(*) FROM tblWOServiceUsedHistory"_s);
        };
        const QString before = state();
        // The parts' history is written last, after every line and schedule.
        QVERIFY(run(s, u"DROP TABLE tblWoPartHistory"_s));
        QVERIFY(!WorkOrderPosting(s).postCompleteWorkOrders().ok);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(state(), before);
        QVERIFY(!s.transactionOpen());
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderPosting)
#include "tst_workorderposting.moc"
