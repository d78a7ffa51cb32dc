#include "OverdueBoardScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

// Which rows are on the board is tested with OverdueBoard; this checks the screen's wiring.
class TestOverdueBoardScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void showsBothGroupsAndReloads()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, UnitNo, EquipmentName) "
                             "VALUES (1, 'A1', 'Mower')"_s) &&
                Sql::exec(q,
                          u"INSERT INTO tblServiceUsed (EquipmentID, NextScheduledDate) "
                          "VALUES (1, ?)"_s,
                          {SqlValue::date(t.session().today())}));
        OverdueBoardScreen board(t.session());
        board.show();
        auto* tree = child<QTreeWidget>(board, "grdEquipWithSer");
        QTreeWidgetItem* open = tree->topLevelItem(0);
        QTreeWidgetItem* overdue = tree->topLevelItem(1);
        QCOMPARE(open->text(0) + u'|' + overdue->text(0), u"Open Work Order|Over Due Service"_s);
        QCOMPARE(overdue->child(0)->text(0), u"A1 - Mower"_s);
        QVERIFY(overdue->child(0)->isDisabled());

        QVERIFY(
            Sql::exec(q, u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID) VALUES (9, 1)"_s));
        QString printed;
        qint64 recorded = 0;
        board.setLinkHandlers([&](const QString& unit) { printed = unit; },
                              [&](qint64 order) { recorded = order; });
        emit tree->itemClicked(open->child(0), 0);
        emit tree->itemClicked(overdue->child(0), 0);
        QCOMPARE(printed + QString::number(recorded), u"A19"_s);
        emit tree->itemClicked(open, 0);
        QVERIFY(!open->isExpanded());
    }
};

QTEST_MAIN(TestOverdueBoardScreen)
#include "tst_overdueboardscreen.moc"
