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
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QDate Today(2025, 3, 1);

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

/**
 * Everything a failed command must leave as it was: the rows of a few tables as
 * printed (withData), then each file and folder below the home with its content.
 */
QStringList state(const CliHome& h, bool withData = true)
{
    QStringList entries;
    for (const char* query :
         {"SELECT UserName, Password FROM tblUser ORDER BY UserName",
          "SELECT SysOption, itemValue FROM tblSysOption ORDER BY SysOption",
          "SELECT ItemID, ParentId, ItemName FROM tblIndicator ORDER BY ItemID",
          "SELECT COUNT(*) FROM tblEquipment", "SELECT COUNT(*) FROM tblPart"}) {
        const CliResult r = withData ? h.run({u"sql"_s, QString::fromLatin1(query)}) : CliResult();
        entries.append(QString::number(r.code) + u' ' + r.out + r.err);
    }
    QDirIterator it(h.home(), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        entries.append(
            QDir(h.home()).relativeFilePath(path) + u' ' +
            QString::fromLatin1(it.fileInfo().isDir() ? "folder" : fileBytes(path).toBase64()));
    }
    std::sort(entries.begin() + 5, entries.end());
    return entries;
}

/** Adds a service on machine 9 with the given schedule and returns its key. */
QString addService(const CliHome& h, const QString& period, int interval, const QString& days,
                   const QString& nextCount = u"NULL"_s)
{
    QStringList dayFlags;
    for (int i = 0; i < 7; ++i) {
        dayFlags.append(u'\'' + days.mid(i, 1) + u'\'');
    }
    return h.value(
        u"INSERT INTO tblServiceUsed (EquipmentID, ServiceID, JobNo, Name, Period, EInterval, "
        "RenewalOn, Sun, Mon, Tue, Wed, Thu, Fri, Sat, FirstW, SecondW, ThirdW, ForthW, LastW, "
        "Dom, Jan, Feb, Mar, Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece, NextScheduledCount, "
        "Inactive) VALUES (9, 0, 'T-1', 'Test service', '%1', %2, 'W', %3, '1', '1', '1', '1', "
        "'1', '0', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', %4, 0) "
        "RETURNING ServiceUsedID AS id"_s.arg(period)
            .arg(interval)
            .arg(dayFlags.join(u", "_s), nextCount));
}

const QRegularExpression ConnectFailure(u"^modData_Conntect \\(ConnectToDB\\)\\n(\\d+)\\n.+"_s,
                                        QRegularExpression::DotMatchesEverythingOption);

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
        const QString expected = password.isEmpty() ? told.captured(1) : password;
        const QString hash =
            h.value(u"SELECT Password AS p FROM tblUser WHERE UserName = 'Chief'"_s);
        QVERIFY(PasswordHash::verify(hash, expected));
        QVERIFY2(!hash.contains(expected), "the password is kept as a hash only");
    }

    void secondInitRefusesAndChangesNothing_data()
    {
        QTest::addColumn<QStringList>("extra");
        QTest::addColumn<bool>("storeGone");
        QTest::newRow("same words") << QStringList() << false;
        QTest::newRow("demo and a password")
            << QStringList{u"--demo"_s, u"--password=other"_s} << false;
        QTest::newRow("data left without its settings") << QStringList{u"--demo"_s} << true;
    }
    void secondInitRefusesAndChangesNothing()
    {
        QFETCH(QStringList, extra);
        QFETCH(bool, storeGone);
        TANDRILL_CLI_HOME(h, {u"--password=first"_s});
        const QStringList before = state(h);
        const QByteArray store = fileBytes(h.storeFile());
        if (storeGone) {
            QVERIFY(QFile::remove(h.storeFile()));
        }

        const CliResult r = h.run(h.initWords(extra));
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(u"already"_s), qPrintable(r.err));
        QVERIFY(r.out.isEmpty());
        QCOMPARE(QFile::exists(h.storeFile()), !storeGone);
        QVERIFY(!storeGone || writeFile(h.storeFile(), store));
        QCOMPARE(state(h), before);
    }

    void demoFleetIsTheSameEveryTimeAndFollowsToday()
    {
        TANDRILL_CLI_HOME(a, {u"--demo"_s});
        TANDRILL_CLI_HOME(b, {u"--demo"_s});
        TANDRILL_CLI_HOME(later, {u"--demo"_s}, Today.addDays(10));
        for (const char* query :
             {"SELECT * FROM tblServiceUsed ORDER BY ServiceUsedID",
              "SELECT * FROM tblEquipment ORDER BY EquipmentID",
              "SELECT * FROM tblEquipmentCount ORDER BY EquipmentID, ChangeDate",
              "SELECT * FROM tblIndicator ORDER BY ItemID", "SELECT * FROM tblPart ORDER BY PartID",
              "SELECT * FROM tblEmployee ORDER BY EmployeeID"}) {
            const CliResult first = a.run({u"sql"_s, QString::fromLatin1(query)});
            QCOMPARE(first.code, 0);
            QCOMPARE(b.run({u"sql"_s, QString::fromLatin1(query)}).out, first.out);
        }
        // Ten days later every reading is ten days later too.
        const QString readings = u"SELECT EquipmentID AS e, ChangeDate AS d FROM tblEquipmentCount "
                                 "ORDER BY EquipmentID, ChangeDate"_s;
        const QStringList early = a.sql(readings);
        const QStringList late = later.sql(readings);
        QCOMPARE(late.size(), early.size());
        QVERIFY(early.size() > 500);
        for (int i = 1; i < early.size(); ++i) {
            const QStringList e = early.at(i).split(u',');
            const QStringList l = late.at(i).split(u',');
            QCOMPARE(l.at(0), e.at(0));
            QCOMPARE(QDate::fromString(l.at(1), Qt::ISODate),
                     QDate::fromString(e.at(1), Qt::ISODate).addDays(10));
        }
    }

    void sqlTextPassesThroughUnharmed()
    {
        TANDRILL_CLI_HOME(h);
        const std::pair<QString, QString> texts[] = {
            {u"O'Brien's crew"_s, u"O'Brien's crew"_s},
            {u"The \"A\" team"_s, u"\"The \"\"A\"\" team\""_s},
            {u"North, East"_s, u"\"North, East\""_s},
            {u"first\nsecond"_s, u"\"first\nsecond\""_s},
            {u"Équipe Zoë – Montréal 🚜"_s, u"Équipe Zoë – Montréal 🚜"_s},
            {u"It's \"Ø\", ok\n"_s, u"\"It's \"\"Ø\"\", ok\n\""_s}};
        QString printed = u"d,n\n"_s;
        int number = 0;
        for (const auto& [stored, field] : texts) {
            const CliResult insert = h.run(
                {u"sql"_s,
                 u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (%1, '%2')"_s.arg(++number)
                     .arg(QString(stored).replace(u'\'', u"''"_s))});
            QVERIFY2(insert.code == 0, qPrintable(insert.err));
            QCOMPARE(insert.out, u"1\n"_s);
            printed += field + u',' + QString::number(number) + u'\n';
        }
        const CliResult select = h.run(
            {u"sql"_s, u"SELECT Description AS d, CrewNumber AS n FROM tblCrew ORDER BY n"_s});
        QCOMPARE(select.code, 0);
        QCOMPARE(select.out, printed);
    }

    void sqlPrintsDaysAndEmptyValuesAlikeOnBothEngines()
    {
        TANDRILL_CLI_HOME(h);
        QCOMPARE(h.sql(u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                       "CountValue) VALUES (1, '2025-02-28', 'Hours', 12), (1, NULL, NULL, 13)"_s),
                 QStringList{u"2"_s});
        QCOMPARE(h.sql(u"INSERT INTO tblErrorList (ErrNumber, ErrDateTime) "
                       "VALUES (5, '2025-03-01 14:05:09')"_s),
                 QStringList{u"1"_s});
        QCOMPARE(h.run({u"sql"_s, u"SELECT ChangeDate AS d, CountValue AS v, CountType AS t "
                                  "FROM tblEquipmentCount ORDER BY CountValue"_s})
                     .out,
                 u"d,v,t\n2025-02-28,12,Hours\n,13,\n"_s);
        QCOMPARE(h.run({u"sql"_s, u"SELECT ErrDateTime AS m FROM tblErrorList"_s}).out,
                 u"m\n2025-03-01 14:05:09\n"_s);
    }

    void sqlChangesPrintTheRowsOrFailAndChangeNothing_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("printed"); // empty: the statement fails
        const auto row = [](const char* name, const char* statement, const char* printed = "") {
            QTest::newRow(name) << QString::fromUtf8(statement) << QString::fromLatin1(printed);
        };
        row("update",
            "UPDATE tblSysOption SET itemValue = itemValue "
            "WHERE SysOption LIKE 'UserDefinedField%'",
            "10\n");
        row("insert of two",
            "INSERT INTO tblCrew (CrewNumber, Description) VALUES (1, 'a'), (2, 'b')", "2\n");
        row("delete of none", "DELETE FROM tblCrew WHERE CrewID = -1", "0\n");
        row("table made", "CREATE TABLE scratch_t (x INTEGER)", "0\n");
        row("semicolons inside and at the end",
            "INSERT INTO tblCrew (CrewNumber, Description) VALUES (3, 'a;b'); -- done", "1\n");
        row("unknown table", "SELECT * FROM tblNope");
        row("syntax", "SELEKT 1");
        row("refused flag value", "INSERT INTO tblPart (PartID, Inactive) VALUES ('P1', 1)");
        row("duplicate key", "INSERT INTO tblUser (UserName) VALUES ('Chief')");
        row("two statements", "DELETE FROM tblSysOption; SELECT 1");
        row("second after a comment", "SELECT 1; /* ; */ DELETE FROM tblUser");
    }
    void sqlChangesPrintTheRowsOrFailAndChangeNothing()
    {
        QFETCH(QString, statement);
        QFETCH(QString, printed);
        TANDRILL_CLI_HOME(h);
        const QStringList before = state(h);
        const CliResult r = h.run({u"sql"_s, statement});
        QCOMPARE(r.out, printed);
        if (!printed.isEmpty()) {
            QVERIFY2(r.code == 0, qPrintable(r.err));
            return;
        }
        QCOMPARE(r.code, 1);
        QVERIFY(!r.err.trimmed().isEmpty());
        QCOMPARE(state(h), before);
    }

    void fileProblemsAreToldAndChangeNothing_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QByteArray>("dataFile"); // written in place of the data file
        QTest::addColumn<QString>("told");        // a pattern
        QByteArray junk;
        for (int i = 0; i < 8192; ++i) {
            junk.append(char((i * 131 + 17) % 256));
        }
        const QString broken = u"^modData_Conntect \\(ConnectToDB\\)\\n26\\n."_s;
        QTest::newRow("junk bytes") << u"data"_s << junk << broken;
        QTest::newRow("text") << u"data"_s << QByteArray("not a data file\n") << broken;
        QTest::newRow("empty file") << u"data"_s << QByteArray() << broken;
        QTest::newRow("missing data file")
            << u"no data"_s << QByteArray() << u"^modData_Conntect \\(ConnectToDB\\)\\n14\\n."_s;
        QTest::newRow("no folder")
            << u"no folder"_s << QByteArray() << u"the folder does not exist"_s;
        QTest::newRow("folder without settings")
            << u"empty folder"_s << QByteArray() << u"it holds no Tandrill\\.ini"_s;
        QTest::newRow("damaged settings") << u"damaged"_s << QByteArray() << u"is damaged near"_s;
        QTest::newRow("unreadable settings") << u"unreadable"_s << QByteArray() << u"Cannot read"_s;
    }
    void fileProblemsAreToldAndChangeNothing()
    {
        QFETCH(QString, problem);
        QFETCH(QByteArray, dataFile);
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
            if (problem == u"unreadable"_s) {
                QVERIFY(QDir().mkpath(broken)); // a folder where the file belongs
            } else if (problem == u"damaged"_s) {
                QVERIFY(writeFile(broken, "Driver=QPSQL\n\x01\x02 garbage\n"));
            } else if (problem == u"data"_s) {
                QVERIFY(writeFile(broken, dataFile));
            }
        }
        const bool homeExisted = QDir(h.home()).exists();
        const QStringList before = state(h, false);
        for (const QStringList& words :
             {QStringList{u"sql"_s, u"SELECT 1"_s}, QStringList{u"next-date"_s, u"--all"_s},
              QStringList{u"next-date"_s, u"1"_s}}) {
            const CliResult r = h.run(words);
            QCOMPARE(r.code, 1);
            QVERIFY(r.out.isEmpty());
            QVERIFY2(QRegularExpression(told).match(r.err).hasMatch(), qPrintable(r.err));
            QCOMPARE(QDir(h.home()).exists(), homeExisted);
            QCOMPARE(state(h, false), before);
        }
    }

    void lockedDataFileIsToldAfterWaiting()
    {
        if (TestInstallation::wantsPostgres()) {
            QSKIP("the data lives on the server");
        }
        TANDRILL_CLI_HOME(h);
        const QByteArray before = fileBytes(h.dataFile());
        {
            // Another program holds the file for itself in the middle of a change.
            QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other-program"_s);
            other.setDatabaseName(h.dataFile());
            QVERIFY(other.open());
            QSqlQuery q(other);
            QVERIFY(q.exec(u"PRAGMA locking_mode=EXCLUSIVE"_s));
            QVERIFY(q.exec(u"BEGIN EXCLUSIVE"_s));
            QVERIFY(q.exec(u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (1, 'x')"_s));

            const CliResult r = h.run({u"sql"_s, u"SELECT COUNT(*) FROM tblCrew"_s});
            QCOMPARE(r.code, 1);
            QVERIFY(r.out.isEmpty());
            QVERIFY2(ConnectFailure.match(r.err).hasMatch(), qPrintable(r.err));
            QVERIFY(r.err.contains(u"locked"_s));
            QVERIFY(q.exec(u"ROLLBACK"_s));
            other.close();
        }
        QSqlDatabase::removeDatabase(u"other-program"_s);
        QCOMPARE(fileBytes(h.dataFile()), before);
        QCOMPARE(h.value(u"SELECT COUNT(*) AS n FROM tblCrew"_s), u"0"_s);
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
        QVERIFY(r.out.isEmpty());
        QVERIFY2(ConnectFailure.match(r.err).hasMatch(), qPrintable(r.err));
        QVERIFY(writeFile(h.storeFile(), original));
        QCOMPARE(state(h), before);
    }

    void todayMovesTheNextDateOfANeverDoneService_data()
    {
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("next");
        QTest::newRow("today as base") << Today << QString() << u"2025-03-11"_s;
        QTest::newRow("later today, later date")
            << QDate(2025, 6, 1) << QString() << u"2025-06-11"_s;
        QTest::newRow("given day wins over today")
            << QDate(2025, 6, 1) << u"2025-01-01"_s << u"2025-01-11"_s;
    }
    void todayMovesTheNextDateOfANeverDoneService()
    {
        QFETCH(QDate, today);
        QFETCH(QString, given);
        QFETCH(QString, next);
        TANDRILL_CLI_HOME(h);
        const QString id = addService(h, u"D"_s, 10, u"1111111"_s);
        QVERIFY(!id.isEmpty());
        const QStringList givenWords =
            given.isEmpty() ? QStringList() : QStringList{u"--given"_s, given};
        const CliResult r = h.run(QStringList{u"next-date"_s, id} + givenWords, today);
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QCOMPARE(r.out, next + u'\n');
        QCOMPARE(h.run(QStringList{u"next-date"_s, u"--all"_s} + givenWords, today).out,
                 id + u'\t' + next + u'\n');
    }

    void meterServiceHasNoDateUntilAReadingReachesItsCount()
    {
        TANDRILL_CLI_HOME(h);
        const QStringList words{u"next-date"_s, addService(h, u"H"_s, 100, u"1111111"_s, u"100"_s)};
        QCOMPARE(h.run(words).out, u"none\n"_s);
        const QString reading = u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, "
                                "CountType, CountValue) VALUES (9, '%1', 'Hours', %2)"_s;
        h.sql(reading.arg(u"2025-02-01"_s).arg(99));
        QCOMPARE(h.run(words).out, u"none\n"_s);
        h.sql(reading.arg(u"2025-02-20"_s).arg(100));
        QCOMPARE(h.run(words).out, u"2025-02-20\n"_s);
    }

    void nextDateTellsItsTroubleOnStderr_data()
    {
        QTest::addColumn<QString>("period"); // empty: no service at all
        QTest::addColumn<int>("interval");
        QTest::addColumn<QString>("days");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err"); // a pattern
        QTest::addColumn<int>("kept");    // rows added to the error list
        QTest::newRow("empty selection")
            << u"D"_s << 10 << u"0000000"_s << 0 << u"2025-03-02\n"_s
            << u"doesn't have any DOW\\(day of the week\\) selected"_s << 0;
        QTest::newRow("failure") << u"Y"_s << 9000 << u"1111111"_s << 0 << u"2025-03-01\n"_s
                                 << u"^Error \\d+ in General Function \\(\\S+\\): \\S"_s << 1;
        QTest::newRow("unknown service")
            << QString() << 0 << QString() << 1 << QString()
            << u"^There is no service with the ServiceUsedID 424242\\.\\n$"_s << 0;
    }
    void nextDateTellsItsTroubleOnStderr()
    {
        QFETCH(QString, period);
        QFETCH(int, interval);
        QFETCH(QString, days);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(int, kept);
        TANDRILL_CLI_HOME(h);
        const QString id = period.isEmpty() ? u"424242"_s : addService(h, period, interval, days);
        const CliResult r = h.run({u"next-date"_s, id});
        QCOMPARE(r.code, code);
        QCOMPARE(r.out, out);
        QVERIFY2(QRegularExpression(err).match(r.err).hasMatch(), qPrintable(r.err));
        QCOMPARE(h.value(u"SELECT COUNT(*) AS n FROM tblErrorList "
                         "WHERE ModuleName = 'General Function'"_s),
                 QString::number(kept));
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
        QCOMPARE(QStringList({q.value(0).toString(), q.value(1).toString(), q.value(2).toString(),
                              q.value(3).toString(), q.value(4).toString()}),
                 (QStringList{u"13"_s, u"Type mismatch"_s, u"Equipment"_s, u"AddServiceRecord"_s,
                              u"4"_s}));
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
                return CliResult{-1, {}, u"did not come to an end"_s};
            }
            return CliResult{p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
                             QString::fromUtf8(p.readAllStandardError())};
        };
        const CliResult usage = run({u"frobnicate"_s});
        QCOMPARE(usage.code, 2);
        QVERIFY(usage.err.contains(u"Usage: tandrill-cli"_s));
        const CliResult init = run(h.initWords({u"--demo"_s}));
        QVERIFY2(init.code == 0, qPrintable(init.err));
        QVERIFY2(init.out.contains(h.home()) && init.out.contains(u"Demo fleet: 40 machines"_s),
                 qPrintable(init.out));
        const CliResult sql = run({u"sql"_s, u"SELECT 'Zoë, Québec' AS n"_s});
        QCOMPARE(sql.code, 0);
        QCOMPARE(sql.out, u"n\n\"Zoë, Québec\"\n"_s);

        const QStringList ids =
            h.sql(u"SELECT ServiceUsedID AS id FROM tblServiceUsed ORDER BY ServiceUsedID"_s)
                .mid(1);
        QVERIFY(ids.size() > 100);
        const CliResult all = run({u"next-date"_s, u"--all"_s});
        QVERIFY2(all.code == 0 && all.err.isEmpty(), qPrintable(all.err));
        const QStringList lines = all.out.split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), ids.size());
        const QRegularExpression shape(u"^(\\d+)\\t(\\d{4}-\\d{2}-\\d{2}|none)$"_s);
        int none = 0;
        for (int i = 0; i < lines.size(); ++i) {
            const QRegularExpressionMatch m = shape.match(lines.at(i));
            QVERIFY2(m.hasMatch(), qPrintable(lines.at(i)));
            QCOMPARE(m.captured(1), ids.at(i));
            none += m.captured(2) == u"none"_s;
        }
        QVERIFY2(none > 0 && none < lines.size(), "the fleet has meter services due and not due");
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
