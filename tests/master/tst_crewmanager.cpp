#include "CrewManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCrewManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void savesDeletesAndNamesTheFirstUser()
    {
        TANDRILL_INSTALLATION(t);
        CrewManager manager(t.session());
        Crew first{0, 20, u"Mowing"_s}, second{0, 10, u"O'Brien's edging"_s}, third{0, 40, {}};
        QVERIFY(manager.saveRecord(first, true) && manager.saveRecord(second, true));
        QVERIFY(manager.saveRecord(third, true) && second.crewId > first.crewId);
        first = {first.crewId, 30, u"Mowing north"_s};
        QVERIFY(manager.saveRecord(first, false));
        QVERIFY(manager.deleteRecord(third.crewId));
        QStringList listed; // in the manager's order
        for (const QSqlRecord& row : manager.list()) {
            listed.append(u"%1 %2 %3"_s.arg(row.value(u"CrewID"_s).toString(),
                                            row.value(u"CrewNumber"_s).toString(),
                                            row.value(u"Description"_s).toString()));
        }
        QCOMPARE(listed, (QStringList{u"%1 10 O'Brien's edging"_s.arg(second.crewId),
                                      u"%1 30 Mowing north"_s.arg(first.crewId)}));

        // Each use added outranks the ones before it; work order lines do not count.
        const std::pair<const char*, QString> uses[] = {
            {"tblWoServiceUsed (CrewID) VALUES (?)", {}},
            {"tblEquipment (EquipmentID, CrewID) VALUES (1, ?)", u"Equipment"_s},
            {"tblEmployee (EmployeeID, Crew) VALUES ('E1', ?)", u"Employee"_s},
            {"tblServiceUsed (CrewID) VALUES (?)", u"ServiceUsed"_s},
            {"tblServices (ServiceID, CrewID) VALUES (1, ?)", u"Services"_s}};
        QSqlQuery q(t.session().db());
        for (const auto& [use, expected] : uses) {
            QVERIFY(Sql::exec(q, u"INSERT INTO "_s + QString::fromLatin1(use), {first.crewId}));
            QCOMPARE(manager.canDeleteCrew(first.crewId), expected);
        }
        QCOMPARE(manager.canDeleteCrew(second.crewId), QString());
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
