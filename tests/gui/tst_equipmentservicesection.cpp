#include "DataHelpers.h"
#include "EquipmentScreen.h"
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

bool run(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql, values);
}

/** Machine 7 with services 1 (weekly, due 10 March), 2 (hours) and 3 (counts), and master 3. */
bool addMachine(Session& s)
{
    return run(s, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, Inactive) "
                  "VALUES (7, 'Mower', 'U7', '0')"_s) &&
           run(s, u"INSERT INTO tblServices (ServiceID, Name, Period, EInterval) VALUES "
                  "(3, 'Belt', 'M', 1)"_s) &&
           run(s,
               u"INSERT INTO tblServiceUsed (EquipmentID, ServiceID, Name, Period, "
               "NextScheduledDate) VALUES (7, 1, 'Blades', 'W', ?), (7, 2, 'Oil', 'H', NULL), "
               "(7, 2, 'Grease', 'C', NULL)"_s,
               {SqlValue::date({2025, 3, 10})});
}

void editDate(QTableWidget* grid, int row, const QDate& date)
{
    grid->editItem(grid->item(row, 4));
    auto* editor = grid->findChild<QDateEdit*>();
    editor->setDate(date);
    emit grid->itemDelegate()->commitData(editor);
    emit grid->itemDelegate()->closeEditor(editor);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

// The grid rules are tested with EquipmentServices; this checks the sections' wiring.
class TestEquipmentServiceSection : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void addsPickedServicesAndSavesTheRecord()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(addMachine(t.session()));
        QList<qint64> excluded;
        EquipmentScreen::setServiceHooks(
            {[&](Session&, qint64, const QList<qint64>& leftOut, QWidget*) {
                 excluded = leftOut;
                 return EquipmentScreen::ServicePick{{3}, u"SL"_s};
             },
             {},
             {},
             {}});
        EquipmentScreen screen(t.session());
        screen.show();
        screen.showSection(1);
        click(screen, "cmdAddNewService");
        QCOMPARE(excluded, (QList<qint64>{1, 2, 2}));
        auto* grid = child<QTableWidget>(screen, "grdService");
        QCOMPARE(grid->rowCount(), 4);
        QCOMPARE(grid->item(3, 3)->text(), u"Belt"_s);
        QCOMPARE(grid->item(3, 4)->text(), u"03/01/2025"_s);
        QCOMPARE(screen.mode(), RecordScreen::Mode::Browse);
        QVERIFY(!child<QPushButton>(screen, "cmdSelectService")->isEnabled());
    }

    void editedCellIsStoredOrPutBack()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(addMachine(t.session()));
        EquipmentScreen screen(t.session());
        screen.show();
        screen.showSection(1);
        auto* grid = child<QTableWidget>(screen, "grdService");
        const auto editable = [grid](int row, int column) {
            return bool(grid->item(row, column)->flags() & Qt::ItemIsEditable);
        };
        QVERIFY(editable(0, 4) && !editable(0, 5));
        QVERIFY(!editable(1, 4) && editable(1, 5));
        QVERIFY(editable(2, 4) && editable(2, 5));

        editDate(grid, 0, {2025, 3, 5});
        QCOMPARE(grid->item(0, 4)->text(), u"03/10/2025"_s);
        QCOMPARE(t.prompter().texts().size(), 1);
        editDate(grid, 2, {2025, 4, 2});
        QCOMPARE(grid->item(2, 4)->text(), u"04/02/2025"_s);
        QCOMPARE(screen.mode(), RecordScreen::Mode::Modify);
    }

    void opensAndRemovesAService()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(addMachine(t.session()));
        qint64 opened = 0;
        EquipmentScreen::setServiceHooks(
            {{}, [&](Session&, qint64 id, QWidget*) { opened = id; }, {}, {}});
        EquipmentScreen screen(t.session());
        screen.show();
        screen.showSection(1);
        auto* grid = child<QTableWidget>(screen, "grdService");
        grid->setCurrentCell(1, 3);
        click(screen, "cmdSelectService");
        QCOMPARE(opened, 2);
        t.prompter().queueAnswer(Prompter::Answer::Yes);
        click(screen, "cmdRemoveService");
        QCOMPARE(t.prompter().texts(),
                 QStringList{u"Are you sure you want to delete this service?"_s});
        QCOMPARE(grid->rowCount(), 2);
        QCOMPARE(grid->item(1, 3)->text(), u"Grease"_s);
    }

    void addsAndDeletesCounts()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(addMachine(t.session()));
        MeterReadings readings(t.session());
        EquipmentScreen::setServiceHooks({{},
                                          {},
                                          [&](Session& s, qint64 id, QWidget*) {
                                              readings.addCount(id, s.today(), u"Hours"_s, 40);
                                          },
                                          {}});
        EquipmentScreen screen(t.session());
        screen.show();
        screen.showSection(9);
        auto* grid = child<QTableWidget>(screen, "grdCounts");
        click(screen, "cmdAddCount");
        QCOMPARE(grid->rowCount(), 1);
        QCOMPARE(grid->item(0, 0)->text() + grid->item(0, 2)->text(), u"Hours40"_s);
        grid->setCurrentCell(0, 0);
        t.prompter().queueAnswer(Prompter::Answer::Yes);
        click(screen, "cmdDeleteCount");
        QCOMPARE(grid->rowCount(), 0);
        QVERIFY(!readings.latest(7, u"Hours"_s).exists);
    }
};

QTEST_MAIN(TestEquipmentServiceSection)
#include "tst_equipmentservicesection.moc"
