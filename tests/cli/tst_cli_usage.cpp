#include "Arguments.h"
#include "CliHome.h"
#include "CommandLine.h"
#include "CsvWriter.h"
#include "SqlCommand.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/** The command line's words and fields, before any data is touched. */
class TestCliUsage : public QObject
{
    Q_OBJECT

private slots:
    void wrongCommandLinesExitTwoAndTouchNothing_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("reason");

        auto row = [](const char* name, QStringList words, const char* reason) {
            QTest::newRow(name) << words << QString::fromUtf8(reason);
        };
        row("no command", {}, "No command given.");
        row("unknown command", {u"frobnicate"_s}, "Unknown command: frobnicate");
        row("unknown global option", {u"--nope"_s, u"sql"_s, u"SELECT 1"_s},
            "Unknown option: --nope");
        row("today not a date", {u"--today"_s, u"2025-13-01"_s, u"next-date"_s, u"1"_s},
            "The day '2025-13-01' is no date");
        row("today without value", {u"next-date"_s, u"1"_s, u"--today"_s},
            "The option --today needs a value.");
        row("today twice", {u"--today=2025-01-01"_s, u"--today=2025-01-02"_s, u"init"_s},
            "The option --today is given twice.");
        row("init unknown option", {u"init"_s, u"--demo2"_s}, "Unknown option: --demo2");
        row("init server half given", {u"init"_s, u"--pg-host"_s, u"/tmp"_s},
            "A PostgreSQL data file needs --pg-host, --pg-port, --pg-database and --pg-user.");
        row("init empty password", {u"init"_s, u"--password="_s},
            "The password of Chief must not be empty.");
        const char* noSize = "The number of machines '%1' is no whole number from 1 to 100000.";
        for (const char* size : {"0", "+5", "12.5", "100001", ""}) {
            QTest::addRow("init machines '%s'", size)
                << QStringList{u"init"_s, u"--demo"_s, u"--machines="_s + QLatin1String(size)}
                << QString::fromLatin1(noSize).arg(QLatin1String(size));
        }
        row("init machines without demo", {u"init"_s, u"--machines=5"_s},
            "The option --machines needs --demo.");
        row("sql without statement", {u"sql"_s}, "sql needs a statement.");
        row("next-date without id", {u"next-date"_s},
            "next-date needs the ServiceUsedID of a service, or --all.");
        row("next-date id not a number", {u"next-date"_s, u"abc"_s},
            "The ID 'abc' is no ServiceUsedID.");
        row("next-date id and all", {u"next-date"_s, u"5"_s, u"--all"_s},
            "next-date takes either an ID or --all, not both.");
    }

    void wrongCommandLinesExitTwoAndTouchNothing()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, reason);
        QTemporaryDir dir;
        const QString home = dir.filePath(u"home"_s);
        const CliResult r = runCli(QStringList{u"--home"_s, home} + words);
        QCOMPARE(r.code, 2);
        QVERIFY2(r.err.startsWith(u"tandrill-cli: "_s + reason), qPrintable(r.err));
        QVERIFY(r.err.contains(u"Usage: tandrill-cli"_s));
        QVERIFY(r.out.isEmpty());
        QVERIFY2(!QDir(home).exists(), "a wrong command line must not make an installation");
    }

    void helpPrintsUsageOnStdout()
    {
        const CliResult r = runCli({u"--help"_s});
        QCOMPARE(r.code, 0);
        QVERIFY(r.out.startsWith(u"Usage: tandrill-cli"_s) && r.err.isEmpty());
    }

    void argumentsTakeOptionsAnywhere_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("positional");

        QTest::newRow("end of options")
            << QStringList{u"--"_s, u"--given"_s} << QString() << u"--given"_s;
        QTest::newRow("statement with dashes")
            << QStringList{u"--"_s, u"-- note\nSELECT 1"_s} << QString() << u"-- note\nSELECT 1"_s;
    }

    void argumentsTakeOptionsAnywhere()
    {
        QFETCH(QStringList, words);
        QFETCH(QString, given);
        QFETCH(QString, positional);
        Arguments arguments(words);
        QString value, error;
        QVERIFY(arguments.takeValue(u"--given"_s, &value, &error));
        QCOMPARE(value, given);
        QCOMPARE(arguments.takePositional(), positional);
        QVERIFY2(arguments.isEmpty(), qPrintable(arguments.firstLeft()));
    }

    void oneStatementAtATime_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("statement"); // null: the text holds several

        auto row = [](const char* name, const QString& sql, const char16_t* statement = nullptr) {
            QTest::newRow(name) << sql << (statement ? QString::fromUtf16(statement) : QString());
        };
        row("ended", u"SELECT 1;  \n"_s, u"SELECT 1");
        row("comment after the end", u"SELECT 1; -- and more; here"_s, u"SELECT 1");
        row("in a text", u"SELECT 'a;b', 'it''s; ok'"_s, u"SELECT 'a;b', 'it''s; ok'");
        row("in a dollar text", u"SELECT $t$ a; b $t$"_s, u"SELECT $t$ a; b $t$");
        row("two", u"SELECT 1; SELECT 2"_s);
        row("after a comment", u"SELECT 1; /* x */ DELETE FROM tblUser"_s);
        row("placeholder is no dollar text", u"SELECT $1; SELECT 2"_s);
    }

    void oneStatementAtATime()
    {
        QFETCH(QString, sql);
        QFETCH(QString, statement);
        const std::optional<QString> found = SqlCommand::singleStatement(sql);
        QCOMPARE(found.has_value(), !statement.isNull());
        QCOMPARE(found.value_or(QString()), statement);
    }

    void csvFieldsFollowTheQuotingRules_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("field");

        QTest::newRow("comma") << QVariant(u"Portland, OR"_s) << u"\"Portland, OR\""_s;
        QTest::newRow("quotes doubled") << QVariant(u"52\" deck"_s) << u"\"52\"\" deck\""_s;
        QTest::newRow("line feed") << QVariant(u"a\nb"_s) << u"\"a\nb\""_s;
        QTest::newRow("carriage return") << QVariant(u"a\rb"_s) << u"\"a\rb\""_s;
        QTest::newRow("null") << QVariant(QMetaType::fromType<QString>()) << QString();
        QTest::newRow("day") << QVariant(QDate(2025, 3, 1)) << u"2025-03-01"_s;
        QTest::newRow("moment") << QVariant(QDateTime(QDate(2025, 3, 1), QTime(7, 5, 9)))
                                << u"2025-03-01 07:05:09"_s;
    }

    void csvFieldsFollowTheQuotingRules()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, field);
        QCOMPARE(CsvWriter::field(value), field);
    }
};

QTEST_GUILESS_MAIN(TestCliUsage)
#include "tst_cli_usage.moc"
