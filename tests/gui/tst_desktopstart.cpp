#include "Options.h"
#include "Startup.h"
#include "Store.h"
#include "TestInstallation.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QLockFile>
#include <QProcess>
#include <QTest>

namespace {

struct Run
{
    bool finished = false;
    int exitCode = -1;
    QString errors;
};

/** Runs the desktop program without a display, as the documentation's pictures are taken. */
Run runProgram(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.remove(QStringLiteral("TANDRILL_HOME"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TANDRILL_PROGRAM), arguments);
    Run run;
    run.finished = process.waitForFinished(120000);
    if (!run.finished) {
        process.kill();
        process.waitForFinished();
    }
    run.exitCode = process.exitCode();
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QStringList homeArguments(const TestInstallation& t, const QStringList& more = {})
{
    return QStringList{QStringLiteral("--home"), t.home()} + more;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

} // namespace

class TestDesktopStart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void wrongCommandLineEndsWithTwo_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("bad date") << QStringList{QStringLiteral("--today"),
                                                 QStringLiteral("2025-13-01")}
                                  << QStringLiteral("The date given with --today, \"2025-13-01\", "
                                                    "is not a date of the form yyyy-MM-dd.");
        QTest::newRow("unknown option") << QStringList{QStringLiteral("--colour")}
                                        << QStringLiteral("Unknown option 'colour'.");
        QTest::newRow("picture without file")
            << QStringList{QStringLiteral("--screenshot"), QStringLiteral("frmMainScreen")}
            << QStringLiteral("--screenshot needs the screen's name");
    }

    void wrongCommandLineEndsWithTwo()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const Run run = runProgram(arguments);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.contains(message), qPrintable(run.errors));
    }

    void folderWithoutInstallationIsRefused()
    {
        QTemporaryDir empty;
        const Run run = runProgram({QStringLiteral("--home"), empty.path()});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("There is no Korvelle installation in ")),
                 qPrintable(run.errors));
        QVERIFY(
            run.errors.contains(QStringLiteral("tandrill-cli --home %1 init").arg(empty.path())));
        QVERIFY2(QDir(empty.path()).isEmpty(), "nothing is made in the folder");
    }

    void damagedStoreIsToldAndKept()
    {
        QTemporaryDir home;
        const QByteArray damaged = "[Software\\Korvelle]\nVERSION=2.2.0\nthis line is no value\n";
        writeFile(home.filePath(QStringLiteral("Tandrill.ini")), damaged);
        const Run run = runProgram({QStringLiteral("--home"), home.path()});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("cannot be read")), qPrintable(run.errors));
        QFile store(home.filePath(QStringLiteral("Tandrill.ini")));
        QVERIFY(store.open(QIODevice::ReadOnly));
        QCOMPARE(store.readAll(), damaged);
    }

    void unreachableDataEndsTheStartWithItsMessage()
    {
        TANDRILL_INSTALLATION(t);
        t.session().closeDatabase();
        QByteArray before;
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
            before = QByteArray(4096, 'x');
            writeFile(dataFile, before);
        }
        const Run run = runProgram(homeArguments(t));
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("modData_Conntect (ConnectToDB)")),
                 qPrintable(run.errors));
        if (!before.isEmpty()) {
            QFile file(t.installation().dataFile());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), before);
        }
    }

    void secondCopyIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        QLockFile lock(Startup::lockFilePath(t.installation().home()));
        QVERIFY(lock.tryLock());
        const Run run = runProgram(homeArguments(t));
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("Tandrill application is already open.")),
                 qPrintable(run.errors));
    }

    void pictureOfTheMainScreen()
    {
        TANDRILL_INSTALLATION(t);
        const QString picture = t.home() + QStringLiteral("/main.png");
        const Run run = runProgram(homeArguments(
            t, {QStringLiteral("--today"), QStringLiteral("2025-03-01"),
                QStringLiteral("--screenshot"), QStringLiteral("frmMainScreen"), picture}));
        QVERIFY(run.finished);
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        const QImage image(picture);
        QCOMPARE(image.size(), QSize(15480 / 15, 11190 / 15));

        // The start put the program's own documents into the installation.
        QFile pdf(t.home() + QStringLiteral("/QuickStart.pdf"));
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QVERIFY(pdf.read(5) == "%PDF-");
        QFile manual(t.home() + QStringLiteral("/doc/Korvelle.html"));
        QVERIFY(manual.open(QIODevice::ReadOnly));
        QVERIFY(manual.readAll().contains("Korvelle Help"));
        QVERIFY2(Options::option(t.session(), QStringLiteral("frmMainScreenWIDTH"), true).isEmpty(),
                 "a picture does not change the kept size");
    }

    void pictureOfAnUnknownScreenIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        const QString picture = t.home() + QStringLiteral("/x.png");
        const Run run = runProgram(homeArguments(
            t, {QStringLiteral("--screenshot"), QStringLiteral("frmNothing"), picture}));
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.contains(QStringLiteral("No screen named frmNothing can be opened.")),
                 qPrintable(run.errors));
        QVERIFY(!QFile::exists(picture));
    }
};

QTEST_GUILESS_MAIN(TestDesktopStart)
#include "tst_desktopstart.moc"
