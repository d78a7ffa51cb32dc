#include "LabourCost.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QSqlQuery>
#include <QTest>

namespace {

struct Member
{
    QVariant cost; // null: no cost entered
    bool inactive;
    bool onWorkOrderList;
};

/** A table of estimate lines and its key column. */
struct Lines
{
    const char* table;
    const char* key;
};
const Lines Used{"tblServiceUsed", "ServiceUsedID"};
const Lines WorkOrder{"tblWoServiceUsed", "NserviceUsedID"};
const Lines Services{"tblServices", "ServiceID"};

bool addEmployee(Session& session, const QString& id, qint64 crewId, const Member& member)
{
    QSqlQuery q(session.db());
    return Sql::exec(q,
                     QStringLiteral("INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, "
                                    "Inactive, IncludeWoList) VALUES (?, ?, ?, ?, ?)"),
                     {id, crewId, member.cost, SqlValue::flag(member.inactive),
                      SqlValue::flag(member.onWorkOrderList)});
}

bool addCrew(Session& session, qint64 crewId)
{
    QSqlQuery q(session.db());
    return Sql::exec(
        q, QStringLiteral("INSERT INTO tblCrew (CrewID, CrewNumber, Description) VALUES (?, ?, ?)"),
        {crewId, crewId * 10, QStringLiteral("Crew")});
}

/** Adds a line with a labour estimate and a hand-set cost estimate; answers its key. */
qint64 addLine(Session& session, Lines lines, qint64 crewId, double labour, double cost)
{
    QSqlQuery q(session.db());
    const QString sql = QStringLiteral("INSERT INTO %1 (CrewID, LaborEstimate, CostEstimate) "
                                       "VALUES (?, ?, ?) RETURNING %2")
                            .arg(QLatin1String(lines.table), QLatin1String(lines.key));
    return Sql::exec(q, sql, {crewId, labour, cost}) && q.next() ? q.value(0).toLongLong() : 0;
}

double costEstimate(Session& session, Lines lines, qint64 id)
{
    QSqlQuery q(session.db());
    const QString sql = QStringLiteral("SELECT CostEstimate FROM %1 WHERE %2 = ?")
                            .arg(QLatin1String(lines.table), QLatin1String(lines.key));
    return Sql::exec(q, sql, {id}) && q.next() ? q.value(0).toDouble() : -1;
}

} // namespace

Q_DECLARE_METATYPE(QList<Member>)

class TestLabourCost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void averageOfActiveMembersOnTheList_data()
    {
        QTest::addColumn<QList<Member>>("members");
        QTest::addColumn<double>("expected");
        const Member counted10{10.0, false, true};
        QTest::addRow("no members") << QList<Member>{} << 0.0;
        QTest::addRow("one member") << QList<Member>{{12.5, false, true}} << 12.5;
        QTest::addRow("two members") << QList<Member>{counted10, {20.0, false, true}} << 15.0;
        QTest::addRow("inactive left out") << QList<Member>{counted10, {100.0, true, true}} << 10.0;
        QTest::addRow("off the work order list left out")
            << QList<Member>{counted10, {100.0, false, false}} << 10.0;
        QTest::addRow("only members who do not count") << QList<Member>{{30.0, true, false}} << 0.0;
        QTest::addRow("rounded to cents")
            << QList<Member>{counted10, counted10, {10.01, false, true}} << 10.0;
        QTest::addRow("rounded up to cents")
            << QList<Member>{counted10, {10.02, false, true}, {10.02, false, true}} << 10.01;
        QTest::addRow("member without a cost still counts")
            << QList<Member>{{20.0, false, true}, {QVariant(), false, true}} << 10.0;
        QTest::addRow("all without a cost") << QList<Member>{{QVariant(), false, true}} << 0.0;
    }

    void averageOfActiveMembersOnTheList()
    {
        QFETCH(QList<Member>, members);
        QFETCH(double, expected);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addCrew(t.session(), 1) && addCrew(t.session(), 2));
        QVERIFY(addEmployee(t.session(), QStringLiteral("OTHER"), 2, {99.0, false, true}));
        for (int i = 0; i < members.size(); ++i) {
            QVERIFY(addEmployee(t.session(), QStringLiteral("E%1").arg(i), 1, members[i]));
        }
        QCOMPARE(LabourCost::laborCost(t.session(), 1), expected);
        QVERIFY(t.failures().isEmpty());
    }

    void estimatesOfTheCrewFollowItsAverage()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addCrew(s, 1) && addCrew(s, 2) && addCrew(s, 3));
        QVERIFY(addEmployee(s, QStringLiteral("A"), 1, {20.0, false, true}));
        QVERIFY(addEmployee(s, QStringLiteral("B"), 1, {30.0, false, true}));
        QVERIFY(addEmployee(s, QStringLiteral("C"), 2, {40.0, false, true}));
        QVERIFY(addEmployee(s, QStringLiteral("D"), 3, {25.0, true, true}));
        const qint64 handEdited = addLine(s, Used, 1, 2.0, 999.0);
        const qint64 otherCrew = addLine(s, Used, 2, 2.0, 7.0);
        const qint64 openLine = addLine(s, WorkOrder, 1, 1.5, 0.0);
        const qint64 nobodyCounts = addLine(s, Used, 3, 4.0, 100.0);
        QSqlQuery q(s.db());
        QVERIFY(Sql::exec(q, QStringLiteral("INSERT INTO tblServices (ServiceID, CrewID, "
                                            "LaborEstimate, CostEstimate) VALUES (1, 1, 2, 5)")));

        QVERIFY(LabourCost::changeServiceLabourEstimate(s, 1));
        QVERIFY(LabourCost::changeServiceLabourEstimate(s, 3));

        QCOMPARE(costEstimate(s, Used, handEdited), 50.0);
        QCOMPARE(costEstimate(s, WorkOrder, openLine), 37.5);
        QCOMPARE(costEstimate(s, Used, otherCrew), 7.0);
        QCOMPARE(costEstimate(s, Services, 1), 5.0); // the master service keeps its own
        QCOMPARE(costEstimate(s, Used, nobodyCounts), 0.0);
        QVERIFY(!s.transactionOpen());
        QVERIFY(t.failures().isEmpty());
    }

    void changeInsideAnOpenTransactionGoesWithIt()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addCrew(s, 1));
        QVERIFY(addEmployee(s, QStringLiteral("A"), 1, {10.0, false, true}));
        const qint64 id = addLine(s, Used, 1, 3.0, 1.0);
        {
            Transaction edit(s);
            QVERIFY(LabourCost::changeServiceLabourEstimate(s, 1));
            QVERIFY(s.transactionOpen());
            edit.rollback();
        }
        QCOMPARE(costEstimate(s, Used, id), 1.0);
    }

    void failureIsReportedAndLeavesNoTransaction()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, QStringLiteral("DROP TABLE tblWoServiceUsed")));
        QVERIFY(addCrew(t.session(), 1));
        const qint64 id = addLine(t.session(), Used, 1, 3.0, 1.0);
        QVERIFY(!LabourCost::changeServiceLabourEstimate(t.session(), 1));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].procedure,
                 QStringLiteral("ChangeServiceLabourEstimate"));
        QVERIFY(!t.session().transactionOpen());
        // Both tables change together or neither does.
        QCOMPARE(costEstimate(t.session(), Used, id), 1.0);
    }
};

QTEST_GUILESS_MAIN(TestLabourCost)
#include "tst_labourcost.moc"
