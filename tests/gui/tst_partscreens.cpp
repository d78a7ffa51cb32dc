#include "InventoryCheckInScreen.h"
#include "MessageTexts.h"
#include "PartManagerScreen.h"
#include "PartScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

// The part rules, the check-in and the picker's lists are tested on their own; this checks
// only that the three screens hand the user's input to them and show their answers.
namespace {

/** 2 on hand, no reorder quantity, 3 committed, on a machine; B'2 from supplier Acme; C-3. */
void seedParts(Session& session)
{
    QSqlQuery q(session.db());
    Sql::exec(q, u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (4, 'Acme')"_s);
    Sql::exec(q, u"INSERT INTO tblPart (PartID, Description, Quantity, QtyMin, Price, SupplierID, "
                 "Inactive, TrackInventory) VALUES ('A-1', 'Blade', 2, 2, 12.5, 0, 0, 0), "
                 "('B''2', 'Bolt', 8, 1, 0.25, 4, 0, 0), ('C-3', 'Cap', NULL, 0, 3, 0, 0, 0)"_s);
    Sql::exec(q, u"INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, QuantityRequired) "
                 "VALUES (1, 'A-1', 3)"_s);
    Sql::exec(q, u"INSERT INTO tblEquipmentPart (EquipmentID, PartID) VALUES (1, 'A-1')"_s);
}

QVariant cell(Session& session, const QString& sql)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, sql) && q.next() ? q.value(0) : QVariant();
}

/** Types text into a grid cell through its editor and commits it with Return. */
void typeIntoCell(QTableWidget* grid, int row, int column, const QString& text)
{
    grid->setCurrentCell(row, column);
    grid->editItem(grid->item(row, column));
    QPointer<QLineEdit> editor = grid->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!editor); // the commit and close are queued
}

} // namespace

class TestPartScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void partScreenShowsChecksAndSaves()
    {
        TANDRILL_INSTALLATION(t);
        seedParts(t.session());
        QStringList shown;
        onModal<PartScreen>("frmPart", [&](PartScreen* screen) {
            shown << text(*screen, "txtQuantity") + u' ' + text(*screen, "txtMax") + u' ' +
                         child<QLabel>(*screen, "lblPartCommitedData")->text();
            child<QCheckBox>(*screen, "chkInactive")->click();
            click(*screen, "cmdUpdate"); // refused: A-1 is on a machine, and the tick goes
            shown << screen->modeText() +
                         QString::number(child<QCheckBox>(*screen, "chkInactive")->isChecked());
            child<QCheckBox>(*screen, "chkNotTrackInventory")->click();
            shown << QString::number(child(*screen, "txtQuantity")->isVisible());
            perform(*screen, t.prompter(), u"txtDescription+s|cmdUpdate|cmdAdd"_s, "grdPart");
            shown << text(*screen, "txtPrice") + u' ' + text(*screen, "txtMax");
            perform(*screen, t.prompter(), u"txtPartID+D-4|txtDescription+Pump|cmdUpdate"_s,
                    "grdPart");
            shown << screen->modeText() + text(*screen, "txtPartID");
            // D-4 is free and goes; A-1 is on a machine and stays; its number is taken.
            perform(*screen, t.prompter(),
                    u"Yes|cmdDelete|cmdFirst|Yes|cmdDelete|cmdAdd|txtPartID+A-1|"
                    "txtDescription+Copy|cmdUpdate|cmdCancel"_s,
                    "grdPart");
            shown << screen->modeText() + text(*screen, "txtPartID");
            click(*screen, "cmdExit");
        });
        PartScreen::showPartDetail(t.session(), RecordScreen::Mode::Browse, u"A-1"_s);
        const QStringList texts = t.prompter().texts();
        QVERIFY(texts.size() == 5 && texts[3].endsWith(u"used in Equipment."_s) &&
                texts[4].startsWith(u"Part Number you specified"_s));
        QCOMPARE(shown, (QStringList{u"2.00 1.00 3.00"_s, u"M0"_s, u"0"_s, u"0.00 1.00"_s,
                                     u"BD-4"_s, u"BA-1"_s}));
        QVERIFY(t.prompter().texts().value(0).startsWith(u"This part is already assigned to"_s));
        QCOMPARE(cell(t.session(), u"SELECT Description FROM tblPart WHERE TrackInventory = -1"_s),
                 u"Blades"_s);

        t.session().rights().set(UserRights::PaAdd, false);
        onModal<PartScreen>("frmPart", [&](PartScreen* screen) {
            shown = QStringList{screen->modeText()};
            click(*screen, "cmdExit");
        });
        PartScreen::showPartDetail(t.session(), RecordScreen::Mode::Add, QVariant());
        QCOMPARE(shown, QStringList{u"B"_s});
        QCOMPARE(t.prompter().texts().last(), MessageTexts::NoActionRights);
    }

    void checkInBooksTheTypedQuantities()
    {
        TANDRILL_INSTALLATION(t);
        seedParts(t.session());
        QStringList shown;
        onModal<InventoryCheckInScreen>("frmInventryCheckIn", [&](InventoryCheckInScreen* s) {
            auto* grid = child<QTableWidget>(*s, "grdPart");
            typeIntoCell(grid, 0, 3, u"5e"_s); // the letter is refused
            shown << QString::number(child<QPushButton>(*s, "cmdExit")->isEnabled());
            click(*s, "cmdUpdate");
            shown << grid->item(0, 2)->text() + u' ' + grid->item(0, 3)->text();
            child<QCheckBox>(*s, "chkReorderInventory")->click();
            QTest::keyClicks(child(*s, "txtSearchText"), u"b"_s);
            shown << QString::number(grid->rowCount());
            click(*s, "cmdExit");
        });
        InventoryCheckInScreen::showInventoryCheckIn(t.session());
        QCOMPARE(shown, (QStringList{u"0"_s, u"7 0"_s, u"0"_s}));
    }

    void pickerHandsBackTheTickedParts()
    {
        TANDRILL_INSTALLATION(t);
        seedParts(t.session());
        QString chosen = u"'C-3'"_s;
        onModal<PartManagerScreen>("frmPartManager", [&](PartManagerScreen* s) {
            auto* grid = child<QTableWidget>(*s, "grdPart");
            QCOMPARE(grid->rowCount(), 2);
            grid->item(0, 0)->setCheckState(Qt::Checked); // Qty Req follows the tick
            typeIntoCell(grid, 1, 5, u"3"_s);             // and the tick follows Qty Req
            click(*s, "cmdSelect");
        });
        QVERIFY(PartManagerScreen::showPartManager(t.session(), &chosen, true));
        QCOMPARE(chosen, PartPicker::resultText({{u"A-1"_s, 1, 12.5, 0}, {u"B'2"_s, 3, 0.25, 4}}));

        onModal<PartManagerScreen>("frmPartManager",
                                   [](PartManagerScreen* s) { click(*s, "cmdExit"); });
        QVERIFY(!PartManagerScreen::showPartManager(t.session(), &chosen, true));
        QCOMPARE(chosen, PartPicker::resultText({{u"A-1"_s, 1, 12.5, 0}, {u"B'2"_s, 3, 0.25, 4}}));
    }
};

QTEST_MAIN(TestPartScreens)
#include "tst_partscreens.moc"
