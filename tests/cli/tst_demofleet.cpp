#include "DataHelpers.h"
#include "DemoFleet.h"
#include "NextDateCalculator.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** The single number a query answers; -1 when it fails. */
qint64 number(Session& session, const QString& sql)
{
    QSqlQuery q(session.db());
    if (!Sql::exec(q, sql) || !q.next()) {
        qWarning("%s: %s", qPrintable(sql), qPrintable(q.lastError().text()));
        return -1;
    }
    return q.value(0).toLongLong();
}

QList<qint64> numbers(Session& session, const QString& sql)
{
    QList<qint64> result;
    QSqlQuery q(session.db());
    if (!Sql::exec(q, sql)) {
        qWarning("%s: %s", qPrintable(sql), qPrintable(q.lastError().text()));
    }
    while (q.next()) {
        result.append(q.value(0).toLongLong());
    }
    return result;
}

bool generate(TestInstallation& t)
{
    DemoFleet demo(t.session());
    QString error;
    if (!demo.generate(&error)) {
        qWarning("%s", qPrintable(error));
        return false;
    }
    return true;
}

} // namespace

/** The sample fleet: whole, consistent with its own rules, and all or nothing. */
class TestDemoFleet : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void countsMatchWhatWasWritten()
    {
        TANDRILL_INSTALLATION(t);
        DemoFleet demo(t.session());
        QString error;
        QVERIFY2(demo.generate(&error), qPrintable(error));
        Session& s = t.session();
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblEquipment"_s), qint64(demo.counts().machines));
        QCOMPARE(demo.counts().machines, 40);
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblServices"_s), qint64(demo.counts().services));
        QVERIFY(demo.counts().services >= 12);
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblServiceUsed"_s),
                 qint64(demo.counts().servicesOnMachines));
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblEquipmentCount"_s),
                 qint64(demo.counts().readings));
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblCrew"_s), qint64(4));
        QCOMPARE(number(s, u"SELECT COUNT(DISTINCT Crew) FROM tblEmployee"_s), qint64(4));
        QVERIFY(number(s, u"SELECT COUNT(DISTINCT EquipmentType) FROM tblEquipment"_s) >= 4);
        QVERIFY(number(s, u"SELECT COUNT(*) FROM tblPart WHERE Quantity > 0"_s) > 10);
        QVERIFY2(number(s, u"SELECT COUNT(*) FROM tblPart WHERE Quantity < QtyMin"_s) > 0,
                 "some parts are due for reordering");
        QVERIFY(demo.summary().startsWith(u"40 machines"_s));
    }

    void keysAreMadeFromDistinctMoments()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(generate(t));
        const QList<qint64> machines =
            numbers(t.session(), u"SELECT EquipmentID FROM tblEquipment ORDER BY EquipmentID"_s);
        QCOMPARE(machines.size(), 40);
        for (int i = 0; i < machines.size(); ++i) {
            QCOMPARE(machines.at(i),
                     DataHelpers::generateUniqueId(DemoFleet::keyBase().addSecs(i)));
        }
        const QList<qint64> services = numbers(t.session(), u"SELECT ServiceID FROM tblServices"_s);
        for (const qint64 id : services) {
            QVERIFY2(!machines.contains(id), "a master service shares a key with a machine");
        }
    }

    void lookupItemsHangUnderTheRightLists()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(generate(t));
        Session& s = t.session();
        // Each query counts the references that break the tree of lookup lists.
        const char* const broken[] = {
            "SELECT COUNT(*) FROM tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = "
            "e.EquipmentType WHERE i.ParentId IS NULL OR i.ParentId <> 4",
            "SELECT COUNT(*) FROM tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = "
            "e.EquipmentMake WHERE i.ParentId IS NULL OR i.ParentId <> e.EquipmentType",
            "SELECT COUNT(*) FROM tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = "
            "e.EquipmentModel WHERE i.ParentId IS NULL OR i.ParentId <> e.EquipmentMake",
            "SELECT COUNT(*) FROM tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = "
            "e.EngineMake WHERE e.EngineMake IS NOT NULL AND (i.ParentId IS NULL OR i.ParentId <> "
            "17)",
            "SELECT COUNT(*) FROM tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = "
            "e.EngineModel WHERE e.EngineModel IS NOT NULL AND "
            "(i.ParentId IS NULL OR i.ParentId <> e.EngineMake)",
            "SELECT COUNT(*) FROM tblSite s LEFT JOIN tblIndicator st ON st.ItemID = s.StateID "
            "LEFT JOIN tblIndicator c ON c.ItemID = st.ParentId WHERE c.ParentId IS NULL OR "
            "c.ParentId <> 1",
            "SELECT COUNT(*) FROM tblEquipment e LEFT JOIN tblLocation l ON l.LocationID = "
            "e.LocationID WHERE l.Site IS NULL OR l.Site <> e.SiteID",
            "SELECT COUNT(*) FROM tblEmployee e LEFT JOIN tblIndicator p ON p.ItemID = "
            "e.EmpPosition WHERE p.ParentId IS NULL OR p.ParentId <> 3",
            "SELECT COUNT(*) FROM tblPart p LEFT JOIN tblIndicator c ON c.ItemID = "
            "p.PartCategoryID WHERE c.ParentId IS NULL OR c.ParentId <> 10",
            "SELECT COUNT(*) FROM tblPart p LEFT JOIN tblSupplier s ON s.SupplierID = p.SupplierID "
            "WHERE s.SupplierID IS NULL",
            "SELECT COUNT(*) FROM tblServiceUsedPart u LEFT JOIN tblPart p ON p.PartID = u.PartID "
            "WHERE p.PartID IS NULL",
        };
        for (const char* query : broken) {
            QCOMPARE(number(s, QString::fromLatin1(query)), qint64(0));
        }
    }

    void servicesOnMachinesAreCopiesOfTheirMaster()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(generate(t));
        QStringList differs;
        for (const char* column :
             {"JobNo",   "Name",   "Period", "EInterval", "RenewalOn", "SeparateWo", "Mon",
              "Tue",     "Wed",    "Thu",    "Fri",       "Sat",       "Sun",        "FirstW",
              "SecondW", "ThirdW", "ForthW", "LastW",     "Dom",       "DOM1",       "DOM2",
              "Jan",     "Jun",    "Nov",    "Dece",      "Note"}) {
            differs.append(u"u.%1 <> m.%1"_s.arg(QLatin1String(column)));
        }
        Session& s = t.session();
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblServiceUsed u LEFT JOIN tblServices m "
                           "ON m.ServiceID = u.ServiceID WHERE m.ServiceID IS NULL OR "_s +
                               differs.join(u" OR "_s)),
                 qint64(0));
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblServiceUsed u WHERE NOT EXISTS (SELECT 1 "
                           "FROM tblEquipment e WHERE e.EquipmentID = u.EquipmentID)"_s),
                 qint64(0));
    }

    void bothKindsOfScheduleAreThere()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(generate(t));
        Session& s = t.session();
        for (const char* period : {"D", "W", "M", "Y", "C", "H", "K", "I"}) {
            QVERIFY2(number(s, u"SELECT COUNT(*) FROM tblServiceUsed WHERE Period = '%1'"_s.arg(
                                   QLatin1String(period))) > 0,
                     period);
        }
        for (const char* type : {"Counts", "Hours", "Kilometers", "Miles"}) {
            QVERIFY2(
                number(s, u"SELECT COUNT(*) FROM tblEquipmentCount WHERE CountType = '%1'"_s.arg(
                              QLatin1String(type))) > 0,
                type);
        }
        QVERIFY2(number(s, u"SELECT COUNT(*) FROM tblServices WHERE Dom = '1' AND DOM1 > 0"_s) > 0,
                 "a day-of-month list");
        QVERIFY2(number(s, u"SELECT COUNT(*) FROM tblServices WHERE Jan = '0' AND Jul = '1'"_s) > 0,
                 "a month selection");
        QVERIFY2(number(s, u"SELECT COUNT(*) FROM tblServices WHERE FirstW = '1' AND "
                           "SecondW = '0'"_s) > 0,
                 "a week selection");
        QVERIFY2(number(s, u"SELECT COUNT(*) FROM tblServices WHERE Sat = '0' AND Mon = '1'"_s) > 0,
                 "a weekday selection");
        // Calendar services have a date and no count; meter services always a count.
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblServiceUsed WHERE Period IN ('D','W','M','Y') "
                           "AND (NextScheduledDate IS NULL OR NextScheduledCount IS NOT NULL)"_s),
                 qint64(0));
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblServiceUsed WHERE Period IN ('C','H','K','I') "
                           "AND NextScheduledCount IS NULL"_s),
                 qint64(0));
        QVERIFY2(
            number(s, u"SELECT COUNT(*) FROM tblServiceUsed WHERE LastDatePerformed IS NULL"_s) > 0,
            "some services were never done yet");
        QVERIFY2(
            number(s, u"SELECT COUNT(*) FROM tblServiceUsed WHERE NextScheduledDate < '%1'"_s.arg(
                          t.session().today().toString(Qt::ISODate))) > 0,
            "some services are overdue");
        QVERIFY2(
            number(s, u"SELECT COUNT(*) FROM tblServiceUsed WHERE NextScheduledDate > '%1'"_s.arg(
                          t.session().today().toString(Qt::ISODate))) > 0,
            "some services are due later");
    }

    void readingsNeverRunBackwards()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(generate(t));
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"SELECT EquipmentID, CountType, ChangeDate, CountValue FROM "
                             "tblEquipmentCount ORDER BY EquipmentID, CountType, ChangeDate"_s));
        QString previousKey;
        qint64 previous = 0;
        QDate lastDay;
        while (q.next()) {
            const QString key = q.value(0).toString() + q.value(1).toString();
            const QDate day = SqlValue::toDate(q.value(2));
            QVERIFY(day.isValid() && day <= t.session().today());
            if (key == previousKey) {
                QVERIFY2(q.value(3).toLongLong() >= previous, qPrintable(key));
                QVERIFY(day > lastDay);
            }
            previousKey = key;
            previous = q.value(3).toLongLong();
            lastDay = day;
        }
    }

    void storedDatesAgreeWithTheCalculator()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(generate(t));
        NextDateCalculator calculator(t.session());
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"SELECT ServiceUsedID, Period, LastDatePerformed, NextScheduledDate "
                             "FROM tblServiceUsed WHERE Inactive = 0 ORDER BY ServiceUsedID"_s));
        int checked = 0;
        while (q.next()) {
            const qint64 id = q.value(0).toLongLong();
            const bool meter = QStringLiteral("CHKI").contains(q.value(1).toString());
            const QDate stored = SqlValue::toDate(q.value(3));
            const QDate answer = calculator.nextScheduledDate(id, false);
            if (meter) {
                // Due exactly when the latest reading has reached the count.
                QCOMPARE(answer.isValid(), stored.isValid());
                if (stored.isValid()) {
                    QVERIFY(stored <= answer);
                }
                ++checked;
            } else if (!q.value(2).isNull()) {
                // Done before: the date is the one the calculator gives after posting.
                QCOMPARE(stored, answer);
                ++checked;
            }
        }
        QVERIFY(checked > 80);
        QVERIFY(t.prompter().shown().isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void aFailedFleetLeavesNothingBehind()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        // A supplier in the way makes the fleet fail halfway through.
        QVERIFY(Sql::exec(q, u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (1, 'Mine')"_s));
        DemoFleet demo(t.session());
        QString error;
        QVERIFY(!demo.generate(&error));
        QVERIFY2(error.contains(u"tblSupplier"_s), qPrintable(error));
        Session& s = t.session();
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblIndicator"_s), qint64(17));
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblCrew"_s), qint64(0));
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblSupplier"_s), qint64(1));
        QCOMPARE(number(s, u"SELECT COUNT(*) FROM tblEquipment"_s), qint64(0));
        QVERIFY(!s.transactionOpen());
        QCOMPARE(demo.counts().machines, 0);
    }
};

QTEST_GUILESS_MAIN(TestDemoFleet)
#include "tst_demofleet.moc"
