#include "EquipmentReadingScreen.h"
#include "MeterReadings.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

// Which lines the sheet lists and how it stores them is tested with its logic.
class TestEquipmentReadingScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void writtenCountIsCheckedThenStored()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "Inactive) VALUES (1, 'Mower', 'U1', '0')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, "
                             "Period, EInterval) VALUES (3, 1, 'Oil', 'H', 100)"_s));
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                          "CountValue) VALUES (1, ?, 'Hours', 500)"_s,
                          {SqlValue::date(t.session().today().addDays(-60))}));
        EquipmentReadingScreen screen(t.session());
        screen.show();
        auto* grid = child<QTableWidget>(screen, "grdEquipment");
        QCOMPARE(grid->rowCount(), 1);
        QCOMPARE(grid->item(0, 1)->text(), u"U1"_s);
        QCOMPARE(grid->item(0, 6)->text(), u"______________"_s);
        QVERIFY(!child<QPushButton>(screen, "cmdPrint")->isEnabled());

        grid->setCurrentCell(0, 6);
        grid->editItem(grid->item(0, 6));
        const auto write = [grid](const QString& typed) {
            auto* editor = child(*grid, "txtGrid");
            editor->clear();
            QTest::keyClicks(editor, typed);
            QTest::keyClick(editor, Qt::Key_Return);
        };
        // Letters never reach the cell; 499 is below the last count: told, and the cell reopens.
        write(u"4x99"_s);
        QTRY_COMPARE(t.prompter().texts().size(), 1);
        QCOMPARE(grid->item(0, 6)->text(), u"499"_s);
        QTRY_VERIFY(grid->findChild<QLineEdit*>(u"txtGrid"_s));
        write(u"600"_s);
        QTRY_COMPARE(grid->item(0, 6)->text(), u"600"_s);
        QCOMPARE(t.prompter().texts().size(), 1);
        click(screen, "cmdUpdate");
        QCOMPARE(MeterReadings(t.session()).latest(1, u"Hours"_s).value, 600);
        QCOMPARE(grid->rowCount(), 0); // read today, with the default delay of 7 days
    }
};

QTEST_MAIN(TestEquipmentReadingScreen)
#include "tst_equipmentreadingscreen.moc"
