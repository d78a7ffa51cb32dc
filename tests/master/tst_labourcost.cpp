#include "LabourCost.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool run(Session& session, const QString& sql)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, sql);
}

/**
 * Crew 1 has members costing 10 and 10.02, one without a cost, one inactive and one off the
 * work order list; crew 2 one member at 99; crew 3 only an inactive member off the list.
 */
bool addCrews(Session& session)
{
    return run(session,
               u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (1, 1), (2, 2), (3, 3)"_s) &&
           run(session,
               u"INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, Inactive, "
               "IncludeWoList) VALUES ('a', 1, 10, '0', '1'), ('b', 1, 10.02, '0', '1'), "
               "('c', 1, NULL, '0', '1'), ('d', 1, 100, '1', '1'), "
               "('e', 1, 100, '0', '0'), ('f', 2, 99, '0', '1'), ('g', 3, 30, '1', '0')"_s);
}

} // namespace

class TestLabourCost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void estimatesOfTheCrewFollowItsAverage()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addCrews(s));
        // Labour estimates 3 for crew 1 (hand-set cost 999), 2 for crew 2, 4 for crew 3.
        QVERIFY(run(s, u"INSERT INTO tblServiceUsed (CrewID, LaborEstimate, CostEstimate) "
                       "VALUES (1, 3, 999), (2, 2, 7), (3, 4, 100)"_s));
        QVERIFY(run(s, u"INSERT INTO tblWoServiceUsed (CrewID, LaborEstimate, CostEstimate) "
                       "VALUES (1, 2, 0)"_s));
        QVERIFY(run(s, u"INSERT INTO tblServices (ServiceID, CrewID, LaborEstimate, CostEstimate) "
                       "VALUES (1, 1, 2, 5)"_s));
        QVERIFY(LabourCost::changeServiceLabourEstimate(s, 1) &&
                LabourCost::changeServiceLabourEstimate(s, 3));

        // 20.02 over crew 1's three members, to the cent, nobody in crew 3; crew 2 is left as
        // it was, and the master service keeps its own estimate.
        QSqlQuery q(s.db());
        QVERIFY(Sql::exec(q, u"SELECT CrewID, CostEstimate FROM tblServiceUsed UNION ALL "
                             "SELECT CrewID + 10, CostEstimate FROM tblWoServiceUsed UNION ALL "
                             "SELECT CrewID + 20, CostEstimate FROM tblServices ORDER BY 1"_s));
        QStringList costs;
        while (q.next()) {
            costs.append(q.value(0).toString() + u':' + QString::number(q.value(1).toDouble()));
        }
        QCOMPARE(costs.join(u' '), u"1:20.01 2:7 3:0 11:13.34 21:5"_s);
        QVERIFY(t.failures().isEmpty());

        QVERIFY(run(s, u"DROP TABLE tblWoServiceUsed"_s));
        QVERIFY(!LabourCost::changeServiceLabourEstimate(s, 1));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].procedure, u"ChangeServiceLabourEstimate"_s);
    }
};

QTEST_GUILESS_MAIN(TestLabourCost)
#include "tst_labourcost.moc"
