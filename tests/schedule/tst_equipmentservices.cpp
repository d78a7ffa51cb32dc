#include "EquipmentServices.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;
using Cell = EquipmentServices::Cell;

namespace {

bool run(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    const bool ok = Sql::exec(q, sql, values);
    if (!ok) {
        qWarning("%s", qPrintable(q.lastError().text()));
    }
    return ok;
}

QVariant value(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql, values) && q.next() ? q.value(0) : QVariant();
}

/** Master services 1 (Hours, 100) and 2 (Hours, 50), 3 (Kilometers) and 4 (Weeks, two parts). */
bool addMasters(Session& s)
{
    return run(s, u"INSERT INTO tblServices (ServiceID, Name, Period, EInterval, RenewalOn, "
                  "CrewID, JobNo) VALUES (1, 'Oil', 'H', 100, 'W', 3, 'J1'), "
                  "(2, 'Belt', 'H', 50, 'W', 3, 'J2'), (3, 'Tyres', 'K', 900, 'S', 3, 'J3'), "
                  "(4, 'Blades', 'W', 2, 'S', 5, 'J4')"_s) &&
           run(s, u"INSERT INTO tblServicesPart (ServiceID, PartID, QuantityRequired, Price, "
                  "SupplierID) VALUES (4, 'P-1', 2, 3.5, 8), (4, 'P-2', NULL, NULL, NULL), "
                  "(4, NULL, 1, 1, 1)"_s);
}

QVariant column(Session& s, const QString& name, qint64 serviceUsedId)
{
    return value(s, u"SELECT "_s + name + u" FROM tblServiceUsed WHERE ServiceUsedID = ?"_s,
                 {serviceUsedId});
}

qint64 copyOf(Session& s, qint64 equipmentId, qint64 serviceId)
{
    return value(s,
                 u"SELECT ServiceUsedID FROM tblServiceUsed WHERE EquipmentID = ? AND "
                 "ServiceID = ?"_s,
                 {equipmentId, serviceId})
        .toLongLong();
}

const MeterReadings::ServiceCountAsker NoAnswer = [](qint64, qint64, const QString&,
                                                     const QString&) { return false; };

} // namespace

/** Attaching services to a machine and the rules of its service grid. */
class TestEquipmentServices : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void meterServiceWaitsForItsCount()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addMasters(s));
        MeterReadings readings(s);
        QVERIFY(readings.addCount(7, {2025, 2, 1}, u"Hours"_s, 450));
        QVERIFY(EquipmentServices(s).addServiceRecord(7, {1}, EquipmentServices::FromServiceList,
                                                      NoAnswer));
        const qint64 oil = copyOf(s, 7, 1);
        QCOMPARE(column(s, u"NextScheduledCount"_s, oil).toInt(), 550);
        QVERIFY(column(s, u"NextScheduledDate"_s, oil).isNull());
        QVERIFY(readings.addCount(7, {2025, 4, 1}, u"Hours"_s, 520));
        QVERIFY(column(s, u"NextScheduledDate"_s, oil).isNull());
        QVERIFY(readings.addCount(7, {2025, 5, 12}, u"Hours"_s, 560));
        QCOMPARE(SqlValue::toDate(column(s, u"NextScheduledDate"_s, oil)), QDate(2025, 5, 12));
    }

    void missingCountIsAskedOncePerType()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addMasters(s));
        QStringList asked;
        MeterReadings readings(s);
        const auto ask = [&](qint64 equipmentId, qint64 serviceUsedId, const QString&,
                             const QString& type) {
            asked.append(type);
            return type == u"Hours"_s &&
                   readings.addCount(equipmentId, s.today(), type, 300, serviceUsedId);
        };
        QVERIFY(EquipmentServices(s).addServiceRecord(7, {1, 2, 3},
                                                      EquipmentServices::FromServiceList, ask));
        QCOMPARE(asked, (QStringList{u"Hours"_s, u"Kilometers"_s}));
        QCOMPARE(column(s, u"NextScheduledCount"_s, copyOf(s, 7, 1)).toInt(), 400);
        QCOMPARE(column(s, u"NextScheduledCount"_s, copyOf(s, 7, 2)).toInt(), 350);
        // No answer: a zero reading marks the machine, and the count starts from it.
        QCOMPARE(column(s, u"NextScheduledCount"_s, copyOf(s, 7, 3)).toInt(), 900);
        QCOMPARE(readings.latest(7, u"Kilometers"_s).value, 0);
    }

    void copiesKeepScheduleAndPartsButNotDates()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addMasters(s));
        EquipmentServices services(s);
        QVERIFY(services.addServiceRecord(7, {4}, EquipmentServices::FromServiceList, NoAnswer));
        const qint64 first = copyOf(s, 7, 4);
        QCOMPARE(SqlValue::toDate(column(s, u"NextScheduledDate"_s, first)), s.today());
        QVERIFY(run(s, u"UPDATE tblServiceUsed SET NextScheduledDate = ?, LastDatePerformed = ?"_s,
                    {SqlValue::date({2025, 6, 1}), SqlValue::date({2025, 1, 1})}));

        QVERIFY(services.addServiceRecord(8, {first}, EquipmentServices::FromEquipment, NoAnswer));
        const qint64 second = copyOf(s, 8, 4);
        QCOMPARE(SqlValue::toDate(column(s, u"NextScheduledDate"_s, second)), s.today());
        QVERIFY(column(s, u"LastDatePerformed"_s, second).isNull());
        QCOMPARE(column(s, u"Name || Period || EInterval || RenewalOn || CrewID || JobNo"_s, second)
                     .toString(),
                 u"BladesW2S5J4"_s);
        const QString parts = u" FROM tblServiceUsedPart WHERE ServiceUsedID = ?"_s;
        QCOMPARE(value(s, u"SELECT COUNT(*)"_s + parts, {second}).toInt(), 2);
        QCOMPARE(
            value(s, u"SELECT COUNT(QuantityRequired) + COUNT(Price) + COUNT(SupplierID)"_s + parts,
                  {second})
                .toInt(),
            6);
        QCOMPARE(value(s, u"SELECT SUM(QuantityRequired * Price + SupplierID)"_s + parts, {second})
                     .toDouble(),
                 15.0);

        QVERIFY(services.deleteServiceRecord(second));
        QCOMPARE(value(s, u"SELECT COUNT(*)"_s + parts, {second}).toInt(), 0);
        QVERIFY(!services.updateEquipmentService(u"Name"_s, u"x"_s, first));
        QCOMPARE(column(s, u"Name"_s, first).toString(), u"Blades"_s);
    }

    void editableCells_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("date");
        QTest::addColumn<bool>("count");
        QTest::newRow("Weeks") << u"Weeks"_s << true << false;
        QTest::newRow("Hours") << u"Hours"_s << false << true;
        QTest::newRow("Miles") << u"Miles"_s << false << true;
        QTest::newRow("Counts") << u"Counts"_s << true << true;
    }

    void editableCells()
    {
        QFETCH(QString, type);
        QTEST(EquipmentServices::isEditable(Cell::NextSchedule, type), "date");
        QTEST(EquipmentServices::isEditable(Cell::NextCount, type), "count");
    }

    void gridRules_data()
    {
        QTest::addColumn<QDate>("storedDate");
        QTest::addColumn<bool>("onWorkOrder");
        QTest::addColumn<int>("cell");
        QTest::addColumn<QVariant>("entered");
        QTest::addColumn<bool>("stored");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QDate>("dateAfter");
        const QDate stored(2025, 3, 10);
        const auto cell = [](Cell c) { return int(c); };
        const QString later = u"Next Schedule Date should be greater than old date"_s;
        QTest::newRow("date before stored")
            << stored << false << cell(Cell::NextSchedule) << QVariant(QDate(2025, 3, 5)) << false
            << later << stored;
        QTest::newRow("date equal to stored") << stored << false << cell(Cell::NextSchedule)
                                              << QVariant(stored) << false << later << stored;
        QTest::newRow("date after stored")
            << stored << false << cell(Cell::NextSchedule) << QVariant(QDate(2025, 3, 11)) << true
            << QString() << QDate(2025, 3, 11);
        QTest::newRow("no date, before today")
            << QDate() << false << cell(Cell::NextSchedule) << QVariant(QDate(2025, 2, 28)) << false
            << u"Next Schedule Date should be greater than or equal to current date"_s << QDate();
        QTest::newRow("no date, today")
            << QDate() << false << cell(Cell::NextSchedule) << QVariant(QDate(2025, 3, 1)) << true
            << QString() << QDate(2025, 3, 1);
        QTest::newRow("count zero")
            << QDate() << false << cell(Cell::NextCount) << QVariant(0) << false
            << u"Count value shouldn't be less then or equal to 0"_s << QDate();
        QTest::newRow("count reached") << QDate() << false << cell(Cell::NextCount) << QVariant(450)
                                       << true << QString() << QDate(2025, 2, 1);
        QTest::newRow("count not reached") << QDate() << false << cell(Cell::NextCount)
                                           << QVariant(451) << true << QString() << QDate();
        QTest::newRow("on work order, No")
            << stored << true << cell(Cell::NextSchedule) << QVariant(QDate(2025, 4, 1)) << false
            << QString() << stored;
    }

    void gridRules()
    {
        QFETCH(QDate, storedDate);
        QFETCH(bool, onWorkOrder);
        QFETCH(int, cell);
        QFETCH(QVariant, entered);
        QFETCH(QString, message);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(run(s,
                    u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, Period, "
                    "EInterval, NextScheduledCount, NextScheduledDate) VALUES "
                    "(1, 7, 'Oil', 'C', 100, 900, ?)"_s,
                    {SqlValue::date(storedDate)}));
        QVERIFY(MeterReadings(s).addCount(7, {2025, 2, 1}, u"Counts"_s, 450));
        if (onWorkOrder) {
            QVERIFY(run(s, u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID) "
                           "VALUES (9, 1)"_s));
            t.prompter().queueAnswer(Prompter::Answer::No);
        }
        QTEST(EquipmentServices(s).editCell(1, Cell(cell), entered), "stored");
        QCOMPARE(t.prompter().texts().value(0).isEmpty(), message.isEmpty() && !onWorkOrder);
        if (!message.isEmpty()) {
            QCOMPARE(t.prompter().texts(), QStringList{message});
        }
        QTEST(SqlValue::toDate(column(s, u"NextScheduledDate"_s, 1)), "dateAfter");
    }

    void crewAndHoursSetTheLabourCost()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(run(s, u"INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, Inactive, "
                       "IncludeWoList) VALUES ('a', 3, 10, '0', '1'), ('b', 3, 20, '0', '1'), "
                       "('c', 5, 40, '0', '1'), ('d', 5, 99, '1', '1')"_s) &&
                run(s, u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (3, 3), (5, 5)"_s) &&
                run(s, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, CrewID) "
                       "VALUES (1, 7, 3)"_s));
        EquipmentServices services(s);
        QVERIFY(services.editCell(1, Cell::BudgetedHours, 2.5));
        QCOMPARE(column(s, u"CostEstimate"_s, 1).toDouble(), 37.5);
        QVERIFY(services.editCell(1, Cell::Crew, 5));
        QCOMPARE(column(s, u"CostEstimate"_s, 1).toDouble(), 100.0);
    }

    void readingIsDeletedByAllItsColumns()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        MeterReadings readings(s);
        QVERIFY(readings.addCount(7, {2025, 2, 1}, u"Hours"_s, 450) &&
                readings.addCount(7, {2025, 2, 1}, u"Hours"_s, 460) &&
                readings.addCount(7, {2025, 2, 1}, u"Miles"_s, 450));
        EquipmentServices services(s);
        QVERIFY(services.deleteReading(7, {u"Hours"_s, {2025, 2, 1}, 450}));
        const QList<EquipmentServices::Reading> left = services.readings(7);
        QCOMPARE(left.size(), 2);
        QCOMPARE(left[0].countType + left[0].value.toString() + left[1].countType +
                     left[1].value.toString(),
                 u"Hours460Miles450"_s);
    }
};

QTEST_GUILESS_MAIN(TestEquipmentServices)
#include "tst_equipmentservices.moc"
