#include "CliHome.h"
#include "TestInstallation.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestCliWorkOrder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void editsAreStoredOrRefusedWithNothingWritten()
    {
        TANDRILL_CLI_HOME(h);
        for (const QString& insert :
             {u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID) VALUES (1, 9)"_s,
              u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, Period) VALUES "
              "(1, 1, 'H'), (2, 1, 'M')"_s,
              u"INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, QuantityUsed) VALUES "
              "(1, 'F-1', 2)"_s,
              u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, CountValue) "
              "VALUES (9, '2025-01-01', 'Hours', 100)"_s}) {
            QCOMPARE(h.run({u"sql"_s, insert}).code, 0);
        }
        const auto line = [&h](const char* column) {
            return h.value(u"SELECT %1 FROM tblWoServiceUsed WHERE NserviceUsedID = 1"_s.arg(
                QLatin1String(column)));
        };
        struct Step
        {
            QStringList words;
            int code;
            QString err; // the start of what stderr tells
        };
        const QList<Step> refused = {
            {{u"wo"_s, u"part"_s, u"1"_s, u"F-1"_s, u"--used"_s}, 1, u"The line 1 is not"_s},
            {{u"wo"_s, u"line"_s, u"1"_s, u"--count"_s, u"5"_s}, 1, u"Enter count is smaller"_s},
            {{u"wo"_s, u"complete"_s, u"1"_s, u"--date"_s, u"1970-01-01"_s}, 1, u"Complete date"_s},
            {{u"wo"_s, u"line"_s, u"7"_s, u"--unskip"_s}, 1, u"There is no work order line"_s},
            {{u"wo"_s, u"line"_s, u"1"_s, u"--complete"_s, u"--unskip"_s},
             2,
             u"tandrill-cli: Give"_s},
            {{u"wo"_s, u"line"_s, u"1"_s, u"--times"_s, u"9:00"_s, u"8:00"_s},
             2,
             u"tandrill-cli: The"_s},
        };
        for (const Step& step : refused) {
            const CliResult r = h.run(step.words);
            QCOMPARE(r.code, step.code);
            QVERIFY2(r.err.startsWith(step.err), qPrintable(r.err));
        }
        QCOMPARE(h.value(u"SELECT COUNT(*) FROM tblWorkorder WHERE CompletedDate IS NULL"_s),
                 u"1"_s);
        QCOMPARE(line("COALESCE(CountValue, -1)"), u"-1"_s);

        QCOMPARE(h.run({u"wo"_s, u"line"_s, u"1"_s, u"--count"_s, u"5"_s, u"--yes"_s}).code, 0);
        QCOMPARE(h.run({u"wo"_s, u"line"_s, u"1"_s, u"--times"_s, u"8:00"_s, u"17:30"_s}).code, 0);
        QCOMPARE(h.run({u"wo"_s, u"line"_s, u"2"_s, u"--skip"_s, u"rain"_s}).code, 0);
        QCOMPARE(h.run({u"wo"_s, u"part"_s, u"1"_s, u"F-1"_s, u"--qty"_s, u"1.5"_s}).code, 0);
        QCOMPARE(line("CountValue") + line("Workhrs"), u"509:30"_s);
        QCOMPARE(h.value(u"SELECT Complete FROM tblWorkorder"_s), u"-1"_s);
        QCOMPARE(h.run({u"wo"_s, u"complete"_s, u"1"_s, u"--clear"_s}).code, 0);
        QCOMPARE(h.value(u"SELECT Complete FROM tblWorkorder"_s), u"0"_s);
        QCOMPARE(h.value(u"SELECT QuantityUsed FROM tblWoPartUsed"_s), u"1.5"_s);
    }
};

QTEST_GUILESS_MAIN(TestCliWorkOrder)
#include "tst_cli_workorder.moc"
