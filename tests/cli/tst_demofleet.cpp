#include "DemoFleet.h"
#include "NextDateCalculator.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QCryptographicHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/** How many rows the FROM clause gives; -1 when the query fails. */
qint64 count(Session& session, const QString& rows)
{
    QSqlQuery q(session.db());
    if (!Sql::exec(q, u"SELECT COUNT(*) FROM "_s + rows) || !q.next()) {
        qWarning("%s: %s", qPrintable(rows), qPrintable(q.lastError().text()));
        return -1;
    }
    return q.value(0).toLongLong();
}

/** A digest of the rows that grow with the fleet; empty when a table cannot be read. */
QByteArray digest(Session& session)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const char* table : {"tblEquipment", "tblEquipmentPart", "tblEquipmentCount",
                              "tblServiceUsed", "tblServiceUsedPart"}) {
        QSqlQuery q(session.db());
        if (!Sql::exec(q, u"SELECT * FROM %1 ORDER BY 1, 2, 3"_s.arg(QLatin1String(table)))) {
            return {};
        }
        while (q.next()) {
            for (int i = 0; i < q.record().count(); ++i) {
                hash.addData(q.value(i).toString().toUtf8().append('\x1f'));
            }
        }
    }
    return hash.result();
}

} // namespace

/** The sample fleet: whole, consistent with its own rules, and all or nothing. */
class TestDemoFleet : public QObject
{
    Q_OBJECT

private slots:
    // One fleet serves every test that only reads it; large enough to hold generated machines.
    void initTestCase()
    {
        TANDRILL_REQUIRE_ENGINE();
        m_t = std::make_unique<TestInstallation>();
        QVERIFY2(m_t->isValid(), qPrintable(m_t->error()));
        m_demo = std::make_unique<DemoFleet>(m_t->session(), 130);
        QString error;
        QVERIFY2(m_demo->generate(&error), qPrintable(error));
    }

    void countsMatchWhatWasWritten()
    {
        const DemoFleet::Counts& counts = m_demo->counts();
        QVERIFY(m_demo->summary().startsWith(u"130 machines"_s));
        const std::pair<const char*, int> tables[] = {{"tblEquipment", counts.machines},
                                                      {"tblServices", counts.services},
                                                      {"tblServiceUsed", counts.servicesOnMachines},
                                                      {"tblEquipmentCount", counts.readings}};
        for (const auto& [table, written] : tables) {
            QCOMPARE(count(m_t->session(), QLatin1String(table)), qint64(written));
        }
    }

    // Every kind of row the screens and reports meet is there, and none breaks a rule.
    void theFleetIsWholeAndKeepsItsOwnRules()
    {
        const QString today = u"'%1'"_s.arg(m_t->session().today().toString(Qt::ISODate));
        QStringList present;
        for (const char* period : {"D", "W", "M", "Y", "C", "H", "K", "I"}) {
            present << u"tblServiceUsed WHERE Period = '%1'"_s.arg(QLatin1String(period));
        }
        present << u"tblServices WHERE Dom = '1' AND DOM1 > 0"_s // a day-of-month list
                << u"tblServices WHERE Jan = '0' AND Jul = '1'"_s
                << u"tblServices WHERE Sat = '0' AND Mon = '1'"_s
                << u"tblServiceUsed WHERE LastDatePerformed IS NULL"_s // never done yet
                << u"tblServiceUsed WHERE NextScheduledDate < "_s + today
                << u"tblServiceUsed WHERE NextScheduledDate > "_s + today
                << u"tblPart WHERE Quantity < QtyMin"_s; // due for reordering
        QStringList differs;
        for (const char* column : {"JobNo", "Period", "EInterval", "RenewalOn", "Mon", "FirstW",
                                   "LastW", "Dom", "DOM1", "Jan", "Dece"}) {
            differs.append(u"u.%1 <> m.%1"_s.arg(QLatin1String(column)));
        }
        // Each query counts the rows that break one rule.
        const QString broken[] = {
            // The lookup lists form a tree.
            u"tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = e.EquipmentType "
            "WHERE i.ParentId IS NULL OR i.ParentId <> 4"_s,
            u"tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = e.EquipmentMake "
            "WHERE i.ParentId IS NULL OR i.ParentId <> e.EquipmentType"_s,
            u"tblEquipment e LEFT JOIN tblIndicator i ON i.ItemID = e.EngineMake "
            "WHERE e.EngineMake IS NOT NULL AND (i.ParentId IS NULL OR i.ParentId <> 17)"_s,
            u"tblSite s LEFT JOIN tblIndicator st ON st.ItemID = s.StateID LEFT JOIN "
            "tblIndicator c ON c.ItemID = st.ParentId WHERE c.ParentId IS NULL OR "
            "c.ParentId <> 1"_s,
            u"tblEquipment e LEFT JOIN tblLocation l ON l.LocationID = e.LocationID "
            "WHERE l.Site IS NULL OR l.Site <> e.SiteID"_s,
            u"tblPart p LEFT JOIN tblIndicator c ON c.ItemID = p.PartCategoryID "
            "WHERE c.ParentId IS NULL OR c.ParentId <> 10"_s,
            u"tblPart p LEFT JOIN tblSupplier s ON s.SupplierID = p.SupplierID "
            "WHERE s.SupplierID IS NULL"_s,
            // A service on a machine is a copy of its master, on a machine that exists.
            u"tblServiceUsed u LEFT JOIN tblServices m ON m.ServiceID = u.ServiceID "
            "WHERE m.ServiceID IS NULL OR "_s +
                differs.join(u" OR "_s),
            u"tblServiceUsed u WHERE NOT EXISTS (SELECT 1 FROM tblEquipment e "
            "WHERE e.EquipmentID = u.EquipmentID)"_s,
            // Calendar services have a date and no count; meter services always a count.
            u"tblServiceUsed WHERE Period IN ('D','W','M','Y') "
            "AND (NextScheduledDate IS NULL OR NextScheduledCount IS NOT NULL)"_s,
            u"tblServiceUsed WHERE Period IN ('C','H','K','I') AND NextScheduledCount IS NULL"_s,
            // Keys are made from distinct moments, so no two kinds of row share one.
            u"tblServices s JOIN tblEquipment e ON e.EquipmentID = s.ServiceID"_s,
            // Readings are dated, never ahead of today, and never run backwards.
            u"tblEquipmentCount WHERE ChangeDate IS NULL OR ChangeDate > "_s + today,
            u"tblEquipmentCount a JOIN tblEquipmentCount b ON a.EquipmentID = b.EquipmentID AND "
            "a.CountType = b.CountType AND a.ChangeDate < b.ChangeDate "
            "WHERE a.CountValue > b.CountValue"_s,
            u"(SELECT EquipmentID FROM tblEquipmentCount GROUP BY EquipmentID, CountType, "
            "ChangeDate HAVING COUNT(*) > 1) twice"_s,
        };
        for (const QString& rows : present) {
            QVERIFY2(count(m_t->session(), rows) > 0, qPrintable(rows));
        }
        for (const QString& rows : broken) {
            QCOMPARE(count(m_t->session(), rows), qint64(0));
        }
    }

    void storedDatesAgreeWithTheCalculator()
    {
        NextDateCalculator calculator(m_t->session());
        QSqlQuery q(m_t->session().db());
        QVERIFY(Sql::exec(q, u"SELECT ServiceUsedID, Period, LastDatePerformed, NextScheduledDate "
                             "FROM tblServiceUsed WHERE Inactive = 0 ORDER BY ServiceUsedID"_s));
        int checked = 0;
        while (q.next()) {
            const QDate stored = SqlValue::toDate(q.value(3));
            const QDate answer = calculator.nextScheduledDate(q.value(0).toLongLong(), false);
            if (u"CHKI"_s.contains(q.value(1).toString())) {
                // Due exactly when the latest reading has reached the count.
                QCOMPARE(answer.isValid(), stored.isValid());
                QVERIFY(!stored.isValid() || stored <= answer);
                ++checked;
            } else if (!q.value(2).isNull()) {
                // Done before: the date is the one the calculator gives after posting.
                QCOMPARE(stored, answer);
                ++checked;
            }
        }
        QVERIFY(checked > 80);
        QVERIFY(m_t->prompter().shown().isEmpty());
        QVERIFY(m_t->failures().isEmpty());
    }

    void sizeIsAskedAndTheSameSizeGivesTheSameData_data()
    {
        QTest::addColumn<int>("machines");
        QTest::addColumn<int>("kinds");
        QTest::newRow("fewer than the hand-made, of every kind") << 7 << 6;
        QTest::newRow("a few generated") << 45 << 6;
    }
    void sizeIsAskedAndTheSameSizeGivesTheSameData()
    {
        QFETCH(int, machines);
        QFETCH(int, kinds);
        QByteArray digests[2];
        for (QByteArray& made : digests) {
            TANDRILL_INSTALLATION(t);
            DemoFleet demo(t.session(), machines);
            QString error;
            QVERIFY2(demo.generate(&error), qPrintable(error));
            QCOMPARE(count(t.session(), u"tblEquipment"_s), qint64(machines));
            QCOMPARE(count(t.session(), u"(SELECT DISTINCT EquipmentType FROM tblEquipment) k"_s),
                     qint64(kinds));
            made = digest(t.session());
            QVERIFY(!made.isEmpty());
        }
        QCOMPARE(digests[1].toHex(), digests[0].toHex());
    }

    void aFailedFleetLeavesNothingBehind()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QSqlQuery q(s.db());
        // A supplier in the way makes the fleet fail halfway through.
        QVERIFY(Sql::exec(q, u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (1, 'Mine')"_s));
        DemoFleet demo(s);
        QString error;
        QVERIFY(!demo.generate(&error));
        QVERIFY2(error.contains(u"tblSupplier"_s), qPrintable(error));
        QString rows;
        for (const char* table : {"tblIndicator", "tblCrew", "tblSupplier", "tblEquipment"}) {
            rows += u"%1 "_s.arg(count(s, QLatin1String(table)));
        }
        QCOMPARE(rows, u"17 0 1 0 "_s);
        QVERIFY(!s.transactionOpen());
        QCOMPARE(demo.counts().machines, 0);
    }

private:
    std::unique_ptr<TestInstallation> m_t;
    std::unique_ptr<DemoFleet> m_demo;
};

QTEST_GUILESS_MAIN(TestDemoFleet)
#include "tst_demofleet.moc"
