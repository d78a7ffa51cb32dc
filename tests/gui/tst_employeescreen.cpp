#include "EmployeeManager.h"
#include "EmployeeScreen.h"
#include "MessageTexts.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The employee rules are tested with the manager; this checks only the screen's wiring.
class TestEmployeeScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void addsRefusesRevertsAndRenumbers()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblIndicator (ItemID, ParentID, ItemName, Show) VALUES "
                             "(900, 1, 'Canada', -1), (901, 900, 'Ontario', -1), "
                             "(902, 1, 'Chile', -1), (903, 902, 'Maule', -1)"_s));
        QVERIFY(Sql::exec(
            q, u"INSERT INTO tblEmployee (EmployeeID, FirstName) VALUES ('E1', 'Ann')"_s));
        QStringList states; // the state list after each country is chosen
        onModal<EmployeeScreen>("frmEmployee", [&](EmployeeScreen* screen) {
            auto* country = child<QComboBox>(*screen, "cboCountry");
            auto* state = child<QComboBox>(*screen, "cboState");
            perform(*screen, t.prompter(),
                    u"cmdUpdate|txtEmployeeID+e1|cmdUpdate|txtFirstName+Bob|cmdUpdate|"
                    "txtEmployeeID=E2"_s,
                    "grdEmployee");
            for (const char* name : {"Chile", "Canada"}) {
                country->setCurrentIndex(country->findText(QString::fromLatin1(name)));
                states.append(QString::number(state->count()) + state->itemText(1));
            }
            state->setCurrentIndex(1);
            // The state list's button opens the states under the chosen country.
            onModal("frmIndicator", [&](QWidget* lookup) {
                states.append(child<QComboBox>(*lookup, "cboParentType")->currentText());
                click(*lookup, "cmdExit");
            });
            click(*screen, "cmdState");
            perform(*screen, t.prompter(),
                    u"cmdUpdate|txtFirstName+x|cmdCancel|txtEmployeeID=E3|cmdUpdate"_s,
                    "grdEmployee");
            states.append(text(*screen, "txtFirstName") + state->currentText());
            click(*screen, "cmdExit");
        });
        QCOMPARE(EmployeeScreen::showEmployeeDetail(t.session(), RecordScreen::Mode::Add, u"E1"_s),
                 QVariant(u"E3"_s));
        QCOMPARE(states, (QStringList{u"2Maule"_s, u"2Ontario"_s, u"Canada"_s, u"BobOntario"_s}));
        QCOMPARE(t.prompter().texts(),
                 (QStringList{MessageTexts::notBlank(u"Employee Number"_s),
                              MessageTexts::notBlank(u"Employee's first name"_s),
                              u"Employee Number you specified already exists. Please enter a "
                              "different Employee Number."_s}));
        const SqlFilter renumbered{u"EmployeeID = 'E3' AND State = 901"_s, {}};
        QCOMPARE(DataHelpers::recordCount(t.session(), u"tblEmployee"_s, renumbered), 1);
        QCOMPARE(DataHelpers::recordCount(t.session(), u"tblEmployee"_s), 2);
    }

    void deletesOnlyWhatNoLoginNames()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEmployee (EmployeeID, FirstName) VALUES "
                             "('E1', 'Ann'), ('E2', 'Bob')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblUser (UserName, EmployeeID) VALUES ('ann', 'E1')"_s));
        EmployeeScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), u"Yes|cmdDelete|row:1|Yes|cmdDelete"_s, "grdEmployee");
        QVERIFY(t.prompter().texts().value(1).endsWith(u"used in User."_s));
        QCOMPARE(text(screen, "txtEmployeeID"), u"E1"_s);
        QCOMPARE(DataHelpers::recordCount(t.session(), u"tblEmployee"_s), 1);
    }
};

QTEST_MAIN(TestEmployeeScreen)
#include "tst_employeescreen.moc"
