#include "CliHome.h"
#include "TestInstallation.h"

#include <QTest>

using namespace Qt::StringLiterals;

/** The work order commands of the command line. */
class TestCliGenerate : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void generateMakesTheDueOrdersOnce()
    {
        TANDRILL_CLI_HOME(h);
        h.value(u"INSERT INTO tblEquipment (EquipmentID, UnitNo, Inactive) VALUES (7, 'U7', '0'), "
                "(8, 'U8', '0')"_s);
        h.value(u"INSERT INTO tblServiceUsed (EquipmentID, Name, SeparateWo, NextScheduledDate) "
                "VALUES (7, 'A', '1', '2025-03-05'), (8, 'B', '1', '2025-03-06')"_s);
        const QStringList march{u"generate"_s, u"--from=2025-03-01"_s, u"--to=2025-03-31"_s};
        QCOMPARE(h.run(march + QStringList{u"--crew=,5"_s}).code, 2);
        QCOMPARE(h.run(march + QStringList{u"--unit"_s, u"u8"_s}).out, u"1\n"_s);
        QCOMPARE(h.value(u"SELECT Name FROM tblWoServiceUsed WHERE WorkOrderNo = 1"_s), u"B"_s);
        QCOMPARE(h.run(march).out, u"2\n"_s);
        QCOMPARE(h.run(march).out, QString());
        QCOMPARE(h.run({u"wo"_s, u"unscheduled"_s, u"U7"_s}).out, u"3\n"_s);
        QCOMPARE(h.run({u"wo"_s, u"delete"_s, u"1"_s}).code, 0);
        QCOMPARE(h.run(march + QStringList{u"--unit=U8"_s}).out, u"4\n"_s);
    }
};

QTEST_GUILESS_MAIN(TestCliGenerate)
#include "tst_cli_generate.moc"
