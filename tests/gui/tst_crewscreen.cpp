#include "CrewManager.h"
#include "CrewScreen.h"
#include "MessageTexts.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The common record-screen behaviour and the crew rules are tested on their own; this checks
// only that the crew screen wires its fields, questions and messages to them.
namespace {

/** Three crews: 10 Mowing, 20 Edging, and 30 Trees, which an employee belongs to. */
void seedCrews(Session& session)
{
    QSqlQuery q(session.db());
    Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber, Description) "
                 "VALUES (10, 'Mowing'), (20, 'Edging'), (30, 'Trees')"_s);
    Sql::exec(q, u"INSERT INTO tblEmployee (EmployeeID, Crew) "
                 "SELECT 'E1', CrewID FROM tblCrew WHERE CrewNumber = 30"_s);
}

} // namespace

class TestCrewScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void stepsOnTheCrewsAndTheChoiceAnswered()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        const Rows seeded = CrewManager(t.session()).list();
        QString shown; // the crew it opened on, then mode and number at the end
        onModal<CrewScreen>("frmCrew", [&](CrewScreen* screen) {
            shown = text(*screen, "txtDescription") + u' ';
            // A new crew renamed without a question; a delete refused on crew 30, done on 20;
            // crew 30 renamed: No puts it back, a taken number is refused, a new one saved.
            perform(*screen, t.prompter(),
                    u"cmdAdd|txtCrewNumber+4x0|txtDescription+Hedges|cmdUpdate|txtDescription+ b|"
                    "cmdUpdate|cmdPrevious|Yes|cmdDelete|cmdPrevious|Yes|cmdDelete|cmdNext|"
                    "txtDescription+ X|No|cmdUpdate|txtCrewNumber=10|Yes|cmdUpdate|"
                    "txtCrewNumber=35|Yes|cmdUpdate"_s,
                    "grdCrew");
            shown += screen->modeText() + text(*screen, "txtCrewNumber");
            click(*screen, "cmdExit");
        });
        // An add asked for comes after the window has closed, and starts nothing.
        const QVariant chosen = CrewScreen::showCrewDetail(t.session(), RecordScreen::Mode::Add,
                                                           seeded[1].value(u"CrewID"_s), nullptr);
        QCOMPARE(shown, u"Edging B35"_s);
        QCOMPARE(chosen, seeded[2].value(u"CrewID"_s));
        QVERIFY(!t.session().transactionOpen());
        const QString renumber =
            u"This will change 30 for all your Employee. Do you want to do this?"_s;
        QCOMPARE(
            t.prompter().texts(),
            (QStringList{MessageTexts::DeleteQuestion, MessageTexts::recordInUse(u"Employee"_s),
                         MessageTexts::DeleteQuestion,
                         u"This will change Trees for all your Employee. Do you want to do this?"_s,
                         renumber,
                         u"Crew Number you specified already exists. Please enter a different "
                         "Crew Number."_s,
                         renumber}));
        QStringList crews;
        for (const QSqlRecord& crew : CrewManager(t.session()).list()) {
            crews.append(crew.value(u"CrewNumber"_s).toString() + u' ' +
                         crew.value(u"Description"_s).toString());
        }
        QCOMPARE(crews, (QStringList{u"10 Mowing"_s, u"35 Trees"_s, u"40 Hedges b"_s}));
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_MAIN(TestCrewScreen)
#include "tst_crewscreen.moc"
