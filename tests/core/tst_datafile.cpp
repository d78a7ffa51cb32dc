#include "Schema.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>
#include <memory>

using namespace Qt::StringLiterals;

/** What a new data file holds: one made the slow way, not as a copy, serves every test. */
class TestDataFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        TANDRILL_REQUIRE_ENGINE();
        m_t = std::make_unique<TestInstallation>(QDate(2025, 3, 1), TestInstallation::Fresh);
        QVERIFY2(m_t->isValid(), qPrintable(m_t->error()));
    }
    void cleanupTestCase() { m_t.reset(); }

    void startsWithTheFixedListsAndTheChief()
    {
        TestInstallation& t = *m_t;
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"SELECT COUNT(*) FROM tblIndicator WHERE ItemID BETWEEN 1 AND 17"_s));
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toInt(), 17);
        // New items number after the fixed lists.
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblIndicator (ParentId, ItemName, Show, FSize) "
                          "VALUES (1, ?, -1, 0) RETURNING ItemID"_s,
                          {u"Österreich"_s}));
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toInt(), 18);

        // The chief's password is the command line's test; the chief has every right.
        QVERIFY(Sql::exec(q, u"SELECT InvPartHistory FROM tblUser WHERE UserName = 'Chief'"_s));
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toString(), u"1"_s);
    }

    void columnsKeepTheirRules()
    {
        TestInstallation& t = *m_t;
        QSqlQuery q(t.session().db());
        // Flags take -1 and 0 only.
        QVERIFY(!Sql::exec(q, u"INSERT INTO tblPart (PartID, Inactive) VALUES ('P1', 1)"_s));
        QVERIFY(
            !Sql::exec(q, u"INSERT INTO tblEmployee (EmployeeID, Inactive) VALUES ('E1', 'Y')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblPart (PartID, Inactive) VALUES (?, ?)"_s,
                          {u"P1"_s, SqlValue::yesNo(true)}));
        // Keys typed by the user are one whatever their case.
        QVERIFY(!Sql::exec(q, u"INSERT INTO tblPart (PartID) VALUES ('p1')"_s));
        // Rows that leave their flags out are active and open.
        QVERIFY(Sql::exec(q, u"INSERT INTO tblServiceUsed (EquipmentID) VALUES (1)"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblWoServiceUsed (WorkOrderNo) VALUES (1)"_s));
        QVERIFY(Sql::exec(q, u"SELECT COUNT(*) FROM tblServiceUsed, tblWoServiceUsed "
                             "WHERE Inactive = 0 AND tblServiceUsed.SeparateWo = '0' "
                             "AND Mon = '0' AND Completed = 0 AND Skip = 0"_s));
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toInt(), 1);
        // A crew taken away leaves an empty crew number in the history.
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipmentCrewHistory (EquipmentID, CrewNumber) "
                             "VALUES (1, '')"_s));
        // The work order date is filled at insert.
        QVERIFY(
            Sql::exec(q, u"INSERT INTO tblWorkorder (EquipmentID) VALUES (1) RETURNING WoDate"_s));
        QVERIFY(q.next());
        QVERIFY(SqlValue::toDate(q.value(0)).isValid());
        // The engine never hands a key out twice.
        int checked = 0;
        for (const Schema::Table& table : Schema::instance().tables()) {
            const Schema::Column& key = table.columns.first();
            if (key.type != Schema::Type::AutoKey) {
                continue;
            }
            const QString insert = u"INSERT INTO %1 (%2) VALUES (%3) RETURNING %4"_s.arg(
                table.name, table.columns[1].name,
                table.columns[1].type == Schema::Type::Text ? u"'x'"_s : u"0"_s, key.name);
            QVERIFY2(Sql::exec(q, insert) && q.next(), qPrintable(insert));
            const qint64 deleted = q.value(0).toLongLong();
            QVERIFY(Sql::exec(q, u"DELETE FROM %1 WHERE %2 = ?"_s.arg(table.name, key.name),
                              {deleted}));
            QVERIFY2(Sql::exec(q, insert) && q.next(), qPrintable(insert));
            QVERIFY2(q.value(0).toLongLong() > deleted, qPrintable(table.name));
            ++checked;
        }
        QCOMPARE(checked, 8);
    }

private:
    std::unique_ptr<TestInstallation> m_t;
};

QTEST_GUILESS_MAIN(TestDataFile)
#include "tst_datafile.moc"
