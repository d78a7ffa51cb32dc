#include "Sql.h"
#include "TestInstallation.h"
#include "WorkOrderPosting.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** Every row of a query, columns joined by ',', rows by '|'; NULL shows as empty. */
QString dump(Session& s, const QString& sql)
{
    QSqlQuery q(s.db());
    if (!Sql::exec(q, sql)) {
        return q.lastError().text();
    }
    QStringList rows;
    while (q.next()) {
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
    return Sql::exec(q, sql) || (qWarning("%s", qPrintable(q.lastError().text())), false);
}

/**
 * Machines 1 and 2. Order 100 (machine 1, done 2025-02-20): line 11 done on schedule 1
 * (W, 30 days) with P1 x2 and untracked P2 x1 used; line 12 skipped on schedule 2 (S,
 * 10 days from 2025-01-01) with P1 x3 not used; line 13 done on schedule 3 (D); line 14
 * open. Order 200: an hour line without its count. Order 300: a master-list line using
 * P1 x4. Order 400 is open. P1 starts at 10, P2 at 5.
 */
bool addFleet(Session& s)
{
    const QString every = u"'1', "_s.repeated(24);
    return run(s, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, Inactive) "
                  "VALUES (1, 'Mower', 'U-1', '0'), (2, 'Truck', 'U-2', '0')"_s) &&
           run(s, u"INSERT INTO tblCrew (CrewID, CrewNumber, Description) VALUES (1, 11, 'N')"_s) &&
           run(s, u"INSERT INTO tblCostCenter (CostCenterID, Description) VALUES (1, 'Parks')"_s) &&
           run(s, u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (1, 'Acme')"_s) &&
           run(s, u"INSERT INTO tblIndicator (ItemID, ParentId, ItemName) VALUES (9001, 10, "
                  "'Filters')"_s) &&
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
                  "(4, 2, 'Hours', 'H', 100, 'W', '2025-02-18', 500, %1'0')"_s.arg(every)) &&
           run(s, u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID, Complete, CompletedDate, "
                  "WoDate) VALUES (100, 1, -1, '2025-02-20', '2025-02-10'), "
                  "(200, 2, -1, '2025-02-20', '2025-02-10'), (300, 2, -1, '2025-02-21', "
                  "'2025-02-11'), (400, 2, 0, NULL, '2025-02-11')"_s) &&
           run(s, u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, ServiceUsedID, "
                  "EquipmentID, Name, Period, CrewID, CostCenterID, SupplierID, SeparateWo, "
                  "NextScheduledDate, Completed, Skip, CountValue, StartTime, JobNo) VALUES "
                  "(11, 100, 1, 1, 'Oil', 'D', 1, 1, 1, '0', '2025-02-15', -1, 0, NULL, '08:30', "
                  "'J1'), (12, 100, 2, 1, 'Blades', 'D', 0, 0, 0, '1', '2025-01-01', 0, -1, NULL, "
                  "NULL, NULL), (13, 100, 3, 1, 'Inspect', 'D', 0, 0, 0, '0', '2025-02-01', -1, "
                  "NULL, NULL, NULL, NULL), (14, 100, 0, 1, 'Open', 'D', 0, 0, 0, '0', NULL, 0, "
                  "0, NULL, NULL, NULL), (21, 200, 4, 2, 'Hours', 'H', 0, 0, 0, '0', '2025-02-18', "
                  "-1, 0, NULL, NULL, NULL), (31, 300, 0, 2, 'Wash', 'D', 0, 0, 0, '0', NULL, -1, "
                  "0, NULL, NULL, NULL), (41, 400, 0, 2, 'Later', 'D', 0, 0, 0, '0', NULL, 0, 0, "
                  "NULL, NULL, NULL)"_s) &&
           run(s, u"INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, QuantityRequired, "
                  "QuantityUsed, Price, Used, SupplierID) VALUES (11, 'P1', 2, 2, 1.5, -1, 1), "
                  "(11, 'p2', 1, 1, 2, -1, 0), (12, 'P1', 3, 3, 1.5, 0, 0), "
                  "(31, 'P1', 4, 4, 1.5, -1, 0)"_s);
}

const QString ScheduleDump = u"SELECT ServiceUsedID, LastDateScheduled, LastDatePerformed, "
                             "NextScheduledDate, NextScheduledCount, Inactive FROM tblServiceUsed "
                             "ORDER BY ServiceUsedID"_s;

/** Everything a post may change, for a check that a failed one changed nothing. */
QString state(Session& s)
{
    QStringList parts{dump(s, ScheduleDump)};
    for (const QString& table :
         {u"tblWorkorder"_s, u"tblWoServiceUsed"_s, u"tblWoPartUsed"_s,
          u"tblWOServiceUsedHistory"_s, u"tblEquipmentCount"_s, u"tblPart"_s}) {
        parts.append(dump(s, u"SELECT * FROM %1 ORDER BY 1, 2"_s.arg(table)));
    }
    return parts.join(u'\n');
}

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
        QList<qint64> asked;
        posting.setDateConfirmation([&asked](qint64 id, const QDate& done, const QDate& proposed) {
            asked << id;
            return done == QDate(2025, 2, 20) && proposed == QDate(2025, 1, 11) ? QDate(2025, 4, 1)
                                                                                : QDate();
        });

        const WorkOrderPosting::Outcome outcome = posting.postCompleteWorkOrders();
        QVERIFY(outcome.ok);
        QCOMPARE(outcome.posted, (QList<qint64>{100, 300}));
        QCOMPARE(outcome.heldBack, QList<qint64>{200});
        // S from 2025-01-01 stays behind the completion: told and asked once.
        QCOMPARE(asked, QList<qint64>{2});
        QCOMPARE(t.prompter().texts(),
                 (QStringList{PostingMessages::ScheduleBehindCompletion,
                              u"Following Work Orders (200) aren't posted. Enter counts for "
                              "these Work Orders."_s}));
        // The held-back order stays Complete; 100 keeps its open line and is open again.
        QCOMPARE(dump(s, u"SELECT WorkOrderNo, Complete, CompletedDate FROM tblWorkorder "
                         "ORDER BY 1"_s),
                 u"100,0,|200,-1,2025-02-20|400,0,"_s);
        QCOMPARE(dump(s, u"SELECT NserviceUsedID FROM tblWoServiceUsed ORDER BY 1"_s),
                 u"14|21|41"_s);
        QCOMPARE(dump(s, u"SELECT * FROM tblWOServiceUsedHistory ORDER BY ServiceUsedID"_s),
                 u"100,11,1,,Oil,1,11,,,2025-02-15,Parks,0,,,,D,J1,,0,08:30,,,1,Acme,2025-02-10,"
                 "2025-02-20|100,12,1,,Blades,,,,,2025-01-01,,1,,,,D,,,-1,,,,,,2025-02-10,"
                 "2025-02-20|100,13,1,,Inspect,,,,,2025-02-01,,0,,,,D,,,0,,,,,,2025-02-10,"
                 "2025-02-20|300,31,2,,Wash,,,,,,,0,,,,D,,,0,,,,,,2025-02-11,2025-02-21"_s);
        // Not used is 0; P1 on two lines ends at 10 less the last line's 4; P2 is untracked.
        QCOMPARE(dump(s, u"SELECT ServiceusedID, PartID, Description, PartCategoryID, SupplierID, "
                         "QuantityUsed FROM tblWoPartHistory ORDER BY 1, 2"_s),
                 u"11,P1,Filter,Filters,1,2|11,p2,Rag,,0,1|12,P1,Filter,Filters,0,0|"
                 "31,P1,Filter,Filters,0,4"_s);
        QCOMPARE(dump(s, u"SELECT PartID, Quantity FROM tblPart ORDER BY 1"_s), u"P1,6|P2,5"_s);
        // W counts 30 days from completion, S takes the confirmed date, D retires unmoved.
        QCOMPARE(dump(s, ScheduleDump),
                 u"1,2025-02-15,2025-02-20,2025-03-22,0,0|2,2025-01-01,2025-02-20,2025-04-01,0,0|"
                 "3,2025-02-01,2025-02-20,2025-02-01,0,1|4,,,2025-02-18,500,0"_s);
        QCOMPARE(dump(s, u"SELECT COUNT(*) FROM tblEquipmentCount"_s), u"0"_s);
    }

    void meterLineStoresItsReadingAndMovesItsCount_data()
    {
        QTest::addColumn<QString>("renewalOn");
        QTest::addColumn<QString>("nextCount");
        QTest::newRow("from the count done") << u"W"_s << u"720"_s;
        QTest::newRow("from the old trigger") << u"S"_s << u"600"_s;
    }
    void meterLineStoresItsReadingAndMovesItsCount()
    {
        QFETCH(QString, renewalOn);
        QFETCH(QString, nextCount);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QVERIFY(
            run(s, u"UPDATE tblWoServiceUsed SET CountValue = 620 WHERE NserviceUsedID = 21"_s));
        QVERIFY(run(s, u"UPDATE tblServiceUsed SET RenewalOn = '%1' WHERE ServiceUsedID = 4"_s.arg(
                           renewalOn)));

        const WorkOrderPosting::Outcome outcome = WorkOrderPosting(s).postWorkOrders({200, 999});
        QVERIFY(outcome.ok);
        QCOMPARE(outcome.posted, QList<qint64>{200});
        QCOMPARE(dump(s, u"SELECT * FROM tblEquipmentCount"_s), u"2,2025-02-20,Hours,620"_s);
        QCOMPARE(dump(s, u"SELECT LastDatePerformed, NextScheduledDate, NextScheduledCount FROM "
                         "tblServiceUsed WHERE ServiceUsedID = 4"_s),
                 u"2025-02-20,,"_s + nextCount);
        // Orders not in the post are opened all the same.
        QCOMPARE(dump(s, u"SELECT COUNT(*) FROM tblWorkorder WHERE Complete = -1"_s), u"0"_s);
    }

    void failureKeepsNothing()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QVERIFY(
            run(s, u"UPDATE tblWoServiceUsed SET CountValue = 620 WHERE NserviceUsedID = 21"_s));
        const QString before = state(s);
        // The parts' history is written last, after every line and schedule.
        QVERIFY(run(s, u"DROP TABLE tblWoPartHistory"_s));
        QVERIFY(!WorkOrderPosting(s).postCompleteWorkOrders().ok);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(state(s), before);
        QVERIFY(!s.transactionOpen());
    }

    void nothingCompleteIsTold()
    {
        TANDRILL_INSTALLATION(t);
        const WorkOrderPosting::Outcome outcome =
            WorkOrderPosting(t.session()).postCompleteWorkOrders();
        QVERIFY(outcome.ok && outcome.posted.isEmpty());
        QCOMPARE(t.prompter().texts(), QStringList{u"No Work Order is selected to post"_s});
    }

    void chosenNextDateMayNotPrecedeCompletion_data()
    {
        QTest::addColumn<QDate>("chosen");
        QTest::addColumn<QDate>("kept");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("day before")
            << QDate(2025, 2, 19) << QDate(2025, 2, 20)
            << u"Next Scheduled Date cann't be Less than to Complete Date"_s;
        QTest::newRow("same day") << QDate(2025, 2, 20) << QDate(2025, 2, 20) << QString();
    }
    void chosenNextDateMayNotPrecedeCompletion()
    {
        QFETCH(QDate, chosen);
        QFETCH(QDate, kept);
        QFETCH(QString, refusal);
        const WorkOrderPosting::DateCheck check =
            WorkOrderPosting::checkNextScheduled(QDate(2025, 2, 20), chosen);
        QCOMPARE(check.date, kept);
        QCOMPARE(check.refusal, refusal);
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderPosting)
#include "tst_workorderposting.moc"
