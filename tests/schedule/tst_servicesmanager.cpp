#include "PartPicker.h"
#include "ServicesManager.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;
using Kind = ServicesManager::Kind;

namespace {

bool run(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql, values);
}

QString value(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql, values) && q.next() ? q.value(0).toString() : u"(none)"_s;
}

/** Master 100 ("9") with copies 1 and 2 on machine 7, copy 2 on an open work order line. */
void seed(Session& s)
{
    run(s, u"INSERT INTO tblServices (ServiceID, JobNo, Name, EInterval) VALUES "
           "(100, '9', 'Oil', 5), (200, '10', 'Belt', 5)"_s);
    run(s, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, ServiceID, JobNo, Name, "
           "EInterval, NextScheduledCount) VALUES (1, 7, 100, '9', 'Oil', 5, 0), "
           "(2, 8, 100, '9', 'Oil', 5, 0), (3, 7, 200, '10', 'Belt', 5, 0)"_s);
    run(s,
        u"INSERT INTO tblWoServiceUsed (ServiceUsedID, ServiceID, JobNo) VALUES (2, 100, '9')"_s);
}

} // namespace

class TestServicesManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void mastersAreAddedWithAFreshNumberAndChangedAlone()
    {
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        ServicesManager manager(t.session());
        Service added;
        added.jobNo = u"10"_s; // proposed, but taken meanwhile
        added.name = u"Blades"_s;
        QVERIFY(manager.saveRecord(added, true));
        QCOMPARE(added.jobNo, u"11"_s);
        QCOMPARE(
            t.prompter().texts(),
            QStringList{u"Service no 10 is already being used the new service number is 11."_s});
        QCOMPARE(value(t.session(), u"SELECT Name FROM tblServices WHERE JobNo = '11'"_s),
                 u"Blades"_s);

        Service master;
        master.serviceId = 100;
        master.jobNo = u"9"_s;
        master.name = u"Oil change"_s;
        master.renewalInterval = 30;
        master.days[0] = master.months[11] = master.separateWorkOrder = true;
        master.dom[2] = 15;
        master.notes = u"O'Brien's"_s;
        QVERIFY(manager.saveRecord(master, false));
        QCOMPARE(value(t.session(), u"SELECT Name || EInterval || Sun || Mon || Dece || SeparateWo "
                                    "|| DOM3 || Note FROM tblServices WHERE ServiceID = 100"_s),
                 u"Oil change3010111"
                 "5O'Brien's"_s);
        // The copies keep what they had, and so does the other master.
        QCOMPARE(value(t.session(), u"SELECT SUM(EInterval) FROM tblServiceUsed"_s), u"15"_s);
        QCOMPARE(value(t.session(), u"SELECT Name FROM tblServices WHERE ServiceID = 200"_s),
                 u"Belt"_s);
        QVERIFY(t.failures().isEmpty());
    }

    void copyRenewsItsSchedule_data()
    {
        QTest::addColumn<QString>("period");
        QTest::addColumn<int>("askedCount"); // -1: the user gives none
        QTest::addColumn<bool>("hasReading");
        QTest::addColumn<QString>("expected"); // NextScheduledCount, NextScheduledDate, readings
        QTest::addRow("meter, none given: zero reading") << u"H"_s << -1 << false << u"5  1"_s;
        QTest::addRow("meter, count given") << u"H"_s << 40 << false << u"45 2025-03-01 1"_s;
        QTest::addRow("meter with a reading keeps its count") << u"H"_s << 40 << true << u"12  1"_s;
        QTest::addRow("calendar gets its date") << u"D"_s << -1 << false << u"12 2025-03-06 0"_s;
    }
    void copyRenewsItsSchedule()
    {
        QFETCH(QString, period);
        QFETCH(int, askedCount);
        QFETCH(bool, hasReading);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        if (hasReading) {
            run(t.session(),
                u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                "CountValue) VALUES (7, ?, 'Hours', 3)"_s,
                {SqlValue::date({2025, 1, 1})});
        }
        ServicesManager manager(t.session());
        Service copy;
        copy.serviceId = 1;
        copy.name = u"Oil"_s;
        copy.renewalPeriod = period;
        copy.renewalInterval = 5;
        copy.days.fill(true);
        copy.weeks.fill(true);
        copy.months.fill(true);
        MeterReadings readings(t.session());
        int asked = 0;
        const auto ask = [&](qint64 equipmentId, qint64 serviceUsedId, const QString&,
                             const QString& countType) {
            ++asked;
            return askedCount >= 0 && readings.addCount(equipmentId, t.session().today(), countType,
                                                        askedCount, serviceUsedId);
        };
        QVERIFY(manager.saveServiceUsed(copy, {7, {}, 12, false}, ask));
        const QString stored =
            value(t.session(),
                  u"SELECT NextScheduledCount FROM tblServiceUsed WHERE ServiceUsedID = 1"_s);
        const QDate next = SqlValue::toDate(QVariant(
            value(t.session(),
                  u"SELECT NextScheduledDate FROM tblServiceUsed WHERE ServiceUsedID = 1"_s)));
        QCOMPARE(stored + u' ' + next.toString(Qt::ISODate) + u' ' +
                     value(t.session(), u"SELECT COUNT(*) FROM tblEquipmentCount"_s),
                 expected);
        QCOMPARE(asked, period == u"H"_s && !hasReading ? 1 : 0);
        QVERIFY(t.failures().isEmpty());
    }

    void serviceNumbersFollowOnYesAndDeleteWaitsForTheCopies()
    {
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        ServicesManager manager(t.session());
        QVERIFY(manager.updateJobNoForAllService(100, u"19"_s));
        QCOMPARE(value(t.session(),
                       u"SELECT MIN(JobNo) || MAX(JobNo) || COUNT(*) FROM tblServiceUsed"_s),
                 u"10193"_s);
        QCOMPARE(value(t.session(), u"SELECT JobNo FROM tblWoServiceUsed"_s), u"19"_s);
        QCOMPARE(manager.canDeleteServices(100), u"Service Used"_s);
        run(t.session(), u"INSERT INTO tblServicesPart (ServiceID, PartID) VALUES (300, 'P1')"_s);
        QCOMPARE(manager.canDeleteServices(300), QString());
        QVERIFY(manager.deleteRecord(300));
        QCOMPARE(value(t.session(), u"SELECT COUNT(*) FROM tblServicesPart"_s), u"0"_s);

        // A failed line update leaves the copies as they were.
        run(t.session(), u"DROP TABLE tblWoServiceUsed"_s);
        QVERIFY(!manager.updateJobNoForAllService(100, u"29"_s));
        QCOMPARE(value(t.session(), u"SELECT MAX(JobNo) FROM tblServiceUsed"_s), u"19"_s);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].procedure, u"UpdateJobNoForAllService"_s);
    }

    void partListsAndCostsKeepToTheirTable()
    {
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        run(t.session(), u"INSERT INTO tblPart (PartID, Description, Price) VALUES "
                         "('P1', 'Filter', 4), ('P2', 'Belt', 10)"_s);
        ServicesManager manager(t.session());
        const QString picked =
            PartPicker::resultText({{u"P1"_s, 2, 4.0, 3}, {u"P2"_s, 1, 10.0, QVariant()}});
        QVERIFY(manager.addPicked(Kind::Master, 100, picked));
        QVERIFY(manager.addPicked(Kind::Copy, 1, picked));
        QVERIFY(manager.savePartGridChanges(Kind::Copy, 1, u"P2"_s, 3, 5));
        QVERIFY(manager.removePart(Kind::Master, 100, u"P1"_s));
        QCOMPARE(manager.partCost(Kind::Master, 100), 10.0);
        QCOMPARE(manager.partCost(Kind::Copy, 1), 23.0);
        QCOMPARE(manager.partCost(Kind::Copy, 3), 0.0);
        QCOMPARE(manager.partExcludeText(Kind::Copy, 1), u"'P1','P2'"_s);
        QCOMPARE(value(t.session(), u"SELECT SupplierID FROM tblServiceUsedPart "
                                    "WHERE PartID = 'P1'"_s),
                 u"3"_s);

        // The picker's lists leave out what the caller already has.
        QCOMPARE(manager.pickList(u"SL"_s, {100}, 0).size(), 1);
        const Rows other = manager.pickList(u"EL"_s, {200}, 7);
        QCOMPARE(other.size(), 1);
        QCOMPARE(other[0].value(u"ServiceID"_s).toLongLong(), 100);
        QCOMPARE(other[0].value(u"ServiceUsedID"_s).toLongLong(), 1); // what a pick of it names
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestServicesManager)
#include "tst_servicesmanager.moc"
