#include "PartPicker.h"
#include "TestInstallation.h"
#include "WorkOrderFixture.h"
#include "WorkOrderGeneration.h"
#include "WorkOrderLists.h"
#include "WorkOrderRecords.h"

#include <QTest>

/** Work orders changed by hand: lines, parts, removal and the printed mark. */
class TestWorkOrderRecords : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void pickedServicesAndPartsAreAddedOnce()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        WorkOrderRecords records(s);
        const qint64 number = records.addWorkOrder(7);
        QVERIFY(records.addServices(number, 7, {{50}, u"SL"_s}, false));
        QVERIFY(records.addServices(number, 7, {{50, 2}, u"SL"_s}, false));
        QVERIFY(records.addServices(number, 7, {{102, 102}, u"EL"_s}, true));
        QCOMPARE(num(s, u"SELECT COUNT(*) * 1000 + SUM(ServiceUsedID) * 10 + SUM(Completed) "
                        "FROM tblWoServiceUsed"_s),
                 3019);
        // A master service has no schedule row, no last dates, and is due today.
        const QVariant lineM = sql(s, u"SELECT NserviceUsedID FROM tblWoServiceUsed WHERE "
                                      "ServiceUsedID = 0 AND LastDateScheduled IS NULL AND "
                                      "NextScheduledDate = '2025-03-01'"_s);
        QCOMPARE(sql(s,
                     u"SELECT MIN(PartID) || COUNT(*) FROM tblWoPartUsed WHERE "
                     "QuantityUsed = 4 AND ServiceUsedID = ?"_s,
                     {lineM}),
                 QVariant(u"P-21"_s));
        const QString picked =
            PartPicker::resultText({{u"P-1"_s, 3, 2.5, 8}, {u"O'K"_s, 1, QVariant(), QVariant()}});
        QVERIFY(records.addParts(lineM.toLongLong(), picked, true));
        QCOMPARE(num(s, u"SELECT SUM(QuantityRequired + QuantityUsed) * 10 + SUM(Used) + "
                        "SUM(Price) + COUNT(SupplierID) FROM tblWoPartUsed WHERE Used = -1"_s),
                 81.5);
        QVERIFY(records.deletePart(lineM.toLongLong(), u"O'K"_s));
        QCOMPARE(num(s, u"SELECT COUNT(*) FROM tblWoPartUsed WHERE Used = -1"_s), 1);
    }

    void removedWorkGoesBackToDueAndEmptyOrdersStayListed()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QList<qint64> numbers;
        QVERIFY(WorkOrderGeneration(s).generate({7}, March, &numbers));
        WorkOrderRecords records(s);
        WorkOrderLists lists(s);
        QVERIFY(records.deleteLine(
            num(s, u"SELECT NserviceUsedID FROM tblWoServiceUsed WHERE Name = 'A'"_s)));
        QCOMPARE(column(lists.dueServices(7, March), u"ServiceName"_s),
                 (QStringList{u"A"_s, u"D"_s}));
        QCOMPARE(num(s, u"SELECT COUNT(*) FROM tblWoPartUsed"_s), 0);
        QVERIFY(records.deleteWorkOrder(numbers[0]));
        QCOMPARE(lists.dueServices(7, March).size(), 3);
        QCOMPARE(num(s, u"SELECT COUNT(*) FROM tblWoServiceUsed"_s), 1);
        QVERIFY(records.markPrinted({}) && records.markPrinted({numbers[1]}));
        QCOMPARE(num(s, u"SELECT WorkOrderNo FROM tblWorkorder WHERE Printed = -1"_s), numbers[1]);
        // An order without lines, such as an unscheduled one, is listed under any dates.
        QVERIFY(records.addUnscheduled({8}, &numbers));
        const WorkOrderFilter future{QDate(2030, 1, 1), QDate(2030, 1, 1), {}, {}, false};
        QCOMPARE(WorkOrderLists::workOrderNumbers(lists.printList(future)),
                 QList<qint64>{numbers[2]});
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderRecords)
#include "tst_workorderrecords.moc"
