#include "Options.h"
#include "Sql.h"
#include "Startup.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** One start of the program on an installation, with its own prompter and failure sink. */
struct Start
{
    explicit Start(const Installation& installation)
        : session(installation, prompter), startup(session)
    {
        session.setFailureSink(&failures);
        session.loadStore(nullptr);
        startup.setProgramLauncher([this](const QString& program) {
            launched.append(program);
            return launcherWorks;
        });
    }

    ScriptedPrompter prompter;
    RecordingFailureSink failures;
    Session session;
    Startup startup;
    QStringList launched;
    bool launcherWorks = true;
};

bool writeAll(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void backupIsAWholeCopyOfWhatIsCommitted()
    {
        TANDRILL_INSTALLATION(t);
        if (!t.session().dialect().isSqlite()) {
            QSKIP("A server keeps its own backups");
        }
        QSqlQuery other(t.session().db());
        QVERIFY(Sql::exec(other, u"INSERT INTO tblCrew (CrewNumber) VALUES (7)"_s));
        Start start(t.installation());
        Options::setRegistryValue(start.session, u"VERSION"_s, u"2.1.4"_s);
        const QString folder = t.installation().backupFolder();
        QVERIFY(writeAll(folder + u"/Korvelle214.db"_s, "an older copy"));
        Transaction tx(t.session()); // another connection writes beside the backup
        QVERIFY(Sql::exec(other, u"INSERT INTO tblCrew (CrewNumber) VALUES (8)"_s));
        QVERIFY(start.startup.backupDb());
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{u"Korvelle214.db"_s});
        QSqlDatabase copy = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"backup"_s);
        copy.setDatabaseName(folder + u"/Korvelle214.db"_s);
        QSqlQuery q(copy);
        QVERIFY(copy.open() && q.exec(u"PRAGMA integrity_check"_s) && q.next());
        QCOMPARE(q.value(0).toString(), u"ok"_s);
        QVERIFY(q.exec(u"SELECT CrewNumber FROM tblCrew"_s) && q.next());
        QCOMPARE(q.value(0).toInt(), 7);
        QVERIFY(!q.next());
    }

    void checkForUpdateComparesVersionsAsText_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QByteArray>("sourceOffer"); // empty: no source folder
        QTest::addColumn<QByteArray>("clientOffer");
        QTest::addColumn<QString>("installerFolder"); // empty: no update
        QTest::addColumn<bool>("failure");
        const auto row = [](const char* name, const char* version, const char* sourceOffer,
                            const char* clientOffer, const char* installerFolder,
                            bool failure = false) {
            QTest::newRow(name) << QString::fromLatin1(version) << QByteArray(sourceOffer)
                                << QByteArray(clientOffer) << QString::fromLatin1(installerFolder)
                                << failure;
        };
        row("newer, blanks trimmed", "2.1.4", "", " 2.1.5 \r\n", "Client");
        row("10.0 is below 9.0", "9.0", "", "10.0\n", "");
        // Against the source folder's client version, 1.0.
        row("1.1.1 updates from the source folder", "1.1.1", "1.1.1\n", "0", "src");
        // The gate keeps an empty source folder: not the working folder, not the Client folder.
        row("empty source folder", "1.1.0", "", "9.9", "", true);
        row("installer does not start", "1.5", "", "2.0", "Client", true);
    }
    void checkForUpdateComparesVersionsAsText()
    {
        QFETCH(QString, version);
        QFETCH(QByteArray, sourceOffer);
        QFETCH(QByteArray, clientOffer);
        QFETCH(QString, installerFolder);
        QFETCH(bool, failure);
        QTemporaryDir home;
        const Installation installation(home.path());
        QVERIFY(writeAll(installation.path(u"Client/update.txt"_s), clientOffer));
        QVERIFY(sourceOffer.isEmpty() ||
                writeAll(installation.path(u"src/update.txt"_s), sourceOffer));
        // An offer in the working folder must never count.
        QVERIFY(writeAll(home.filePath(u"work/update.txt"_s), "99"));
        const QString oldWorkingFolder = QDir::currentPath();
        QVERIFY(QDir::setCurrent(home.filePath(u"work"_s)));
        Start start(installation);
        start.launcherWorks = !failure;
        Options::setRegistryValue(start.session, u"VERSION"_s, version);
        Options::setRegistryValue(start.session, u"PATH"_s, installation.home() + u'/');
        Options::setRegistryValue(start.session, u"SRCPATH"_s,
                                  sourceOffer.isEmpty() ? QString() : installation.path(u"src/"_s));
        Options::setRegistryValue(start.session, u"CLIENTVERSION"_s, u"1.0"_s);
        const Startup::Outcome outcome = start.startup.checkForUpdate();
        QDir::setCurrent(oldWorkingFolder);

        const bool offered = !installerFolder.isEmpty();
        QCOMPARE(outcome,
                 offered && !failure ? Startup::Outcome::Exit : Startup::Outcome::Continue);
        QCOMPARE(start.launched, offered
                                     ? QStringList{installation.path(installerFolder + u"/setup"_s)}
                                     : QStringList());
        const QList<Failure> failures = start.failures.failures();
        QCOMPARE(failures.size(), failure ? 1 : 0);
        QVERIFY(!failure || failures[0].procedure == u"CheckForUpdate"_s);
        QCOMPARE(start.prompter.texts(),
                 offered ? QStringList{u"System found an update for Tandrill. "
                                       "It will start automatically in a moment."_s}
                         : QStringList());
    }

    // An unreachable server is the desktop start's test; the files are the engine's own.
    void unusableDataEndsTheStartAndIsLeftAsItWas_data()
    {
        QTest::addColumn<bool>("empty"); // an empty database, or else no file at all
        QTest::addRow("missing") << false;
        QTest::addRow("empty database") << true;
    }
    void unusableDataEndsTheStartAndIsLeftAsItWas()
    {
        QFETCH(bool, empty);
        TANDRILL_INSTALLATION(t);
        if (!t.session().dialect().isSqlite()) {
            QSKIP("A server has no data file");
        }
        t.session().closeDatabase();
        const QString file = t.installation().dataFile();
        for (const char* suffix : {"", "-wal", "-shm"}) {
            QFile::remove(file + QLatin1String(suffix));
        }
        QVERIFY(!empty || writeAll(file, {}));

        Start start(t.installation());
        QCOMPARE(start.startup.connectToDb(), Startup::Outcome::Exit);
        const QStringList said = start.prompter.texts();
        QVERIFY2(!said.isEmpty() &&
                     QRegularExpression(u"^modData_Conntect \\(ConnectToDB\\)\\n-?\\d+\\n."_s)
                         .match(said.last())
                         .hasMatch(),
                 qPrintable(said.join(u'|')));
        QCOMPARE(QFile::exists(file), empty);
        QCOMPARE(QFileInfo(file).size(), 0);
    }

    void loginIsAskedOnlyWhenLoginsAreOn_data()
    {
        QTest::addColumn<QString>("security");
        QTest::addColumn<int>("loginAnswer"); // -1: no login function, 0: refused, 1: accepted
        QTest::addColumn<bool>("asked");
        QTest::addRow("other text") << u"yes"_s << 1 << false;
        QTest::addRow("on, accepted") << u"1"_s << 1 << true;
        QTest::addRow("on, refused") << u"1"_s << 0 << true;
        QTest::addRow("on, no login screen") << u"1"_s << -1 << false;
    }
    void loginIsAskedOnlyWhenLoginsAreOn()
    {
        QFETCH(QString, security);
        QFETCH(int, loginAnswer);
        QFETCH(bool, asked);
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), u"SECURITYONOFF"_s, security);
        Start start(t.installation());
        start.session.rights().setAll(false);
        if (loginAnswer >= 0) {
            start.startup.setLogin([&](Session& session) {
                session.setUserName(u"Chief"_s);
                return loginAnswer == 1;
            });
        }
        const bool continues = !asked || loginAnswer == 1;
        QCOMPARE(start.startup.connectToDb(),
                 continues ? Startup::Outcome::Continue : Startup::Outcome::Exit);
        QCOMPARE(start.session.userName().isEmpty(), !asked);
        // Without a login the user is nobody with every right.
        QCOMPARE(start.session.rights().has(UserRights::EqDel), !asked);
    }

    // The first start of all makes the workstation's GUID.
    void runTellsABackupProblemAndGoesOn()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), u"GUID"_s, QString()));
        QVERIFY(QDir(t.installation().backupFolder()).removeRecursively());
        Start start(t.installation());
        QCOMPARE(start.startup.run(), Startup::Outcome::Continue);
        QVERIFY(start.session.isOpen() && start.failures.isEmpty());
        QVERIFY(!Options::registryValue(start.session, u"GUID"_s).isEmpty());
        const QStringList texts = start.prompter.texts();
        const bool sqlite = start.session.dialect().isSqlite();
        QCOMPARE(texts.size(), sqlite ? 2 : 0);
        QVERIFY2(!sqlite || QRegularExpression(u"^Main Funtions\\(BackupDB\\) -?\\d+ \\S"_s)
                                .match(texts[0])
                                .hasMatch(),
                 qPrintable(texts.join(u'|')));
        QVERIFY(!sqlite || texts[1] == u"Problem in taking backup of Database."_s);
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
