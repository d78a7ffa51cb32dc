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
#include <QMenuBar>
#include <QTextBrowser>
#include <memory>
#include <stdexcept>

namespace {

const QString Version = QStringLiteral(TANDRILL_VERSION);

QString option(TestInstallation& t, const char* name, bool perWorkstation = false)
{
    return Options::option(t.session(), QString::fromLatin1(name), perWorkstation);
}

/** A caption ("lbl") or picture ("img") of the navigator on the side bar. */
QLabel* navigatorLabel(const QWidget& screen, const QString& kind, int index)
{
    auto* label = screen.findChild<QLabel*>(kind + QStringLiteral("QuickMenu_%1").arg(index));
    if (!label) {
        qFatal("No %sQuickMenu_%d", qPrintable(kind), index);
    }
    return label;
}

struct OpenedUrls
{
    QList<QUrl> urls;
    MainScreen::UrlOpener opener()
    {
        return [this](const QUrl& url) {
            urls.append(url);
            return true;
        };
    }
};

} // namespace

class TestMainScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        TANDRILL_REQUIRE_ENGINE();
        m_shared = std::make_unique<TestInstallation>();
        QVERIFY2(m_shared->isValid(), qPrintable(m_shared->error()));
        m_sharedScreen = std::make_unique<MainScreen>(m_shared->session());
    }

    void cleanupTestCase()
    {
        m_sharedScreen.reset();
        m_shared.reset();
    }

    void menuBarAndFrame()
    {
        MainScreen& screen = *m_sharedScreen;
        QStringList titles;
        for (QAction* menu : screen.menuBar()->actions()) {
            titles.append(menu->text().remove(u'&'));
        }
        QCOMPARE(titles, split("File|Work Order|View|Add|Equipment|Reports|Help"));
        QCOMPARE(screen.windowTitle(), QStringLiteral("Korvelle ") + Version);
        QWidget* home = screen.homeWidget();
        QCOMPARE(home->objectName(), QStringLiteral("pnlOverDueWork"));
        QVERIFY2(home->findChildren<QWidget*>().isEmpty(), "the home area stays empty");
    }

    void passwordEntriesFollowTheUser_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<bool>("passwords");
        QTest::addColumn<bool>("userManagement");
        QTest::newRow("logins off") << QString() << false << false;
        QTest::newRow("CHIEF") << QStringLiteral("CHIEF") << true << true;
        QTest::newRow("bob") << QStringLiteral("BOB") << true << false;
        QTest::newRow("chief as typed") << QStringLiteral("Chief") << true << false;
    }

    void passwordEntriesFollowTheUser()
    {
        QFETCH(QString, user);
        QFETCH(bool, passwords);
        QFETCH(bool, userManagement);
        TANDRILL_INSTALLATION(t);
        t.session().setUserName(user);
        MainScreen screen(t.session());
        QCOMPARE(screen.action(QStringLiteral("munPasswords"))->isVisible(), passwords);
        QCOMPARE(screen.action(QStringLiteral("mnuusrmanagement"))->isVisible(), userManagement);
        QVERIFY(screen.action(QStringLiteral("mnuChangePassword"))->isVisible());
    }

    void updateDatabaseOnlyAfterAFailedUpgradeAndOnce_data()
    {
        QTest::addColumn<bool>("failed");
        QTest::newRow("normal start") << false;
        QTest::newRow("upgrade failed") << true;
    }

    void updateDatabaseOnlyAfterAFailedUpgradeAndOnce()
    {
        QFETCH(bool, failed);
        TANDRILL_INSTALLATION(t);
        t.session().setUpdateFailed(failed);
        MainScreen screen(t.session());
        QAction* entry = screen.action(QStringLiteral("mnuUpdateDatabase"));
        QVERIFY2(!entry->isEnabled(), "nothing runs the upgrade yet");
        int runs = 0;
        QVERIFY(screen.setHandler(entry->objectName(), [&runs] { ++runs; }));
        QCOMPARE(entry->isEnabled(), failed);
        entry->trigger();
        entry->trigger();
        QCOMPARE(runs, failed ? 1 : 0);
        QVERIFY(!entry->isEnabled());
    }

    void entriesWithoutTheirScreenAreDisabled()
    {
        TANDRILL_INSTALLATION(t);
        t.session().setUserName(QStringLiteral("CHIEF"));
        MainScreen screen(t.session());
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
        QCOMPARE(entries, 55);
    }

    void webEntriesNeedTheirAddress_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("name");
        QTest::newRow("online") << QStringLiteral("mnuTandrillOnline") << QStringLiteral("Site");
        QTest::newRow("contact") << QStringLiteral("mnuContactUs") << QStringLiteral("Contact");
        QTest::newRow("updates") << QStringLiteral("mnuCheckForUpdates") << QStringLiteral("Host");
    }

    void webEntriesNeedTheirAddress()
    {
        QFETCH(QString, entry);
        QFETCH(QString, name);
        TANDRILL_INSTALLATION(t);
        QVERIFY2(MainScreen(t.session()).action(entry)->isEnabled(), "a new installation's own");
        t.session().store().setValue(QStringLiteral("Web"), name, QString());
        QVERIFY(!MainScreen(t.session()).action(entry)->isEnabled());
        if (name == QLatin1String("Host")) {
            return; // what is asked of the host is checkForUpdates' own
        }
        const QString page = QStringLiteral("https://korvelle.example/page");
        t.session().store().setValue(QStringLiteral("Web"), name, page);
        MainScreen screen(t.session());
        OpenedUrls opened;
        screen.setUrlOpener(opened.opener());
        screen.action(entry)->trigger();
        QCOMPARE(opened.urls, QList<QUrl>{QUrl(page)});
    }

    void handlersOnlyForRealEntries()
    {
        // Wired entries running their handler are seen with the navigator and the upgrade.
        MainScreen& screen = *m_sharedScreen;
        QVERIFY2(!screen.setHandler(QStringLiteral("mnuNoSuchEntry"), [] {}), "unknown name");
        QVERIFY2(!screen.setHandler(QStringLiteral("mnuReports"), [] {}), "a pure submenu");
        QVERIFY2(!screen.setHandler(QStringLiteral("mnuViewPart"), {}), "no handler");
        QVERIFY(!screen.action(QStringLiteral("mnuViewPart"))->isEnabled());
        // Help is the program's own; work orders and services follow their menu entries.
        for (int index : {-1, 0, 2, 7, 8}) {
            QVERIFY2(!screen.setNavigatorHandler(index, [] {}), qPrintable(QString::number(index)));
        }
    }

    void missingRightDisablesReportEntriesWhichStayVisible_data()
    {
        QTest::addColumn<int>("right");
        QTest::addColumn<QString>("entries");
        QTest::newRow("EqList") << int(UserRights::EqList) << QStringLiteral("mnuEquipmentList");
        QTest::newRow("EqCountSheet")
            << int(UserRights::EqCountSheet) << QStringLiteral("mnuPrintCount|mnuRecordCount");
    }

    void missingRightDisablesReportEntriesWhichStayVisible()
    {
        QFETCH(int, right);
        QFETCH(QString, entries);
        TANDRILL_INSTALLATION(t);
        t.session().rights().set(UserRights::Right(right), false);
        MainScreen screen(t.session());
        for (const QString& name : entries.split(u'|')) {
            QVERIFY(screen.setHandler(name, [] {}));
            QVERIFY2(!screen.action(name)->isEnabled(), qPrintable(name));
            QVERIFY2(screen.action(name)->isVisible(), qPrintable(name));
        }
        QVERIFY(screen.setHandler(QStringLiteral("mnuEquipmentDetailList"), [] {}));
        QVERIFY2(screen.action(QStringLiteral("mnuEquipmentDetailList"))->isEnabled(),
                 "an entry no right guards");
    }

    void navigatorEntryActsWhenWired_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("entry"); // the menu entry it follows, if any
        QTest::newRow("Work Orders follows its menu entry") << 0 << QStringLiteral("mnuPrintWO");
        QTest::newRow("Equipment has its own") << 1 << QString();
    }

    void navigatorEntryActsWhenWired()
    {
        QFETCH(int, index);
        QFETCH(QString, entry);
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        screen.show();
        QVERIFY(QTest::qWaitForWindowExposed(&screen));
        QLabel* label = navigatorLabel(screen, QStringLiteral("lbl"), index);
        QLabel* image = navigatorLabel(screen, QStringLiteral("img"), index);
        QLabel* next = navigatorLabel(screen, QStringLiteral("lbl"), (index + 1) % 7);
        QVERIFY(!label->isEnabled());

        int runs = 0;
        const auto run = [&runs] { ++runs; };
        QVERIFY(entry.isEmpty() ? screen.setNavigatorHandler(index, run)
                                : screen.setHandler(entry, run));
        QVERIFY(label->isEnabled() && image->isEnabled());
        QTest::mouseClick(label, Qt::LeftButton);
        QTest::mouseClick(next, Qt::LeftButton);
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
        const QSize initial(15480 / 15, 11190 / 15);
        {
            MainScreen screen(t.session());
            QCOMPARE(screen.size(), initial);
            screen.show();
            screen.resize(1100, 700);
            QVERIFY(screen.close());
        }
        QCOMPARE(option(t, "frmMainScreenHEIGHT", true), QStringLiteral("10500"));
        QCOMPARE(option(t, "frmMainScreenWIDTH", true), QStringLiteral("16500"));
        QVERIFY2(option(t, "frmMainScreenHEIGHT").isEmpty(), "not a shared option");
        {
            MainScreen again(t.session());
            QCOMPARE(again.size(), QSize(1100, 700));
            again.show();
            again.resize(900, 600);
            int exits = 0;
            again.setExitHandler([&exits] { ++exits; });
            again.action(QStringLiteral("mnuExit"))->trigger();
            QCOMPARE(exits, 1);
            QVERIFY(!again.isVisible());
        }
        QCOMPARE(option(t, "frmMainScreenHEIGHT", true), QStringLiteral("10500"));
        Options::setRegistryValue(t.session(), QStringLiteral("GUID"), Options::newGuid());
        QCOMPARE(MainScreen(t.session()).size(), initial);
    }

    void helpShowsTheManualAndClosesWithTheScreen()
    {
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        screen.show();
        screen.action(QStringLiteral("mnuTandrillHelp"))->trigger();
        QCOMPARE(t.prompter().texts(),
                 QStringList{QStringLiteral("The help file %1 cannot be found.")
                                 .arg(HelpFiles::manualPath(t.session()))});
        QVERIFY(!HelpWindow::current());

        QVERIFY(
            writeFile(HelpFiles::manualPath(t.session()),
                      "<html><body><h1>Korvelle Help</h1><p>The main screen.</p></body></html>"));
        QLabel* help = navigatorLabel(screen, QStringLiteral("lbl"), 7);
        QCOMPARE(help->text(), QStringLiteral("Help & Support"));
        QTest::mouseClick(help, Qt::LeftButton);
        QPointer<HelpWindow> window = HelpWindow::current();
        QVERIFY(window && window->isVisible());
        QVERIFY(window->browser()->toPlainText().contains(QStringLiteral("The main screen.")));
        QVERIFY(screen.close());
        QVERIFY(!HelpWindow::current());
        QTRY_VERIFY(!window);
    }

    void quickStartOpensThePdfOfTheInstallation()
    {
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        OpenedUrls opened;
        screen.setUrlOpener(opened.opener());
        const QString pdf = t.home() + QStringLiteral("/QuickStart.pdf");
        screen.action(QStringLiteral("mnuQickStart"))->trigger();
        QVERIFY(opened.urls.isEmpty());
        QCOMPARE(
            t.prompter().texts(),
            QStringList{QStringLiteral("The quick start manual %1 cannot be found.").arg(pdf)});

        QVERIFY(writeFile(pdf, "%PDF-1.4\n"));
        screen.action(QStringLiteral("mnuQickStart"))->trigger();
        QCOMPARE(opened.urls, QList<QUrl>{QUrl::fromLocalFile(pdf)});
    }

    void bundledHelpIsCopiedOnlyWhereMissing()
    {
        TANDRILL_INSTALLATION(t);
        QTemporaryDir bundle;
        const QString pdf = HelpFiles::quickStartPath(t.installation());
        QVERIFY(writeFile(bundle.filePath(QStringLiteral("Korvelle.html")), "<p>manual</p>") &&
                writeFile(bundle.filePath(QStringLiteral("QuickStart.pdf")), "%PDF new") &&
                writeFile(pdf, "%PDF kept"));
        QString error;
        QVERIFY2(HelpFiles::installMissing(t.session(), bundle.path(), &error), qPrintable(error));
        QCOMPARE(readFile(HelpFiles::manualPath(t.session())), QByteArray("<p>manual</p>"));
        QCOMPARE(readFile(pdf), QByteArray("%PDF kept"));

        QFile::remove(pdf);
        QVERIFY(
            !HelpFiles::installMissing(t.session(), t.home() + QStringLiteral("/nowhere"), &error));
        QVERIFY(error.contains(QStringLiteral("QuickStart.pdf")));
    }

    void checkForUpdates_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("message"); // %1 is the document's address
        QTest::addColumn<bool>("warns");
        QTest::addColumn<bool>("opensDownload");
        QTest::newRow("newer") << 200
                               << QByteArray("<Korvelle><Version>2.3.0</Version><Download>"
                                             "/setup/Korvelle-2.3.0.run</Download></Korvelle>")
                               << QStringLiteral("Korvelle2.3.0 is available.") << false << true;
        QTest::newRow("same") << 200
                              << QByteArray("<Korvelle><Version>" TANDRILL_VERSION
                                            "</Version></Korvelle>")
                              << QStringLiteral("No updates available") << false << false;
        QTest::newRow("no version")
            << 200 << QByteArray("<Korvelle/>")
            << QStringLiteral("The update document at %1 names no version.") << true << false;
        QTest::newRow("not found")
            << 404 << QByteArray("gone")
            << QStringLiteral("Cannot check for updates at %1: the server answered 404") << true
            << false;
    }

    void checkForUpdates()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, document);
        QFETCH(QString, message);
        QFETCH(bool, warns);
        QFETCH(bool, opensDownload);
        TANDRILL_INSTALLATION(t);
        HttpStub server(status, document, status == 0);
        t.session().store().setValue(QStringLiteral("Web"), QStringLiteral("Host"),
                                     server.url(QString()).toString());
        MainScreen screen(t.session());
        screen.setUpdateTimeout(300);
        OpenedUrls opened;
        screen.setUrlOpener(opened.opener());
        screen.action(QStringLiteral("mnuCheckForUpdates"))->trigger();
        QCOMPARE(server.requests(), 1);
        QCOMPARE(t.prompter().texts(),
                 QStringList{message.replace(QStringLiteral("%1"), server.url().toString())});
        QCOMPARE(t.prompter().shown().first().icon,
                 warns ? Prompter::Icon::Exclamation : Prompter::Icon::Information);
        QCOMPARE(opened.urls,
                 opensDownload
                     ? QList<QUrl>{server.url(QStringLiteral("/setup/Korvelle-2.3.0.run"))}
                     : QList<QUrl>());
    }

    void aboutShowsTheVersion()
    {
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        screen.show();
        QString version;
        onModal("frmAbout", [&version](QWidget* about) {
            version = child<QLabel>(*about, "lblVersion")->text();
            click(*about, "cmdOK");
        });
        screen.action(QStringLiteral("mnuAboutTandrill"))->trigger();
        QCOMPARE(version, QStringLiteral("Version ") + Version);
    }

    void homeViewTakesThePlaceOfTheEmptyAreaAndReloadsOnReturn()
    {
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        QPointer<QWidget> empty = screen.homeWidget();
        auto* board = new QLabel(QStringLiteral("board"));
        board->setObjectName(QStringLiteral("frmOverDueWork"));
        int reloads = 0;
        screen.setHomeWidget(board, [&reloads] { ++reloads; });
        QCOMPARE(screen.findChild<QLabel*>(QStringLiteral("frmOverDueWork")), board);
        QTRY_VERIFY(!empty);
        screen.show();
        QApplication::setActiveWindow(&screen);
        QTRY_VERIFY(reloads > 0);
    }

    void failingEntryIsReportedAndTheFrameGoesOn()
    {
        TANDRILL_INSTALLATION(t);
        MainScreen screen(t.session());
        QVERIFY(screen.setHandler(QStringLiteral("mnuViewPart"),
                                  [] { throw std::runtime_error("no part table"); }));
        screen.action(QStringLiteral("mnuViewPart"))->trigger();
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure failure = t.failures().failures().first();
        QCOMPARE(failure.module + u' ' + failure.procedure + u' ' + failure.description,
                 QStringLiteral("frmMainScreen mnuViewPart_Click no part table"));
    }

private:
    // One screen for the checks that only look.
    std::unique_ptr<TestInstallation> m_shared;
    std::unique_ptr<MainScreen> m_sharedScreen;
};

QTEST_MAIN(TestMainScreen)
#include "tst_mainscreen.moc"
