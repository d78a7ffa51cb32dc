#include "../workorder/WorkOrderFixture.h"
#include "Lateness.h"
#include "Options.h"
#include "ScreenTest.h"
#include "SqlValue.h"
#include "TestInstallation.h"
#include "WorkOrderGeneration.h"
#include "WorkOrderGrid.h"
#include "WorkOrderRecording.h"
#include "WorkOrderScreen.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QFocusEvent>
#include <QGroupBox>
#include <QPlainTextEdit>

// What is listed, generated and stored is tested with the work order logic; this checks
// that the screen's controls reach it and show its answers.
class TestWorkOrderScreen : public QObject
{
    Q_OBJECT

    /** The fleet of WorkOrderFixture, March remembered, the screen open on tab 0. */
    static std::unique_ptr<WorkOrderScreen> onFleet(Session& s)
    {
        if (!addFleet(s)) {
            return nullptr;
        }
        March.save(s);
        auto screen = std::make_unique<WorkOrderScreen>(s);
        screen->show();
        screen->openTab(WorkOrderScreen::Tab::Print);
        return screen;
    }

    static void clickRow(WorkOrderGrid* grid, int row, bool twice = false)
    {
        const QPoint at = grid->visualRect(grid->model()->index(row, 3)).center();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
        if (twice) {
            QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
        }
    }

    static void leave(QWidget* box)
    {
        QFocusEvent out(QEvent::FocusOut);
        QApplication::sendEvent(box, &out);
    }

    static int orders(Session& s) { return sql(s, u"SELECT COUNT(*) FROM tblWorkorder"_s).toInt(); }

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void filterIsRememberedAndItsDatesKeepTheirOrder()
    {
        TANDRILL_INSTALLATION(t);
        WorkOrderFilter{QDate(2025, 3, 1), QDate(2025, 3, 31), u"1-2"_s, u"3"_s, true}.save(
            t.session());
        WorkOrderScreen screen(t.session());
        screen.show();
        auto* from = child<QDateEdit>(screen, "datDateFrom");
        auto* to = child<QDateEdit>(screen, "datDateTo");
        QCOMPARE(to->date(), QDate(2025, 3, 31));
        QCOMPARE(text(screen, "txtCrewRange") + u'|' + text(screen, "txtAssignCrew"), u"1-2|3"_s);
        QVERIFY(child<QCheckBox>(screen, "chkGroupWo")->isChecked());

        from->setDate(QDate(2025, 4, 5));
        QCOMPARE(to->date(), QDate(2025, 4, 5));
        QVERIFY(t.prompter().texts().isEmpty());
        to->setDate(QDate(2025, 4, 1));
        QCOMPARE(t.prompter().texts(),
                 QStringList{u"End date can't be less than Work Order Date"_s});
        QCOMPARE(to->date(), QDate(2025, 4, 5));

        perform(screen, t.prompter(), u"txtCrewRange=,5-|txtAssignCrew=7"_s, "");
        child<QCheckBox>(screen, "chkGroupWo")->setChecked(false);
        // Both tabs' grids keep the user's column widths.
        child<QTableWidget>(screen, "grdPrintWO")->setColumnWidth(2, 141);
        child<QTableWidget>(screen, "grdRecordService")->setColumnWidth(3, 142);
        screen.close();
        const WorkOrderFilter kept = WorkOrderFilter::load(t.session());
        QCOMPARE(kept.from, QDate(2025, 4, 5));
        QCOMPARE(kept.to, QDate(2025, 4, 5));
        QCOMPARE(kept.crewRange + u'|' + kept.assignCrew, u"5-|7"_s);
        QVERIFY(!kept.group);
        WorkOrderScreen again(t.session());
        QCOMPARE(child<QTableWidget>(again, "grdPrintWO")->columnWidth(2), 141);
        QCOMPARE(child<QTableWidget>(again, "grdRecordService")->columnWidth(3), 142);
    }

    void tabsShowTheirOwnControls()
    {
        TANDRILL_INSTALLATION(t);
        WorkOrderScreen screen(t.session());
        screen.openTab(WorkOrderScreen::Tab::Complete);
        QVERIFY(!child<QDateEdit>(screen, "datDateTo")->isVisibleTo(&screen));
        QVERIFY(!child<QPushButton>(screen, "cmdPrint")->isVisibleTo(&screen));
        screen.openTab(WorkOrderScreen::Tab::Print);
        for (const char* name : {"datDateFrom", "lblDateTo", "txtAssignCrew", "chkGroupWo",
                                 "cmdRefreshWo", "cmdPrint"}) {
            QVERIFY2(child<QWidget>(screen, name)->isVisibleTo(&screen), name);
        }
        QVERIFY(!child<QPushButton>(screen, "cmdPrint")->isEnabled());
    }

    void aDueRowShowsWhatWouldBeGenerated()
    {
        TANDRILL_INSTALLATION(t, QDate(2025, 3, 20));
        Options::setOption(t.session(), u"SERVICE_LATE_RED"_s, u"12"_s);
        auto screen = onFleet(t.session());
        QVERIFY(screen);
        auto* list = child<WorkOrderGrid>(*screen, "grdPrintWO");
        QCOMPARE(list->rowCount(), 2);
        QCOMPARE(list->value(0, u"UnitNo"_s).toString(), u"U7"_s);
        QCOMPARE(list->item(0, 3)->background().color(), QColor(0xFFFF00));
        QVERIFY(!child<QGroupBox>(*screen, "fraGen")->isHidden());
        QVERIFY(child<QGroupBox>(*screen, "fraPrint")->isHidden());
        QVERIFY(!child<QPushButton>(*screen, "cmdDelete")->isEnabled());

        auto* services = child<WorkOrderGrid>(*screen, "grdGenService");
        QCOMPARE(services->rowCount(), 4);
        QCOMPARE(services->value(0, u"ServiceName"_s).toString(), u"A"_s);
        QCOMPARE(services->item(0, 2)->background().color(), QColor(Lateness::RedBackground));
        QCOMPARE(services->item(1, 2)->background(), QBrush());
        QCOMPARE(child<WorkOrderGrid>(*screen, "grdGenPart")->rowCount(), 2);
        auto* note = child<QPlainTextEdit>(*screen, "txtGenServiceNote");
        QCOMPARE(note->toPlainText(), u"it's"_s);
        note->setPlainText(u"oil first"_s);
        leave(note);
        QCOMPARE(sql(t.session(), u"SELECT Note FROM tblServiceUsed WHERE ServiceUsedID = 101"_s)
                     .toString(),
                 u"oil first"_s);
    }

    void generateTakesTheTickedDueRows()
    {
        TANDRILL_INSTALLATION(t);
        auto screen = onFleet(t.session());
        QVERIFY(screen);
        click(*screen, "cmdGenrateWo");
        QCOMPARE(t.prompter().texts(), QStringList{u"Please select at least one record"_s});
        QCOMPARE(orders(t.session()), 0);

        auto* list = child<WorkOrderGrid>(*screen, "grdPrintWO");
        clickRow(list, 0, true);
        QVERIFY(list->isPicked(0));
        t.prompter().clear();
        click(*screen, "cmdGenrateWo");
        QCOMPARE(t.prompter().texts(), QStringList{u"Workorder Generated"_s});
        QCOMPARE(orders(t.session()), 2);
        QCOMPARE(list->rowCount(), 4); // U7 stays due for its service without SeparateWo

        clickRow(list, 1);
        QVERIFY(!list->value(1, u"WorkOrderNo"_s).isNull());
        QVERIFY(!child<QGroupBox>(*screen, "fraPrint")->isHidden());
        QCOMPARE(child<WorkOrderGrid>(*screen, "grdPrintService")->rowCount(), 2);
        perform(*screen, t.prompter(), u"No|cmdDelete"_s, "");
        QCOMPARE(orders(t.session()), 2);
        perform(*screen, t.prompter(), u"Yes|cmdDelete"_s, "");
        QCOMPARE(orders(t.session()), 1);
        QCOMPARE(list->rowCount(), 3);
    }

    void unscheduledMakesAnOrderForAMachineNotListed()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(sql(t.session(), u"INSERT INTO tblEquipment (EquipmentID, UnitNo, Inactive) "
                                 "VALUES (9, 'U9', '0')"_s)
                    .isValid());
        auto screen = onFleet(t.session());
        QVERIFY(screen);
        int offered = 0;
        onModal("frmQuickFind", [&](QWidget* find) {
            auto* grid = child<RecordGrid>(*find, "grdDisplay");
            offered = grid->rowCount();
            const QPoint cell = grid->visualRect(grid->model()->index(0, 1)).center();
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell);
            QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell);
        });
        click(*screen, "cmdUnschedule");
        QCOMPARE(offered, 1);
        QCOMPARE(t.prompter().texts(), QStringList{u"Workorder Generated"_s});
        auto* list = child<WorkOrderGrid>(*screen, "grdPrintWO");
        QCOMPARE(list->value(2, u"UnitNo"_s).toString(), u"U9"_s);
        QVERIFY(!list->value(2, u"WorkOrderNo"_s).isNull());
    }

    void changingADueRowAsksToGenerateFirst_data()
    {
        QTest::addColumn<QString>("button");
        for (const char* name :
             {"cmdGenAddService", "cmdGenRemoveService", "cmdGenAddPart", "cmdGenRemovePart"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }

    void changingADueRowAsksToGenerateFirst()
    {
        QFETCH(QString, button);
        TANDRILL_INSTALLATION(t);
        auto screen = onFleet(t.session());
        QVERIFY(screen);
        perform(*screen, t.prompter(), u"No|"_s + button, "");
        QCOMPARE(orders(t.session()), 0);
        perform(*screen, t.prompter(), u"Yes|"_s + button, "");
        QCOMPARE(t.prompter().texts(),
                 QStringList({u"You must genearte a Work Order before you can make changes. Do "
                              "you wish to generate the Work Order?"_s,
                              u"You must genearte a Work Order before you can make changes. Do "
                              "you wish to generate the Work Order?"_s,
                              u"Workorder Generated"_s}));
        QCOMPARE(orders(t.session()), 2);
    }

    void selectionButtonsTickRows()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(sql(t.session(), u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID, Printed) "
                                 "VALUES (1, 7, -1), (2, 8, 0)"_s)
                    .isValid());
        auto screen = onFleet(t.session());
        QVERIFY(screen);
        auto* list = child<WorkOrderGrid>(*screen, "grdPrintWO");
        auto picks = [list] {
            QString ticks;
            for (int r = 0; r < list->rowCount(); ++r) {
                ticks += list->isPicked(r) ? u'x' : u'.';
            }
            return ticks + u' ' + list->value(1, u"Printed"_s).toString();
        };
        QCOMPARE(picks(), u".... -1"_s);
        click(*screen, "cmdPrintSelect");
        QCOMPARE(picks() + child<QPushButton>(*screen, "cmdPrintSelect")->text(),
                 u"xxxx -1Unselect All"_s);
        click(*screen, "cmdPrintSelect");
        QCOMPARE(picks() + child<QPushButton>(*screen, "cmdPrintSelect")->text(),
                 u".... -1Select All"_s);
        click(*screen, "cmdPrintUnSelect");
        QCOMPARE(picks(), u"x.xx -1"_s);
    }

    void anOrderTakesPricesAndNotes()
    {
        TANDRILL_INSTALLATION(t);
        auto screen = onFleet(t.session());
        QVERIFY(screen);
        QList<qint64> made;
        QVERIFY(WorkOrderGeneration(t.session()).generate({7}, March, &made));
        click(*screen, "cmdRefreshWo");
        clickRow(child<WorkOrderGrid>(*screen, "grdPrintWO"), 1);
        auto* parts = child<WorkOrderGrid>(*screen, "grdPrintPart");
        QCOMPARE(parts->rowCount(), 1);
        parts->item(0, 3)->setText(u"7.25"_s);
        QCOMPARE(sql(t.session(), u"SELECT Price FROM tblWoPartUsed"_s).toDouble(), 7.25);
        QCOMPARE(parts->item(0, 3)->text(), u"7.25"_s);

        QVERIFY(sql(t.session(), u"UPDATE tblWoServiceUsed SET Skip = -1"_s).isValid());
        auto* note = child<QPlainTextEdit>(*screen, "txtPrintNote");
        QCOMPARE(note->toPlainText(), u"it's"_s);
        note->setPlainText(u"  "_s);
        leave(note);
        QCOMPARE(t.prompter().texts(), QStringList{RecordingMessages::NoteBlank});
        QCOMPARE(note->toPlainText(), u"  "_s);
        QCOMPARE(sql(t.session(), u"SELECT Note FROM tblWoServiceUsed WHERE ServiceUsedID = 101"_s)
                     .toString(),
                 u"it's"_s);
    }
};

QTEST_MAIN(TestWorkOrderScreen)
#include "tst_workorderscreen.moc"
