#include "IndicatorManager.h"
#include "IndicatorScreen.h"
#include "MessageTexts.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QListWidget>
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
        IndicatorManager manager(t.session());
        Indicator usa{IndicatorList::Country, 0, u"USA"_s},
            canada{IndicatorList::Country, 0, u"Canada"_s};
        QVERIFY(manager.saveRecord(usa, true) && manager.saveRecord(canada, true));
        Indicator ohio{usa.itemId, 0, u"Ohio"_s}, texas{usa.itemId, 0, u"Texas"_s};
        QVERIFY(manager.saveRecord(ohio, true) && manager.saveRecord(texas, true));
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEmployee (EmployeeID, State) VALUES ('E1', ?)"_s,
                          {ohio.itemId}));
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
            perform(*screen, t.prompter(), u"cmdAdd|txtName+Quebec|cmdUpdate"_s, "lstIndicator");
            parents->setCurrentIndex(parents->findText(u"Canada"_s));
            click(*screen, "cmdUpdate");
            shown += screen->modeText() + parents->currentText() + u' ' + text(*screen, "txtName");
            click(*screen, "cmdExit");
        });
        const QVariant chosen = IndicatorScreen::showIndicatorDetail(
            t.session(), IndicatorList::State, texas.itemId, {}, false, nullptr);
        QCOMPARE(shown, u"USA Texas BCanada Quebec"_s);
        QCOMPARE(chosen, manager.items(canada.itemId).value(0).value(u"ItemID"_s));
        const QStringList told = t.prompter().texts();
        QCOMPARE(told.size(), 5);
        QVERIFY(told[0].contains(u"already exists"_s) && told[2].contains(u"Employee"_s));
        QVERIFY(told[3] == MessageTexts::DeleteQuestion && told[4].startsWith(u"Country"_s));
        QCOMPARE(manager.items(usa.itemId).size(), 2);

        // A selected item gone from the table is told, and every list is offered.
        onModal<IndicatorScreen>("frmIndicator", [&](IndicatorScreen* screen) {
            shown = QString::number(child<QListWidget>(*screen, "lstIndicatorP")->count());
            click(*screen, "cmdExit");
        });
        IndicatorScreen::showIndicatorDetail(t.session(), 0, texas.itemId, {}, false, nullptr);
        QCOMPARE(t.prompter().texts().last(), IndicatorScreen::MissingItemMessage);
        QCOMPARE(shown, u"16"_s);
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_MAIN(TestIndicatorScreen)
#include "tst_indicatorscreen.moc"
