#include "CrewManager.h"
#include "Sql.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QSqlQuery>
#include <QTest>

namespace {

qint64 addCrew(Session& session, qint64 number, const QString& description)
{
    Crew crew{0, number, description};
    if (!CrewManager(session).saveRecord(crew, true)) {
        return 0;
    }
    return crew.crewId;
}

/** Makes one row of table refer to the crew through column. */
bool useCrew(Session& session, const QString& table, const QString& column, qint64 crewId)
{
    QSqlQuery q(session.db());
    if (table == QLatin1String("tblEmployee")) {
        return Sql::exec(q,
                         QStringLiteral("INSERT INTO tblEmployee (EmployeeID, Crew) VALUES (?, ?)"),
                         {QStringLiteral("E%1").arg(crewId), crewId});
    }
    if (table == QLatin1String("tblServices") || table == QLatin1String("tblEquipment")) {
        const QString key = table == QLatin1String("tblServices") ? QStringLiteral("ServiceID")
                                                                  : QStringLiteral("EquipmentID");
        return Sql::exec(
            q, QStringLiteral("INSERT INTO %1 (%2, %3) VALUES (?, ?)").arg(table, key, column),
            {crewId * 1000 + 1, crewId});
    }
    return Sql::exec(q, QStringLiteral("INSERT INTO %1 (%2) VALUES (?)").arg(table, column),
                     {crewId});
}

qint64 count(const QSqlDatabase& db, const QString& table)
{
    QSqlQuery q(db);
    if (!Sql::exec(q, QStringLiteral("SELECT COUNT(*) FROM ") + table) || !q.next()) {
        return -1;
    }
    return q.value(0).toLongLong();
}

} // namespace

class TestCrewManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void insertGivesKeyAndUpdateChangesOnlyThatCrew()
    {
        TANDRILL_INSTALLATION(t);
        CrewManager manager(t.session());
        const qint64 first = addCrew(t.session(), 20, QStringLiteral("Mowing"));
        const qint64 second = addCrew(t.session(), 10, QStringLiteral("O'Brien's edging"));
        QVERIFY(first > 0);
        QVERIFY(second > first);

        Crew changed{first, 30, QStringLiteral("Mowing north")};
        QVERIFY(manager.saveRecord(changed, false));
        QCOMPARE(changed.crewId, first);

        const Rows rows = manager.list();
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows[0].value(QStringLiteral("CrewID")).toLongLong(), second);
        QCOMPARE(rows[0].value(QStringLiteral("Description")).toString(),
                 QStringLiteral("O'Brien's edging"));
        QCOMPARE(rows[1].value(QStringLiteral("CrewNumber")).toLongLong(), 30);
        QCOMPARE(rows[1].value(QStringLiteral("Description")).toString(),
                 QStringLiteral("Mowing north"));
        QVERIFY(t.failures().isEmpty());
    }

    void saveJoinsTheOpenTransaction()
    {
        TANDRILL_INSTALLATION(t);
        {
            Transaction edit(t.session());
            QVERIFY(edit.ownsTransaction());
            QVERIFY(addCrew(t.session(), 5, QStringLiteral("Trees")) > 0);
            QCOMPARE(count(t.session().db(), QStringLiteral("tblCrew")), 1);
            QVERIFY(t.session().transactionOpen());
            edit.rollback();
        }
        QCOMPARE(count(t.session().db(), QStringLiteral("tblCrew")), 0);
        QCOMPARE(count(t.session().db2(), QStringLiteral("tblCrew")), 0);
    }

    void deleteRemovesOnlyThatCrew()
    {
        TANDRILL_INSTALLATION(t);
        const qint64 keep = addCrew(t.session(), 1, QStringLiteral("Keep"));
        const qint64 drop = addCrew(t.session(), 2, QStringLiteral("Drop"));
        QVERIFY(CrewManager(t.session()).deleteRecord(drop));
        const Rows rows = CrewManager(t.session()).list();
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0].value(QStringLiteral("CrewID")).toLongLong(), keep);
    }

    void canDeleteCrewNamesTheFirstUser_data()
    {
        QTest::addColumn<QStringList>("uses"); // "table.column" entries that refer to the crew
        QTest::addColumn<QString>("expected");
        QTest::addRow("unused") << QStringList() << QString();
        QTest::addRow("master service")
            << QStringList{QStringLiteral("tblServices.CrewID")} << QStringLiteral("Services");
        QTest::addRow("service on equipment")
            << QStringList{QStringLiteral("tblServiceUsed.CrewID")}
            << QStringLiteral("ServiceUsed");
        QTest::addRow("employee") << QStringList{QStringLiteral("tblEmployee.Crew")}
                                  << QStringLiteral("Employee");
        QTest::addRow("equipment")
            << QStringList{QStringLiteral("tblEquipment.CrewID")} << QStringLiteral("Equipment");
        QTest::addRow("employee before equipment")
            << QStringList{QStringLiteral("tblEquipment.CrewID"),
                           QStringLiteral("tblEmployee.Crew")}
            << QStringLiteral("Employee");
        QTest::addRow("services before all") << QStringList{QStringLiteral("tblEquipment.CrewID"),
                                                            QStringLiteral("tblEmployee.Crew"),
                                                            QStringLiteral("tblServiceUsed.CrewID"),
                                                            QStringLiteral("tblServices.CrewID")}
                                             << QStringLiteral("Services");
        QTest::addRow("work order lines do not count")
            << QStringList{QStringLiteral("tblWoServiceUsed.CrewID")} << QString();
    }

    void canDeleteCrewNamesTheFirstUser()
    {
        QFETCH(QStringList, uses);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        const qint64 crew = addCrew(t.session(), 7, QStringLiteral("Irrigation"));
        const qint64 other = addCrew(t.session(), 8, QStringLiteral("Other"));
        for (const QString& use : uses) {
            const QStringList parts = use.split(u'.');
            QVERIFY2(useCrew(t.session(), parts[0], parts[1], crew), qPrintable(use));
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
        QVERIFY(Sql::exec(q, QStringLiteral("DROP TABLE tblCrew")));
        Crew crew{0, 1, QStringLiteral("Lost")};
        QVERIFY(!CrewManager(t.session()).saveRecord(crew, true));
        QCOMPARE(crew.crewId, 0);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].module, QStringLiteral("clsCrewManager"));
        QCOMPARE(t.failures().failures()[0].procedure, QStringLiteral("SaveRecord"));
        QVERIFY(!t.session().transactionOpen());
    }
};

QTEST_GUILESS_MAIN(TestCrewManager)
#include "tst_crewmanager.moc"
