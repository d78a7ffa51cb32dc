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

namespace {

struct Run
{
    int exitCode = -1; // -1 also when it did not finish in time
    QString errors;

    /** Whether the run ended with code and said said on its error stream. */
    bool ended(int code, const QString& said) const
    {
        return exitCode == code && errors.contains(said);
    }
};

/** Runs the desktop program without a display, as the documentation's pictures are taken. */
Run runProgram(const QString& home, const QStringList& more = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.remove(QStringLiteral("TANDRILL_HOME"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TANDRILL_PROGRAM),
                  (home.isEmpty() ? QStringList() : QStringList{QStringLiteral("--home"), home}) +
                      more);
    Run run;
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitCode();
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace

class TestDesktopStart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void wrongCommandLineEndsWithTwo()
    {
        // Each message of the command line is checked where it is read; here the way out.
        const Run run =
            runProgram(QString(), {QStringLiteral("--today"), QStringLiteral("2025-13-01")});
        QVERIFY2(run.ended(2, QStringLiteral("The date given with --today, \"2025-13-01\", is not "
                                             "a date of the form yyyy-MM-dd.")),
                 qPrintable(run.errors));
    }

    void folderWithoutInstallationIsRefused()
    {
        QTemporaryDir empty;
        const Run run = runProgram(empty.path());
        QVERIFY2(run.ended(1, QStringLiteral("There is no Korvelle installation in ")),
                 qPrintable(run.errors));
        QVERIFY(
            run.errors.contains(QStringLiteral("tandrill-cli --home %1 init").arg(empty.path())));
        QVERIFY2(QDir(empty.path()).isEmpty(), "nothing is made in the folder");
    }

    void damagedStoreIsToldAndKept()
    {
        QTemporaryDir home;
        const QString store = home.filePath(QStringLiteral("Tandrill.ini"));
        const QByteArray damaged = "[Software\\Korvelle]\nVERSION=2.2.0\nthis line is no value\n";
        QVERIFY(writeFile(store, damaged));
        const Run run = runProgram(home.path());
        QVERIFY2(run.ended(1, QStringLiteral("cannot be read")), qPrintable(run.errors));
        QCOMPARE(readFile(store), damaged);
    }

    void unreachableDataEndsTheStartWithItsMessage()
    {
        // That the data file is left as it was is the start's own test; here the way out.
        TANDRILL_INSTALLATION(t);
        t.session().closeDatabase();
        if (TestInstallation::wantsPostgres()) {
            // A server that is not there: nothing listens on this socket folder.
            Store store(t.installation().storeFile());
            QVERIFY(store.load());
            store.setValue(QStringLiteral("Database"), QStringLiteral("Host"), t.home());
            QVERIFY(store.save());
        } else {
            const QString dataFile = t.installation().dataFile();
            QFile::remove(dataFile + QStringLiteral("-wal"));
            QFile::remove(dataFile + QStringLiteral("-shm"));
            QVERIFY(writeFile(dataFile, QByteArray(4096, 'x')));
        }
        const Run run = runProgram(t.home());
        QVERIFY2(run.ended(1, QStringLiteral("modData_Conntect (ConnectToDB)")),
                 qPrintable(run.errors));
    }

    void secondCopyIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        QLockFile lock(Startup::lockFilePath(t.installation().home()));
        QVERIFY(lock.tryLock());
        const Run run = runProgram(t.home());
        QVERIFY2(run.ended(1, QStringLiteral("Tandrill application is already open.")),
                 qPrintable(run.errors));
    }

    void pictureOfTheMainScreen()
    {
        TANDRILL_INSTALLATION(t);
        const QString picture = t.home() + QStringLiteral("/main.png");
        const Run run = runProgram(
            t.home(), {QStringLiteral("--today"), QStringLiteral("2025-03-01"),
                       QStringLiteral("--screenshot"), QStringLiteral("frmMainScreen"), picture});
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(QImage(picture).size(), QSize(15480 / 15, 11190 / 15));

        // The start put the program's own documents into the installation.
        QVERIFY(readFile(t.home() + QStringLiteral("/QuickStart.pdf")).startsWith("%PDF-"));
        QVERIFY(
            readFile(t.home() + QStringLiteral("/doc/Korvelle.html")).contains("Korvelle Help"));
        QVERIFY2(Options::option(t.session(), QStringLiteral("frmMainScreenWIDTH"), true).isEmpty(),
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
        store.setValue(QStringLiteral("Software\\Korvelle"), QStringLiteral("PATH"),
                       t.home() + QStringLiteral("/gone/"));
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
                reports.append(child<QLineEdit>(*modal, "txtProcedure")->text());
                click(*modal, "cmdExit");
            }
        });
        answer.start(20);
        QVERIFY(start.run());
        QCOMPARE(reports, QStringList{QStringLiteral("CheckForUpdate")});
        QVERIFY(session.isOpen());
        QSqlQuery q(session.db());
        QVERIFY(Sql::exec(q, QStringLiteral("SELECT ProcedureName FROM tblErrorList")));
        QVERIFY2(q.next() && q.value(0).toString() == QLatin1String("CheckForUpdate") && !q.next(),
                 "the failure is kept once the data is open");
        QVERIFY(printed.isEmpty());
    }

    void pictureOfAnUnknownScreenIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        const QString picture = t.home() + QStringLiteral("/x.png");
        const Run run = runProgram(
            t.home(), {QStringLiteral("--screenshot"), QStringLiteral("frmNothing"), picture});
        QVERIFY2(run.ended(2, QStringLiteral("No screen named frmNothing can be opened.")),
                 qPrintable(run.errors));
        QVERIFY(!QFile::exists(picture));
    }
};

QTEST_MAIN(TestDesktopStart)
#include "tst_desktopstart.moc"
