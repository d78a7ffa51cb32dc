#include "DataHelpers.h"
#include "EquipmentManager.h"
#include "EquipmentScreen.h"
#include "MessageTexts.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QDir>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

namespace {

int count(TestInstallation& t, const char* table, const QString& where = QString())
{
    return DataHelpers::recordCount(t.session(), QString::fromLatin1(table), {where, {}});
}

void leave(EquipmentScreen& screen, const char* field, const char* next)
{
    child(screen, field)->setFocus();
    child(screen, next)->setFocus();
}

} // namespace

// The equipment rules are tested with the manager; this checks only the screen's wiring.
class TestEquipmentScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void asksToSaveANewRecordBeforeAnotherSection_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("section");
        QTest::addColumn<int>("saved");
        QTest::addColumn<QString>("told");
        QTest::newRow("No stays") << u"txtUnitNo+U9|txtName+Mower|No"_s << 0 << 0 << QString();
        QTest::newRow("Yes saves") << u"txtUnitNo+U9|txtName+Mower|Yes"_s << 7 << 1 << QString();
        QTest::newRow("failed save stays")
            << u"txtName+Mower|Yes"_s << 0 << 0 << MessageTexts::notBlank(u"Equipment Unit No"_s);
    }
    void asksToSaveANewRecordBeforeAnotherSection()
    {
        QFETCH(QString, steps);
        QFETCH(int, section);
        QFETCH(int, saved);
        QFETCH(QString, told);
        TANDRILL_INSTALLATION(t);
        EquipmentScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), u"cmdAdd|"_s + steps, "grdEquipment");
        const QString id = text(screen, "txtEquipmentID");
        click(screen, "cmdToolBox_7");
        QCOMPARE(screen.section(), section);
        QCOMPARE(count(t, "tblEquipment", u"UnitNo = 'U9' AND EquipmentID = "_s + id), saved);
        QCOMPARE(t.prompter().texts(),
                 QStringList({u"Record must be saved. Do you want to save it."_s, told})
                     .filter(QRegularExpression(u"."_s)));
    }

    void refusesATakenUnitNumberWarnsOfASerialOnceAndLogsTheCrew()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "EquipmentSerialNo) VALUES (1, 'Mower', 'U1', 'S1')"_s));
        QVERIFY(
            Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (7, 'North')"_s));
        EquipmentScreen screen(t.session());
        screen.show();
        QApplication::setActiveWindow(&screen);
        perform(screen, t.prompter(), u"cmdAdd|txtName+Truck|txtSerialNo+S1"_s, "grdEquipment");
        leave(screen, "txtSerialNo", "txtName");
        leave(screen, "txtSerialNo", "txtName");
        QTest::keyClick(child<QComboBox>(screen, "cboCrew"), Qt::Key_Down);
        perform(screen, t.prompter(), u"txtUnitNo+u1|cmdUpdate|txtUnitNo=U2|cmdUpdate"_s,
                "grdEquipment");
        QCOMPARE(t.prompter().texts().size(), 2);
        QVERIFY(t.prompter().texts().first().startsWith(u"This serial number is already in use"_s));
        QCOMPARE(t.prompter().texts().last(), EquipmentManager::UnitNoTaken);
        QCOMPARE(count(t, "tblEquipment", u"UnitNo = 'U2' AND EquipmentSerialNo = 'S1'"_s), 1);
        QCOMPARE(count(t, "tblEquipmentCrewHistory",
                       u"CrewNumber = '7' AND CrewDescription = 'North'"_s),
                 1);
    }

    void revertBringsARemovedPartBack()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo) "
                             "VALUES (1, 'Mower', 'U1')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblPart (PartID, Description) VALUES ('P1', 'Belt')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipmentPart (EquipmentID, PartID, "
                             "QuantityRequired, Price) VALUES (1, 'P1', 2, 3.5)"_s));
        EquipmentScreen screen(t.session());
        screen.show();
        auto* parts = child<QTableWidget>(screen, "grdPart");
        QCOMPARE(parts->item(0, 3)->text(), u"$7.00"_s);
        parts->setCurrentCell(0, 0);
        perform(screen, t.prompter(), u"Yes|cmdRemovePart"_s, "grdEquipment");
        QCOMPARE(parts->rowCount(), 0);
        QCOMPARE(count(t, "tblEquipmentPart"), 0);
        perform(screen, t.prompter(), u"cmdCancel"_s, "grdEquipment");
        QCOMPARE(parts->rowCount(), 1);
        QCOMPARE(count(t, "tblEquipmentPart"), 1);
    }

    // The model list's button offers the makes of the machine's type, its make chosen.
    void modelButtonOpensTheModelsUnderTheMake()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblIndicator (ItemID, ParentID, ItemName, Show) VALUES "
                             "(900, 4, 'Mower', -1), (901, 900, 'Acme', -1), "
                             "(902, 901, 'M1', -1)"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "EquipmentType, EquipmentMake, EquipmentModel) "
                             "VALUES (1, 'Mower', 'U1', 900, 901, 902)"_s));
        EquipmentScreen screen(t.session());
        screen.show();
        QString shown;
        onModal("frmIndicator", [&](QWidget* lookup) {
            shown = child<QComboBox>(*lookup, "cboParentType")->currentText();
            click(*lookup, "cmdExit");
        });
        click(screen, "cmdModel");
        QCOMPARE(shown, u"Acme"_s);
    }

    void deletesOnlyWithoutAWorkOrder_data()
    {
        QTest::addColumn<bool>("workOrder");
        QTest::newRow("open work order") << true;
        QTest::newRow("history only") << false;
    }
    void deletesOnlyWithoutAWorkOrder()
    {
        QFETCH(bool, workOrder);
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo) "
                             "VALUES (1, 'Mower', 'U1')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipmentCrewHistory (EquipmentID, CrewNumber) "
                             "VALUES (1, '7')"_s));
        if (workOrder) {
            QVERIFY(Sql::exec(q, u"INSERT INTO tblWorkorder (EquipmentID) VALUES (1)"_s));
        }
        const QString folder = t.installation().path(u"doc/1"_s);
        QVERIFY(QDir().mkpath(folder) && writeFile(folder + u"/a.txt"_s, "a"));
        EquipmentScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), u"Yes|cmdDelete"_s, "grdEquipment");
        QCOMPARE(t.prompter().texts().first(),
                 u"This will delete the entire piece of equipment and all its history. Are you "
                 "sure you want to do this?"_s);
        const int left = workOrder ? 1 : 0;
        QCOMPARE(count(t, "tblEquipment") + count(t, "tblEquipmentCrewHistory"), 2 * left);
        QCOMPARE(QDir(folder).exists(), workOrder);
    }
};

QTEST_MAIN(TestEquipmentScreen)
#include "tst_equipmentscreen.moc"
