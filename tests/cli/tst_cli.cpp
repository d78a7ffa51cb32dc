#include "CliHome.h"
#include "PasswordHash.h"
#include "PrintedFailureSink.h"
#include "Sql.h"
#include "SqlValue.h"
#include "Store.h"
#include "TestInstallation.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

/** What a failed command must leave as it was: a few tables as printed, then every file. */
QStringList state(const CliHome& h, bool withData = true)
{
    QStringList entries;
    for (const char* query : {"SELECT UserName, Password FROM tblUser ORDER BY UserName",
                              "SELECT SysOption, itemValue FROM tblSysOption ORDER BY SysOption",
                              "SELECT COUNT(*) FROM tblCrew"}) {
        const CliResult r = withData ? h.run({u"sql"_s, QString::fromLatin1(query)}) : CliResult();
        entries.append(QString::number(r.code) + r.out + r.err);
    }
    QDirIterator it(h.home(), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        entries.append(
            path + u' ' +
            QString::fromLatin1(it.fileInfo().isDir() ? "/" : fileBytes(path).toBase64()));
    }
    std::sort(entries.begin() + 3, entries.end());
    return entries;
}

/** A service on machine 9, on every day of the week or on none; its key. */
QString addService(const CliHome& h, const QString& period, int interval, bool days = true)
{
    return h.value(u"INSERT INTO tblServiceUsed (EquipmentID, ServiceID, JobNo, Period, EInterval, "
                   "RenewalOn, Sun, Mon, Tue, Wed, Thu, Fri, Sat, FirstW, SecondW, ThirdW, ForthW, "
                   "LastW, Dom, Jan, Feb, Mar, Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece, "
                   "Inactive) VALUES (9, 0, 'T-1', '%1', %2, 'W', '%3', '%3', '%3', '%3', '%3', "
                   "'%3', '%3', '1', '1', '1', '1', '1', '0', '1', '1', '1', '1', '1', '1', '1', "
                   "'1', '1', '1', '1', '1', 0) RETURNING ServiceUsedID AS id"_s.arg(period)
                       .arg(interval)
                       .arg(days ? u"1"_s : u"0"_s));
}

const QString ConnectFailure = u"^modData_Conntect \\(ConnectToDB\\)\\n%1\\n."_s;

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void initMakesInstallationWithChiefsPassword_data()
    {
        QTest::addColumn<QString>("password"); // empty: one is made and told once
        QTest::newRow("made") << QString();
        QTest::newRow("given") << u"Kestrel 9"_s;
    }
    void initMakesInstallationWithChiefsPassword()
    {
        QFETCH(QString, password);
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        const CliResult r = h.run(h.initWords(
            password.isEmpty() ? QStringList() : QStringList{u"--password"_s, password}));
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QVERIFY(r.out.contains(u"Installation created in "_s + h.home()));
        const QRegularExpressionMatch told = QRegularExpression(u"^Password of Chief: (\\S+)$"_s,
                                                                QRegularExpression::MultilineOption)
                                                 .match(r.out);
        QCOMPARE(told.hasMatch(), password.isEmpty());
        const QString hash = h.value(u"SELECT Password FROM tblUser WHERE UserName = 'Chief'"_s);
        QVERIFY(PasswordHash::verify(hash, password.isEmpty() ? told.captured(1) : password));
    }

    void secondInitRefusesAndChangesNothing_data()
    {
        QTest::addColumn<bool>("storeGone");
        QTest::newRow("installation there") << false;
        QTest::newRow("data left without its settings") << true;
    }
    void secondInitRefusesAndChangesNothing()
    {
        QFETCH(bool, storeGone);
        TANDRILL_CLI_HOME(h, {u"--password=first"_s});
        const QStringList before = state(h);
        const QByteArray store = fileBytes(h.storeFile());
        QVERIFY(!storeGone || QFile::remove(h.storeFile()));
        const CliResult r = h.run(h.initWords({u"--demo"_s, u"--password=other"_s}));
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(u"already"_s) && r.out.isEmpty(), qPrintable(r.err));
        QCOMPARE(QFile::exists(h.storeFile()), !storeGone);
        QVERIFY(!storeGone || writeFile(h.storeFile(), store));
        QCOMPARE(state(h), before);
    }

    // Each engine hands back its own types; the printed text is the same.
    void sqlPrintsValuesAlikeOnBothEngines()
    {
        TANDRILL_CLI_HOME(h);
        QCOMPARE(h.sql(u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                       "CountValue) VALUES (1, '2025-02-28', 'It''s \"Ø\", ok', 12), "
                       "(1, NULL, NULL, 13)"_s),
                 QStringList{u"2"_s});
        QCOMPARE(h.sql(u"INSERT INTO tblErrorList (ErrNumber, ErrDateTime) "
                       "VALUES (5, '2025-03-01 14:05:09')"_s),
                 QStringList{u"1"_s});
        QCOMPARE(h.run({u"sql"_s, u"SELECT ChangeDate AS d, CountValue AS v, CountType AS t "
                                  "FROM tblEquipmentCount ORDER BY CountValue"_s})
                     .out,
                 u"d,v,t\n2025-02-28,12,\"It's \"\"Ø\"\", ok\"\n,13,\n"_s);
        QCOMPARE(h.run({u"sql"_s, u"SELECT ErrDateTime AS m FROM tblErrorList"_s}).out,
                 u"m\n2025-03-01 14:05:09\n"_s);
    }

    void sqlChangesPrintTheRowsOrFailAndChangeNothing_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("printed"); // empty: the statement fails
        QTest::newRow("insert of two")
            << u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (1, 'a;b'), (2, 'b');"_s
            << u"2\n"_s;
        QTest::newRow("delete of none") << u"DELETE FROM tblCrew WHERE CrewID = -1"_s << u"0\n"_s;
        QTest::newRow("table made") << u"CREATE TABLE scratch_t (x INTEGER)"_s << u"0\n"_s;
        QTest::newRow("refused by the engine") << u"INSERT INTO tblUser (UserName) VALUES "
                                                  "('Chief')"_s
                                               << QString();
        QTest::newRow("two statements") << u"SELECT 1; DELETE FROM tblUser"_s << QString();
    }
    void sqlChangesPrintTheRowsOrFailAndChangeNothing()
    {
        QFETCH(QString, statement);
        QFETCH(QString, printed);
        TANDRILL_CLI_HOME(h);
        const QStringList before = state(h);
        const CliResult r = h.run({u"sql"_s, statement});
        QCOMPARE(r.out, printed);
        QCOMPARE(r.code, printed.isEmpty() ? 1 : 0);
        QCOMPARE(r.err.trimmed().isEmpty(), !printed.isEmpty());
        QVERIFY(!printed.isEmpty() || state(h) == before);
    }

    void fileProblemsAreToldAndChangeNothing_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("told"); // a pattern
        QTest::newRow("data file of junk") << u"junk data"_s << ConnectFailure.arg(26);
        QTest::newRow("missing data file") << u"no data"_s << ConnectFailure.arg(14);
        QTest::newRow("no folder") << u"no folder"_s << u"the folder does not exist"_s;
        QTest::newRow("folder without settings")
            << u"empty folder"_s << u"it holds no Tandrill\\.ini"_s;
        QTest::newRow("damaged settings") << u"damaged"_s << u"Tandrill\\.ini"_s;
    }
    void fileProblemsAreToldAndChangeNothing()
    {
        QFETCH(QString, problem);
        QFETCH(QString, told);
        if (problem.contains(u"data"_s) && TestInstallation::wantsPostgres()) {
            QSKIP("the data lives on the server");
        }
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        if (problem == u"empty folder"_s) {
            QVERIFY(QDir().mkpath(h.home()));
        } else if (problem != u"no folder"_s) {
            QVERIFY2(h.init(), qPrintable(h.error()));
            const QString broken = problem.contains(u"data"_s) ? h.dataFile() : h.storeFile();
            QVERIFY(QFile::remove(broken));
            if (problem != u"no data"_s) {
                QVERIFY(writeFile(broken, QByteArray(4096, '\x5a') + "\n\x01\x02 garbage\n"));
            }
        }
        const bool homeExisted = QDir(h.home()).exists();
        const QStringList before = state(h, false);
        for (const QStringList& words :
             {QStringList{u"sql"_s, u"SELECT 1"_s}, QStringList{u"next-date"_s, u"--all"_s}}) {
            const CliResult r = h.run(words);
            QCOMPARE(r.code, 1);
            QVERIFY(r.out.isEmpty());
            QVERIFY2(QRegularExpression(told).match(r.err).hasMatch(), qPrintable(r.err));
            QCOMPARE(QDir(h.home()).exists(), homeExisted);
            QCOMPARE(state(h, false), before);
        }
    }

    void serverProblemsAreTold_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::newRow("no server at that port") << u"Port"_s << u"1"_s;
        QTest::newRow("schema without tables") << u"Schema"_s << u"cli_never_made"_s;
        QTest::newRow("schema name not allowed") << u"Schema"_s << u"x; DROP TABLE tblUser"_s;
    }
    void serverProblemsAreTold()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        if (!TestInstallation::wantsPostgres()) {
            QSKIP("the data lives in a file");
        }
        TANDRILL_CLI_HOME(h);
        const QStringList before = state(h);
        const QByteArray original = fileBytes(h.storeFile());
        Store store(h.storeFile());
        QVERIFY(store.load() && store.setValue(u"Database"_s, key, value) && store.save());
        const CliResult r = h.run({u"sql"_s, u"SELECT COUNT(*) FROM tblUser"_s});
        QCOMPARE(r.code, 1);
        QVERIFY2(QRegularExpression(ConnectFailure.arg(u"\\d+"_s)).match(r.err).hasMatch(),
                 qPrintable(r.err));
        QVERIFY(writeFile(h.storeFile(), original));
        QCOMPARE(state(h), before);
    }

    void nextDateTakesTodayAndTheGivenDay_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("next");
        QTest::newRow("today as base") << QString() << u"2025-06-11"_s;
        QTest::newRow("given day wins over today") << u"2025-01-01"_s << u"2025-01-11"_s;
    }
    void nextDateTakesTodayAndTheGivenDay()
    {
        QFETCH(QString, given);
        QFETCH(QString, next);
        TANDRILL_CLI_HOME(h);
        const QString id = addService(h, u"D"_s, 10);
        QVERIFY(!id.isEmpty());
        const QStringList words =
            given.isEmpty() ? QStringList() : QStringList{u"--given"_s, given};
        const CliResult r = h.run(QStringList{u"next-date"_s, id} + words, QDate(2025, 6, 1));
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QCOMPARE(r.out, next + u'\n');
        QCOMPARE(h.run(QStringList{u"next-date"_s, u"--all"_s} + words, QDate(2025, 6, 1)).out,
                 id + u'\t' + next + u'\n');
    }

    void nextDateTellsItsTroubleOnStderr_data()
    {
        QTest::addColumn<QString>("period"); // empty: no service at all
        QTest::addColumn<int>("interval");
        QTest::addColumn<bool>("days");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err"); // a pattern
        QTest::addColumn<int>("kept");    // rows added to the error list
        QTest::newRow("empty selection") << u"D"_s << 10 << false << 0 << u"2025-03-02\n"_s
                                         << u"^Service \"T-1\" doesn't have any DOW"_s << 0;
        QTest::newRow("failure") << u"Y"_s << 9000 << true << 0 << u"2025-03-01\n"_s
                                 << u"^Error \\d+ in General Function"_s << 1;
        QTest::newRow("unknown service")
            << QString() << 0 << true << 1 << QString()
            << u"^There is no service with the ServiceUsedID 424242\\.\\n$"_s << 0;
    }
    void nextDateTellsItsTroubleOnStderr()
    {
        QFETCH(QString, period);
        QFETCH(int, interval);
        QFETCH(bool, days);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(int, kept);
        TANDRILL_CLI_HOME(h);
        const QString id = period.isEmpty() ? u"424242"_s : addService(h, period, interval, days);
        QVERIFY(!id.isEmpty());
        const CliResult r = h.run({u"next-date"_s, id});
        QCOMPARE(r.code, code);
        QCOMPARE(r.out, out);
        QVERIFY2(QRegularExpression(err).match(r.err).hasMatch(), qPrintable(r.err));
        QCOMPARE(h.value(u"SELECT COUNT(*) FROM tblErrorList"_s), QString::number(kept));
    }

    void failureSinkPrintsALineAndKeepsTheFailure()
    {
        TANDRILL_INSTALLATION(t);
        QString printed;
        QTextStream err(&printed);
        PrintedFailureSink sink(t.session(), err);
        sink.report({u"Equipment"_s, u"AddServiceRecord"_s, 13, u"Type mismatch"_s, 4});
        err.flush();
        QCOMPARE(printed, u"Error 13 in Equipment (AddServiceRecord): Type mismatch\n"_s);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"SELECT ErrNumber, ErrDescription, ModuleName, ProcedureName, "
                             "LineNumber, ErrDateTime FROM tblErrorList"_s));
        QVERIFY(q.next());
        QStringList row;
        for (int i = 0; i < 5; ++i) {
            row.append(q.value(i).toString());
        }
        QCOMPARE(row.join(u'|'), u"13|Type mismatch|Equipment|AddServiceRecord|4"_s);
        QCOMPARE(SqlValue::toDate(q.value(5)), t.session().today());
        QVERIFY(!q.next());
    }

    // The program itself, as a shell runs it, on a demo fleet.
    void programGivesADateForEveryServiceOfTheDemoFleet()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        const auto run = [&](const QStringList& words) {
            QProcess p;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"TANDRILL_HOME"_s, h.home()); // the home from the environment
            p.setProcessEnvironment(environment);
            p.start(QStringLiteral(TANDRILL_CLI_PATH),
                    QStringList{u"--today=2025-03-01"_s} + words);
            if (!p.waitForFinished(120000)) {
                p.kill();
                p.waitForFinished();
            }
            return CliResult{p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
                             QString::fromUtf8(p.readAllStandardError())};
        };
        QCOMPARE(run({u"frobnicate"_s}).code, 2);
        const CliResult init = run(h.initWords({u"--demo"_s}));
        QVERIFY2(init.code == 0 && init.out.contains(u"Demo fleet: 40 machines"_s),
                 qPrintable(init.out + init.err));
        QCOMPARE(run({u"sql"_s, u"SELECT 'Zoë, Québec' AS n"_s}).out, u"n\n\"Zoë, Québec\"\n"_s);

        const QStringList ids =
            h.sql(u"SELECT ServiceUsedID FROM tblServiceUsed ORDER BY ServiceUsedID"_s).mid(1);
        const CliResult all = run({u"next-date"_s, u"--all"_s});
        QVERIFY2(all.code == 0 && all.err.isEmpty(), qPrintable(all.err));
        const QStringList lines = all.out.split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), ids.size());
        const QRegularExpression shape(u"^(\\d+)\\t(\\d{4}-\\d{2}-\\d{2}|none)$"_s);
        int none = 0;
        for (int i = 0; i < lines.size(); ++i) {
            const QRegularExpressionMatch m = shape.match(lines.at(i));
            QVERIFY2(m.hasMatch() && m.captured(1) == ids.at(i), qPrintable(lines.at(i)));
            none += m.captured(2) == u"none"_s;
        }
        QVERIFY2(none > 0 && none < lines.size(), "the fleet has meter services due and not due");
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
