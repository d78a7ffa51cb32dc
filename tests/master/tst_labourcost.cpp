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

/**
 * Crews 1 to 3 and their members as "crew:cost": "-" for no cost, "i" when inactive, "x" when
 * off the list.
 */
bool addCrews(Session& session, const QString& members)
{
    bool ok =
        run(session, u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (1, 1), (2, 2), (3, 3)"_s);
    int made = 0;
    for (const QString& m : members.split(u' ', Qt::SkipEmptyParts)) {
        const QString cost = m.section(u':', 1).remove(u'i').remove(u'x');
        ok = ok && run(session,
                       u"INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, Inactive, "
                       "IncludeWoList) VALUES (?, ?, ?, ?, ?)"_s,
                       {QString::number(++made), m.section(u':', 0, 0).toInt(),
                        cost == u"-"_s ? QVariant() : QVariant(cost.toDouble()),
                        SqlValue::flag(m.contains(u'i')), SqlValue::flag(!m.contains(u'x'))});
    }
    return ok;
}

} // namespace

class TestLabourCost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void averageOfActiveMembersOnTheList_data()
    {
        QTest::addColumn<QString>("members"); ///< of crew 1
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
        // A member of crew 2 who counts there only.
        QVERIFY(addCrews(t.session(), u"2:99 1:"_s + members.split(u' ').join(u" 1:"_s)));
        QCOMPARE(LabourCost::laborCost(t.session(), 1), expected);
        QVERIFY(t.failures().isEmpty());
    }

    void estimatesOfTheCrewFollowItsAverage()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addCrews(s, u"1:20 1:30 2:99 3:25i"_s));
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
        QSqlQuery q(s.db());
        QVERIFY(Sql::exec(q, u"SELECT CrewID, CostEstimate FROM tblServiceUsed UNION ALL "
                             "SELECT CrewID + 10, CostEstimate FROM tblWoServiceUsed UNION ALL "
                             "SELECT CrewID + 20, CostEstimate FROM tblServices ORDER BY 1"_s));
        QStringList costs;
        while (q.next()) {
            costs.append(q.value(0).toString() + u':' + QString::number(q.value(1).toDouble()));
        }
        QCOMPARE(costs.join(u' '), u"1:50 2:7 3:0 11:37.5 21:5"_s);
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
