#include "SqlValue.h"
#include "TestInstallation.h"
#include "WorkOrderFixture.h"
#include "WorkOrderGeneration.h"
#include "WorkOrderLists.h"

#include <QTest>

/** Turning due services into work orders, and the lists that show what is due. */
class TestWorkOrderGeneration : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void oneOrderPerCrewAndPerSeparateServiceListedOnce()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        WorkOrderLists lists(s);
        QCOMPARE(column(lists.dueServices(7, March), u"ServiceName"_s),
                 (QStringList{u"A"_s, u"B"_s, u"C"_s, u"D"_s}));
        QList<qint64> numbers;
        QVERIFY(WorkOrderGeneration(s).generate({7}, March, &numbers));
        QCOMPARE(numbers.size(), 2);
        // Dated by the program's day, not the engine's clock.
        QCOMPARE(SqlValue::toDate(sql(s, u"SELECT MIN(WoDate) FROM tblWorkorder"_s)), s.today());
        QCOMPARE(column(lists.lines(numbers[0], March), u"ServiceName"_s),
                 (QStringList{u"A"_s, u"B"_s}));
        QCOMPARE(column(lists.lines(numbers[1], March), u"ServiceName"_s), QStringList{u"C"_s});
        // A line is a snapshot of its schedule row; its parts hang on its own key.
        const QVariant lineA =
            sql(s, u"SELECT NserviceUsedID FROM tblWoServiceUsed WHERE Note = 'it''s'"_s);
        QCOMPARE(column(lists.lineParts(lineA.toLongLong()), u"PartNumber"_s),
                 QStringList{u"P-1"_s});
        QCOMPARE(num(s, u"SELECT QuantityUsed * 100 + SupplierID FROM tblWoPartUsed"_s), 208);
        // D (no SeparateWo) stays due alone; what is on an order is not generated again.
        QCOMPARE(column(lists.dueServices(7, March), u"ServiceName"_s), QStringList{u"D"_s});
        QVERIFY(WorkOrderGeneration(s).generate({7}, March, &numbers));
        QCOMPARE(numbers.size(), 2);
        // One list of due machines and open orders; the assign crew narrows it by the
        // machine's crew.
        WorkOrderFilter filter = March;
        const Rows rows = lists.printList(filter);
        QCOMPARE(column(rows, u"UnitNo"_s), (QStringList{u"U7"_s, u"U7"_s, u"U7"_s, u"U8"_s}));
        QCOMPARE(WorkOrderLists::dueEquipment(rows), (QList<qint64>{7, 8}));
        QCOMPARE(WorkOrderLists::workOrderNumbers(rows), numbers);
        filter.assignCrew = u"1"_s;
        QCOMPARE(WorkOrderLists::dueEquipment(lists.printList(filter)), QList<qint64>{8});
    }

    void sharedServiceWithoutCrewFailsTheWholeRun()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QList<qint64> numbers;
        QVERIFY(!WorkOrderGeneration(s).generate({7, 8}, March, &numbers));
        QCOMPARE(t.failures().failures().size(), 1);
        QVERIFY(numbers.isEmpty());
        QCOMPARE(num(s, u"SELECT COUNT(*) FROM tblWorkorder"_s), 0);
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderGeneration)
#include "tst_workordergeneration.moc"
