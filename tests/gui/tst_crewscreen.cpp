#include "CrewManager.h"
#include "CrewScreen.h"
#include "MessageTexts.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The common record-screen behaviour is tested on a screen of its own; this
// checks only what the crew screen adds: its fields, questions and messages.
namespace {

const char* const Seeded = "10 Mowing|20 Edging|30 Trees";

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

    void userSteps_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("state"); // mode, number and description shown
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("saved");
        const auto row = [](const char* name, const char* steps, const char* state,
                            const QStringList& messages = {}, const char* saved = Seeded) {
            QTest::newRow(name) << QString::fromUtf8(steps) << QString::fromUtf8(state) << messages
                                << split(saved);
        };
        const QString question = MessageTexts::DeleteQuestion;
        const QString renameTrees =
            u"This will change Trees for all your Employee. Do you want to do this?"_s;
        row("save a new crew", "cmdAdd|txtCrewNumber+40|txtDescription+Hedges|cmdUpdate",
            "B 40 Hedges", {}, "10 Mowing|20 Edging|30 Trees|40 Hedges");
        row("letters refused in the number, blank description refused",
            "cmdAdd|txtCrewNumber+4x-2.b|cmdUpdate", "A 42 ",
            {MessageTexts::notBlank(u"Description"_s)});
        row("number taken", "txtCrewNumber=20|cmdUpdate", "M 20 Mowing",
            {u"Crew Number you specified already exists. Please enter a different Crew Number."_s});
        row("delete of a crew in use refused, of another done",
            "cmdLast|Yes|cmdDelete|cmdPrevious|Yes|cmdDelete", "B 10 Mowing",
            {question, MessageTexts::recordInUse(u"Employee"_s), question}, "10 Mowing|30 Trees");
        row("rename of a crew in use answered No puts it back, then Yes",
            "cmdLast|txtDescription+ X|No|cmdUpdate|txtDescription+ X|Yes|cmdUpdate",
            "B 30 Trees X", {renameTrees, renameTrees}, "10 Mowing|20 Edging|30 Trees X");
        row("renumber of a crew in use names the old number",
            "cmdLast|txtCrewNumber=35|No|cmdUpdate", "M 30 Trees",
            {u"This will change 30 for all your Employee. Do you want to do this?"_s});
        row("rename of a crew nobody uses asks nothing", "txtDescription+ north|cmdUpdate",
            "B 10 Mowing north", {}, "10 Mowing north|20 Edging|30 Trees");
    }

    void userSteps()
    {
        QFETCH(QString, steps);
        QFETCH(QString, state);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, saved);
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        CrewScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), steps, "grdCrew");
        QCOMPARE(screen.modeText() + u' ' + text(screen, "txtCrewNumber") + u' ' +
                     text(screen, "txtDescription"),
                 state);
        QCOMPARE(t.prompter().texts(), messages);
        QStringList crews;
        for (const QSqlRecord& crew : CrewManager(t.session()).list()) {
            crews.append(crew.value(u"CrewNumber"_s).toString() + u' ' +
                         crew.value(u"Description"_s).toString());
        }
        QCOMPARE(crews, saved);
        QVERIFY(t.failures().isEmpty());
    }

    void showCrewDetailOpensOnTheCrewAndAnswersTheChoice()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        const Rows crews = CrewManager(t.session()).list();
        QString shownFirst;
        onModal<CrewScreen>("frmCrew", [&shownFirst](CrewScreen* screen) {
            shownFirst = screen->modeText() + u' ' + text(*screen, "txtDescription");
            click(*screen, "cmdNext");
            click(*screen, "cmdExit");
        });
        // An add asked for comes after the window has closed, and starts nothing.
        const QVariant chosen = CrewScreen::showCrewDetail(t.session(), RecordScreen::Mode::Add,
                                                           crews[1].value(u"CrewID"_s), nullptr);
        QCOMPARE(shownFirst, u"B Edging"_s);
        QCOMPARE(chosen, crews[2].value(u"CrewID"_s));
        QVERIFY(!t.session().transactionOpen());
    }
};

QTEST_MAIN(TestCrewScreen)
#include "tst_crewscreen.moc"
