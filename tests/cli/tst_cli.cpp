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

/** Every file and folder below path with its size, to see that nothing was added or changed. */
QStringList listing(const QString& path)
{
    QStringList entries;
    QDirIterator it(path, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        entries.append(QDir(path).relativeFilePath(it.filePath()) + u' ' +
                       QString::number(it.fileInfo().isDir() ? -1 : it.fileInfo().size()));
    }
    entries.sort();
    return entries;
}

/** The rows of a few tables that an installation's first state has, as the command prints them. */
QString dataDump(const CliHome& h)
{
    QString dump;
    for (const char* query :
         {"SELECT UserName, Password FROM tblUser ORDER BY UserName",
          "SELECT SysOption, itemValue FROM tblSysOption ORDER BY SysOption",
          "SELECT ItemID, ParentId, ItemName FROM tblIndicator ORDER BY ItemID",
          "SELECT COUNT(*) FROM tblEquipment", "SELECT COUNT(*) FROM tblPart"}) {
        const CliResult r = h.run({u"sql"_s, QString::fromLatin1(query)});
        dump += QString::number(r.code) + u'\n' + r.out + r.err;
    }
    return dump;
}

/** Adds a service on machine 9 with the given schedule and returns its key. */
QString addService(const CliHome& h, const QString& period, int interval, const QString& days,
                   const QString& nextCount = u"NULL"_s)
{
    QStringList dayFlags;
    for (int i = 0; i < 7; ++i) {
        dayFlags.append(u'\'' + days.mid(i, 1) + u'\'');
    }
    const QString statement =
        u"INSERT INTO tblServiceUsed (EquipmentID, ServiceID, JobNo, Name, Period, EInterval, "
        "RenewalOn, Sun, Mon, Tue, Wed, Thu, Fri, Sat, FirstW, SecondW, ThirdW, ForthW, LastW, "
        "Dom, "
        "Jan, Feb, Mar, Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece, NextScheduledCount, "
        "Inactive) "
        "VALUES (9, 0, 'T-1', 'Test service', '%1', %2, 'W', %3, '1', '1', '1', '1', '1', '0', "
        "'1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', '1', %4, 0) "
        "RETURNING ServiceUsedID AS id"_s.arg(period)
            .arg(interval)
            .arg(dayFlags.join(u", "_s), nextCount);
    return sqlValue(h, statement);
}

const QRegularExpression ConnectFailure(u"^modData_Conntect \\(ConnectToDB\\)\\n(\\d+)\\n.+"_s,
                                        QRegularExpression::DotMatchesEverythingOption);

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void initMakesInstallationAndTellsChiefsPasswordOnce()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        const CliResult r = h.run(h.initWords());
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QVERIFY(r.out.contains(u"Installation created in "_s + h.home()));
        const QRegularExpressionMatch m = QRegularExpression(u"^Password of Chief: (\\S+)$"_s,
                                                             QRegularExpression::MultilineOption)
                                              .match(r.out);
        QVERIFY2(m.hasMatch(), qPrintable(r.out));
        const QString hash =
            sqlValue(h, u"SELECT Password AS p FROM tblUser WHERE UserName = 'Chief'"_s);
        QVERIFY(PasswordHash::verify(hash, m.captured(1)));
        QVERIFY2(!hash.contains(m.captured(1)), "the password is kept as a hash only");
    }

    void initTakesTheGivenPassword()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        const CliResult r = h.run(h.initWords({u"--password"_s, u"Kestrel 9"_s}));
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QVERIFY(!r.out.contains(u"Password of Chief"_s));
        const QString hash =
            sqlValue(h, u"SELECT Password AS p FROM tblUser WHERE UserName = 'Chief'"_s);
        QVERIFY(PasswordHash::verify(hash, u"Kestrel 9"_s));
    }

    void secondInitRefusesAndChangesNothing_data()
    {
        QTest::addColumn<QStringList>("extra");
        QTest::newRow("same words") << QStringList();
        QTest::newRow("demo and a password") << QStringList{u"--demo"_s, u"--password=other"_s};
    }

    void secondInitRefusesAndChangesNothing()
    {
        QFETCH(QStringList, extra);
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=first"_s})).code, 0);
        const QString dumpBefore = dataDump(h);
        const QStringList filesBefore = listing(h.home());
        const QByteArray storeBefore = fileBytes(h.storeFile());
        const QByteArray dataBefore = fileBytes(h.dataFile());

        const CliResult r = h.run(h.initWords(extra));
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(u"already exists"_s), qPrintable(r.err));
        QVERIFY(r.out.isEmpty());
        QCOMPARE(fileBytes(h.storeFile()), storeBefore);
        QCOMPARE(fileBytes(h.dataFile()), dataBefore);
        QCOMPARE(listing(h.home()), filesBefore);
        QCOMPARE(dataDump(h), dumpBefore);
    }

    void initRefusesDataLeftWithoutItsSettings()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=first"_s})).code, 0);
        const QString dumpBefore = dataDump(h);
        const QByteArray store = fileBytes(h.storeFile());
        const QByteArray dataBefore = fileBytes(h.dataFile());
        QVERIFY(QFile::remove(h.storeFile()));

        const CliResult r = h.run(h.initWords({u"--demo"_s}));
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains(u"already"_s), qPrintable(r.err));
        QVERIFY(!QFile::exists(h.storeFile()));
        QCOMPARE(fileBytes(h.dataFile()), dataBefore);
        QVERIFY(writeFile(h.storeFile(), store));
        QCOMPARE(dataDump(h), dumpBefore);
    }

    void demoFleetGetsANextDateForEveryService()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        const CliResult init = h.run(h.initWords({u"--demo"_s}));
        QVERIFY2(init.code == 0, qPrintable(init.err));
        QVERIFY2(init.out.contains(u"Demo fleet: 40 machines"_s), qPrintable(init.out));

        const QStringList ids =
            h.sql(u"SELECT ServiceUsedID AS id FROM tblServiceUsed ORDER BY ServiceUsedID"_s)
                .mid(1);
        QVERIFY(ids.size() > 100);
        const CliResult r = h.run({u"next-date"_s, u"--all"_s});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QVERIFY2(r.err.isEmpty(), qPrintable(r.err));
        const QStringList lines = r.out.split(u'\n', Qt::SkipEmptyParts);
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

    void demoFleetIsTheSameEveryTime()
    {
        CliHome a, b;
        QVERIFY2(a.isValid() && b.isValid(), qPrintable(a.error() + b.error()));
        QCOMPARE(a.run(a.initWords({u"--demo"_s})).code, 0);
        QCOMPARE(b.run(b.initWords({u"--demo"_s})).code, 0);
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
    }

    void demoFleetDatesFollowToday()
    {
        CliHome a, b;
        QVERIFY2(a.isValid() && b.isValid(), qPrintable(a.error() + b.error()));
        QCOMPARE(a.run(a.initWords({u"--demo"_s}), Today).code, 0);
        QCOMPARE(b.run(b.initWords({u"--demo"_s}), Today.addDays(10)).code, 0);
        const QString readings = u"SELECT EquipmentID AS e, ChangeDate AS d FROM tblEquipmentCount "
                                 "ORDER BY EquipmentID, ChangeDate"_s;
        const QStringList early = a.sql(readings);
        const QStringList late = b.sql(readings);
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

    void sqlTextPassesThroughUnharmed_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("field");

        QTest::newRow("apostrophes") << u"O'Brien's crew"_s << u"O'Brien's crew"_s;
        QTest::newRow("quotes") << u"The \"A\" team"_s << u"\"The \"\"A\"\" team\""_s;
        QTest::newRow("comma") << u"North, East"_s << u"\"North, East\""_s;
        QTest::newRow("line break") << u"first\nsecond"_s << u"\"first\nsecond\""_s;
        QTest::newRow("non-ASCII") << u"Équipe Zoë – Montréal 🚜"_s << u"Équipe Zoë – Montréal 🚜"_s;
        QTest::newRow("everything") << u"It's \"Ø\", ok\n"_s << u"\"It's \"\"Ø\"\", ok\n\""_s;
    }

    void sqlTextPassesThroughUnharmed()
    {
        QFETCH(QString, stored);
        QFETCH(QString, field);
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const CliResult insert = h.run(
            {u"sql"_s, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (7, '%1')"_s.arg(
                           QString(stored).replace(u'\'', u"''"_s))});
        QVERIFY2(insert.code == 0, qPrintable(insert.err));
        QCOMPARE(insert.out, u"1\n"_s);
        const CliResult select =
            h.run({u"sql"_s, u"SELECT Description AS d, CrewNumber AS n FROM tblCrew"_s});
        QCOMPARE(select.code, 0);
        QCOMPARE(select.out, u"d,n\n"_s + field + u",7\n"_s);
    }

    void sqlPrintsDaysAndEmptyValuesAlikeOnBothEngines()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
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

    void sqlChangesPrintTheRowsChanged_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("printed");

        QTest::newRow("update") << u"UPDATE tblSysOption SET itemValue = itemValue "
                                   "WHERE SysOption LIKE 'UserDefinedField%'"_s
                                << u"10\n"_s;
        QTest::newRow("insert of two") << u"INSERT INTO tblCrew (CrewNumber, Description) "
                                          "VALUES (1, 'a'), (2, 'b')"_s
                                       << u"2\n"_s;
        QTest::newRow("delete of none") << u"DELETE FROM tblCrew WHERE CrewID = -1"_s << u"0\n"_s;
        QTest::newRow("table made") << u"CREATE TABLE scratch_t (x INTEGER)"_s << u"0\n"_s;
        QTest::newRow("semicolons inside and at the end")
            << u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (3, 'a;b'); -- done"_s
            << u"1\n"_s;
    }

    void sqlChangesPrintTheRowsChanged()
    {
        QFETCH(QString, statement);
        QFETCH(QString, printed);
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const CliResult r = h.run({u"sql"_s, statement});
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QCOMPARE(r.out, printed);
    }

    void sqlErrorsExitOneAndChangeNothing_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::newRow("unknown table") << u"SELECT * FROM tblNope"_s;
        QTest::newRow("syntax") << u"SELEKT 1"_s;
        QTest::newRow("refused flag value")
            << u"INSERT INTO tblPart (PartID, Inactive) VALUES ('P1', 1)"_s;
        QTest::newRow("duplicate key") << u"INSERT INTO tblUser (UserName) VALUES ('Chief')"_s;
        QTest::newRow("two statements") << u"DELETE FROM tblSysOption; SELECT 1"_s;
        QTest::newRow("second after a comment") << u"SELECT 1; /* ; */ DELETE FROM tblUser"_s;
    }

    void sqlErrorsExitOneAndChangeNothing()
    {
        QFETCH(QString, statement);
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const QString before = dataDump(h);
        const CliResult r = h.run({u"sql"_s, statement});
        QCOMPARE(r.code, 1);
        QVERIFY(!r.err.trimmed().isEmpty());
        QVERIFY(r.out.isEmpty());
        QCOMPARE(dataDump(h), before);
    }

    void dataFileProblemsAreToldAndTheFileKept_data()
    {
        QTest::addColumn<bool>("present");
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<int>("number");

        QByteArray junk;
        for (int i = 0; i < 8192; ++i) {
            junk.append(char((i * 131 + 17) % 256));
        }
        QTest::newRow("junk bytes") << true << junk << 26;
        QTest::newRow("text") << true << QByteArray("not a data file\n") << 26;
        QTest::newRow("empty file") << true << QByteArray() << 26;
        QTest::newRow("missing") << false << QByteArray() << 14;
    }

    void dataFileProblemsAreToldAndTheFileKept()
    {
        QFETCH(bool, present);
        QFETCH(QByteArray, contents);
        QFETCH(int, number);
        if (TestInstallation::wantsPostgres()) {
            QSKIP("the data lives on the server");
        }
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        QVERIFY(QFile::remove(h.dataFile()));
        if (present) {
            QVERIFY(writeFile(h.dataFile(), contents));
        }
        const QStringList filesBefore = listing(h.home());
        for (const QStringList& words :
             {QStringList{u"sql"_s, u"SELECT 1"_s}, QStringList{u"next-date"_s, u"--all"_s},
              QStringList{u"next-date"_s, u"1"_s}}) {
            const CliResult r = h.run(words);
            QCOMPARE(r.code, 1);
            QVERIFY(r.out.isEmpty());
            const QRegularExpressionMatch m = ConnectFailure.match(r.err);
            QVERIFY2(m.hasMatch(), qPrintable(r.err));
            QCOMPARE(m.captured(1).toInt(), number);
            QCOMPARE(QFile::exists(h.dataFile()), present);
            if (present) {
                QCOMPARE(fileBytes(h.dataFile()), contents);
            }
            QCOMPARE(listing(h.home()), filesBefore);
        }
    }

    void lockedDataFileIsToldAfterWaiting()
    {
        if (TestInstallation::wantsPostgres()) {
            QSKIP("the data lives on the server");
        }
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
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
        QCOMPARE(sqlValue(h, u"SELECT COUNT(*) AS n FROM tblCrew"_s), u"0"_s);
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
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const QString dumpBefore = dataDump(h);
        const QByteArray original = fileBytes(h.storeFile());
        Store store(h.storeFile());
        QVERIFY(store.load());
        store.setValue(u"Database"_s, key, value);
        QVERIFY(store.save());

        const CliResult r = h.run({u"sql"_s, u"SELECT COUNT(*) FROM tblUser"_s});
        QCOMPARE(r.code, 1);
        QVERIFY(r.out.isEmpty());
        QVERIFY2(ConnectFailure.match(r.err).hasMatch(), qPrintable(r.err));
        QVERIFY(writeFile(h.storeFile(), original));
        QCOMPARE(dataDump(h), dumpBefore);
    }

    void settingsProblemsAreTold_data()
    {
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("message");
        QTest::newRow("no folder") << u"no folder"_s << u"the folder does not exist"_s;
        QTest::newRow("folder without settings")
            << u"empty folder"_s << u"it holds no Tandrill.ini"_s;
        QTest::newRow("damaged settings") << u"damaged"_s << u"is damaged near"_s;
        QTest::newRow("unreadable settings") << u"unreadable"_s << u"Cannot read"_s;
    }

    void settingsProblemsAreTold()
    {
        QFETCH(QString, problem);
        QFETCH(QString, message);
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        if (problem == u"empty folder"_s) {
            QVERIFY(QDir().mkpath(h.home()));
        } else if (problem != u"no folder"_s) {
            QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
            QVERIFY(QFile::remove(h.storeFile()));
            if (problem == u"damaged"_s) {
                QVERIFY(writeFile(h.storeFile(), "Driver=QPSQL\n\x01\x02 garbage\n"));
            } else {
                QVERIFY(QDir().mkpath(h.storeFile()));
            }
        }
        const bool homeExisted = QDir(h.home()).exists();
        const QStringList filesBefore = listing(h.home());
        const QByteArray dataBefore = fileBytes(h.dataFile());
        for (const QStringList& words :
             {QStringList{u"sql"_s, u"SELECT 1"_s}, QStringList{u"next-date"_s, u"--all"_s}}) {
            const CliResult r = h.run(words);
            QCOMPARE(r.code, 1);
            QVERIFY(r.out.isEmpty());
            QVERIFY2(r.err.contains(message), qPrintable(r.err));
            QCOMPARE(QDir(h.home()).exists(), homeExisted);
            QCOMPARE(listing(h.home()), filesBefore);
            QCOMPARE(fileBytes(h.dataFile()), dataBefore);
        }
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
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const QString id = addService(h, u"D"_s, 10, u"1111111"_s);
        QVERIFY(!id.isEmpty());
        QStringList words{u"next-date"_s, id};
        if (!given.isEmpty()) {
            words << u"--given"_s << given;
        }
        const CliResult r = h.run(words, today);
        QVERIFY2(r.code == 0, qPrintable(r.err));
        QCOMPARE(r.out, next + u'\n');
        const QStringList all = QStringList{u"next-date"_s, u"--all"_s} + words.mid(2);
        QCOMPARE(h.run(all, today).out, id + u'\t' + next + u'\n');
    }

    void meterServiceHasNoDateUntilAReadingReachesItsCount()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const QString id = addService(h, u"H"_s, 100, u"1111111"_s, u"100"_s);
        const QStringList words{u"next-date"_s, id};
        QCOMPARE(h.run(words).out, u"none\n"_s);
        h.sql(u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, CountValue) "
              "VALUES (9, '2025-02-01', 'Hours', 99)"_s);
        QCOMPARE(h.run(words).out, u"none\n"_s);
        h.sql(u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, CountValue) "
              "VALUES (9, '2025-02-20', 'Hours', 100)"_s);
        QCOMPARE(h.run(words).out, u"2025-02-20\n"_s);
    }

    void calculatorMessagesGoToStderr()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const QString id = addService(h, u"D"_s, 10, u"0000000"_s);
        const CliResult r = h.run({u"next-date"_s, id});
        QCOMPARE(r.code, 0);
        QCOMPARE(r.out, Today.addDays(1).toString(Qt::ISODate) + u'\n');
        QVERIFY2(r.err.contains(u"doesn't have any DOW(day of the week) selected"_s),
                 qPrintable(r.err));
    }

    void calculatorFailuresArePrintedAndKept()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const QString id = addService(h, u"Y"_s, 9000, u"1111111"_s);
        const CliResult r = h.run({u"next-date"_s, id});
        QVERIFY2(QRegularExpression(u"^Error \\d+ in General Function \\(\\S+\\): \\S"_s)
                     .match(r.err)
                     .hasMatch(),
                 qPrintable(r.err));
        QCOMPARE(sqlValue(h, u"SELECT COUNT(*) AS n FROM tblErrorList "
                             "WHERE ModuleName = 'General Function'"_s),
                 u"1"_s);
    }

    void unknownServiceIsTold()
    {
        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        QCOMPARE(h.run(h.initWords({u"--password=x"_s})).code, 0);
        const CliResult r = h.run({u"next-date"_s, u"424242"_s});
        QCOMPARE(r.code, 1);
        QVERIFY(r.out.isEmpty());
        QCOMPARE(r.err, u"There is no service with the ServiceUsedID 424242.\n"_s);
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
        QCOMPARE(q.value(0).toInt(), 13);
        QCOMPARE(q.value(1).toString(), u"Type mismatch"_s);
        QCOMPARE(q.value(2).toString(), u"Equipment"_s);
        QCOMPARE(q.value(3).toString(), u"AddServiceRecord"_s);
        QCOMPARE(q.value(4).toInt(), 4);
        QCOMPARE(SqlValue::toDate(q.value(5)), t.session().today());
        QVERIFY(!q.next());
    }

    void programRunsFromTheShell()
    {
        const QString program = QStringLiteral(TANDRILL_CLI_PATH);
        QProcess usage;
        usage.start(program, {u"frobnicate"_s});
        QVERIFY(usage.waitForFinished(30000));
        QCOMPARE(usage.exitCode(), 2);
        QVERIFY(usage.readAllStandardError().contains("Usage: tandrill-cli"));

        CliHome h;
        QVERIFY2(h.isValid(), qPrintable(h.error()));
        auto run = [&](const QStringList& words) {
            QProcess p;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"TANDRILL_HOME"_s, h.home()); // the home comes from the environment
            p.setProcessEnvironment(environment);
            p.start(program, QStringList{u"--today=2025-03-01"_s} + words);
            const bool finished = p.waitForFinished(120000);
            if (!finished) {
                p.kill();
                p.waitForFinished();
            }
            return std::make_tuple(finished, p.exitCode(),
                                   QString::fromUtf8(p.readAllStandardOutput()),
                                   QString::fromUtf8(p.readAllStandardError()));
        };
        auto [initDone, initCode, initOut, initErr] = run(h.initWords({u"--demo"_s}));
        QVERIFY(initDone);
        QVERIFY2(initCode == 0, qPrintable(initErr));
        QVERIFY(initOut.contains(h.home()));

        auto [allDone, allCode, allOut, allErr] = run({u"next-date"_s, u"--all"_s});
        QVERIFY2(allDone, "next-date --all must come to an end");
        QCOMPARE(allCode, 0);
        QCOMPARE(allOut.count(u'\n'),
                 sqlValue(h, u"SELECT COUNT(*) AS n FROM tblServiceUsed"_s).toInt());

        auto [sqlDone, sqlCode, sqlOut, sqlErr] = run({u"sql"_s, u"SELECT 'Zoë, Québec' AS n"_s});
        QVERIFY(sqlDone);
        QCOMPARE(sqlCode, 0);
        QCOMPARE(sqlOut, u"n\n\"Zoë, Québec\"\n"_s);
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
