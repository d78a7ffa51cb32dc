#include "EquipmentServices.h"
#include "ServiceMessages.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>
#include <algorithm>

using namespace Qt::StringLiterals;
using Cell = EquipmentServices::Cell;

namespace {

/** The first value a statement answers; true for a write that ran, null on a failure. */
QVariant sql(Session& s, const QString& text, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    const bool ok = Sql::exec(q, text, values);
    return !ok ? QVariant() : q.next() ? q.value(0) : QVariant(true);
}

/** A column of the copy of master serviceId on machine 7, or of service 1 without a master. */
QVariant column(Session& s, const QString& name, qint64 serviceId = 0)
{
    return sql(s,
               u"SELECT "_s + name + u" FROM tblServiceUsed WHERE "_s +
                   (serviceId ? u"EquipmentID = 7 AND ServiceID = ?"_s : u"ServiceUsedID = ?"_s),
               {serviceId ? serviceId : 1});
}

bool run(Session& s, const QStringList& statements)
{
    return std::all_of(statements.begin(), statements.end(),
                       [&s](const QString& text) { return sql(s, text).isValid(); });
}

/** Masters 1 by Hours, 3 and 5 by Kilometers, 4 weekly with two parts and a blank line. */
bool addMasters(Session& s)
{
    return run(s, {u"INSERT INTO tblServices (ServiceID, Name, Period, EInterval, RenewalOn, "
                   "CrewID, JobNo) VALUES (1, 'Oil', 'H', 100, 'W', 3, 'J1'), (3, 'Tyres', 'K', "
                   "900, 'S', 3, 'J3'), (4, 'Blades', 'W', 2, 'S', 5, 'J4'), (5, 'Belt', 'K', "
                   "50, 'W', 3, 'J5')"_s,
                   u"INSERT INTO tblServicesPart (ServiceID, PartID, QuantityRequired, Price, "
                   "SupplierID) VALUES (4, 'P-1', 2, 3.5, 8), (4, 'P-2', NULL, NULL, NULL), "
                   "(4, NULL, 1, 1, 1)"_s});
}

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
        MeterReadings readings(s);
        QVERIFY(addMasters(s) && readings.addCount(7, {2025, 2, 1}, u"Hours"_s, 450));
        QStringList asked;
        const auto ask = [&](qint64 machine, qint64 copy, const QString&, const QString& type) {
            asked.append(type);
            return readings.addCount(machine, s.today(), type, 300, copy);
        };
        QVERIFY(EquipmentServices(s).addServiceRecord(7, {1, 3, 5}, u"SL"_s, ask));
        QCOMPARE(asked, QStringList{u"Kilometers"_s});
        QCOMPARE(column(s, u"NextScheduledCount"_s, 3).toInt(), 1200);
        QCOMPARE(column(s, u"NextScheduledCount"_s, 1).toInt(), 550);
        QVERIFY(readings.addCount(7, {2025, 4, 1}, u"Hours"_s, 520));
        QVERIFY(column(s, u"NextScheduledDate"_s, 1).isNull());
        QVERIFY(readings.addCount(7, {2025, 5, 12}, u"Hours"_s, 560));
        QCOMPARE(SqlValue::toDate(column(s, u"NextScheduledDate"_s, 1)), QDate(2025, 5, 12));
        // A reading has no key: only a row equal in every column goes.
        QVERIFY(EquipmentServices(s).deleteReading(7, {u"Kilometers"_s, s.today(), 1}) &&
                readings.latest(7, u"Kilometers"_s).exists);
        QVERIFY(EquipmentServices(s).deleteReading(7, {u"Kilometers"_s, s.today(), 300}) &&
                !readings.latest(7, u"Kilometers"_s).exists);
    }

    void copiesKeepScheduleAndPartsButNotDates()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        EquipmentServices services(s);
        QVERIFY(addMasters(s) && services.addServiceRecord(8, {4}, u"SL"_s, {}));
        QVERIFY(run(s, {u"UPDATE tblServiceUsed SET NextScheduledCount = 5, LastDatePerformed = "
                        "NextScheduledDate"_s}));
        QVERIFY(services.addServiceRecord(7, {column(s, u"ServiceUsedID"_s, 0).toLongLong()},
                                          u"EL"_s, {}));
        QCOMPARE(SqlValue::toDate(column(s, u"NextScheduledDate"_s, 4)), s.today());
        QVERIFY(
            column(s, u"LastDatePerformed IS NULL AND NextScheduledCount IS NULL"_s, 4).toBool());
        QCOMPARE(column(s, u"Name || Period || EInterval || RenewalOn || CrewID || JobNo"_s, 4)
                     .toString(),
                 u"BladesW2S5J4"_s);
        const qint64 copy = column(s, u"ServiceUsedID"_s, 4).toLongLong();
        const QString parts = u"SELECT %1 FROM tblServiceUsedPart WHERE ServiceUsedID = ?"_s;
        const QString total = u"SUM(QuantityRequired * Price + SupplierID) + COUNT(Price * "
                              "QuantityRequired * SupplierID)"_s;
        QCOMPARE(sql(s, parts.arg(total), {copy}).toDouble(), 17.0); // 15, and 2 rows without null
        QVERIFY(services.deleteServiceRecord(copy));
        QCOMPARE(sql(s, parts.arg(u"COUNT(*)"_s), {copy}).toInt(), 0);
        QVERIFY(!services.updateEquipmentService(u"Name"_s, u"x"_s, copy));
    }

    void countsRowKeepsBothCellsOpen()
    {
        QVERIFY(!EquipmentServices::isEditable(Cell::NextCount, u"Weeks"_s));
        QVERIFY(!EquipmentServices::isEditable(Cell::NextSchedule, u"Hours"_s));
        QVERIFY(EquipmentServices::isEditable(Cell::NextSchedule, u"Counts"_s) &&
                EquipmentServices::isEditable(Cell::NextCount, u"Counts"_s));
    }

    void gridRules_data()
    {
        QTest::addColumn<QDate>("storedDate");
        QTest::addColumn<int>("cell");
        QTest::addColumn<QVariant>("entered");
        QTest::addColumn<QString>("message"); // the work order question is answered No
        QTest::addColumn<QVariant>("after");  // the date, or the labour cost for crew and hours
        const QDate old(2025, 3, 10);
        const int date = int(Cell::NextSchedule);
        const int count = int(Cell::NextCount);
        const QString later = u"Next Schedule Date should be greater than old date"_s;
        QTest::newRow("before old")
            << old << date << QVariant(QDate(2025, 3, 5)) << later << QVariant(old);
        QTest::newRow("same as old") << old << date << QVariant(old) << later << QVariant(old);
        QTest::newRow("none, before today")
            << QDate() << date << QVariant(QDate(2025, 2, 28))
            << u"Next Schedule Date should be greater than or equal to current date"_s
            << QVariant(QDate());
        QTest::newRow("none, today") << QDate() << date << QVariant(QDate(2025, 3, 1)) << QString()
                                     << QVariant(QDate(2025, 3, 1));
        QTest::newRow("count zero")
            << QDate() << count << QVariant(0)
            << u"Count value shouldn't be less then or equal to 0"_s << QVariant(QDate());
        QTest::newRow("count reached")
            << QDate() << count << QVariant(450) << QString() << QVariant(QDate(2025, 2, 1));
        QTest::newRow("on work order") << old << date << QVariant(old.addDays(1))
                                       << ServiceMessages::dateOnWorkOrder() << QVariant(old);
        QTest::newRow("hours") << QDate() << int(Cell::BudgetedHours) << QVariant(2.5) << QString()
                               << QVariant(37.5);
        QTest::newRow("crew") << QDate() << int(Cell::Crew) << QVariant(5) << QString()
                              << QVariant(80.0);
    }
    void gridRules()
    {
        QFETCH(QDate, storedDate);
        QFETCH(int, cell);
        QFETCH(QVariant, entered);
        QFETCH(QString, message);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(run(s, {u"INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, Inactive, "
                        "IncludeWoList) VALUES ('a', 3, 10, '0', '1'), ('b', 3, 20, '0', '1'), "
                        "('c', 5, 40, '0', '1')"_s,
                        u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (3, 3), (5, 5)"_s}));
        QVERIFY(sql(s,
                    u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Period, "
                    "EInterval, NextScheduledCount, NextScheduledDate, CrewID, LaborEstimate) "
                    "VALUES (1, 7, 'C', 100, 900, ?, 3, 2)"_s,
                    {SqlValue::date(storedDate)})
                    .isValid());
        QVERIFY(MeterReadings(s).addCount(7, {2025, 2, 1}, u"Counts"_s, 450));
        if (message == ServiceMessages::dateOnWorkOrder()) {
            QVERIFY(run(s, {u"INSERT INTO tblWoServiceUsed (ServiceUsedID) VALUES (1)"_s}));
            t.prompter().queueAnswer(Prompter::Answer::No);
        }
        QCOMPARE(EquipmentServices(s).editCell(1, Cell(cell), entered), message.isEmpty());
        QCOMPARE(t.prompter().texts(), message.isEmpty() ? QStringList() : QStringList{message});
        const bool costed = cell >= int(Cell::Crew) && cell <= int(Cell::LaborCost);
        const QVariant after = column(s, costed ? u"CostEstimate"_s : u"NextScheduledDate"_s);
        QTEST(costed ? QVariant(after.toDouble()) : QVariant(SqlValue::toDate(after)), "after");
    }
};

QTEST_GUILESS_MAIN(TestEquipmentServices)
#include "tst_equipmentservices.moc"
