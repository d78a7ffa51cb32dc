#include "DesktopStart.h"
#include "Options.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "Startup.h"
#include "Store.h"
#include "TestInstallation.h"

#include <QDir>
#include <QImage>
#include <QLockFile>
#include <QProcess>
#include <QSqlQuery>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {

/** Runs the desktop program without a display: its exit code (-1 if it hangs) and its stderr. */
std::pair<int, QString> runProgram(const QString& home, const QStringList& more)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.remove(u"TANDRILL_HOME"_s);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TANDRILL_PROGRAM), QStringList{u"--home"_s, home} + more);
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return {-1, QString()};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

class TestDesktopStart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void refusedStartSaysWhyAndChangesNothing_data()
    {
        QTest::addColumn<QString>("folder");    // the installation, empty, damaged or locked
        QTest::addColumn<QString>("arguments"); // after --home; %1 is the installation
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("said"); // %1 is the folder given
        QTest::addRow("command line")
            << u"installation"_s << u"--today 2025-13-01"_s << 2 << u"--today"_s;
        QTest::addRow("no installation")
            << u"empty"_s << QString() << 1
            << u"There is no Korvelle installation in %1.\nMake one with \"tandrill-cli --home %1 "
               "init\", or start scripts/run for a demonstration installation."_s;
        QTest::addRow("damaged settings") << u"damaged"_s << QString() << 1
                                          << u"The settings of the installation in %1 cannot "
                                             "be read: "_s;
        QTest::addRow("second copy") << u"locked"_s << QString() << 1 << u"already open"_s;
        QTest::addRow("unknown screen")
            << u"installation"_s << u"--screenshot frmNothing %1/x.png"_s << 2
            << u"No screen named frmNothing can be opened."_s;
    }
    void refusedStartSaysWhyAndChangesNothing()
    {
        QFETCH(QString, folder);
        QFETCH(QString, arguments);
        QFETCH(int, code);
        QFETCH(QString, said);
        TANDRILL_INSTALLATION(t);
        QLockFile lock(Startup::lockFilePath(t.home()));
        QVERIFY(folder != u"locked" || lock.tryLock());
        const QString home =
            folder == u"empty" || folder == u"damaged" ? t.home() + u"/other"_s : t.home();
        const QByteArray damaged = "[Software\\Korvelle]\nVERSION=2.2.0\nthis line is no value\n";
        QVERIFY(QDir().mkpath(home) &&
                (folder != u"damaged" || writeFile(home + u"/Tandrill.ini"_s, damaged)));
        const auto [exitCode, errors] =
            runProgram(home, arguments.replace(u"%1"_s, t.home()).split(u' ', Qt::SkipEmptyParts));
        QVERIFY2(exitCode == code && errors.contains(said.replace(u"%1"_s, home)),
                 qPrintable(errors));
        QVERIFY2(!QFile::exists(t.home() + u"/x.png"_s), "no picture of a screen that cannot open");
        // Nothing is made where there is no installation, and damaged settings are kept.
        if (home != t.home()) {
            QCOMPARE(readFile(home + u"/Tandrill.ini"_s),
                     folder == u"empty" ? QByteArray("(unreadable)") : damaged);
        }
    }

    void pictureOfTheMainScreen()
    {
        TANDRILL_INSTALLATION(t);
        const QString picture = t.home() + u"/main.png"_s;
        const auto [exitCode, errors] =
            runProgram(t.home(), {u"--today"_s, u"2025-03-01"_s, u"--screenshot"_s,
                                  u"frmMainScreen"_s, picture});
        QVERIFY2(exitCode == 0, qPrintable(errors));
        QCOMPARE(QImage(picture).size(), QSize(15480 / 15, 11190 / 15));
        // The start put the program's own documents into the installation.
        QVERIFY(readFile(t.home() + u"/QuickStart.pdf"_s).startsWith("%PDF-"));
        QVERIFY(readFile(t.home() + u"/doc/Korvelle.html"_s).contains("Korvelle Help"));
        QVERIFY2(Options::option(t.session(), u"frmMainScreenWIDTH"_s, true).isEmpty(),
                 "a picture does not change the kept size");
    }

    void movedInstallationReportsOnceAndStarts()
    {
        // A copied or moved installation: its stored PATH names a folder that is gone,
        // so the update check fails before any data is open.
        TANDRILL_INSTALLATION(t);
        t.session().closeDatabase();
        Store store(t.installation().storeFile());
        QVERIFY(store.load());
        store.setValue(u"Software\\Korvelle"_s, u"PATH"_s, t.home() + u"/gone/"_s);
        QVERIFY(store.save());
        Session session(t.installation(), t.prompter());
        QVERIFY(session.loadStore(nullptr));
        QString printed;
        QTextStream errors(&printed);
        DesktopStart start(session, false, errors);
        QStringList reports;
        QTimer answer; // the report screen, each time it shows, answered with Return
        connect(&answer, &QTimer::timeout, [&reports] {
            QWidget* modal = QApplication::activeModalWidget();
            if (modal && modal->objectName() == QLatin1String("frmSendEmail")) {
                reports.append(text(*modal, "txtProcedure"));
                click(*modal, "cmdExit");
            }
        });
        answer.start(20);
        QVERIFY(start.run());
        QCOMPARE(reports, QStringList{u"CheckForUpdate"_s});
        QVERIFY(session.isOpen());
        QSqlQuery q(session.db());
        QVERIFY(Sql::exec(q, u"SELECT ProcedureName FROM tblErrorList"_s));
        QVERIFY2(q.next() && q.value(0).toString() == u"CheckForUpdate" && !q.next(),
                 "the failure is kept once the data is open");
        QVERIFY(printed.isEmpty());
    }
};

QTEST_MAIN(TestDesktopStart)
#include "tst_desktopstart.moc"
