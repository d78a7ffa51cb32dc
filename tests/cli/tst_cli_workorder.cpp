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
        const auto wo = [&h](const QString& words) { return h.run(words.split(u' ')); };
        // The words, then the exit code and the start of what stderr tells.
        const QList<QStringList> refused = {
            {u"wo part 1 F-1 --used"_s, u"1 The line 1 is not"_s},
            {u"wo line 1 --count 5"_s, u"1 Enter count is smaller"_s},
            {u"wo complete 1 --date 1970-01-01"_s, u"1 Complete date"_s},
            {u"wo line 7 --unskip"_s, u"1 There is no work order line"_s},
            {u"wo line 1 --complete --unskip"_s, u"2 tandrill-cli: Give only one"_s},
        };
        for (const QStringList& step : refused) {
            const CliResult r = wo(step.first());
            QVERIFY2((QString::number(r.code) + u' ' + r.err).startsWith(step.last()),
                     qPrintable(r.err));
        }
        QCOMPARE(h.value(u"SELECT COUNT(*) FROM tblWorkorder WHERE CompletedDate IS NULL"_s),
                 u"1"_s);
        QCOMPARE(h.value(u"SELECT COUNT(*) FROM tblWoServiceUsed WHERE CountValue IS NULL"_s),
                 u"2"_s);

        for (const QString& step :
             {u"wo line 1 --count 5 --yes"_s, u"wo line 1 --times 8:00 17:30"_s,
              u"wo line 2 --skip rain"_s, u"wo part 1 F-1 --qty 1.5"_s}) {
            QCOMPARE(wo(step).code, 0);
        }
        QCOMPARE(h.value(u"SELECT CountValue || Workhrs FROM tblWoServiceUsed "
                         "WHERE NserviceUsedID = 1"_s),
                 u"509:30"_s);
        QCOMPARE(h.value(u"SELECT Complete FROM tblWorkorder"_s), u"-1"_s);
        QCOMPARE(wo(u"wo complete 1 --clear"_s).code, 0);
        QCOMPARE(h.value(u"SELECT Complete FROM tblWorkorder"_s), u"0"_s);
        QCOMPARE(h.value(u"SELECT QuantityUsed FROM tblWoPartUsed"_s), u"1.5"_s);
    }
};

QTEST_GUILESS_MAIN(TestCliWorkOrder)
#include "tst_cli_workorder.moc"
