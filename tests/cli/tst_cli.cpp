#include "CliHome.h"
#include "MeterReadings.h"
#include "PasswordHash.h"
#include "Store.h"
#include "TestInstallation.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
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

/** A service on machine 9 from "period interval days", days 1 for every weekday or 0 for none. */
QString addService(const CliHome& h, const QString& service)
{
    const QStringList p = service.split(u' ');
    return h.value(
        u"INSERT INTO tblServiceUsed (EquipmentID, ServiceID, JobNo, Period, EInterval, "
        "RenewalOn, Sun, Mon, Tue, Wed, Thu, Fri, Sat, FirstW, SecondW, ThirdW, ForthW, "
        "LastW, Dom, Jan, Feb, Mar, Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece, "
        "Inactive) VALUES (9, 0, 'T-1', '%1', %2, 'W', '%3', '%3', '%3', '%3', '%3', "
        "'%3', '%3', '1', '1', '1', '1', '1', '0', '1', '1', '1', '1', '1', '1', '1', "
        "'1', '1', '1', '1', '1', 0) RETURNING ServiceUsedID AS id"_s.arg(p[0], p[1], p[2]));
}

const QString ConnectFailure = u"^modData_Conntect \\(ConnectToDB\\)\\n%1\\n."_s;

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

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
        QVERIFY(PasswordHash::verify(h.value(u"SELECT Password FROM tblUser"_s), u"first"_s));
        const QStringList before = state(h);
        const QString aside = h.storeFile() + u".aside"_s;
        QVERIFY(!storeGone || QFile::rename(h.storeFile(), aside));
        const CliResult r = h.run(h.initWords({u"--demo"_s, u"--password=other"_s}));
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(u"already"_s) && r.out.isEmpty(), qPrintable(r.err));
        QCOMPARE(QFile::exists(h.storeFile()), !storeGone);
        QVERIFY(!storeGone || QFile::rename(aside, h.storeFile()));
        QCOMPARE(state(h), before);
    }

    void sqlChangesPrintTheRowsOrFailAndChangeNothing_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("printed"); // empty: the statement fails
        QTest::newRow("insert of two")
            << u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (1, 'a;b'), (2, 'b');"_s
            << u"2\n"_s;
        QTest::newRow("delete of none") << u"DELETE FROM tblCrew WHERE CrewID = -1"_s << u"0\n"_s;
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
                QFile file(broken);
                QVERIFY(file.open(QIODevice::WriteOnly) &&
                        file.write(QByteArray(4096, 'Z') + "\n\x01\x02 garbage\n") > 0);
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

    void schemaProblemsAreToldAndChangeNothing_data()
    {
        QTest::addColumn<QString>("schema");
        QTest::newRow("schema without tables") << u"cli_never_made"_s;
        QTest::newRow("name that could carry SQL") << u"x; DROP TABLE tblUser"_s;
    }
    void schemaProblemsAreToldAndChangeNothing()
    {
        QFETCH(QString, schema);
        if (!TestInstallation::wantsPostgres()) {
            QSKIP("the data lives in a file");
        }
        TANDRILL_CLI_HOME(h);
        Store store(h.storeFile());
        QVERIFY(store.load() && store.setValue(u"Database"_s, u"Schema"_s, schema) && store.save());
        const QStringList before = state(h, false);
        const CliResult r = h.run({u"sql"_s, u"SELECT COUNT(*) FROM tblUser"_s});
        QCOMPARE(r.code, 1);
        QVERIFY2(QRegularExpression(ConnectFailure.arg(u"\\d+"_s)).match(r.err).hasMatch(),
                 qPrintable(r.err));
        QCOMPARE(state(h, false), before);
    }

    void nextDatePrintsTheDayAndTellsTroubleOnStderr_data()
    {
        QTest::addColumn<QString>("service"); // period, interval, days; empty: none at all
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("out");
        QTest::addColumn<QString>("err"); // a pattern
        QTest::addColumn<int>("kept");    // rows added to the error list
        const auto row = [](const char* name, const char* service, const QStringList& words,
                            int code, const QString& out, const QString& err, int kept = 0) {
            QTest::newRow(name) << QString::fromLatin1(service) << words << code << out << err
                                << kept;
        };
        row("today as base", "D 10 1", {}, 0, u"2025-06-11\n"_s, u"^$"_s);
        row("given day wins over today", "D 10 1", {u"--given"_s, u"2025-01-01"_s}, 0,
            u"2025-01-11\n"_s, u"^$"_s);
        row("empty selection", "D 10 0", {}, 0, u"2025-06-02\n"_s,
            u"^Service \"T-1\" doesn't have any DOW"_s);
        row("failure", "Y 9000 1", {}, 0, u"2025-06-01\n"_s,
            u"^Error 6 in General Function \\(GetNextScheduledDate\\): Overflow"_s, 1);
        row("unknown service", "", {}, 1, QString(),
            u"^There is no service with the ServiceUsedID 424242\\.\\n$"_s);
    }
    void nextDatePrintsTheDayAndTellsTroubleOnStderr()
    {
        QFETCH(QString, service);
        QFETCH(QStringList, words);
        QFETCH(int, code);
        QFETCH(QString, out);
        QFETCH(QString, err);
        QFETCH(int, kept);
        TANDRILL_CLI_HOME(h);
        const QString id = service.isEmpty() ? u"424242"_s : addService(h, service);
        QVERIFY(!id.isEmpty());
        const CliResult r = h.run(QStringList{u"next-date"_s, id} + words, QDate(2025, 6, 1));
        QCOMPARE(r.code, code);
        QCOMPARE(r.out, out);
        QVERIFY2(QRegularExpression(err).match(r.err).hasMatch(), qPrintable(r.err));
        // Kept under the day taken as today, not the machine's own.
        QCOMPARE(h.value(u"SELECT COUNT(*) FROM tblErrorList WHERE ErrDateTime < '2025-06-02'"_s),
                 QString::number(kept));
    }

    void readingIsStoredOrRefusedWithNothingWritten()
    {
        TANDRILL_CLI_HOME(h);
        QCOMPARE(h.run({u"sql"_s, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, "
                                  "UnitNo, Inactive) VALUES (9, 'Mower', 'U9', '0')"_s})
                     .code,
                 0);
        const QString id = addService(h, u"H 100 1"_s);
        QCOMPARE(h.run({u"reading"_s, u"9"_s, u"Hours"_s, u"500"_s}).code, 0);
        // The rule ran: 500 reached the service's count, so it is due today.
        QCOMPARE(
            h.value(u"SELECT NextScheduledDate FROM tblServiceUsed WHERE ServiceUsedID = "_s + id),
            u"2025-03-01"_s);
        const CliResult r =
            h.run({u"reading"_s, u"9"_s, u"Hours"_s, u"600"_s, u"--date=2025-03-02"_s});
        QCOMPARE(r.code, 1);
        QCOMPARE(r.err, ReadingMessages::DateAfterToday + u'\n');
        QCOMPARE(h.value(u"SELECT COUNT(*) FROM tblEquipmentCount"_s), u"1"_s);
    }

    // The program itself, as a shell runs it, on a demo fleet.
    void postPrintsPostedAndHeldBackOrders()
    {
        TANDRILL_CLI_HOME(h);
        // Order 1 has a done line; order 2 a done hour line without its count.
        for (const char* insert :
             {"tblWorkorder (WorkOrderNo, Complete) VALUES (1, -1), (2, -1)",
              "tblWoServiceUsed (WorkOrderNo, ServiceUsedID, Period, Completed) VALUES "
              "(1, 0, 'D', -1), (2, 0, 'H', -1)"}) {
            QCOMPARE(h.run({u"sql"_s, u"INSERT INTO "_s + QLatin1String(insert)}).code, 0);
        }
        const CliResult posted = h.run({u"post"_s});
        QCOMPARE(posted.out, u"Posted: 1\nHeld back: 2\n"_s);
        QVERIFY(posted.err.contains(u"Following Work Orders (2)"_s));
    }

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
        QVERIFY2(init.code == 0 && init.out.contains(u"Installation created in "_s + h.home()) &&
                     init.out.contains(u"Demo fleet: 40 machines"_s),
                 qPrintable(init.out + init.err));
        // Without --password one is made up and told once.
        const QRegularExpressionMatch told = QRegularExpression(u"^Password of Chief: (\\S+)$"_s,
                                                                QRegularExpression::MultilineOption)
                                                 .match(init.out);
        QVERIFY(PasswordHash::verify(h.value(u"SELECT Password FROM tblUser"_s), told.captured(1)));
        QCOMPARE(run({u"sql"_s, u"SELECT 'Zoë, Québec' AS n"_s}).out, u"n\n\"Zoë, Québec\"\n"_s);

        const CliResult all = run({u"next-date"_s, u"--all"_s});
        QVERIFY2(all.code == 0 && all.err.isEmpty(), qPrintable(all.err));
        // One line a service in order of its key; meter services not due yet have no date.
        QCOMPARE(QString::number(all.out.count(u'\n')),
                 h.value(u"SELECT COUNT(*) FROM tblServiceUsed"_s));
        QVERIFY(all.out.startsWith(h.value(u"SELECT MIN(ServiceUsedID) FROM tblServiceUsed"_s) +
                                   u'\t') &&
                all.out.contains(u"\tnone\n"_s));
        QVERIFY(QRegularExpression(u"\\t\\d{4}-\\d{2}-\\d{2}\\n"_s).match(all.out).hasMatch());
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
