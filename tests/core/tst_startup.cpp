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
    void setValue(const QString& name, const QString& value)
    {
        session.store().setValue(QString::fromLatin1(Installation::MainKey), name, value);
    }

    ScriptedPrompter prompter;
    RecordingFailureSink failures;
    Session session;
    Startup startup;
    QStringList launched;
    bool launcherWorks = true;
};

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/** Runs one statement on a file of its own, apart from every session. */
QStringList queryFile(const QString& path, const QString& sql)
{
    QStringList answers;
    const QString name = u"tst-startup-probe"_s;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
        db.setDatabaseName(path);
        QSqlQuery q(db);
        if (db.open() && q.exec(sql)) {
            while (q.next()) {
                answers.append(q.value(0).toString());
            }
        }
    }
    QSqlDatabase::removeDatabase(name);
    return answers;
}

bool addCrew(Session& session, int number)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber) VALUES (?)"_s, {number});
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
        Session& other = t.session();
        QVERIFY(addCrew(other, 7));
        Start start(t.installation());
        start.setValue(u"VERSION"_s, u"2.1.4"_s);
        const QString folder = t.installation().backupFolder();
        if (!other.dialect().isSqlite()) {
            // A server keeps its own backups: nothing to copy, nothing to tell.
            QVERIFY(start.startup.backupDb());
            QVERIFY(QDir(folder).isEmpty() && start.prompter.shown().isEmpty());
            return;
        }
        QVERIFY(writeAll(folder + u"/Korvelle214.db"_s, "an older copy"));
        Transaction tx(other); // another connection writes beside the backup
        QVERIFY(addCrew(other, 8));
        QVERIFY(start.startup.backupDb());
        QVERIFY2(start.prompter.shown().isEmpty(), qPrintable(start.prompter.texts().join(u'|')));
        const QString target = folder + u"/Korvelle214.db"_s;
        QCOMPARE(queryFile(target, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
        QCOMPARE(queryFile(target, u"SELECT CrewNumber FROM tblCrew"_s), QStringList{u"7"_s});
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{u"Korvelle214.db"_s});
    }

    void checkForUpdateComparesVersionsAsText_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("clientVersion");  // null: no source folder
        QTest::addColumn<QByteArray>("sourceOffer"); // null: no update.txt there
        QTest::addColumn<QByteArray>("clientOffer");
        QTest::addColumn<QString>("installerFolder"); // empty: no update
        QTest::addColumn<bool>("failure");
        const auto row = [](const char* name, const char* version, const char* clientVersion,
                            const char* sourceOffer, const char* clientOffer,
                            const char* installerFolder, bool failure = false) {
            QTest::newRow(name) << QString::fromLatin1(version)
                                << QString::fromLatin1(clientVersion) << QByteArray(sourceOffer)
                                << QByteArray(clientOffer) << QString::fromLatin1(installerFolder)
                                << failure;
        };
        row("newer, blanks trimmed", "2.1.4", nullptr, "0", " 2.1.5 \r\n", "Client");
        row("10.0 is below 9.0", "9.0", nullptr, "0", "10.0\n", "");
        row("1.1.1 updates from the source folder", "1.1.1", "1.0", "1.1.1\n", "0", "src");
        row("older with a source folder uses it", "1.0.5", "1.2", "1.1", "9", "");
        row("no offer in the Client folder", "2.2.0", nullptr, "9", nullptr, "", true);
        // The gate keeps an empty source folder: not the working folder, not the Client folder.
        row("empty source folder", "1.1.0", "", "9", "9.9", "", true);
        row("installer does not start", "1.5", nullptr, "0", "2.0", "Client", true);
    }
    void checkForUpdateComparesVersionsAsText()
    {
        QFETCH(QString, version);
        QFETCH(QString, clientVersion);
        QFETCH(QByteArray, sourceOffer);
        QFETCH(QByteArray, clientOffer);
        QFETCH(QString, installerFolder);
        QFETCH(bool, failure);
        QTemporaryDir home;
        const Installation installation(home.path());
        QVERIFY(clientOffer.isNull() ||
                writeAll(installation.path(u"Client/update.txt"_s), clientOffer));
        QVERIFY(sourceOffer.isNull() ||
                writeAll(installation.path(u"src/update.txt"_s), sourceOffer));
        // An offer in the working folder must never count.
        QVERIFY(writeAll(home.filePath(u"work/update.txt"_s), "99"));
        const QString oldWorkingFolder = QDir::currentPath();
        QVERIFY(QDir::setCurrent(home.filePath(u"work"_s)));
        Start start(installation);
        start.launcherWorks = !failure;
        start.setValue(u"VERSION"_s, version);
        start.setValue(u"PATH"_s, installation.home() + u'/');
        start.setValue(u"SRCPATH"_s,
                       clientVersion.isEmpty() ? QString() : installation.path(u"src/"_s));
        start.setValue(u"CLIENTVERSION"_s, clientVersion);
        const Startup::Outcome outcome = start.startup.checkForUpdate();
        QDir::setCurrent(oldWorkingFolder);

        const bool offered = !installerFolder.isEmpty();
        QCOMPARE(outcome,
                 offered && !failure ? Startup::Outcome::Exit : Startup::Outcome::Continue);
        QCOMPARE(start.launched, offered
                                     ? QStringList{installation.path(installerFolder + u"/setup"_s)}
                                     : QStringList());
        QCOMPARE(start.failures.failures().size(), failure ? 1 : 0);
        for (const Failure& f : start.failures.failures()) {
            QCOMPARE(f.procedure, u"CheckForUpdate"_s);
            QVERIFY(f.description.contains(offered ? u"/setup"_s : u"update.txt"_s));
        }
        QCOMPARE(start.prompter.texts(),
                 offered ? QStringList{u"System found an update for Tandrill. "
                                       "It will start automatically in a moment."_s}
                         : QStringList());
    }

    // An unreachable server is the desktop start's test; the files are the engine's own.
    void unusableDataEndsTheStartAndIsLeftAsItWas_data()
    {
        QTest::addColumn<QByteArray>("content"); // "missing": no file
        QTest::addRow("missing") << QByteArray("missing");
        QTest::addRow("damaged") << QByteArray(8192, '\x5a');
        QTest::addRow("another program's database") << QByteArray("foreign");
    }
    void unusableDataEndsTheStartAndIsLeftAsItWas()
    {
        QFETCH(QByteArray, content);
        TANDRILL_INSTALLATION(t);
        if (!t.session().dialect().isSqlite()) {
            QSKIP("A server has no data file");
        }
        t.session().closeDatabase();
        const QString file = t.installation().dataFile();
        for (const char* suffix : {"", "-wal", "-shm"}) {
            QFile::remove(file + QLatin1String(suffix));
        }
        if (content == "foreign") {
            queryFile(file, u"CREATE TABLE notes (body TEXT)"_s);
            content = readAll(file);
        } else if (content != "missing") {
            QVERIFY(writeAll(file, content));
        }

        Start start(t.installation());
        QCOMPARE(start.startup.connectToDb(), Startup::Outcome::Exit);
        QVERIFY(!start.session.isOpen());
        const QStringList said = start.prompter.texts();
        QVERIFY2(!said.isEmpty() &&
                     QRegularExpression(u"^modData_Conntect \\(ConnectToDB\\)\\n-?\\d+\\n."_s)
                         .match(said.last())
                         .hasMatch(),
                 qPrintable(said.join(u'|')));
        QCOMPARE(QFile::exists(file), content != "missing");
        QCOMPARE(readAll(file), content == "missing" ? QByteArray() : content);
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
        int logins = 0;
        if (loginAnswer >= 0) {
            start.startup.setLogin([&](Session& session) {
                ++logins;
                session.setUserName(u"Chief"_s);
                return loginAnswer == 1;
            });
        }
        const bool continues = !asked || loginAnswer == 1;
        QCOMPARE(start.startup.connectToDb(),
                 continues ? Startup::Outcome::Continue : Startup::Outcome::Exit);
        QCOMPARE(logins, asked ? 1 : 0);
        // Without a login the user is nobody with every right.
        QCOMPARE(start.session.rights().has(UserRights::EqDel), !asked);
    }

    // The first start of all makes the workstation's GUID; one run at a time.
    void runTellsABackupProblemAndRefusesASecondRun()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), u"GUID"_s, QString()));
        QVERIFY(QDir(t.installation().backupFolder()).removeRecursively());
        Start start(t.installation());
        QCOMPARE(start.startup.run(), Startup::Outcome::Continue);
        QVERIFY(start.session.isOpen() && start.failures.isEmpty());
        const QString guid = Options::registryValue(start.session, u"GUID"_s);
        QVERIFY2(QRegularExpression(u"^[0-9A-F]{32}$"_s).match(guid).hasMatch(), qPrintable(guid));
        QVERIFY(!start.session.platform().name.isEmpty());
        QVERIFY(QFileInfo(t.installation().userFolder()).isDir());
        const QStringList texts = start.prompter.texts();
        const bool sqlite = start.session.dialect().isSqlite();
        QCOMPARE(texts.size(), sqlite ? 2 : 0);
        QVERIFY2(!sqlite || QRegularExpression(u"^Main Funtions\\(BackupDB\\) -?\\d+ \\S"_s)
                                .match(texts[0])
                                .hasMatch(),
                 qPrintable(texts.join(u'|')));
        QVERIFY(!sqlite || texts[1] == u"Problem in taking backup of Database."_s);

        Start second(t.installation());
        QCOMPARE(second.startup.connectToDb(), Startup::Outcome::Exit);
        QCOMPARE(second.prompter.texts(), QStringList{u"Tandrill application is already open."_s});
        QVERIFY(!second.session.isOpen());
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
