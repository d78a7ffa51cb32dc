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
    return CrewManager(session).saveRecord(crew, true) ? crew.crewId : 0;
}

/** The crews in the manager's order, as "id number description". */
QStringList listed(Session& session)
{
    QStringList crews;
    for (const QSqlRecord& row : CrewManager(session).list()) {
        crews.append(QStringLiteral("%1 %2 %3")
                         .arg(row.value(QStringLiteral("CrewID")).toString(),
                              row.value(QStringLiteral("CrewNumber")).toString(),
                              row.value(QStringLiteral("Description")).toString()));
    }
    return crews;
}

qint64 crewCount(const QSqlDatabase& db)
{
    QSqlQuery q(db);
    return Sql::exec(q, QStringLiteral("SELECT COUNT(*) FROM tblCrew")) && q.next()
               ? q.value(0).toLongLong()
               : -1;
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
        const qint64 first = addCrew(t.session(), 20, QStringLiteral("Mowing"));
        const qint64 second = addCrew(t.session(), 10, QStringLiteral("O'Brien's edging"));
        QVERIFY(first > 0);
        QVERIFY(second > first);

        Crew changed{first, 30, QStringLiteral("Mowing north")};
        QVERIFY(CrewManager(t.session()).saveRecord(changed, false));
        QCOMPARE(changed.crewId, first);
        QCOMPARE(listed(t.session()),
                 QStringList({QStringLiteral("%1 10 O'Brien's edging").arg(second),
                              QStringLiteral("%1 30 Mowing north").arg(first)}));
        QVERIFY(t.failures().isEmpty());
    }

    void saveJoinsTheOpenTransaction()
    {
        TANDRILL_INSTALLATION(t);
        {
            Transaction edit(t.session());
            QVERIFY(edit.ownsTransaction());
            QVERIFY(addCrew(t.session(), 5, QStringLiteral("Trees")) > 0);
            QCOMPARE(crewCount(t.session().db()), 1);
            QVERIFY(t.session().transactionOpen());
            edit.rollback();
        }
        QCOMPARE(crewCount(t.session().db()), 0);
        QCOMPARE(crewCount(t.session().db2()), 0);
    }

    void deleteRemovesOnlyThatCrew()
    {
        TANDRILL_INSTALLATION(t);
        const qint64 keep = addCrew(t.session(), 1, QStringLiteral("Keep"));
        QVERIFY(
            CrewManager(t.session()).deleteRecord(addCrew(t.session(), 2, QStringLiteral("Drop"))));
        QCOMPARE(listed(t.session()), QStringList{QStringLiteral("%1 1 Keep").arg(keep)});
    }

    void canDeleteCrewNamesTheFirstUser_data()
    {
        // Rows that refer to the crew, '|' between them; ? is the crew's key.
        QTest::addColumn<QString>("uses");
        QTest::addColumn<QString>("expected");
        const QString services = QStringLiteral("tblServices (ServiceID, CrewID) VALUES (1, ?)");
        const QString used = QStringLiteral("tblServiceUsed (CrewID) VALUES (?)");
        const QString employee = QStringLiteral("tblEmployee (EmployeeID, Crew) VALUES ('E1', ?)");
        const QString equipment =
            QStringLiteral("tblEquipment (EquipmentID, CrewID) VALUES (1, ?)");
        const QString bar = QStringLiteral("|");
        QTest::addRow("unused") << QString() << QString();
        QTest::addRow("master service") << services << QStringLiteral("Services");
        QTest::addRow("service on equipment") << used << QStringLiteral("ServiceUsed");
        QTest::addRow("employee") << employee << QStringLiteral("Employee");
        QTest::addRow("equipment") << equipment << QStringLiteral("Equipment");
        QTest::addRow("employee before equipment")
            << equipment + bar + employee << QStringLiteral("Employee");
        QTest::addRow("services before all")
            << equipment + bar + employee + bar + used + bar + services
            << QStringLiteral("Services");
        QTest::addRow("work order lines do not count")
            << QStringLiteral("tblWoServiceUsed (CrewID) VALUES (?)") << QString();
    }

    void canDeleteCrewNamesTheFirstUser()
    {
        QFETCH(QString, uses);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        const qint64 crew = addCrew(t.session(), 7, QStringLiteral("Irrigation"));
        const qint64 other = addCrew(t.session(), 8, QStringLiteral("Other"));
        QSqlQuery q(t.session().db());
        for (const QString& use : uses.split(u'|', Qt::SkipEmptyParts)) {
            QVERIFY2(Sql::exec(q, QStringLiteral("INSERT INTO ") + use, {crew}), qPrintable(use));
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
