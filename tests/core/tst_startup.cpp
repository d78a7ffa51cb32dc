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
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString MainKey = QString::fromLatin1(Installation::MainKey);

/** One start of the program on an installation, with its own prompter and failure sink. */
struct Start
{
    explicit Start(const Installation& installation)
        : session(installation, prompter), startup(session)
    {
        session.setFailureSink(&failures);
        session.clock().setToday(QDate(2025, 3, 1));
        session.loadStore(nullptr);
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

/** Runs one statement on a file of its own, apart from every session. */
QStringList queryFile(const QString& path, const QString& sql)
{
    QStringList answers;
    const QString name = u"tst-startup-probe"_s;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
        db.setDatabaseName(path);
        if (db.open()) {
            QSqlQuery q(db);
            q.exec(sql);
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

    void backupFileNameDropsThePoints()
    {
        QCOMPARE(Startup::backupFileName(u"2.1.4"_s), u"Korvelle214.db"_s);
        QCOMPARE(Startup::backupFileName(u"10.0.12"_s), u"Korvelle10012.db"_s);
        QCOMPARE(Startup::backupFileName(QString()), u"Korvelle.db"_s);
    }

    void backupIsAWholeCopyOfWhatIsCommitted_data()
    {
        QTest::addColumn<bool>("cold"); // no connection open, else one writing beside it
        QTest::addRow("while another connection writes") << false;
        QTest::addRow("at a cold start") << true;
    }
    void backupIsAWholeCopyOfWhatIsCommitted()
    {
        QFETCH(bool, cold);
        TANDRILL_INSTALLATION(t);
        Session& other = t.session();
        QVERIFY(addCrew(other, 7));
        Start start(t.installation());
        start.setValue(u"VERSION"_s, u"2.1.4"_s);
        const QString target = t.installation().backupFolder() + u"/Korvelle214.db"_s;
        if (!other.dialect().isSqlite()) {
            // A server keeps its own backups: nothing to copy, nothing to tell.
            QVERIFY(start.startup.backupDb());
            QVERIFY(!QFile::exists(target));
            QVERIFY(start.prompter.shown().isEmpty());
            return;
        }
        QVERIFY(writeAll(target, QByteArray(100000, 'x'))); // an older copy to be replaced
        std::optional<Transaction> tx;
        if (cold) {
            other.closeDatabase();
        } else {
            tx.emplace(other);
            QVERIFY(addCrew(other, 8));
        }
        const QByteArray data = readAll(t.installation().dataFile());

        QVERIFY(start.startup.backupDb());
        tx.reset();
        QVERIFY2(start.prompter.shown().isEmpty(), qPrintable(start.prompter.texts().join(u'|')));
        QCOMPARE(queryFile(target, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
        QCOMPARE(queryFile(target, u"SELECT CrewNumber FROM tblCrew"_s), QStringList{u"7"_s});
        QCOMPARE(QDir(t.installation().backupFolder()).entryList(QDir::Files),
                 QStringList{u"Korvelle214.db"_s});
        if (cold) {
            QCOMPARE(readAll(t.installation().dataFile()), data);
        }
    }

    void missingBackupFolderTellsBothMessagesAndOpens()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(QDir(t.installation().backupFolder()).removeRecursively());
        Start start(t.installation());
        QCOMPARE(start.startup.connectToDb(), Startup::Outcome::Continue);
        QVERIFY(start.session.isOpen());
        QVERIFY(start.failures.isEmpty());
        const QStringList texts = start.prompter.texts();
        if (!start.session.dialect().isSqlite()) {
            QVERIFY(texts.isEmpty());
            return;
        }
        QCOMPARE(texts.size(), 2);
        QVERIFY2(QRegularExpression(u"^Main Funtions\\(BackupDB\\) -?\\d+ \\S"_s)
                     .match(texts[0])
                     .hasMatch(),
                 qPrintable(texts[0]));
        QCOMPARE(texts[1], u"Problem in taking backup of Database."_s);
    }

    // One run at a time; the first start of all makes the workstation's GUID, once.
    void secondStartIsRefusedAndTheFirstMakesTheGuid()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), u"GUID"_s, QString()));
        const QString backup = t.installation().backupFolder() + u'/' +
                               Startup::backupFileName(Options::versionNo(t.session()));
        QString guid;
        {
            Start first(t.installation());
            QCOMPARE(first.startup.connectToDb(), Startup::Outcome::Continue);
            guid = storedGuid(t.installation());
            QVERIFY2(QRegularExpression(u"^[0-9A-F]{32}$"_s).match(guid).hasMatch(),
                     qPrintable(guid));
            QCOMPARE(Options::option(first.session, u"SERVICE_LATE_RED"_s), u"30"_s);
            QFile::remove(backup);

            Start second(t.installation());
            QCOMPARE(second.startup.connectToDb(), Startup::Outcome::Exit);
            QCOMPARE(second.prompter.texts(),
                     QStringList{u"Tandrill application is already open."_s});
            QVERIFY(!second.session.isOpen() && !QFile::exists(backup));
        }
        // The lock goes with the first run.
        Start third(t.installation());
        QCOMPARE(third.startup.connectToDb(), Startup::Outcome::Continue);
        QVERIFY(third.prompter.shown().isEmpty());
        QCOMPARE(storedGuid(t.installation()), guid);
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
        row("same version", "2.1.4", nullptr, "9", "2.1.4\n", "");
        row("newer, blanks trimmed", "2.1.4", nullptr, "0", " 2.1.5 \r\n", "Client");
        row("10.0 is below 9.0", "9.0", nullptr, "0", "10.0\n", "");
        row("1.1.1 updates from the source folder", "1.1.1", "1.0", "1.1.1\n", "0", "src");
        row("1.1.0 compares with the client version", "1.1.0", "1.1.0", "1.1.0", "9", "");
        row("older with a source folder uses it", "1.0.5", "1.2", "1.1", "9", "");
        row("no offer in the Client folder", "2.2.0", nullptr, "9", nullptr, "", true);
        row("no offer in the source folder", "1.1.1", "1.0", nullptr, "0", "", true);
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
        start.launcherWorks = !installerFolder.isEmpty() && !failure;
        start.setValue(u"VERSION"_s, version);
        start.setValue(u"PATH"_s, installation.home() + u'/');
        start.setValue(u"SRCPATH"_s,
                       clientVersion.isEmpty() ? QString() : installation.path(u"src/"_s));
        start.setValue(u"CLIENTVERSION"_s, clientVersion);
        const Startup::Outcome outcome = start.startup.checkForUpdate();
        QDir::setCurrent(oldWorkingFolder);

        QCOMPARE(outcome,
                 start.launcherWorks ? Startup::Outcome::Exit : Startup::Outcome::Continue);
        QCOMPARE(start.launched.size(), installerFolder.isEmpty() ? 0 : 1);
        QVERIFY(installerFolder.isEmpty() ||
                start.launched.first() == installation.path(installerFolder + u"/setup"_s));
        QCOMPARE(start.failures.failures().size(), failure ? 1 : 0);
        if (failure) {
            const Failure& f = start.failures.failures().first();
            QCOMPARE(f.module + u' ' + f.procedure, u"General Function CheckForUpdate"_s);
            QVERIFY(f.number != 0);
            QVERIFY(!installerFolder.isEmpty() || f.description.contains(u"update.txt"_s));
        }
        QCOMPARE(start.prompter.texts(),
                 installerFolder.isEmpty()
                     ? QStringList()
                     : QStringList{u"System found an update for Tandrill. "
                                   "It will start automatically in a moment."_s});
    }

    void unusableDataEndsTheStartAndIsLeftAsItWas_data()
    {
        QTest::addColumn<QByteArray>("content"); // "missing": no file, "server": unreachable
        QTest::addRow("missing") << QByteArray("missing");
        QTest::addRow("damaged") << QByteArray(8192, '\x5a');
        QTest::addRow("another program's database") << QByteArray("foreign");
        QTest::addRow("server unreachable") << QByteArray("server");
    }
    void unusableDataEndsTheStartAndIsLeftAsItWas()
    {
        QFETCH(QByteArray, content);
        TANDRILL_INSTALLATION(t);
        if (t.session().dialect().isSqlite() == (content == "server")) {
            QSKIP("This case is the other engine's");
        }
        t.session().closeDatabase();
        const QString file = t.installation().dataFile();
        for (const char* suffix : {"", "-wal", "-shm"}) {
            QFile::remove(file + QLatin1String(suffix));
        }
        if (content == "foreign") {
            QVERIFY(queryFile(file, u"CREATE TABLE notes (body TEXT)"_s).isEmpty());
            content = readAll(file);
            QVERIFY(!content.isEmpty());
        } else if (content != "missing" && content != "server") {
            QVERIFY(writeAll(file, content));
        }

        Start start(t.installation());
        if (content == "server") {
            start.session.store().setValue(QString::fromLatin1(Installation::DatabaseSection),
                                           u"Port"_s, u"1"_s);
        }
        QCOMPARE(start.startup.connectToDb(), Startup::Outcome::Exit);
        QVERIFY(!start.session.isOpen());
        const QStringList texts = start.prompter.texts();
        QVERIFY(!texts.isEmpty());
        static const QRegularExpression message(
            u"^modData_Conntect \\(ConnectToDB\\)\\n-?\\d+\\n.+"_s);
        QVERIFY2(message.match(texts.last()).hasMatch(), qPrintable(texts.last()));
        if (content != "server") {
            QCOMPARE(QFile::exists(file), content != "missing");
            QCOMPARE(readAll(file), content == "missing" ? QByteArray() : content);
        }
    }

    void loginIsAskedOnlyWhenLoginsAreOn_data()
    {
        QTest::addColumn<QString>("security"); // null deletes the option
        QTest::addColumn<int>("loginAnswer");  // -1: no login function, 0: refused, 1: accepted
        QTest::addColumn<bool>("asked");
        QTest::addRow("missing") << QString() << 1 << false;
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
        if (security.isNull()) {
            QSqlQuery q(t.session().db());
            QVERIFY(Sql::exec(q, u"DELETE FROM tblSysOption WHERE SysOption = 'SECURITYONOFF'"_s));
        } else {
            Options::setOption(t.session(), u"SECURITYONOFF"_s, security);
        }
        Start start(t.installation());
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
        QVERIFY(start.prompter.shown().isEmpty());
        if (continues) {
            QCOMPARE(start.session.userName(), asked ? u"Chief"_s : QString());
        }
        if (!asked) {
            // Without a login the user is nobody with every right.
            QVERIFY(start.session.rights().has(UserRights::EqDel));
            QVERIFY(start.session.rights().has(UserRights::InvPartHistory));
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
