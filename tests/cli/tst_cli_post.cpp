#include "CliHome.h"
#include "TestInstallation.h"

#include <QTest>

using namespace Qt::StringLiterals;

/** The post command, end to end on a small set of open work orders. */
class TestCliPost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void printsPostedAndHeldBackOrders()
    {
        TANDRILL_CLI_HOME(h);
        // Order 1 has a done line; order 2 a done hour line without its count.
        for (
            const QString& statement :
            {u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID, Complete, CompletedDate) "
             "VALUES (1, 5, -1, '2025-02-20'), (2, 5, -1, '2025-02-20')"_s,
             u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID, EquipmentID, Name, "
             "Period, Completed) VALUES (1, 0, 5, 'Wash', 'D', -1), (2, 0, 5, 'Oil', 'H', -1)"_s}) {
            QCOMPARE(h.run({u"sql"_s, statement}).code, 0);
        }
        const CliResult posted = h.run({u"post"_s});
        QCOMPARE(posted.code, 0);
        QCOMPARE(posted.out, u"Posted: 1\nHeld back: 2\n"_s);
        QVERIFY(posted.err.contains(u"Following Work Orders (2)"_s));
        QCOMPARE(h.value(u"SELECT COUNT(*) FROM tblWOServiceUsedHistory"_s), u"1"_s);
    }
};

QTEST_GUILESS_MAIN(TestCliPost)
#include "tst_cli_post.moc"
