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

// The grid rules are tested with EquipmentServices; this checks the sections' wiring.
class TestEquipmentServiceSection : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void sectionsCallTheLogicAndShowItsAnswer()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo) "
                             "VALUES (7, 'Mower', 'U7')"_s) &&
                Sql::exec(q, u"INSERT INTO tblServices (ServiceID, Name, Period) VALUES (3, "
                             "'Belt', 'W')"_s) &&
                Sql::exec(q,
                          u"INSERT INTO tblServiceUsed (EquipmentID, ServiceID, Name, Period, "
                          "NextScheduledDate) VALUES (7, 1, 'Blades', 'W', ?), "
                          "(7, 2, 'Oil', 'H', NULL), (7, 2, 'Grease', 'C', NULL)"_s,
                          {SqlValue::date({2025, 3, 10})}));
        QList<qint64> excluded;
        EquipmentScreen::setServiceHooks(
            {[&](Session&, qint64, const QList<qint64>& leftOut, QWidget*) {
                 excluded = leftOut;
                 return ServicePick{{3}, u"SL"_s};
             },
             {},
             [](Session& s, qint64 id, QWidget*) {
                 MeterReadings(s).addCount(id, s.today(), u"Hours"_s, 40);
             },
             {}});
        EquipmentScreen screen(t.session());
        screen.show();
        screen.showSection(1);
        auto* grid = child<QTableWidget>(screen, "grdService");
        click(screen, "cmdAddNewService");
        QCOMPARE(excluded, (QList<qint64>{1, 2, 2}));
        QCOMPARE(grid->item(3, 3)->text() + grid->item(3, 4)->text(), u"Belt03/01/2025"_s);
        QCOMPARE(screen.mode(), RecordScreen::Mode::Browse);
        QVERIFY(grid->item(2, 4)->flags() & grid->item(2, 5)->flags() & Qt::ItemIsEditable);
        grid->editItem(grid->item(0, 4));
        auto* editor = grid->findChild<QDateEdit*>();
        editor->setDate({2025, 3, 12});
        emit grid->itemDelegate()->commitData(editor);
        emit grid->itemDelegate()->closeEditor(editor);
        QCOMPARE(grid->item(0, 4)->text(), u"03/12/2025"_s);
        grid->setCurrentCell(1, 3);
        t.prompter().setDefaultAnswer(Prompter::Answer::Yes);
        click(screen, "cmdRemoveService");
        QCOMPARE(t.prompter().texts(),
                 QStringList{u"Are you sure you want to delete this service?"_s});
        QCOMPARE(grid->rowCount(), 3);
        QCOMPARE(grid->item(1, 3)->text(), u"Grease"_s);
        screen.showSection(9);
        auto* counts = child<QTableWidget>(screen, "grdCounts");
        click(screen, "cmdAddCount");
        QCOMPARE(counts->item(0, 0)->text() + counts->item(0, 2)->text(), u"Hours40"_s);
        counts->setCurrentCell(0, 0);
        click(screen, "cmdDeleteCount");
        QCOMPARE(counts->rowCount(), 0);
    }
};

QTEST_MAIN(TestEquipmentServiceSection)
#include "tst_equipmentservicesection.moc"
