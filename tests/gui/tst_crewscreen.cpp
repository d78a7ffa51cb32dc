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

qint64 addCrew(Session& session, qint64 number, const QString& description)
{
    Crew crew{0, number, description};
    return CrewManager(session).saveRecord(crew, true) ? crew.crewId : 0;
}

/** Three crews: 10 Mowing, 20 Edging, and 30 Trees, which an employee belongs to. */
void seedCrews(Session& session)
{
    addCrew(session, 10, u"Mowing"_s);
    addCrew(session, 20, u"Edging"_s);
    const qint64 trees = addCrew(session, 30, u"Trees"_s);
    QSqlQuery q(session.db());
    Sql::exec(q, u"INSERT INTO tblEmployee (EmployeeID, Crew) VALUES ('E1', ?)"_s, {trees});
}

/** Crews as another connection sees them: only what was committed. */
QStringList committedCrews(Session& session)
{
    QSqlQuery q(session.db2());
    QStringList crews;
    Sql::exec(q, u"SELECT CrewNumber, Description FROM tblCrew ORDER BY CrewNumber"_s);
    while (q.next()) {
        crews.append(q.value(0).toString() + u' ' + q.value(1).toString());
    }
    return crews;
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
        QTest::addColumn<QStringList>("committed");
        const auto row = [](const char* name, const char* steps, const char* state,
                            const QStringList& messages = {}, const char* committed = Seeded) {
            QTest::newRow(name) << QString::fromUtf8(steps) << QString::fromUtf8(state) << messages
                                << split(committed);
        };
        const QString renameTrees =
            u"This will change Trees for all your Employee. Do you want to do this?"_s;
        const QString duplicate =
            u"Crew Number you specified already exists. Please enter a different Crew Number."_s;
        row("save a new crew", "cmdAdd|txtCrewNumber+40|txtDescription+Hedges|cmdUpdate",
            "B 40 Hedges", {}, "10 Mowing|20 Edging|30 Trees|40 Hedges");
        row("number moved to a free one", "cmdNext|txtCrewNumber=25|cmdUpdate", "B 25 Edging", {},
            "10 Mowing|25 Edging|30 Trees");
        row("blank description refused", "cmdAdd|txtCrewNumber+40|cmdUpdate", "A 40 ",
            {u"Description should not be blank."_s});
        row("number taken", "txtCrewNumber=20|cmdUpdate", "M 20 Mowing", {duplicate});
        row("letters refused in the number", "cmdAdd|txtCrewNumber+4x-2.b", "A 42 ");
        row("delete of a crew in use", "cmdLast|Yes|cmdDelete", "B 30 Trees",
            {MessageTexts::DeleteQuestion,
             u"Deletion not allowed. Record is being used in Employee."_s});
        row("rename of a crew in use answered No",
            "cmdLast|txtDescription+ and hedges|No|cmdUpdate", "M 30 Trees", {renameTrees});
        row("renumber of a crew in use names the old number",
            "cmdLast|txtCrewNumber=35|No|cmdUpdate", "M 30 Trees",
            {u"This will change 30 for all your Employee. Do you want to do this?"_s});
        row("rename of a crew in use answered Yes",
            "cmdLast|txtDescription+ and hedges|Yes|cmdUpdate", "B 30 Trees and hedges",
            {renameTrees}, "10 Mowing|20 Edging|30 Trees and hedges");
        row("rename of a crew nobody uses asks nothing", "txtDescription+ north|cmdUpdate",
            "B 10 Mowing north", {}, "10 Mowing north|20 Edging|30 Trees");
    }

    void userSteps()
    {
        QFETCH(QString, steps);
        QFETCH(QString, state);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, committed);
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        CrewScreen screen(t.session());
        screen.show();
        QCOMPARE(screen.size(), QSize(495, 254));
        perform(screen, t.prompter(), steps, "grdCrew");
        QCOMPARE(screen.modeText() + u' ' + text(screen, "txtCrewNumber") + u' ' +
                     text(screen, "txtDescription"),
                 state);
        QCOMPARE(t.prompter().texts(), messages);
        QCOMPARE(committedCrews(t.session()), committed);
        QVERIFY(t.failures().isEmpty());
    }

    void showCrewDetailIsModalAndAnswersTheChoice()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        const Rows crews = CrewManager(t.session()).list();
        QString shownFirst;
        onModal<CrewScreen>("frmCrew", [&shownFirst](CrewScreen* screen) {
            shownFirst = text(*screen, "txtDescription");
            click(*screen, "cmdNext");
            click(*screen, "cmdExit");
        });
        const QVariant chosen = CrewScreen::showCrewDetail(t.session(), RecordScreen::Mode::Browse,
                                                           crews[1].value(u"CrewID"_s), nullptr);
        QCOMPARE(shownFirst, u"Edging"_s);
        QCOMPARE(chosen, crews[2].value(u"CrewID"_s));
    }

    void addRequestRunsOnlyAfterTheWindowHasClosed()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        QString modeWhileOpen;
        onModal<CrewScreen>("frmCrew", [&modeWhileOpen](CrewScreen* screen) {
            modeWhileOpen = screen->modeText();
            click(*screen, "cmdExit");
        });
        CrewScreen::showCrewDetail(t.session(), RecordScreen::Mode::Add, QVariant(), nullptr);
        QCOMPARE(modeWhileOpen, u"B"_s);
        QVERIFY(!t.session().transactionOpen());
    }
};

QTEST_MAIN(TestCrewScreen)
#include "tst_crewscreen.moc"
