#include "TestInstallation.h"
#include "WorkOrderFilter.h"
#include "WorkOrderFixture.h"
#include "WorkOrderGeneration.h"
#include "WorkOrderLists.h"

#include <QSqlRecord>
#include <QTest>

namespace {

QStringList column(const Rows& rows, const QString& name)
{
    QStringList values;
    for (const QSqlRecord& row : rows) {
        values.append(row.value(name).toString());
    }
    return values;
}

} // namespace

/** Turning due services into work orders, and the lists that show what is due. */
class TestWorkOrderGeneration : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void oneOrderPerCrewAndPerSeparateService()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        WorkOrderLists lists(s);
        QCOMPARE(column(lists.dueServices(7, march()), u"ServiceName"_s),
                 (QStringList{u"A"_s, u"B"_s, u"C"_s, u"D"_s}));
        QList<qint64> numbers;
        QVERIFY(WorkOrderGeneration(s).generate({7}, march(), &numbers));
        QCOMPARE(numbers.size(), 2);
        QCOMPARE(column(lists.lines(numbers[0], march()), u"ServiceName"_s),
                 (QStringList{u"A"_s, u"B"_s}));
        QCOMPARE(column(lists.lines(numbers[1], march()), u"ServiceName"_s), QStringList{u"C"_s});
        // The line is a snapshot of its schedule row, keyed back to it by scheduleId.
        QCOMPARE(sql(s, u"SELECT Note FROM tblWoServiceUsed WHERE ServiceUsedID = 101"_s),
                 QVariant(u"it's"_s));
        const qint64 lineA = sql(s, u"SELECT NserviceUsedID FROM tblWoServiceUsed "
                                    "WHERE ServiceUsedID = 101"_s)
                                 .toLongLong();
        QCOMPARE(column(lists.lineParts(lineA), u"PartNumber"_s), QStringList{u"P-1"_s});
        QCOMPARE(sql(s, u"SELECT QuantityUsed * 100 + SupplierID FROM tblWoPartUsed"_s).toInt(),
                 208);
        // D (no SeparateWo) stays due alone; what is on an order is not generated again.
        QCOMPARE(column(lists.dueServices(7, march()), u"ServiceName"_s), QStringList{u"D"_s});
        numbers.clear();
        QVERIFY(WorkOrderGeneration(s).generate({7}, march(), &numbers));
        QVERIFY(numbers.isEmpty());
        QCOMPARE(count(s, u"tblWoServiceUsed"_s), 3);
    }

    void sharedServiceWithoutCrewFailsTheWholeRun()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QList<qint64> numbers;
        QVERIFY(!WorkOrderGeneration(s).generate({7, 8}, march(), &numbers));
        QVERIFY(numbers.isEmpty());
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(count(s, u"tblWorkorder"_s) + count(s, u"tblWoServiceUsed"_s) +
                     count(s, u"tblWoPartUsed"_s),
                 0);
    }

    void printListJoinsDueMachinesAndOpenOrders()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        QList<qint64> numbers;
        QVERIFY(WorkOrderGeneration(s).generate({7}, march(), &numbers));
        WorkOrderLists lists(s);
        WorkOrderFilter filter = march();
        Rows rows = lists.printList(filter);
        QCOMPARE(column(rows, u"UnitNo"_s), (QStringList{u"U7"_s, u"U7"_s, u"U7"_s, u"U8"_s}));
        QCOMPARE(WorkOrderLists::dueEquipment(rows), (QList<qint64>{7, 8}));
        QCOMPARE(WorkOrderLists::workOrderNumbers(rows), numbers);
        // The assign crew narrows by the machine's crew, the service crew by the service's.
        filter.assignCrew = u"1"_s;
        QCOMPARE(WorkOrderLists::dueEquipment(lists.printList(filter)), QList<qint64>{8});
        filter.assignCrew.clear();
        filter.crewRange = u"2"_s;
        rows = lists.printList(filter);
        QCOMPARE(WorkOrderLists::dueEquipment(rows), QList<qint64>{7});
        QCOMPARE(WorkOrderLists::workOrderNumbers(rows), QList<qint64>{numbers[1]});
    }

    void dueServiceNoteIsWrittenStraightAway()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addFleet(s));
        WorkOrderLists lists(s);
        QVERIFY(lists.setDueServiceNote(102, u"O'Neil"_s));
        QCOMPARE(lists.dueServiceNote(102), u"O'Neil"_s);
        QCOMPARE(column(lists.dueServiceParts(101), u"PartNumber"_s),
                 (QStringList{u"P-1"_s, u""_s}));
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderGeneration)
#include "tst_workordergeneration.moc"
