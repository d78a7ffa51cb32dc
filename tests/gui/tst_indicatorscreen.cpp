#include "IndicatorManager.h"
#include "IndicatorScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The lookup rules are tested with their manager; this checks that the screen wires to them.
class TestIndicatorScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void stepsOnTheStatesAndTheChoiceAnswered()
    {
        TANDRILL_INSTALLATION(t);
        // USA and Canada, and under the USA Ohio, which an employee lives in, and Texas.
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblIndicator (ItemID, ParentId, ItemName, Show) VALUES "
                             "(901, 1, 'USA', -1), (902, 1, 'Canada', -1), (903, 901, 'Ohio', -1), "
                             "(904, 901, 'Texas', -1)"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEmployee (EmployeeID, State) VALUES ('E1', 903)"_s));
        QString shown; // the state it opened on, then mode, parent and name at the end
        onModal<IndicatorScreen>("frmIndicator", [&](IndicatorScreen* screen) {
            auto* parents = child<QComboBox>(*screen, "cboParentType");
            shown = parents->currentText() + u' ' + text(*screen, "txtName") + u' ';
            // A rename reverted, a duplicate refused and Utah added; Ohio kept, Texas deleted.
            perform(*screen, t.prompter(),
                    u"txtName+ X|cmdCancel|cmdAdd|txtName+ohio|cmdUpdate|txtName=Utah|cmdUpdate|"
                    "row:0|Yes|cmdDelete|row:1|Yes|cmdDelete"_s,
                    "lstIndicator");
            // Without a country a state is refused, and kept until one is chosen.
            parents->setCurrentIndex(0);
            shown += text(*screen, "txtName"); // nothing under no country
            perform(*screen, t.prompter(), u"cmdAdd|txtName+Quebec|cmdUpdate"_s, "lstIndicator");
            QTest::keyClicks(parents, u"C"_s); // Canada, chosen while adding
            click(*screen, "cmdUpdate");
            shown += screen->modeText() + parents->currentText() + u' ' + text(*screen, "txtName");
            click(*screen, "cmdExit");
        });
        const QVariant chosen = IndicatorScreen::showIndicatorDetail(
            t.session(), IndicatorList::State, 904, {}, false, nullptr);
        QCOMPARE(shown, u"USA Texas BCanada Quebec"_s);
        QCOMPARE(chosen, IndicatorManager(t.session()).items(902).value(0).value(u"ItemID"_s));
        const QStringList told = t.prompter().texts(); // duplicate, delete twice, no country
        QVERIFY(told.size() == 5 && told[0].contains(u"already exists"_s) &&
                told[2].contains(u"Employee"_s) && told[4].startsWith(u"Country"_s));

        // Texas, gone from the table, is told, and the screen opens all the same.
        onModal<IndicatorScreen>("frmIndicator", [](auto* screen) { click(*screen, "cmdExit"); });
        IndicatorScreen::showIndicatorDetail(t.session(), 0, 904, {}, false, nullptr);
        QCOMPARE(t.prompter().texts().last(), IndicatorScreen::MissingItemMessage);
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_MAIN(TestIndicatorScreen)
#include "tst_indicatorscreen.moc"
