#include "PartPicker.h"
#include "TestInstallation.h"
#include "WorkOrderFilter.h"
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

    void pickedServicesAreAddedOnce()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        WorkOrderRecords records(s);
        const qint64 number = records.addWorkOrder(7);
        QVERIFY(number > 0);
        QVERIFY(records.addServices(number, 7, {{50}, u"SL"_s}, false));
        QVERIFY(records.addServices(number, 7, {{50, 2}, u"SL"_s}, false));
        QVERIFY(records.addServices(number, 7, {{102, 102}, u"EL"_s}, true));
        QCOMPARE(sql(s, u"SELECT COUNT(*) * 1000 + SUM(ServiceUsedID) * 10 + SUM(Completed) "
                        "FROM tblWoServiceUsed"_s)
                     .toInt(),
                 3019);
        // A master service has no schedule row, no last dates, and is due today.
        QCOMPARE(sql(s,
                     u"SELECT Name FROM tblWoServiceUsed WHERE ServiceUsedID = 0 AND "
                     "LastDateScheduled IS NULL AND NextScheduledDate = ?"_s,
                     {u"2025-03-01"_s}),
                 QVariant(u"M"_s));
        QCOMPARE(sql(s, u"SELECT PartID FROM tblWoPartUsed WHERE QuantityUsed = 4"_s),
                 QVariant(u"P-2"_s));
        QCOMPARE(count(s, u"tblWoPartUsed"_s), 1);
    }

    void pickedPartsArePlannedAndUsedAlike()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const QString picked =
            PartPicker::resultText({{u"P-1"_s, 3, 2.5, 8}, {u"O'K"_s, 1, QVariant(), QVariant()}});
        QVERIFY(WorkOrderRecords(s).addParts(41, picked, true));
        QCOMPARE(sql(s, u"SELECT SUM(QuantityRequired + QuantityUsed) * 10 + SUM(Used) + "
                        "SUM(Price) FROM tblWoPartUsed WHERE ServiceUsedID = 41"_s)
                     .toDouble(),
                 80.5);
        QCOMPARE(count(s, u"tblWoPartUsed WHERE Price IS NULL AND SupplierID IS NULL"_s), 1);
        QVERIFY(WorkOrderRecords(s).deletePart(41, u"O'K"_s));
        QCOMPARE(count(s, u"tblWoPartUsed"_s), 1);
    }

    void removedWorkGoesBackToDue()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QList<qint64> numbers;
        QVERIFY(WorkOrderGeneration(s).generate({7}, march(), &numbers));
        WorkOrderRecords records(s);
        WorkOrderLists lists(s);
        const qint64 lineB = sql(s, u"SELECT NserviceUsedID FROM tblWoServiceUsed "
                                    "WHERE ServiceUsedID = 102"_s)
                                 .toLongLong();
        QVERIFY(records.addParts(lineB, PartPicker::resultText({{u"X"_s, 1, 1, 1}}), false));
        QVERIFY(records.deleteLine(lineB));
        QCOMPARE(lists.dueServices(7, march()).size(), 2);
        QCOMPARE(count(s, u"tblWoPartUsed"_s), 1);
        QVERIFY(records.deleteWorkOrder(numbers[0]));
        QCOMPARE(lists.dueServices(7, march()).size(), 3);
        QCOMPARE(count(s, u"tblWoServiceUsed"_s) * 10 + count(s, u"tblWoPartUsed"_s), 10);
        QVERIFY(records.markPrinted({}));
        QVERIFY(records.markPrinted({numbers[1]}));
        QCOMPARE(count(s, u"tblWorkorder WHERE Printed = -1"_s), 1);
    }

    void unscheduledOrdersAreListedUnderAnyDates()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QList<qint64> numbers;
        QVERIFY(WorkOrderRecords(s).addUnscheduled({8, 7}, &numbers));
        QCOMPARE(numbers.size(), 2);
        WorkOrderFilter filter;
        filter.from = filter.to = QDate(2030, 1, 1);
        const Rows rows = WorkOrderLists(s).printList(filter);
        QCOMPARE(WorkOrderLists::workOrderNumbers(rows), (QList<qint64>{numbers[1], numbers[0]}));
        QVERIFY(WorkOrderLists::dueEquipment(rows).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderRecords)
#include "tst_workorderrecords.moc"
