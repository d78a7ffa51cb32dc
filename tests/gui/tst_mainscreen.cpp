#include "HelpFiles.h"
#include "HelpWindow.h"
#include "HttpStub.h"
#include "MainScreen.h"
#include "Options.h"
#include "ScreenTest.h"
#include "TestInstallation.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QTextBrowser>
#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

/** A caption ("lbl") or picture ("img") of the navigator on the side bar. */
QLabel* navigator(const QWidget& screen, const char* kind, int index)
{
    return child<QLabel>(screen,
                         qPrintable(u"%1QuickMenu_%2"_s.arg(QLatin1String(kind)).arg(index)));
}

/** The links the screen opened, instead of the desktop's viewers. */
struct Opened : QList<QUrl>
{
    explicit Opened(MainScreen& screen)
    {
        screen.setUrlOpener([this](const QUrl& url) {
            append(url);
            return true;
        });
    }
};

} // namespace

class TestMainScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void entriesFollowTheirScreenTheRightsAndTheUser_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("shown"); // the password entries visible to the user
        QTest::addRow("logins off") << QString() << QString();
        QTest::addRow("CHIEF") << u"CHIEF"_s << u"munPasswords mnuusrmanagement"_s;
        QTest::addRow("chief as typed is another user") << u"Chief"_s << u"munPasswords"_s;
    }
    void entriesFollowTheirScreenTheRightsAndTheUser()
    {
        QFETCH(QString, user);
        QFETCH(QString, shown);
        TANDRILL_INSTALLATION(t);
        t.session().setUserName(user);
        t.session().rights().set(UserRights::EqCountSheet, false);
        MainScreen screen(t.session());
        for (const QString& entry : {u"munPasswords"_s, u"mnuusrmanagement"_s}) {
            QCOMPARE(screen.action(entry)->isVisible(), shown.contains(entry));
        }
        // The entries the program's own screen serves, without any other library.
        const QStringList own = split("mnuExit|mnuTandrillHelp|mnuQickStart|mnuAboutTandrill|"
                                      "mnuTandrillOnline|mnuContactUs|mnuCheckForUpdates");
        int entries = 0;
        for (QAction* entry : screen.findChildren<QAction*>()) {
            if (!entry->objectName().isEmpty() && !entry->menu()) {
                ++entries;
                QCOMPARE(entry->isEnabled(), own.contains(entry->objectName()));
            }
        }
        QCOMPARE(entries, 55); // the menus; the overdue board has its own toolbar
        QVERIFY2(!screen.setHandler(u"mnuNoSuchEntry"_s, [] {}), "unknown name");
        QVERIFY2(!screen.setHandler(u"mnuReports"_s, [] {}), "a pure submenu");
        QVERIFY2(!screen.setHandler(u"mnuViewPart"_s, {}), "no handler");
        // Help is the program's own; work orders and services follow their menu entries.
        for (int index : {-1, 0, 2, 7, 8}) {
            QVERIFY2(!screen.setNavigatorHandler(index, [] {}), qPrintable(QString::number(index)));
        }
        // Without its right a report entry stays visible but disabled; so does the upgrade
        // when the one at start went well.
        for (const char* entry :
             {"mnuRecordCount", "mnuEquipmentDetailList", "mnuUpdateDatabase"}) {
            QVERIFY(screen.setHandler(QLatin1String(entry), [] {}));
            QCOMPARE(screen.action(QLatin1String(entry))->isEnabled(),
                     qstrcmp(entry, "mnuEquipmentDetailList") == 0);
        }
        QVERIFY(screen.action(u"mnuRecordCount"_s)->isVisible());
    }

    void failingUpgradeRunsOnceAndIsReported()
    {
        TANDRILL_INSTALLATION(t);
        t.session().setUpdateFailed(true);
        MainScreen screen(t.session());
        QAction* entry = screen.action(u"mnuUpdateDatabase"_s);
        QVERIFY2(!entry->isEnabled(), "nothing runs the upgrade yet");
        int runs = 0;
        QVERIFY(screen.setHandler(entry->objectName(), [&runs] {
            ++runs;
            throw std::runtime_error("no part table");
        }));
        QVERIFY(entry->isEnabled());
        entry->trigger();
        entry->trigger();
        QVERIFY(runs == 1 && !entry->isEnabled());
        // A failing entry is reported and the frame goes on.
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure failure = t.failures().failures().first();
        QCOMPARE(failure.module + u' ' + failure.procedure + u' ' + failure.description,
                 u"frmMainScreen mnuUpdateDatabase_Click no part table"_s);
    }

    void webEntriesNeedTheirAddress_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("name");
        QTest::addRow("online") << u"mnuTandrillOnline"_s << u"Site"_s;
        QTest::addRow("contact") << u"mnuContactUs"_s << u"Contact"_s;
    }
    void webEntriesNeedTheirAddress()
    {
        QFETCH(QString, entry);
        QFETCH(QString, name);
        TANDRILL_INSTALLATION(t);
        t.session().store().setValue(u"Web"_s, name, QString());
        QVERIFY(!MainScreen(t.session()).action(entry)->isEnabled());
        const QString page = u"https://korvelle.example/page"_s;
        t.session().store().setValue(u"Web"_s, name, page);
        MainScreen screen(t.session());
        Opened opened(screen);
        screen.action(entry)->trigger();
        QCOMPARE(opened, QList<QUrl>{QUrl(page)});
    }

    void navigatorEntryActsWhenWired_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("entry"); // the menu entry it follows, if any
        QTest::addRow("Work Orders follows its menu entry") << 0 << u"mnuPrintWO"_s;
        QTest::addRow("Equipment has its own") << 1 << QString();
    }
    void navigatorEntryActsWhenWired()
    {
        QFETCH(int, index);
        QFETCH(QString, entry);
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        screen.show();
        QVERIFY(QTest::qWaitForWindowExposed(&screen));
        QLabel* label = navigator(screen, "lbl", index);
        QLabel* image = navigator(screen, "img", index);
        QVERIFY(!label->isEnabled());
        int runs = 0;
        const auto run = [&runs] { ++runs; };
        QVERIFY(entry.isEmpty() ? screen.setNavigatorHandler(index, run)
                                : screen.setHandler(entry, run));
        QVERIFY(label->isEnabled() && image->isEnabled());
        QTest::mouseClick(label, Qt::LeftButton);
        QTest::mouseClick(navigator(screen, "lbl", (index + 1) % 7), Qt::LeftButton);
        QCOMPARE(runs, 1);
        // The picture runs the entry too and clears the highlight the pointer left.
        QEvent enter(QEvent::Enter);
        QApplication::sendEvent(label, &enter);
        QVERIFY(label->font().underline());
        QTest::mouseClick(image, Qt::LeftButton);
        QVERIFY(!label->font().underline());
        QCOMPARE(runs, 2);
    }

    void sizeIsKeptPerWorkstationAtCloseButNotAtExit()
    {
        TANDRILL_INSTALLATION(t);
        const auto kept = [&t](bool perWorkstation) {
            return Options::option(t.session(), u"frmMainScreenWIDTH"_s, perWorkstation) + u'x' +
                   Options::option(t.session(), u"frmMainScreenHEIGHT"_s, perWorkstation);
        };
        auto screen = std::make_unique<MainScreen>(t.session());
        QCOMPARE(screen->size(), QSize(15480 / 15, 11190 / 15));
        screen->show();
        screen->resize(1100, 700);
        QVERIFY(screen->close());
        QCOMPARE(kept(true) + u' ' + kept(false), u"16500x10500 x"_s); // not a shared option
        screen = std::make_unique<MainScreen>(t.session());
        QCOMPARE(screen->size(), QSize(1100, 700));
        screen->show();
        screen->resize(900, 600);
        int exits = 0;
        screen->setExitHandler([&exits] { ++exits; });
        screen->action(u"mnuExit"_s)->trigger();
        QVERIFY(exits == 1 && !screen->isVisible());
        QCOMPARE(kept(true), u"16500x10500"_s);
    }

    void helpDocumentsAreCopiedWhereMissingAndShown()
    {
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        Opened opened(screen);
        screen.show();
        const QString pdf = HelpFiles::quickStartPath(t.installation());
        screen.action(u"mnuTandrillHelp"_s)->trigger();
        screen.action(u"mnuQickStart"_s)->trigger();
        QCOMPARE(t.prompter().texts(),
                 (QStringList{
                     u"The help file %1 cannot be found."_s.arg(HelpFiles::manualPath(t.session())),
                     u"The quick start manual %1 cannot be found."_s.arg(pdf)}));
        QVERIFY(!HelpWindow::current() && opened.isEmpty());

        // The bundle fills in only what is missing, and names what it lacks.
        QTemporaryDir bundle;
        QVERIFY(writeFile(bundle.filePath(u"Korvelle.html"_s), "<p>The main screen.</p>"));
        QString error;
        QVERIFY(!HelpFiles::installMissing(t.session(), bundle.path(), &error));
        QVERIFY(error.contains(u"QuickStart.pdf"_s));
        QVERIFY(writeFile(pdf, "%PDF-1.4") && writeFile(bundle.filePath(u"Korvelle.html"_s), "x"));
        QVERIFY2(HelpFiles::installMissing(t.session(), bundle.path(), &error), qPrintable(error));

        screen.action(u"mnuQickStart"_s)->trigger();
        QCOMPARE(opened, QList<QUrl>{QUrl::fromLocalFile(pdf)});
        QTest::mouseClick(navigator(screen, "lbl", 7), Qt::LeftButton);
        QPointer<HelpWindow> window = HelpWindow::current();
        QVERIFY(window && window->isVisible());
        QCOMPARE(window->browser()->toPlainText(), u"The main screen."_s);
        QVERIFY(screen.close());
        QVERIFY(!HelpWindow::current());
        QTRY_VERIFY(!window);
    }

    void checkForUpdates_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("said"); // %1 is the document's address
        QTest::addColumn<bool>("warns");
        QTest::addColumn<QString>("download");
        const auto row = [](const char* name, int status, const QByteArray& inside,
                            const QString& said, bool warns, const QString& download = {}) {
            QTest::addRow("%s", name)
                << status << "<Korvelle>" + inside + "</Korvelle>" << said << warns << download;
        };
        row("newer", 200, "<Version>9.0</Version><Download>/setup/new.run</Download>",
            u"9.0 is available"_s, false, u"/setup/new.run"_s);
        row("same", 200, "<Version>" TANDRILL_VERSION "</Version>", u"No updates"_s, false);
        row("no version", 200, "", u"no version"_s, true);
        row("not found", 404, "", u"Cannot check for updates at %1: the server answered 404"_s,
            true);
    }
    void checkForUpdates()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, document);
        QFETCH(QString, said);
        QFETCH(bool, warns);
        QFETCH(QString, download);
        TANDRILL_INSTALLATION(t);
        HttpStub server(status, document);
        t.session().store().setValue(u"Web"_s, u"Host"_s, server.url(QString()).toString());
        MainScreen screen(t.session());
        screen.setUpdateTimeout(3000);
        Opened opened(screen);
        screen.action(u"mnuCheckForUpdates"_s)->trigger();
        QCOMPARE(t.prompter().texts().size(), 1);
        QVERIFY2(
            t.prompter().texts().first().contains(said.replace(u"%1"_s, server.url().toString())),
            qPrintable(t.prompter().texts().first()));
        QCOMPARE(t.prompter().shown().first().icon,
                 warns ? Prompter::Icon::Exclamation : Prompter::Icon::Information);
        QCOMPARE(opened, download.isEmpty() ? QList<QUrl>() : QList<QUrl>{server.url(download)});
    }

    void homeViewReloadsOnReturnAndAboutShowsTheVersion()
    {
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        QPointer<QWidget> empty = screen.homeWidget();
        QCOMPARE(empty->objectName(), u"pnlOverDueWork"_s);
        auto* board = new QLabel(u"board"_s);
        int reloads = 0;
        screen.setHomeWidget(board, [&reloads] { ++reloads; });
        QVERIFY(screen.isAncestorOf(board));
        QTRY_VERIFY(!empty);
        screen.show();
        QApplication::setActiveWindow(&screen);
        QTRY_VERIFY(reloads > 0);

        QString version;
        onModal("frmAbout", [&version](QWidget* about) {
            version = child<QLabel>(*about, "lblVersion")->text();
            click(*about, "cmdOK");
        });
        screen.action(u"mnuAboutTandrill"_s)->trigger();
        QCOMPARE(version, u"Version " TANDRILL_VERSION ""_s);
    }
};

QTEST_MAIN(TestMainScreen)
#include "tst_mainscreen.moc"
