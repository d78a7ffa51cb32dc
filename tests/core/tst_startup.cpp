#include "Options.h"
#include "Sql.h"
#include "Startup.h"
#include "Store.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString MainKey = QString::fromLatin1(Installation::MainKey);
const QString UpdateMessage =
    u"System found an update for Tandrill. It will start automatically in a moment."_s;

/** One start of the program on an installation, with its own prompter and failure sink. */
struct Start
{
    explicit Start(const Installation& installation)
        : session(installation, prompter), startup(session)
    {
        session.setFailureSink(&failures);
        session.clock().setToday(QDate(2025, 3, 1));
        loaded = session.loadStore(nullptr);
        startup.setProgramLauncher([this](const QString& program) {
            launched.append(program);
            return launcherWorks;
        });
    }
    void setValue(const QString& name, const QString& value)
    {
        session.store().setValue(MainKey, name, value);
    }

    ScriptedPrompter prompter;
    RecordingFailureSink failures;
    Session session;
    Startup startup;
    QStringList launched;
    bool launcherWorks = true;
    bool loaded = false;
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

QString storedGuid(const Installation& installation)
{
    Store store(installation.storeFile());
    store.load();
    return store.value(MainKey, u"GUID"_s);
}

QString backupPath(const Installation& installation, const QString& version)
{
    return installation.backupFolder() + u'/' + Startup::backupFileName(version);
}

/** Runs one statement on a file of its own, apart from every session. */
QStringList queryFile(const QString& path, const QString& sql)
{
    QStringList answers;
    const QString name = u"tst-startup-probe"_s;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
        db.setDatabaseName(path);
        db.setConnectOptions(u"QSQLITE_OPEN_READONLY"_s);
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(sql)) {
                while (q.next()) {
                    answers.append(q.value(0).toString());
                }
            }
        }
    }
    QSqlDatabase::removeDatabase(name);
    return answers;
}

bool failedBackupMessage(const QString& text)
{
    static const QRegularExpression pattern(u"^Main Funtions\\(BackupDB\\) -?\\d+ \\S"_s);
    return pattern.match(text).hasMatch();
}

} // namespace

class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void backupFileNameDropsThePoints_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("name");
        QTest::addRow("2.1.4") << u"2.1.4"_s << u"Korvelle214.db"_s;
        QTest::addRow("2.2.0") << u"2.2.0"_s << u"Korvelle220.db"_s;
        QTest::addRow("10.0.12") << u"10.0.12"_s << u"Korvelle10012.db"_s;
        QTest::addRow("no version") << QString() << u"Korvelle.db"_s;
    }
    void backupFileNameDropsThePoints()
    {
        QFETCH(QString, version);
        QFETCH(QString, name);
        QCOMPARE(Startup::backupFileName(version), name);
    }

    void backupIsAConsistentCopyWhileAnotherConnectionWrites()
    {
        TANDRILL_INSTALLATION(t);
        Session& other = t.session();
        QSqlQuery q(other.db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (1, ?)"_s,
                          {u"Committed"_s}));
        Start start(t.installation());
        start.setValue(u"VERSION"_s, u"2.1.4"_s);
        const QString target = backupPath(t.installation(), u"2.1.4"_s);
        if (!other.dialect().isSqlite()) {
            // A server keeps its own backups: nothing to copy, nothing to tell.
            QVERIFY(start.startup.backupDb());
            QVERIFY(!QFile::exists(target));
            QVERIFY(start.prompter.shown().isEmpty());
            return;
        }
        QVERIFY(writeAll(target, "an older copy that must be replaced"));

        Transaction tx(other);
        QVERIFY(tx.isActive());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (2, ?)"_s,
                          {u"Uncommitted"_s}));
        QVERIFY(start.startup.backupDb());
        tx.rollback();

        QVERIFY2(start.prompter.shown().isEmpty(), qPrintable(start.prompter.texts().join(u'|')));
        QCOMPARE(queryFile(target, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
        QCOMPARE(queryFile(target, u"SELECT Description FROM tblCrew"_s),
                 QStringList{u"Committed"_s});
        QCOMPARE(QDir(t.installation().backupFolder()).entryList(QDir::Files),
                 QStringList{u"Korvelle214.db"_s});
    }

    void backupAtAColdStartReplacesTheOldCopy()
    {
        TANDRILL_INSTALLATION(t);
        if (!t.session().dialect().isSqlite()) {
            QSKIP("The data file is the embedded engine's");
        }
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber) VALUES (7)"_s));
        q = QSqlQuery();
        t.session().closeDatabase();
        const QString target = backupPath(t.installation(), u"2.2.0"_s);
        QVERIFY(writeAll(target, QByteArray(100000, 'x')));
        const QByteArray data = readAll(t.installation().dataFile());

        Start start(t.installation());
        start.setValue(u"VERSION"_s, u"2.2.0"_s);
        QVERIFY(start.startup.backupDb());
        QVERIFY(start.prompter.shown().isEmpty());
        QCOMPARE(readAll(t.installation().dataFile()), data);
        QCOMPARE(queryFile(target, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
        QCOMPARE(queryFile(target, u"SELECT CrewNumber FROM tblCrew"_s), QStringList{u"7"_s});
        QCOMPARE(QDir(t.installation().backupFolder()).entryList(QDir::Files),
                 QStringList{u"Korvelle220.db"_s});
    }

    void missingBackupFolderTellsBothMessagesAndOpens()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(QDir(t.installation().backupFolder()).removeRecursively());
        Start start(t.installation());
        QCOMPARE(start.startup.connectToDb(), Startup::Outcome::Continue);
        QVERIFY(start.session.isOpen());
        const QStringList texts = start.prompter.texts();
        if (!start.session.dialect().isSqlite()) {
            QVERIFY(texts.isEmpty());
            return;
        }
        QCOMPARE(texts.size(), 2);
        QVERIFY2(failedBackupMessage(texts[0]), qPrintable(texts[0]));
        QCOMPARE(texts[1], u"Problem in taking backup of Database."_s);
        QVERIFY(start.failures.isEmpty());
    }

    void secondStartIsRefusedBeforeBackupAndConnection()
    {
        TANDRILL_INSTALLATION(t);
        const QString backup = backupPath(t.installation(), Options::versionNo(t.session()));
        {
            Start first(t.installation());
            QCOMPARE(first.startup.connectToDb(), Startup::Outcome::Continue);
            QFile::remove(backup);

            Start second(t.installation());
            QCOMPARE(second.startup.connectToDb(), Startup::Outcome::Exit);
            QCOMPARE(second.prompter.texts(),
                     QStringList{u"Tandrill application is already open."_s});
            QVERIFY(!second.session.isOpen());
            QVERIFY(!QFile::exists(backup));
            QVERIFY(first.session.isOpen());
        }
        // The lock goes with the first run.
        Start third(t.installation());
        QCOMPARE(third.startup.connectToDb(), Startup::Outcome::Continue);
        QVERIFY(third.prompter.shown().isEmpty());
    }

    void guidIsMadeOnceAtTheFirstStart()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), u"GUID"_s, QString()));
        QString guid;
        {
            Start first(t.installation());
            QCOMPARE(first.startup.connectToDb(), Startup::Outcome::Continue);
            guid = storedGuid(t.installation());
            QVERIFY2(QRegularExpression(u"^[0-9A-F]{32}$"_s).match(guid).hasMatch(),
                     qPrintable(guid));
            // Options work from the first start on.
            QCOMPARE(Options::option(first.session, u"SERVICE_LATE_RED"_s), u"30"_s);
        }
        for (int run = 0; run < 2; ++run) {
            Start later(t.installation());
            QCOMPARE(later.startup.connectToDb(), Startup::Outcome::Continue);
            QCOMPARE(storedGuid(t.installation()), guid);
        }
    }

    void checkForUpdateComparesVersionsAsText_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<bool>("withSource");
        QTest::addColumn<QString>("clientVersion");
        QTest::addColumn<QByteArray>("sourceOffer");
        QTest::addColumn<QByteArray>("clientOffer");
        QTest::addColumn<QString>("installerFolder");

        QTest::addRow("same version") << u"2.1.4"_s << false << QString() << QByteArray("9")
                                      << QByteArray("2.1.4\n") << QString();
        QTest::addRow("blanks trimmed") << u"2.1.4"_s << false << QString() << QByteArray("9")
                                        << QByteArray("   2.1.4  \r\n3.0\r\n") << QString();
        QTest::addRow("newer") << u"2.1.4"_s << false << QString() << QByteArray("0")
                               << QByteArray(" 2.1.5 \n") << u"Client"_s;
        QTest::addRow("10.0 is below 9.0") << u"9.0"_s << false << QString() << QByteArray("0")
                                           << QByteArray("10.0\n") << QString();
        QTest::addRow("9.1 is above 10.0") << u"10.0"_s << false << QString() << QByteArray("0")
                                           << QByteArray("9.1\n") << u"Client"_s;
        QTest::addRow("empty line") << u"2.1.4"_s << false << QString() << QByteArray("9")
                                    << QByteArray("\n9.9\n") << QString();
        QTest::addRow("1.1.1 updates from the source folder")
            << u"1.1.1"_s << true << u"1.0"_s << QByteArray("1.1.1\n") << QByteArray("0")
            << u"src"_s;
        QTest::addRow("1.1.0 compares with the client version")
            << u"1.1.0"_s << true << u"1.1.0"_s << QByteArray("1.1.0") << QByteArray("9")
            << QString();
        QTest::addRow("older with a source folder uses it")
            << u"1.0.5"_s << true << u"1.2"_s << QByteArray("1.1") << QByteArray("9") << QString();
        QTest::addRow("newer ignores the source folder")
            << u"1.1.2"_s << true << u"0"_s << QByteArray("9.9") << QByteArray("1.1.2")
            << QString();
        QTest::addRow("older without a source folder")
            << u"1.0.5"_s << false << u"0"_s << QByteArray("9") << QByteArray("1.0.6")
            << u"Client"_s;
    }
    void checkForUpdateComparesVersionsAsText()
    {
        QFETCH(QString, version);
        QFETCH(bool, withSource);
        QFETCH(QString, clientVersion);
        QFETCH(QByteArray, sourceOffer);
        QFETCH(QByteArray, clientOffer);
        QFETCH(QString, installerFolder);

        QTemporaryDir home;
        const Installation installation(home.path());
        QVERIFY(writeAll(installation.path(u"Client/update.txt"_s), clientOffer));
        QVERIFY(writeAll(installation.path(u"src/update.txt"_s), sourceOffer));
        Start start(installation);
        start.setValue(u"VERSION"_s, version);
        start.setValue(u"PATH"_s, installation.home() + u'/');
        start.setValue(u"SRCPATH"_s, withSource ? installation.path(u"src/"_s) : QString());
        start.setValue(u"CLIENTVERSION"_s, clientVersion);

        const Startup::Outcome outcome = start.startup.checkForUpdate();
        QVERIFY(start.failures.isEmpty());
        if (installerFolder.isEmpty()) {
            QCOMPARE(outcome, Startup::Outcome::Continue);
            QVERIFY(start.prompter.shown().isEmpty());
            QVERIFY(start.launched.isEmpty());
            return;
        }
        QCOMPARE(outcome, Startup::Outcome::Exit);
        QCOMPARE(start.prompter.texts(), QStringList{UpdateMessage});
        QCOMPARE(start.prompter.shown().first().icon, Prompter::Icon::Information);
        QCOMPARE(start.launched, QStringList{installation.path(installerFolder + u"/setup"_s)});
    }

    void installerThatDoesNotStartIsReportedAndTheStartGoesOn()
    {
        QTemporaryDir home;
        const Installation installation(home.path());
        QVERIFY(writeAll(installation.path(u"Client/update.txt"_s), "2.0"));
        Start start(installation);
        start.setValue(u"VERSION"_s, u"1.5"_s);
        start.setValue(u"PATH"_s, installation.home() + u'/');
        start.launcherWorks = false;
        QCOMPARE(start.startup.checkForUpdate(), Startup::Outcome::Continue);
        QCOMPARE(start.launched.size(), 1);
        QCOMPARE(start.failures.failures().size(), 1);
        QCOMPARE(start.failures.failures().first().module, u"General Function"_s);
        QCOMPARE(start.failures.failures().first().procedure, u"CheckForUpdate"_s);
    }

    void missingUpdateFileIsReportedAndTheStartGoesOn_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("source");
        QTest::addRow("no Client folder") << u"2.2.0"_s << QString();
        QTest::addRow("source folder without file") << u"1.1.1"_s << u"src/"_s;
        // The gate keeps an empty source folder: it must not mean the working folder.
        QTest::addRow("empty source folder") << u"1.1.0"_s << QString();
    }
    void missingUpdateFileIsReportedAndTheStartGoesOn()
    {
        QFETCH(QString, version);
        QFETCH(QString, source);
        TANDRILL_INSTALLATION(t);
        QVERIFY(QFile::remove(t.installation().path(u"Client/update.txt"_s)));
        // An offer in the working folder must not count.
        QTemporaryDir workingFolder;
        QVERIFY(writeAll(workingFolder.filePath(u"update.txt"_s), "99"));
        const QString oldWorkingFolder = QDir::currentPath();
        QVERIFY(QDir::setCurrent(workingFolder.path()));
        Start start(t.installation());
        start.setValue(u"VERSION"_s, version);
        start.setValue(u"SRCPATH"_s, source.isEmpty() ? QString() : t.installation().path(source));
        const Startup::Outcome outcome = start.startup.run();
        QDir::setCurrent(oldWorkingFolder);

        QCOMPARE(outcome, Startup::Outcome::Continue);
        QVERIFY(start.launched.isEmpty());
        QCOMPARE(start.failures.failures().size(), 1);
        const Failure& f = start.failures.failures().first();
        QCOMPARE(f.module, u"General Function"_s);
        QCOMPARE(f.procedure, u"CheckForUpdate"_s);
        QVERIFY(f.number != 0);
        QVERIFY(f.description.contains(u"update.txt"_s));
        QVERIFY(start.session.isOpen());
    }

    void unusableDataFileEndsTheStartAndIsLeftAsItWas_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QByteArray>("content");
        QTest::addRow("missing") << false << QByteArray();
        QTest::addRow("damaged") << true << QByteArray(8192, '\x5a');
        QTest::addRow("empty") << true << QByteArray();
        QTest::addRow("another program's database") << true << QByteArray("foreign");
    }
    void unusableDataFileEndsTheStartAndIsLeftAsItWas()
    {
        QFETCH(bool, exists);
        QFETCH(QByteArray, content);
        TANDRILL_INSTALLATION(t);
        if (!t.session().dialect().isSqlite()) {
            QSKIP("The data file is the embedded engine's");
        }
        t.session().closeDatabase();
        const QString file = t.installation().dataFile();
        for (const char* suffix : {"", "-wal", "-shm"}) {
            QFile::remove(file + QLatin1String(suffix));
        }
        if (content == "foreign") {
            QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"foreign"_s);
            db.setDatabaseName(file);
            QVERIFY(db.open());
            QSqlQuery(u"CREATE TABLE notes (body TEXT)"_s, db);
            db.close();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(u"foreign"_s);
            content = readAll(file);
            QVERIFY(!content.isEmpty());
        } else if (exists) {
            QVERIFY(writeAll(file, content));
        }

        Start start(t.installation());
        QCOMPARE(start.startup.connectToDb(), Startup::Outcome::Exit);
        QVERIFY(!start.session.isOpen());
        const QStringList texts = start.prompter.texts();
        QVERIFY(!texts.isEmpty());
        static const QRegularExpression message(
            u"^modData_Conntect \\(ConnectToDB\\)\\n-?\\d+\\n.+"_s);
        QVERIFY2(message.match(texts.last()).hasMatch(), qPrintable(texts.last()));
        QCOMPARE(QFile::exists(file), exists);
        if (exists) {
            QCOMPARE(readAll(file), content);
        }
    }

    void unreachableServerEndsTheStart()
    {
        TANDRILL_INSTALLATION(t);
        if (t.session().dialect().isSqlite()) {
            QSKIP("The server is PostgreSQL's");
        }
        Start start(t.installation());
        start.session.store().setValue(QString::fromLatin1(Installation::DatabaseSection),
                                       u"Port"_s, u"1"_s);
        QCOMPARE(start.startup.connectToDb(), Startup::Outcome::Exit);
        const QStringList texts = start.prompter.texts();
        QCOMPARE(texts.size(), 1);
        QVERIFY2(texts[0].startsWith(u"modData_Conntect (ConnectToDB)\n"_s), qPrintable(texts[0]));
        QVERIFY(!start.session.isOpen());
    }

    void loginIsAskedOnlyWhenLoginsAreOn_data()
    {
        QTest::addColumn<QString>("security"); // "missing" deletes the option
        QTest::addColumn<int>("loginAnswer");  // -1: no login function, 0: refused, 1: accepted
        QTest::addColumn<bool>("continues");
        QTest::addColumn<int>("loginsAsked");
        QTest::addRow("off") << u"0"_s << 1 << true << 0;
        QTest::addRow("empty") << QString() << 1 << true << 0;
        QTest::addRow("missing") << u"missing"_s << 1 << true << 0;
        QTest::addRow("other text") << u"yes"_s << 1 << true << 0;
        QTest::addRow("on, accepted") << u"1"_s << 1 << true << 1;
        QTest::addRow("on, refused") << u"1"_s << 0 << false << 1;
        QTest::addRow("on, no login screen") << u"1"_s << -1 << true << 0;
    }
    void loginIsAskedOnlyWhenLoginsAreOn()
    {
        QFETCH(QString, security);
        QFETCH(int, loginAnswer);
        QFETCH(bool, continues);
        QFETCH(int, loginsAsked);
        TANDRILL_INSTALLATION(t);
        if (security == u"missing"_s) {
            QSqlQuery q(t.session().db());
            QVERIFY(Sql::exec(q, u"DELETE FROM tblSysOption WHERE SysOption = ?"_s,
                              {u"SECURITYONOFF"_s}));
        } else {
            Options::setOption(t.session(), u"SECURITYONOFF"_s, security);
        }
        Start start(t.installation());
        int asked = 0;
        if (loginAnswer >= 0) {
            start.startup.setLogin([&](Session& session) {
                ++asked;
                if (loginAnswer == 1) {
                    session.setUserName(u"Chief"_s);
                }
                return loginAnswer == 1;
            });
        }
        const Startup::Outcome outcome = start.startup.connectToDb();
        QCOMPARE(outcome, continues ? Startup::Outcome::Continue : Startup::Outcome::Exit);
        QCOMPARE(asked, loginsAsked);
        QVERIFY(start.prompter.shown().isEmpty());
        if (continues && loginsAsked == 0) {
            QCOMPARE(start.session.userName(), QString());
            QVERIFY(start.session.rights().has(UserRights::EqDel));
            QVERIFY(start.session.rights().has(UserRights::InvPartHistory));
        }
        if (continues && loginsAsked == 1) {
            QCOMPARE(start.session.userName(), u"Chief"_s);
        }
    }

    void runEndsWithAnOpenSessionAndTheUserFolder()
    {
        TANDRILL_INSTALLATION(t);
        Start start(t.installation());
        QCOMPARE(start.startup.run(), Startup::Outcome::Continue);
        QVERIFY(start.session.isOpen());
        QVERIFY(start.prompter.shown().isEmpty());
        QVERIFY(start.failures.isEmpty());
        QVERIFY(!start.session.platform().name.isEmpty());
        QVERIFY(QFileInfo(t.installation().userFolder()).isDir());
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
