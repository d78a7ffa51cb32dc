#include "EmployeeManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString readOne(Session& session, const QString& sql)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, sql) && q.next() ? q.value(0).toString() : u"(none)"_s;
}

} // namespace

class TestEmployeeManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void renumberingKeepsTheRowAndStoresEveryColumn()
    {
        TANDRILL_INSTALLATION(t);
        EmployeeManager manager(t.session());
        Employee e{.employeeId = u"e7"_s,
                   .firstName = u"Ann"_s,
                   .lastName = u"O'Neil"_s,
                   .initialName = u"B"_s,
                   .birthDate = {2001, 2, 3},
                   .gender = u"Female"_s,
                   .address = u"1 Road"_s,
                   .city = u"Leeds"_s,
                   .state = 11,
                   .country = 12,
                   .zip = u"LS1"_s,
                   .phone = EmployeeManager::EmptyPhone,
                   .cellPhone = u"(555) 123-4567"_s,
                   .site = 3,
                   .crew = 4,
                   .position = 5,
                   .laborRate = 12.5,
                   .inactive = true};
        QVERIFY(manager.saveRecord(e, true));
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblUser (UserName, EmployeeID) VALUES ('ann', 'E7')"_s));
        QCOMPARE(manager.canDeleteEmployee(u"e7"_s), u"User"_s);

        // Keys compare without case; a login keeps the number it stored.
        e.employeeOldId = u"E7"_s;
        e.employeeId = u"E8"_s;
        e.inactive = false;
        e.includeWoList = true;
        QVERIFY(manager.saveRecord(e, false));
        const Rows rows = manager.list();
        QCOMPARE(rows.size(), 1);
        QStringList stored;
        for (int i = 0; i < rows[0].count(); ++i) {
            stored.append(rows[0].value(i).toString());
        }
        QCOMPARE(stored.join(u'|'), u"E8|Ann|B|O'Neil|2001-02-03|Female|1 Road|Leeds|11|12|LS1||"
                                    "(555) 123-4567|||||3||4|5|0|12.5|0|1"_s);
        QCOMPARE(readOne(t.session(), u"SELECT EmployeeID FROM tblUser WHERE UserName = 'ann'"_s),
                 u"E7"_s);
        QCOMPARE(manager.canDeleteEmployee(u"E8"_s), QString());
        QVERIFY(manager.deleteRecord(u"e8"_s) && manager.list().isEmpty());
        // Asked once: the new employee brought a crew, the renumbering changed neither.
        QCOMPARE(t.prompter().texts(), QStringList{EmployeeManager::LabourQuestion});
        QVERIFY(t.failures().isEmpty());
    }

    void labourQuestion_data()
    {
        QTest::addColumn<qint64>("crew");
        QTest::addColumn<double>("cost");
        QTest::addColumn<QString>("answer"); // "Fail": Yes, and the change cannot be made
        QTest::addColumn<QString>("after");  // cost and crew saved, the budget, questions asked
        QTest::addRow("nothing changed") << 1LL << 10.001 << u"Yes"_s << u"10 1 5, 0"_s;
        QTest::addRow("No keeps the budgets") << 1LL << 20.0 << u"No"_s << u"20 1 5, 1"_s;
        QTest::addRow("Yes: only who is on the list counts")
            << 1LL << 20.0 << u"Yes"_s << u"20 1 40, 1"_s;
        QTest::addRow("a new crew asks too") << 2LL << 10.0 << u"Yes"_s << u"10 2 5, 1"_s;
        QTest::addRow("failed change keeps nothing") << 1LL << 20.0 << u"Fail"_s << u"10 1 5, 2"_s;
    }
    void labourQuestion()
    {
        QFETCH(qint64, crew);
        QFETCH(double, cost);
        QFETCH(QString, answer);
        QFETCH(QString, after);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        EmployeeManager manager(s);
        // E1 at 10 on the work order list and E2 at 100 off it share crew 1's 2-hour service.
        QSqlQuery q(s.db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblServiceUsed (CrewID, LaborEstimate, CostEstimate) "
                             "VALUES (1, 2, 5)"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (1, 1), (2, 2)"_s));
        Employee first{.employeeId = u"E1"_s, .crew = 1, .laborCost = 10, .includeWoList = true};
        const Employee second{.employeeId = u"E2"_s, .crew = 1, .laborCost = 100};
        t.prompter().setDefaultAnswer(Prompter::Answer::No);
        QVERIFY(manager.saveRecord(first, true) && manager.saveRecord(second, true));
        t.prompter().clear();
        if (answer == u"Fail") {
            QVERIFY(Sql::exec(q, u"DROP TABLE tblWoServiceUsed"_s));
        }
        t.prompter().queueAnswer(answer == u"No" ? Prompter::Answer::No : Prompter::Answer::Yes);
        first.employeeOldId = first.employeeId;
        first.crew = crew;
        first.laborCost = cost;
        QCOMPARE(manager.saveRecord(first, false), answer != u"Fail");

        const qsizetype asked = t.prompter().texts().size();
        QCOMPARE(readOne(s, u"SELECT CAST(ROUND(LaborCost) AS INTEGER) || ' ' || Crew FROM "
                            "tblEmployee WHERE EmployeeID = 'E1'"_s) +
                     u' ' + readOne(s, u"SELECT CostEstimate FROM tblServiceUsed"_s) + u", "_s +
                     QString::number(asked),
                 after);
        const QStringList texts{EmployeeManager::LabourQuestion, EmployeeManager::LabourProblem};
        QCOMPARE(t.prompter().texts(), texts.first(asked));
        QCOMPARE(t.failures().failures().size(), answer == u"Fail" ? 1 : 0);
        QVERIFY(!s.transactionOpen());
    }
};

QTEST_GUILESS_MAIN(TestEmployeeManager)
#include "tst_employeemanager.moc"
