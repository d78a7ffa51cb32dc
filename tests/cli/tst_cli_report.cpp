#include "CliHome.h"
#include "TestInstallation.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCliReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void runsReportsIntoFiles_data();
    void runsReportsIntoFiles();
};

void TestCliReport::runsReportsIntoFiles_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("output"); ///< a part of stdout, or of the file written
    const QStringList list{u"report"_s, u"rptEquipmentList"_s, u"--out"_s, u"OUT.csv"_s};
    const QStringList misspelt{u"--where"_s, u"WHERE UnitNom = ?"_s, u"--value"_s, u"M-1"_s};
    QTest::addRow("list") << QStringList{u"report"_s, u"--list"_s} << 0
                          << u"ShowServiceList\trptServiceList\tList Of Services\n"_s;
    QTest::addRow("filter with its value")
        << list + QStringList{u"--where"_s, u"WHERE tblEquipment.UnitNo = ?"_s, u"--value=M-2"_s}
        << 0 << u"Unit No,Type,Make,Model,Site,Location,Crew\r\nTruck,M-2,,,,,,\r\n"_s;
    QTest::addRow("bad filter, whole list")
        << list + misspelt + QStringList{u"--yes"_s} << 0 << u"\r\nMower,M-1,,,,,,\r\nTruck,M-2"_s;
    QTest::addRow("format named over the extension")
        << list + QStringList{u"--format"_s, u"PDF"_s} << 0 << u"%PDF-"_s;
    QTest::addRow("unknown format")
        << QStringList{u"report"_s, u"ShowServiceList"_s, u"--out"_s, u"OUT.txt"_s} << 2
        << QString();
}

void TestCliReport::runsReportsIntoFiles()
{
    QFETCH(QStringList, words);
    QFETCH(int, code);
    QFETCH(QString, output);
    TANDRILL_CLI_HOME(h);
    const CliResult made =
        h.run({u"sql"_s, u"INSERT INTO tblEquipment (EquipmentID, "
                         "EquipmentName, UnitNo, Inactive) VALUES "
                         "(1, 'Mower', 'M-1', '0'), (2, 'Truck', 'M-2', '0')"_s});
    QVERIFY2(made.code == 0, qPrintable(made.err));
    const QString out = h.home() + u"/out"_s;
    words.replaceInStrings(u"OUT"_s, out);
    const CliResult result = h.run(words);
    QVERIFY2(result.code == code, qPrintable(result.err));
    if (output.isEmpty()) {
        return;
    }
    QFile file(out + u".csv"_s);
    const QString written =
        file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : result.out;
    QVERIFY2(written.contains(output), qPrintable(written));
}

QTEST_MAIN(TestCliReport)
#include "tst_cli_report.moc"
