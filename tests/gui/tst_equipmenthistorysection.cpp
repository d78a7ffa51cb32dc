#include "EquipmentScreen.h"
#include "Options.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QAbstractItemDelegate>
#include <QDateEdit>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

namespace {

/** Types text into the cell's editor and leaves it, as a user does. */
void typeInto(QTableWidget* grid, int row, int column, const QString& text)
{
    grid->setCurrentCell(row, column);
    grid->editItem(grid->item(row, column));
    auto* editor = grid->findChild<QLineEdit*>();
    editor->setText(text);
    emit grid->itemDelegate()->commitData(editor);
    emit grid->itemDelegate()->closeEditor(editor);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

// The correction rules are tested with ServiceHistory; this checks the section's wiring.
class TestEquipmentHistorySection : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void sectionCallsTheLogicAndShowsItsAnswer()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo) "
                             "VALUES (7, 'Mower', 'U7')"_s) &&
                Sql::exec(q,
                          u"INSERT INTO tblWOServiceUsedHistory (WorkOrderNo, ServiceUsedID, "
                          "EquipmentID, ServiceName, StartTime, EndTime, CountValue, "
                          "CompleteDate) VALUES (5, 11, 7, 'Oil', '09:00', '17:00', 300, ?)"_s,
                          {SqlValue::date({2025, 2, 1})}) &&
                Sql::exec(q, u"INSERT INTO tblWoPartHistory (ServiceusedID, PartID, "
                             "QuantityUsed, Price) VALUES (11, 'P1', 2, 1.5)"_s));
        EquipmentScreen screen(t.session());
        screen.show();
        screen.showSection(2);
        auto* rows = child<QTableWidget>(screen, "grdServiceHistory");
        auto* parts = child<QTableWidget>(screen, "grdPartHistory");
        QCOMPARE(rows->rowCount(), 1);
        QCOMPARE(rows->item(0, ServiceHistory::WorkHrs)->text() +
                     rows->item(0, ServiceHistory::PartCost)->text(),
                 u"$3.00"_s);

        typeInto(rows, 0, ServiceHistory::EndTime, u"17:30"_s);
        QCOMPARE(rows->item(0, ServiceHistory::WorkHrs)->text(), u"8:30"_s);
        QCOMPARE(screen.mode(), RecordScreen::Mode::Modify);
        typeInto(rows, 0, ServiceHistory::EndTime, u"08:00"_s);
        QCOMPARE(rows->item(0, ServiceHistory::EndTime)->text(), u"17:30"_s);

        typeInto(parts, 0, 2, u"4"_s);
        QCOMPARE(rows->item(0, ServiceHistory::PartCost)->text(), u"$6.00"_s);

        t.prompter().queueAnswer(Prompter::Answer::Yes);
        click(screen, "cmdDeleteHistory");
        QCOMPARE(rows->rowCount(), 0);
        click(screen, "cmdUpdate");
        child<QDateEdit>(screen, "datDateFrom")->setDate({2025, 2, 2});
        click(screen, "cmdRefresh");
        QCOMPARE(Options::option(t.session(), u"EqDateFrom"_s, true), u"02/02/2025"_s);
        click(screen, "cmdAdd");
        child<QPushButton>(screen, "cmdRefresh")->click();
        QCOMPARE(t.prompter().texts().last(),
                 u"You must be save record for refreshing the service history records."_s);
    }
};

QTEST_MAIN(TestEquipmentHistorySection)
#include "tst_equipmenthistorysection.moc"
