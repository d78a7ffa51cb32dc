#include "LabourCost.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool run(Session& session, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(session.db());
    return Sql::exec(q, sql, values);
}

// Adds members: a cost or "-" for none, "i" when inactive, "x" when off the list.
bool addMembers(Session& session, qint64 crewId, const QString& members)
{
    static int made = 0;
    for (const QString& m : members.split(u' ', Qt::SkipEmptyParts)) {
        const QString cost = QString(m).remove(u'i').remove(u'x');
        if (!run(session,
                 u"INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, Inactive, IncludeWoList) "
                 "VALUES (?, ?, ?, ?, ?)"_s,
                 {u"E%1"_s.arg(++made), crewId,
                  cost == u"-"_s ? QVariant() : QVariant(cost.toDouble()),
                  SqlValue::flag(m.contains(u'i')), SqlValue::flag(!m.contains(u'x'))})) {
            return false;
        }
    }
    return true;
}

// Crews 1 to 3, crew 2 with a member who counts there only.
bool addCrews(Session& session)
{
    return run(session,
               u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (1, 1), (2, 2), (3, 3)"_s) &&
           addMembers(session, 2, u"99"_s);
}

// The cost estimates as "crew:cost", of services on equipment, then of work order lines,
// then of master services, each by crew.
QString costs(Session& session)
{
    QSqlQuery q(session.db());
    QStringList found;
    if (Sql::exec(q, u"SELECT 1, CrewID, CostEstimate FROM tblServiceUsed UNION ALL "
                     "SELECT 2, CrewID, CostEstimate FROM tblWoServiceUsed UNION ALL "
                     "SELECT 3, CrewID, CostEstimate FROM tblServices ORDER BY 1, 2"_s)) {
        while (q.next()) {
            found.append(q.value(1).toString() + u':' + QString::number(q.value(2).toDouble()));
        }
    }
    return found.join(u' ');
}

} // namespace

class TestLabourCost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void averageOfActiveMembersOnTheList_data()
    {
        QTest::addColumn<QString>("members");
        QTest::addColumn<double>("expected");
        QTest::addRow("two members") << u"10 20"_s << 15.0;
        QTest::addRow("inactive left out") << u"10 100i"_s << 10.0;
        QTest::addRow("off the list left out") << u"10 100x"_s << 10.0;
        QTest::addRow("nobody counts") << u"30ix"_s << 0.0;
        QTest::addRow("rounded to cents") << u"10 10 10.02"_s << 10.01;
        QTest::addRow("member without a cost counts") << u"20 -"_s << 10.0;
    }
    void averageOfActiveMembersOnTheList()
    {
        QFETCH(QString, members);
        QFETCH(double, expected);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addCrews(t.session()) && addMembers(t.session(), 1, members));
        QCOMPARE(LabourCost::laborCost(t.session(), 1), expected);
        QVERIFY(t.failures().isEmpty());
    }

    void estimatesOfTheCrewFollowItsAverage()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addCrews(s));
        QVERIFY(addMembers(s, 1, u"20 30"_s) && addMembers(s, 3, u"25i"_s));
        // Labour estimates 2 for crew 1 (hand-set cost 999), 2 for crew 2, 4 for crew 3.
        QVERIFY(run(s, u"INSERT INTO tblServiceUsed (CrewID, LaborEstimate, CostEstimate) "
                       "VALUES (1, 2, 999), (2, 2, 7), (3, 4, 100)"_s));
        QVERIFY(run(s, u"INSERT INTO tblWoServiceUsed (CrewID, LaborEstimate, CostEstimate) "
                       "VALUES (1, 1.5, 0)"_s));
        QVERIFY(run(s, u"INSERT INTO tblServices (ServiceID, CrewID, LaborEstimate, CostEstimate) "
                       "VALUES (1, 1, 2, 5)"_s));

        QVERIFY(LabourCost::changeServiceLabourEstimate(s, 1));
        QVERIFY(LabourCost::changeServiceLabourEstimate(s, 3));

        // Crew 2 is left as it was, and the master service keeps its own estimate.
        QCOMPARE(costs(s), u"1:50 2:7 3:0 1:37.5 1:5"_s);
        QVERIFY(t.failures().isEmpty());
    }

    void failureIsReported()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(run(t.session(), u"DROP TABLE tblWoServiceUsed"_s));
        QVERIFY(!LabourCost::changeServiceLabourEstimate(t.session(), 1));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].procedure, u"ChangeServiceLabourEstimate"_s);
    }
};

QTEST_GUILESS_MAIN(TestLabourCost)
#include "tst_labourcost.moc"
