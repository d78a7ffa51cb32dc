#include "CrewManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

qint64 addCrew(Session& session, qint64 number, const QString& description)
{
    Crew crew{0, number, description};
    return CrewManager(session).saveRecord(crew, true) ? crew.crewId : 0;
}

} // namespace

class TestCrewManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void savesAndDeletesOnlyTheCrewMeant()
    {
        TANDRILL_INSTALLATION(t);
        const qint64 first = addCrew(t.session(), 20, u"Mowing"_s);
        const qint64 second = addCrew(t.session(), 10, u"O'Brien's edging"_s);
        const qint64 third = addCrew(t.session(), 40, u"Drop"_s);
        QVERIFY(first > 0 && second > first && third > second);
        Crew changed{first, 30, u"Mowing north"_s};
        QVERIFY(CrewManager(t.session()).saveRecord(changed, false));
        QVERIFY(CrewManager(t.session()).deleteRecord(third));
        QStringList listed; // in the manager's order
        for (const QSqlRecord& row : CrewManager(t.session()).list()) {
            listed.append(u"%1 %2 %3"_s.arg(row.value(u"CrewID"_s).toString(),
                                            row.value(u"CrewNumber"_s).toString(),
                                            row.value(u"Description"_s).toString()));
        }
        QCOMPARE(listed, (QStringList{u"%1 10 O'Brien's edging"_s.arg(second),
                                      u"%1 30 Mowing north"_s.arg(first)}));
        QVERIFY(t.failures().isEmpty());
    }

    void canDeleteCrewNamesTheFirstUser_data()
    {
        // Rows that refer to the crew, '|' between them; ? is the crew's key.
        QTest::addColumn<QString>("uses");
        QTest::addColumn<QString>("expected");
        const QString services = u"tblServices (ServiceID, CrewID) VALUES (1, ?)|"_s;
        const QString used = u"tblServiceUsed (CrewID) VALUES (?)|"_s;
        const QString employee = u"tblEmployee (EmployeeID, Crew) VALUES ('E1', ?)|"_s;
        const QString equipment = u"tblEquipment (EquipmentID, CrewID) VALUES (1, ?)|"_s;
        QTest::addRow("equipment") << equipment << u"Equipment"_s;
        QTest::addRow("employee before equipment") << equipment + employee << u"Employee"_s;
        QTest::addRow("services before all")
            << equipment + employee + used + services << u"Services"_s;
        QTest::addRow("work order lines do not count")
            << u"tblWoServiceUsed (CrewID) VALUES (?)"_s << QString();
    }
    void canDeleteCrewNamesTheFirstUser()
    {
        QFETCH(QString, uses);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        const qint64 crew = addCrew(t.session(), 7, u"Irrigation"_s);
        const qint64 other = addCrew(t.session(), 8, u"Other"_s);
        QSqlQuery q(t.session().db());
        for (const QString& use : uses.split(u'|', Qt::SkipEmptyParts)) {
            QVERIFY2(Sql::exec(q, u"INSERT INTO "_s + use, {crew}), qPrintable(use));
        }
        CrewManager manager(t.session());
        QCOMPARE(manager.canDeleteCrew(crew), expected);
        QCOMPARE(manager.canDeleteCrew(other), QString());
        QVERIFY(t.failures().isEmpty());
    }

    void failedSaveIsReportedAndAnswersFalse()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"DROP TABLE tblCrew"_s));
        Crew crew{0, 1, u"Lost"_s};
        QVERIFY(!CrewManager(t.session()).saveRecord(crew, true));
        QCOMPARE(crew.crewId, 0);
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure& f = t.failures().failures()[0];
        QCOMPARE(f.module + u'/' + f.procedure, u"clsCrewManager/SaveRecord"_s);
    }
};

QTEST_GUILESS_MAIN(TestCrewManager)
#include "tst_crewmanager.moc"
