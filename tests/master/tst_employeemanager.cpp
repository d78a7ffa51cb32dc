#include "EmployeeManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

class TestEmployeeManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void renumberingKeepsTheRowAndStoresEveryColumn()
    {
        TANDRILL_INSTALLATION(t);
        EmployeeManager manager(t.session());
        // Every member, in the order of the record; an untouched phone is stored as none.
        // clang-format off
        Employee e{u"e7"_s, QString(), u"Ann"_s, u"O'Neil"_s, u"B"_s, QDate(2001, 2, 3),
                   u"Female"_s, u"1 Road"_s, u"Leeds"_s, 11, 12, u"LS1"_s,
                   EmployeeManager::EmptyPhone, u"(555) 123-4567"_s, u"a@b.c"_s, u"P9"_s,
                   u"S9"_s, u"L9"_s, 3, u"Sk"_s, 4, 5, 0, 12.5, true};
        // clang-format on
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
                                    "(555) 123-4567|a@b.c|P9|S9|L9|3|Sk|4|5|0|12.5|0|1"_s);
        QCOMPARE(DataHelpers::recordCount(t.session(), u"tblUser"_s, {u"EmployeeID = 'E7'"_s, {}}),
                 1);
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
        QVERIFY(Sql::exec(q, u"SELECT CAST(ROUND(LaborCost) AS INTEGER) || ' ' || Crew || ' ' || "
                             "CAST(ROUND(CostEstimate) AS INTEGER) FROM tblEmployee, "
                             "tblServiceUsed WHERE EmployeeID = 'E1'"_s) &&
                q.next());
        QCOMPARE(q.value(0).toString() + u", "_s + QString::number(asked), after);
        const QStringList texts{EmployeeManager::LabourQuestion, EmployeeManager::LabourProblem};
        QCOMPARE(t.prompter().texts(), texts.first(asked));
        QCOMPARE(t.failures().failures().size(), answer == u"Fail" ? 1 : 0);
        QVERIFY(!s.transactionOpen());
    }
};

QTEST_GUILESS_MAIN(TestEmployeeManager)
#include "tst_employeemanager.moc"
