#include "CrewManager.h"
#include "CrewScreen.h"
#include "GridSettings.h"
#include "MessageTexts.h"
#include "Options.h"
#include "RecordGrid.h"
#include "Sql.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QApplication>
#include <QFrame>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlQuery>
#include <QTest>
#include <QTimer>

namespace {

using Mode = RecordScreen::Mode;

const QStringList AllButtons = {QStringLiteral("cmdFirst"),  QStringLiteral("cmdPrevious"),
                                QStringLiteral("cmdNext"),   QStringLiteral("cmdLast"),
                                QStringLiteral("cmdAdd"),    QStringLiteral("cmdDelete"),
                                QStringLiteral("cmdQFind"),  QStringLiteral("cmdUpdate"),
                                QStringLiteral("cmdCancel"), QStringLiteral("cmdExit")};

const QString DuplicateMessage = QStringLiteral(
    "Crew Number you specified already exists. Please enter a different Crew Number.");

template <class T> T* child(const QWidget* screen, const QString& name)
{
    T* widget = screen->findChild<T*>(name);
    if (!widget) {
        qFatal("No %s on the screen", qPrintable(name));
    }
    return widget;
}

QLineEdit* field(const QWidget* screen, const QString& name)
{
    return child<QLineEdit>(screen, name);
}

QString shownNumber(const QWidget* screen)
{
    return field(screen, QStringLiteral("txtCrewNumber"))->text();
}

QString shownDescription(const QWidget* screen)
{
    return field(screen, QStringLiteral("txtDescription"))->text();
}

/** The buttons a user can press: enabled and in sight. */
QStringList activeButtons(const QWidget* screen)
{
    QStringList active;
    for (const QString& name : AllButtons) {
        const auto* button = child<QPushButton>(screen, name);
        if (button->isEnabled() && button->isVisible()) {
            active.append(name);
        }
    }
    return active;
}

/** What the common behaviour lets a user press in each state. */
QStringList expectedButtons(const QString& mode, bool empty)
{
    if (mode == QLatin1String("A") || mode == QLatin1String("M")) {
        return {QStringLiteral("cmdUpdate"), QStringLiteral("cmdCancel"),
                QStringLiteral("cmdExit")};
    }
    if (empty) {
        return {QStringLiteral("cmdAdd"), QStringLiteral("cmdExit")};
    }
    return {QStringLiteral("cmdFirst"), QStringLiteral("cmdPrevious"), QStringLiteral("cmdNext"),
            QStringLiteral("cmdLast"),  QStringLiteral("cmdAdd"),      QStringLiteral("cmdDelete"),
            QStringLiteral("cmdExit")};
}

void click(const QWidget* screen, const QString& name)
{
    QTest::mouseClick(child<QPushButton>(screen, name), Qt::LeftButton);
}

void clickRow(const QWidget* screen, int row)
{
    auto* grid = child<RecordGrid>(screen, QStringLiteral("grdCrew"));
    const QRect cell = grid->visualRect(grid->model()->index(row, 1));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
}

void erase(QLineEdit* edit)
{
    QTest::keyClick(edit, Qt::Key_End);
    for (qsizetype i = edit->text().size(); i > 0; --i) {
        QTest::keyClick(edit, Qt::Key_Backspace);
    }
}

/**
 * One user step: "click:cmdAdd", "type:txtDescription:text", "erase:txtCrewNumber",
 * "row:2" (a click in the grid), "answer:Yes" (the next question's answer),
 * "close" (the window's close box), "escape".
 */
void perform(QWidget* screen, ScriptedPrompter& prompter, const QString& step)
{
    const QStringList parts = step.split(u':');
    const QString verb = parts[0];
    if (verb == QLatin1String("click")) {
        click(screen, parts[1]);
    } else if (verb == QLatin1String("type")) {
        QTest::keyClicks(field(screen, parts[1]), parts.mid(2).join(u':'));
    } else if (verb == QLatin1String("erase")) {
        erase(field(screen, parts[1]));
    } else if (verb == QLatin1String("row")) {
        clickRow(screen, parts[1].toInt());
    } else if (verb == QLatin1String("answer")) {
        prompter.queueAnswer(parts[1] == QLatin1String("Yes") ? Prompter::Answer::Yes
                                                              : Prompter::Answer::No);
    } else if (verb == QLatin1String("close")) {
        screen->close();
    } else if (verb == QLatin1String("escape")) {
        QTest::keyClick(screen, Qt::Key_Escape);
    } else {
        qFatal("Unknown step %s", qPrintable(step));
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

const QStringList SeededCrews = {QStringLiteral("10 Mowing"), QStringLiteral("20 Edging"),
                                 QStringLiteral("30 Trees")};

} // namespace

class TestCrewScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void emptyTableOffersOnlyAddAndExit()
    {
        TANDRILL_INSTALLATION(t);
        CrewScreen screen(t.session());
        screen.show();
        QCOMPARE(screen.modeText(), QStringLiteral("B"));
        QVERIFY(screen.isEmpty());
        QCOMPARE(activeButtons(&screen), expectedButtons(QStringLiteral("B"), true));
        QVERIFY(field(&screen, QStringLiteral("txtCrewNumber"))->isReadOnly());
        QVERIFY(field(&screen, QStringLiteral("txtDescription"))->isReadOnly());
        QVERIFY(!field(&screen, QStringLiteral("txtCrewID"))->isVisible());

        click(&screen, QStringLiteral("cmdAdd"));
        QCOMPARE(screen.modeText(), QStringLiteral("A"));
        QVERIFY(!field(&screen, QStringLiteral("txtCrewNumber"))->isReadOnly());
        QTest::keyClicks(field(&screen, QStringLiteral("txtCrewNumber")), QStringLiteral("5"));
        click(&screen, QStringLiteral("cmdCancel"));

        QCOMPARE(screen.modeText(), QStringLiteral("B"));
        QCOMPARE(activeButtons(&screen), expectedButtons(QStringLiteral("B"), true));
        QVERIFY(field(&screen, QStringLiteral("txtCrewNumber"))->isReadOnly());
        QCOMPARE(shownNumber(&screen), QString());
        QVERIFY(!t.session().transactionOpen());
        QCOMPARE(committedCrews(t.session()), QStringList());
        QVERIFY(t.prompter().shown().isEmpty());
    }

    void userSteps_data()
    {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("mode"); // "closed" when the window has gone
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("committed");

        const QString used = QStringLiteral("This will change Trees for all your Employee. Do you "
                                            "want to do this?");
        auto steps = [](std::initializer_list<const char*> list) {
            QStringList result;
            for (const char* step : list) {
                result.append(QString::fromUtf8(step));
            }
            return result;
        };
        const QStringList none;

        QTest::addRow("opens on the first crew") << none << "B"
                                                 << "10"
                                                 << "Mowing" << none << SeededCrews;
        QTest::addRow("add empties the fields") << steps({"click:cmdAdd"}) << "A"
                                                << ""
                                                << "" << none << SeededCrews;
        QTest::addRow("a change in browse modifies") << steps({"type:txtDescription:s"}) << "M"
                                                     << "10"
                                                     << "Mowings" << none << SeededCrews;
        QTest::addRow("changes in add stay add")
            << steps({"click:cmdAdd", "type:txtCrewNumber:40", "type:txtDescription:Hedges"}) << "A"
            << "40"
            << "Hedges" << none << SeededCrews;
        QTest::addRow("changes in modify stay modify")
            << steps({"type:txtDescription:a", "type:txtDescription:b"}) << "M"
            << "10"
            << "Mowingab" << none << SeededCrews;
        QTest::addRow("save a new crew")
            << steps({"click:cmdAdd", "type:txtCrewNumber:40", "type:txtDescription: Hedges ",
                      "click:cmdUpdate"})
            << "B"
            << "40"
            << "Hedges" << none << SeededCrews + QStringList{QStringLiteral("40 Hedges")};
        QTest::addRow("save with its own number")
            << steps({"type:txtDescription: north", "click:cmdUpdate"}) << "B"
            << "10"
            << "Mowing north" << none
            << QStringList{QStringLiteral("10 Mowing north"), QStringLiteral("20 Edging"),
                           QStringLiteral("30 Trees")};
        QTest::addRow("number moved to a free one")
            << steps({"click:cmdNext", "erase:txtCrewNumber", "type:txtCrewNumber:25",
                      "click:cmdUpdate"})
            << "B"
            << "25"
            << "Edging" << none
            << QStringList{QStringLiteral("10 Mowing"), QStringLiteral("25 Edging"),
                           QStringLiteral("30 Trees")};
        QTest::addRow("blank number refused, input kept")
            << steps({"click:cmdAdd", "type:txtDescription:Hedges", "click:cmdUpdate"}) << "A"
            << ""
            << "Hedges" << QStringList{QStringLiteral("Crew Number should not be blank.")}
            << SeededCrews;
        QTest::addRow("blank description refused, input kept")
            << steps({"click:cmdAdd", "type:txtCrewNumber:40",
                      "type:txtDescription:   ", "click:cmdUpdate"})
            << "A"
            << "40"
            << "   " << QStringList{QStringLiteral("Description should not be blank.")}
            << SeededCrews;
        QTest::addRow("number taken on add")
            << steps({"click:cmdAdd", "type:txtCrewNumber:20", "type:txtDescription:Hedges",
                      "click:cmdUpdate"})
            << "A"
            << "20"
            << "Hedges" << QStringList{DuplicateMessage} << SeededCrews;
        QTest::addRow("number taken on modify")
            << steps({"erase:txtCrewNumber", "type:txtCrewNumber:20", "click:cmdUpdate"}) << "M"
            << "20"
            << "Mowing" << QStringList{DuplicateMessage} << SeededCrews;
        QTest::addRow("letters refused in the number")
            << steps({"click:cmdAdd", "type:txtCrewNumber:4x-2.b"}) << "A"
            << "42"
            << "" << none << SeededCrews;
        QTest::addRow("revert an add shows the crew before")
            << steps({"click:cmdNext", "click:cmdAdd", "type:txtCrewNumber:40",
                      "type:txtDescription:Hedges", "click:cmdCancel"})
            << "B"
            << "20"
            << "Edging" << none << SeededCrews;
        QTest::addRow("revert a change")
            << steps({"type:txtDescription:XX", "click:cmdCancel"}) << "B"
            << "10"
            << "Mowing" << none << SeededCrews;
        QTest::addRow("next") << steps({"click:cmdNext"}) << "B"
                              << "20"
                              << "Edging" << none << SeededCrews;
        QTest::addRow("next at the end")
            << steps({"click:cmdLast", "click:cmdNext"}) << "B"
            << "30"
            << "Trees" << QStringList{MessageTexts::LastRecord} << SeededCrews;
        QTest::addRow("previous at the start")
            << steps({"click:cmdPrevious"}) << "B"
            << "10"
            << "Mowing" << QStringList{MessageTexts::LastRecord} << SeededCrews;
        QTest::addRow("first") << steps({"click:cmdLast", "click:cmdPrevious", "click:cmdFirst"})
                               << "B"
                               << "10"
                               << "Mowing" << none << SeededCrews;
        QTest::addRow("click in the grid") << steps({"row:2"}) << "B"
                                           << "30"
                                           << "Trees" << none << SeededCrews;
        QTest::addRow("delete answered No")
            << steps({"answer:No", "click:cmdDelete"}) << "B"
            << "10"
            << "Mowing" << QStringList{MessageTexts::DeleteQuestion} << SeededCrews;
        QTest::addRow("delete another crew shows the first")
            << steps({"click:cmdNext", "answer:Yes", "click:cmdDelete"}) << "B"
            << "10"
            << "Mowing" << QStringList{MessageTexts::DeleteQuestion}
            << QStringList{QStringLiteral("10 Mowing"), QStringLiteral("30 Trees")};
        QTest::addRow("delete a crew in use")
            << steps({"click:cmdLast", "answer:Yes", "click:cmdDelete"}) << "B"
            << "30"
            << "Trees"
            << QStringList{MessageTexts::DeleteQuestion,
                           QStringLiteral(
                               "Deletion not allowed. Record is being used in Employee.")}
            << SeededCrews;
        QTest::addRow("rename of a crew in use answered No")
            << steps({"click:cmdLast", "type:txtDescription: and hedges", "answer:No",
                      "click:cmdUpdate"})
            << "M"
            << "30"
            << "Trees" << QStringList{used} << SeededCrews;
        QTest::addRow("renumber of a crew in use answered No")
            << steps({"click:cmdLast", "erase:txtCrewNumber", "type:txtCrewNumber:35", "answer:No",
                      "click:cmdUpdate"})
            << "M"
            << "30"
            << "Trees"
            << QStringList{QStringLiteral(
                   "This will change 30 for all your Employee. Do you want to do this?")}
            << SeededCrews;
        QTest::addRow("rename of a crew in use answered Yes")
            << steps({"click:cmdLast", "type:txtDescription: and hedges", "answer:Yes",
                      "click:cmdUpdate"})
            << "B"
            << "30"
            << "Trees and hedges" << QStringList{used}
            << QStringList{QStringLiteral("10 Mowing"), QStringLiteral("20 Edging"),
                           QStringLiteral("30 Trees and hedges")};
        QTest::addRow("close box refused while editing")
            << steps({"type:txtDescription:X", "close"}) << "M"
            << "10"
            << "MowingX" << none << SeededCrews;
        QTest::addRow("escape refused while editing") << steps({"click:cmdAdd", "escape"}) << "A"
                                                      << ""
                                                      << "" << none << SeededCrews;
        QTest::addRow("exit drops the edit")
            << steps({"type:txtDescription:X", "click:cmdExit"}) << "closed"
            << "10"
            << "MowingX" << none << SeededCrews;
        QTest::addRow("close box in browse") << steps({"close"}) << "closed"
                                             << "10"
                                             << "Mowing" << none << SeededCrews;
    }

    void userSteps()
    {
        QFETCH(QStringList, steps);
        QFETCH(QString, mode);
        QFETCH(QString, number);
        QFETCH(QString, description);
        QFETCH(QStringList, messages);
        QFETCH(QStringList, committed);
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        CrewScreen screen(t.session());
        screen.show();
        for (const QString& step : steps) {
            perform(&screen, t.prompter(), step);
        }

        QCOMPARE(screen.isVisible() ? screen.modeText() : QStringLiteral("closed"), mode);
        QCOMPARE(shownNumber(&screen), number);
        QCOMPARE(shownDescription(&screen), description);
        QCOMPARE(t.prompter().texts(), messages);
        for (const ScriptedPrompter::Shown& shown : t.prompter().shown()) {
            const bool question = shown.text.endsWith(u'?');
            QCOMPARE(shown.buttons, question ? Prompter::Buttons::YesNo : Prompter::Buttons::Ok);
            QCOMPARE(shown.icon, question ? Prompter::Icon::Question : Prompter::Icon::Information);
        }
        QCOMPARE(committedCrews(t.session()), committed);
        if (screen.isVisible()) {
            QCOMPARE(activeButtons(&screen), expectedButtons(mode, false));
            QCOMPARE(t.session().transactionOpen(), screen.isEditing());
        } else {
            QVERIFY(!t.session().transactionOpen());
        }
        QVERIFY(t.failures().isEmpty());
    }

    void displayNeverLeavesModify()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        CrewScreen screen(t.session());
        screen.show();
        for (const char* step : {"click:cmdNext", "click:cmdNext", "row:0", "click:cmdLast",
                                 "click:cmdFirst", "row:1"}) {
            perform(&screen, t.prompter(), QString::fromLatin1(step));
            QCOMPARE(screen.modeText(), QStringLiteral("B"));
            QVERIFY(!t.session().transactionOpen());
        }
        QCOMPARE(shownDescription(&screen), QStringLiteral("Edging"));
    }

    void deleteOfTheLastRowShowsTheEmptyState()
    {
        TANDRILL_INSTALLATION(t);
        addCrew(t.session(), 1, QStringLiteral("Only"));
        CrewScreen screen(t.session());
        screen.show();
        t.prompter().queueAnswer(Prompter::Answer::Yes);
        click(&screen, QStringLiteral("cmdDelete"));
        QVERIFY(screen.isEmpty());
        QCOMPARE(screen.modeText(), QStringLiteral("B"));
        QCOMPARE(shownNumber(&screen), QString());
        QCOMPARE(shownDescription(&screen), QString());
        QCOMPARE(activeButtons(&screen), expectedButtons(QStringLiteral("B"), true));
        QVERIFY(field(&screen, QStringLiteral("txtDescription"))->isReadOnly());
        QCOMPARE(committedCrews(t.session()), QStringList());
    }

    void editHoldsOneTransactionThatOthersJoin()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        CrewScreen screen(t.session());
        screen.show();
        click(&screen, QStringLiteral("cmdAdd"));
        QVERIFY(t.session().transactionOpen());
        {
            // What a second screen or a procedure opens now becomes part of this edit.
            Transaction second(t.session());
            QVERIFY(second.isActive());
            QVERIFY(!second.ownsTransaction());
            QVERIFY(addCrew(t.session(), 99, QStringLiteral("Inside the edit")) > 0);
            QVERIFY(second.commit());
        }
        QCOMPARE(committedCrews(t.session()), SeededCrews);
        click(&screen, QStringLiteral("cmdCancel"));
        QVERIFY(!t.session().transactionOpen());
        QCOMPARE(committedCrews(t.session()), SeededCrews);
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
        for (const char* step : {"click:cmdAdd", "type:txtCrewNumber:40",
                                 "type:txtDescription:Edging", "click:cmdUpdate"}) {
            perform(&screen, t.prompter(), QString::fromLatin1(step));
        }
        QCOMPARE(screen.modeText(), QStringLiteral("A"));
        QCOMPARE(shownNumber(&screen), QStringLiteral("40"));
        QCOMPARE(shownDescription(&screen), QStringLiteral("Edging"));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].module, QStringLiteral("clsCrewManager"));
        QVERIFY(t.session().transactionOpen());

        // The same edit goes on and saves once the input is right.
        perform(&screen, t.prompter(), QStringLiteral("type:txtDescription: 2"));
        click(&screen, QStringLiteral("cmdUpdate"));
        QCOMPARE(screen.modeText(), QStringLiteral("B"));
        QCOMPARE(committedCrews(t.session()),
                 SeededCrews + QStringList{QStringLiteral("40 Edging 2")});
        QVERIFY(!t.session().transactionOpen());
    }

    void placeSizeAndGridLayoutComeBack()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        const int numberColumn = 1;
        const int descriptionColumn = 2;
        {
            CrewScreen screen(t.session());
            screen.show();
            QCOMPARE(screen.pos(), QPoint(145, 97)); // beside the side bar, below the board
            screen.move(300, 200);
            screen.resize(640, 380);
            auto* grid = child<RecordGrid>(&screen, QStringLiteral("grdCrew"));
            QHeaderView* header = grid->horizontalHeader();
            header->moveSection(header->visualIndex(descriptionColumn),
                                header->visualIndex(numberColumn));
            header->resizeSection(descriptionColumn, 173);
            // Sort by description with a click on its header: Edging, Mowing, Trees.
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                              QPoint(header->sectionViewportPosition(descriptionColumn) + 5, 5));
            QCOMPARE(grid->record(0).value(QStringLiteral("Description")).toString(),
                     QStringLiteral("Edging"));
            click(&screen, QStringLiteral("cmdExit"));
        }
        CrewScreen again(t.session());
        again.show();
        QCOMPARE(again.pos(), QPoint(300, 200));
        QCOMPARE(again.size(), QSize(640, 380));
        auto* grid = child<RecordGrid>(&again, QStringLiteral("grdCrew"));
        QHeaderView* header = grid->horizontalHeader();
        QVERIFY(header->visualIndex(descriptionColumn) < header->visualIndex(numberColumn));
        QCOMPARE(header->sectionSize(descriptionColumn), 173);
        QVERIFY(grid->isColumnHidden(0));
        QCOMPARE(header->sortIndicatorSection(), descriptionColumn);
        QCOMPARE(shownDescription(&again), QStringLiteral("Edging"));
        click(&again, QStringLiteral("cmdNext"));
        QCOMPARE(shownDescription(&again), QStringLiteral("Mowing"));
        QCOMPARE(Options::option(t.session(), QStringLiteral("frmCrewLEFT"), true),
                 QStringLiteral("4500"));
        QCOMPARE(Options::option(t.session(), QStringLiteral("frmCrewHEIGHT"), true),
                 QStringLiteral("5700"));
    }

    void anotherWorkstationKeepsItsOwnPlace()
    {
        TANDRILL_INSTALLATION(t);
        {
            CrewScreen screen(t.session());
            screen.show();
            screen.move(320, 240);
            click(&screen, QStringLiteral("cmdExit"));
        }
        const QString first = Options::registryValue(t.session(), QStringLiteral("GUID"));
        Options::setRegistryValue(t.session(), QStringLiteral("GUID"), Options::newGuid());
        {
            CrewScreen screen(t.session());
            screen.show();
            QCOMPARE(screen.pos(), QPoint(145, 97));
            QCOMPARE(screen.size(), QSize(495, 254));
            screen.move(10, 20);
            click(&screen, QStringLiteral("cmdExit"));
        }
        Options::setRegistryValue(t.session(), QStringLiteral("GUID"), first);
        CrewScreen screen(t.session());
        screen.show();
        QCOMPARE(screen.pos(), QPoint(320, 240));
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
        auto* grid = child<RecordGrid>(&screen, QStringLiteral("grdCrew"));
        QHeaderView* header = grid->horizontalHeader();
        QCOMPARE(header->visualIndex(2), 1);
        QCOMPARE(header->visualIndex(1), 2);
        QCOMPARE(header->sectionSize(2), 120);
        QCOMPARE(shownDescription(&screen), QStringLiteral("Trees")); // numbers descending
        QVERIFY(t.failures().isEmpty());
    }

    void showCrewDetailIsModalAndAnswersTheChoice()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        const QVariant edging = CrewManager(t.session()).list()[1].value(QStringLiteral("CrewID"));
        QTimer::singleShot(0, this, [] {
            auto* screen = qobject_cast<CrewScreen*>(QApplication::activeModalWidget());
            if (!screen || screen->objectName() != QLatin1String("frmCrew")) {
                qFatal("frmCrew is not the modal window");
            }
            if (shownDescription(screen) != QLatin1String("Edging")) {
                qFatal("frmCrew does not show the crew asked for");
            }
            click(screen, QStringLiteral("cmdNext"));
            click(screen, QStringLiteral("cmdExit"));
        });
        const QVariant chosen =
            CrewScreen::showCrewDetail(t.session(), Mode::Browse, edging, nullptr);
        QCOMPARE(chosen.toLongLong(),
                 CrewManager(t.session()).list()[2].value(QStringLiteral("CrewID")).toLongLong());
    }

    void addRequestRunsOnlyAfterTheWindowHasClosed()
    {
        TANDRILL_INSTALLATION(t);
        seedCrews(t.session());
        QString modeWhileOpen;
        QTimer::singleShot(0, this, [&modeWhileOpen] {
            auto* screen = qobject_cast<CrewScreen*>(QApplication::activeModalWidget());
            if (!screen) {
                qFatal("frmCrew is not the modal window");
            }
            modeWhileOpen = screen->modeText();
            click(screen, QStringLiteral("cmdExit"));
        });
        CrewScreen::showCrewDetail(t.session(), Mode::Add, QVariant(), nullptr);
        QCOMPARE(modeWhileOpen, QStringLiteral("B"));
        QVERIFY(!t.session().transactionOpen());
        QCOMPARE(committedCrews(t.session()), SeededCrews);
    }
};

QTEST_MAIN(TestCrewScreen)
#include "tst_crewscreen.moc"
