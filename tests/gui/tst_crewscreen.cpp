#include "CrewManager.h"
#include "CrewScreen.h"
#include "GridSettings.h"
#include "MessageTexts.h"
#include "Options.h"
#include "RecordGrid.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSqlQuery>

namespace {

using Mode = RecordScreen::Mode;

const QString DuplicateMessage = QStringLiteral(
    "Crew Number you specified already exists. Please enter a different Crew Number.");
const char* const Seeded = "10 Mowing|20 Edging|30 Trees";

QHeaderView* header(const QWidget& screen)
{
    return child<RecordGrid>(screen, "grdCrew")->horizontalHeader();
}

/** The buttons a user can press: enabled and in sight. */
QStringList activeButtons(const QWidget& screen)
{
    QStringList active;
    for (const QString& name : split("cmdFirst|cmdPrevious|cmdNext|cmdLast|cmdAdd|cmdDelete|"
                                     "cmdQFind|cmdUpdate|cmdCancel|cmdExit")) {
        const auto* button = child<QPushButton>(screen, qPrintable(name));
        if (button->isEnabled() && button->isVisible()) {
            active.append(name);
        }
    }
    return active;
}

/** What the common behaviour lets a user press in each state. */
QStringList expectedButtons(const QString& mode, bool empty)
{
    if (mode != QLatin1String("B")) {
        return split("cmdUpdate|cmdCancel|cmdExit");
    }
    return split(empty ? "cmdAdd|cmdExit"
                       : "cmdFirst|cmdPrevious|cmdNext|cmdLast|cmdAdd|cmdDelete|cmdExit");
}

/**
 * User steps separated by '|': "cmdAdd" clicks a button, "txtDescription+text"
 * types at the end of a field, "txtCrewNumber=text" erases the field first,
 * "row:2" clicks a row of the grid, "Yes" and "No" answer the next question,
 * "close" is the window's close box and "escape" the key.
 */
void perform(QWidget& screen, ScriptedPrompter& prompter, const char* steps)
{
    for (const QString& step : split(steps)) {
        const qsizetype at = step.indexOf(QRegularExpression(QStringLiteral("[+=]")));
        const QByteArray name = step.left(at).toLatin1();
        if (at > 0) {
            QLineEdit* edit = child(screen, name.constData());
            QTest::keyClick(edit, Qt::Key_End);
            for (qsizetype i = step[at] == u'=' ? edit->text().size() : 0; i > 0; --i) {
                QTest::keyClick(edit, Qt::Key_Backspace);
            }
            QTest::keyClicks(edit, step.mid(at + 1));
        } else if (step.startsWith(QLatin1String("cmd"))) {
            click(screen, name.constData());
        } else if (step.startsWith(QLatin1String("row:"))) {
            auto* grid = child<RecordGrid>(screen, "grdCrew");
            const QRect cell = grid->visualRect(grid->model()->index(step.mid(4).toInt(), 1));
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        } else if (step == QLatin1String("Yes") || step == QLatin1String("No")) {
            prompter.queueAnswer(step == QLatin1String("Yes") ? Prompter::Answer::Yes
                                                              : Prompter::Answer::No);
        } else if (step == QLatin1String("close")) {
            screen.close();
        } else if (step == QLatin1String("escape")) {
            QTest::keyClick(&screen, Qt::Key_Escape);
        } else {
            qFatal("Unknown step %s", qPrintable(step));
        }
    }
}

qint64 addCrew(Session& session, qint64 number, const QString& description)
{
    Crew crew{0, number, description};
    return CrewManager(session).saveRecord(crew, true) ? crew.crewId : 0;
}

/** Three crews: 10 Mowing, 20 Edging, and 30 Trees, which an employee belongs to. */
void seedCrews(Session& session)
{
    addCrew(session, 10, QStringLiteral("Mowing"));
    addCrew(session, 20, QStringLiteral("Edging"));
    const qint64 trees = addCrew(session, 30, QStringLiteral("Trees"));
    QSqlQuery q(session.db());
    Sql::exec(q, QStringLiteral("INSERT INTO tblEmployee (EmployeeID, Crew) VALUES ('E1', ?)"),
              {trees});
}

/** Crews as another connection sees them: only what was committed. */
QStringList committedCrews(Session& session)
{
    QSqlQuery q(session.db2());
    QStringList crews;
    if (!Sql::exec(q, QStringLiteral("SELECT CrewNumber, Description FROM tblCrew "
                                     "ORDER BY CrewNumber"))) {
        return {QStringLiteral("unreadable")};
    }
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
        QTest::addColumn<bool>("seed");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QStringList>("state"); // mode ("closed" once gone), number, description
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("committed");
        // state is "mode|number|description"; committed crews are "number description|...".
        const auto row = [](const char* name, const char* steps, const char* state,
                            const QStringList& messages = {}, const char* committed = Seeded,
                            bool seed = true) {
            QTest::newRow(name) << seed << QString::fromUtf8(steps)
                                << QString::fromUtf8(state).split(u'|') << messages
                                << split(committed);
        };
        const QString renameTrees = QStringLiteral("This will change Trees for all your Employee. "
                                                   "Do you want to do this?");
        const QString renumberTrees =
            QStringLiteral("This will change 30 for all your Employee. Do you want to do this?");
        const QStringList lastRecord{MessageTexts::LastRecord};
        const QStringList deleteQuestion{MessageTexts::DeleteQuestion};

        row("empty table opens locked", "", "B||", {}, "", false);
        row("add on an empty table", "cmdAdd", "A||", {}, "", false);
        row("add reverted on an empty table", "cmdAdd|txtCrewNumber+5|cmdCancel", "B||", {}, "",
            false);
        row("delete of the only crew empties the table",
            "cmdAdd|txtCrewNumber+1|txtDescription+Only|cmdUpdate|Yes|cmdDelete", "B||",
            deleteQuestion, "", false);
        row("opens on the first crew", "", "B|10|Mowing");
        row("add empties the fields", "cmdAdd", "A||");
        row("a change in browse modifies", "txtDescription+s", "M|10|Mowings");
        row("changes in add stay add", "cmdAdd|txtCrewNumber+40|txtDescription+Hedges",
            "A|40|Hedges");
        row("changes in modify stay modify", "txtDescription+a|txtDescription+b", "M|10|Mowingab");
        row("save a new crew", "cmdAdd|txtCrewNumber+40|txtDescription+ Hedges |cmdUpdate",
            "B|40|Hedges", {}, "10 Mowing|20 Edging|30 Trees|40 Hedges");
        row("save with its own number", "txtDescription+ north|cmdUpdate", "B|10|Mowing north", {},
            "10 Mowing north|20 Edging|30 Trees");
        row("number moved to a free one", "cmdNext|txtCrewNumber=25|cmdUpdate", "B|25|Edging", {},
            "10 Mowing|25 Edging|30 Trees");
        row("blank number refused, input kept", "cmdAdd|txtDescription+Hedges|cmdUpdate",
            "A||Hedges", {QStringLiteral("Crew Number should not be blank.")});
        row("blank description refused, input kept",
            "cmdAdd|txtCrewNumber+40|txtDescription+   |cmdUpdate", "A|40|   ",
            {QStringLiteral("Description should not be blank.")});
        row("number taken on add", "cmdAdd|txtCrewNumber+20|txtDescription+Hedges|cmdUpdate",
            "A|20|Hedges", {DuplicateMessage});
        row("number taken on modify", "txtCrewNumber=20|cmdUpdate", "M|20|Mowing",
            {DuplicateMessage});
        row("letters refused in the number", "cmdAdd|txtCrewNumber+4x-2.b", "A|42|");
        row("revert an add shows the crew before",
            "cmdNext|cmdAdd|txtCrewNumber+40|txtDescription+Hedges|cmdCancel", "B|20|Edging");
        row("revert a change", "txtDescription+XX|cmdCancel", "B|10|Mowing");
        row("next", "cmdNext", "B|20|Edging");
        row("next at the end", "cmdLast|cmdNext", "B|30|Trees", lastRecord);
        row("previous at the start", "cmdPrevious", "B|10|Mowing", lastRecord);
        row("first", "cmdLast|cmdPrevious|cmdFirst", "B|10|Mowing");
        row("browsing never modifies", "cmdNext|cmdNext|row:0|cmdLast|cmdFirst|row:1",
            "B|20|Edging");
        row("delete answered No", "No|cmdDelete", "B|10|Mowing", deleteQuestion);
        row("delete another crew shows the first", "cmdNext|Yes|cmdDelete", "B|10|Mowing",
            deleteQuestion, "10 Mowing|30 Trees");
        row("delete a crew in use", "cmdLast|Yes|cmdDelete", "B|30|Trees",
            deleteQuestion + QStringList{QStringLiteral(
                                 "Deletion not allowed. Record is being used in Employee.")});
        row("rename of a crew in use answered No",
            "cmdLast|txtDescription+ and hedges|No|cmdUpdate", "M|30|Trees", {renameTrees});
        row("renumber of a crew in use answered No", "cmdLast|txtCrewNumber=35|No|cmdUpdate",
            "M|30|Trees", {renumberTrees});
        row("rename of a crew in use answered Yes",
            "cmdLast|txtDescription+ and hedges|Yes|cmdUpdate", "B|30|Trees and hedges",
            {renameTrees}, "10 Mowing|20 Edging|30 Trees and hedges");
        row("close box refused while editing", "txtDescription+X|close", "M|10|MowingX");
        row("escape refused while editing", "cmdAdd|escape", "A||");
        row("exit drops the edit", "txtDescription+X|cmdExit", "closed|10|MowingX");
        row("close box in browse", "close", "closed|10|Mowing");
    }

    void userSteps()
    {
        QFETCH(bool, seed);
        QFETCH(QString, steps);
        QFETCH(QStringList, state);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, committed);
        TANDRILL_INSTALLATION(t);
        if (seed) {
            seedCrews(t.session());
        }
        CrewScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), qPrintable(steps));

        const QString mode = state[0];
        QCOMPARE(screen.isVisible() ? screen.modeText() : QStringLiteral("closed"), mode);
        QCOMPARE(text(screen, "txtCrewNumber"), state[1]);
        QCOMPARE(text(screen, "txtDescription"), state[2]);
        QCOMPARE(t.prompter().texts(), messages);
        for (const ScriptedPrompter::Shown& box : t.prompter().shown()) {
            const bool question = box.text.endsWith(u'?');
            QCOMPARE(box.buttons, question ? Prompter::Buttons::YesNo : Prompter::Buttons::Ok);
            QCOMPARE(box.icon, question ? Prompter::Icon::Question : Prompter::Icon::Information);
        }
        QCOMPARE(committedCrews(t.session()), committed);
        QVERIFY(t.failures().isEmpty());
        if (!screen.isVisible()) {
            QVERIFY(!t.session().transactionOpen());
            return;
        }
        // An empty table in browse has nothing to change: its fields are locked.
        const bool empty = mode == QLatin1String("B") && committed.isEmpty();
        QCOMPARE(screen.isEmpty() && mode == QLatin1String("B"), empty);
        QCOMPARE(activeButtons(screen), expectedButtons(mode, empty));
        QCOMPARE(child(screen, "txtCrewNumber")->isReadOnly(), empty);
        QCOMPARE(child(screen, "txtDescription")->isReadOnly(), empty);
        QVERIFY(!child(screen, "txtCrewID")->isVisible());
        QCOMPARE(t.session().transactionOpen(), screen.isEditing());
    }

    void editHoldsOneTransactionThatOthersJoin()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        CrewScreen screen(t.session());
        screen.show();
        click(screen, "cmdAdd");
        QVERIFY(t.session().transactionOpen());
        {
            // What a second screen or a procedure opens now becomes part of this edit.
            Transaction second(t.session());
            QVERIFY(second.isActive());
            QVERIFY(!second.ownsTransaction());
            QVERIFY(addCrew(t.session(), 99, QStringLiteral("Inside the edit")) > 0);
            QVERIFY(second.commit());
        }
        QCOMPARE(committedCrews(t.session()), split(Seeded));
        click(screen, "cmdCancel");
        QVERIFY(!t.session().transactionOpen());
        QCOMPARE(committedCrews(t.session()), split(Seeded));
        QCOMPARE(CrewManager(t.session()).list().size(), 3);
    }

    void failedSaveKeepsInputModeAndTransaction()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        QSqlQuery q(t.session().db());
        // The engine, not the screen, refuses a second crew of the same description.
        QVERIFY(Sql::exec(q, QStringLiteral("CREATE UNIQUE INDEX crew_description_once "
                                            "ON tblCrew (Description)")));
        CrewScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), "cmdAdd|txtCrewNumber+40|txtDescription+Edging|cmdUpdate");
        QCOMPARE(screen.modeText(), QStringLiteral("A"));
        QCOMPARE(text(screen, "txtCrewNumber"), QStringLiteral("40"));
        QCOMPARE(text(screen, "txtDescription"), QStringLiteral("Edging"));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].module, QStringLiteral("clsCrewManager"));
        QVERIFY(t.session().transactionOpen());

        // The same edit goes on and saves once the input is right.
        perform(screen, t.prompter(), "txtDescription+ 2|cmdUpdate");
        QCOMPARE(screen.modeText(), QStringLiteral("B"));
        QCOMPARE(committedCrews(t.session()), split("10 Mowing|20 Edging|30 Trees|40 Edging 2"));
        QVERIFY(!t.session().transactionOpen());
    }

    void placeSizeAndGridLayoutComeBackPerWorkstation()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        const int number = 1;
        const int description = 2;
        const QString firstStation = Options::registryValue(t.session(), QStringLiteral("GUID"));
        const auto open = [&t] {
            auto screen = std::make_unique<CrewScreen>(t.session());
            screen->show();
            return screen;
        };
        const auto place = [](const QWidget& w) { return QRect(w.pos(), w.size()); };
        {
            const auto screen = open(); // beside the side bar, below the board
            QCOMPARE(place(*screen), QRect(145, 97, 495, 254));
            screen->move(300, 200);
            screen->resize(640, 380);
            QHeaderView* h = header(*screen);
            h->moveSection(h->visualIndex(description), h->visualIndex(number));
            h->resizeSection(description, 173);
            // Sort by description with a click on its header: Edging, Mowing, Trees.
            QTest::mouseClick(h->viewport(), Qt::LeftButton, {},
                              QPoint(h->sectionViewportPosition(description) + 5, 5));
            QCOMPARE(child<RecordGrid>(*screen, "grdCrew")->record(0).value(description),
                     QVariant(QStringLiteral("Edging")));
            click(*screen, "cmdExit");
        }
        QCOMPARE(Options::option(t.session(), QStringLiteral("frmCrewLEFT"), true),
                 QStringLiteral("4500"));
        QCOMPARE(Options::option(t.session(), QStringLiteral("frmCrewHEIGHT"), true),
                 QStringLiteral("5700"));
        {
            const auto again = open();
            QCOMPARE(place(*again), QRect(300, 200, 640, 380));
            QHeaderView* h = header(*again);
            QVERIFY(h->visualIndex(description) < h->visualIndex(number));
            QCOMPARE(h->sectionSize(description), 173);
            QVERIFY(h->isSectionHidden(0));
            QCOMPARE(h->sortIndicatorSection(), description);
            QCOMPARE(text(*again, "txtDescription"), QStringLiteral("Edging"));
            click(*again, "cmdNext");
            QCOMPARE(text(*again, "txtDescription"), QStringLiteral("Mowing"));
        }
        // Another workstation has a place of its own, and leaves this one's alone.
        Options::setRegistryValue(t.session(), QStringLiteral("GUID"), Options::newGuid());
        {
            const auto other = open();
            QCOMPARE(place(*other), QRect(145, 97, 495, 254));
            other->move(10, 20);
            click(*other, "cmdExit");
        }
        Options::setRegistryValue(t.session(), QStringLiteral("GUID"), firstStation);
        QCOMPARE(place(*open()), QRect(300, 200, 640, 380));
    }

    void storedLayoutOfMissingFieldsIsSkipped()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        QVERIFY(GridSettings::save(
            t.session(), QStringLiteral("frmCrew"), QStringLiteral("tblCrew"),
            {{QStringLiteral("Retired"), 90, 0, GridSettings::SortType::Ascending},
             {QStringLiteral("Description"), 120, 1, GridSettings::SortType::None},
             {QStringLiteral("CrewNumber"), 80, 2, GridSettings::SortType::Descending}}));
        CrewScreen screen(t.session());
        screen.show();
        QCOMPARE(header(screen)->visualIndex(2), 1);
        QCOMPARE(header(screen)->visualIndex(1), 2);
        QCOMPARE(header(screen)->sectionSize(2), 120);
        QCOMPARE(text(screen, "txtDescription"), QStringLiteral("Trees")); // numbers descending
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
        const QVariant chosen = CrewScreen::showCrewDetail(
            t.session(), Mode::Browse, crews[1].value(QStringLiteral("CrewID")), nullptr);
        QCOMPARE(shownFirst, QStringLiteral("Edging"));
        QCOMPARE(chosen.toLongLong(), crews[2].value(QStringLiteral("CrewID")).toLongLong());
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
        CrewScreen::showCrewDetail(t.session(), Mode::Add, QVariant(), nullptr);
        QCOMPARE(modeWhileOpen, QStringLiteral("B"));
        QVERIFY(!t.session().transactionOpen());
        QCOMPARE(committedCrews(t.session()), split(Seeded));
    }
};

QTEST_MAIN(TestCrewScreen)
#include "tst_crewscreen.moc"
