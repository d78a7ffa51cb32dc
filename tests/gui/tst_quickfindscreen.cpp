#include "MessageTexts.h"
#include "PartQuickFindScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The search, filters and field lists are the logic's; this checks that the screens
// hand the user's input to it and show and answer what it finds.
namespace {

void seed(Session& session)
{
    QSqlQuery q(session.db());
    Sql::exec(q,
              u"INSERT INTO tblEquipment (EquipmentID, UnitNo, EquipmentName, Inactive) "
              "VALUES (1, 'b2', 'Mower', '0'), (2, 'A1', 'Truck', '1'), (3, 'a3', 'Edger', '0')"_s);
    Sql::exec(q, u"INSERT INTO tblIndicator (ParentId, ItemName, Show) VALUES (10, 'Belts', -1)"_s);
    Sql::exec(q,
              u"INSERT INTO tblPart (PartID, Description, PartCategoryID, Price, Inactive) "
              "SELECT 'P1', 'Belt', ItemID, 2.5, 0 FROM tblIndicator WHERE ItemName = 'Belts'"_s);
    Sql::exec(q, u"INSERT INTO tblPart (PartID, Inactive) VALUES ('P2', 0)"_s);
}

} // namespace

class TestQuickFindScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void typingMovesTheRowAndSelectAnswersIt()
    {
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        QStringList seen;
        onModal("frmQuickFind", [&](QWidget* screen) {
            const auto shownKey = [grid = child<RecordGrid>(*screen, "grdDisplay")] {
                return grid->record(grid->currentRow()).value(0).toString();
            };
            seen << child<QLabel>(*screen, "lblMainField")->text()
                 << child<QComboBox>(*screen, "cboFieldNames")->currentText() << shownKey();
            QTest::keyClicks(child(*screen, "txtSearchText"), u"B"_s);
            seen << shownKey();
            QTest::keyClicks(child(*screen, "txtSearchText"), u"x"_s); // no row: stays
            seen << shownKey();
            child<QRadioButton>(*screen, "optOption_1")->click();
            child<QComboBox>(*screen, "cboFieldNames")->setCurrentIndex(1); // Name
            QTest::keyClicks(child(*screen, "txtSearchText2"), u"ed"_s);
            seen << text(*screen, "txtSearchText") + u' ' + shownKey()
                 << QString::number(child(*screen, "txtSearchText")->isEnabled());
            click(*screen, "cmdSelect");
        });
        const QString key = QuickFindScreen::showQuickFind(
            t.session(), u"tblEquipment"_s, u"UnitNo"_s, u"Unit No"_s, u"frmEquipment"_s, {});
        QCOMPARE(seen, (QStringList{u"Enter Unit No"_s, u"Unit No"_s, u"3"_s, u"1"_s, u"1"_s,
                                    u"ed 3"_s, u"0"_s}));
        QCOMPARE(key, u"3"_s);
        QVERIFY(t.failures().isEmpty());
    }

    void inactiveChoiceReloadsAddNeedsItsRightAndCategoryNarrows()
    {
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        t.session().rights().set(UserRights::EqAdd, false);
        int opened = 0;
        QList<int> rows;
        onModal("frmQuickFind", [&](QWidget* screen) {
            auto* grid = child<RecordGrid>(*screen, "grdDisplay");
            rows << grid->rowCount();
            child<QCheckBox>(*screen, "chkInactive")->click();
            rows << grid->rowCount();
            click(*screen, "cmdAdd");
            t.session().rights().set(UserRights::EqAdd, true);
            click(*screen, "cmdAdd");
            rows << grid->rowCount() << opened;
            click(*screen, "cmdExit");
        });
        const QString key = QuickFindScreen::showQuickFind(
            t.session(), u"tblEquipment"_s, u"UnitNo"_s, u"Unit No"_s, u"frmEquipment"_s, {},
            nullptr, [&](QWidget*) {
                ++opened;
                QSqlQuery q(t.session().db());
                Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, UnitNo, Inactive) "
                             "VALUES (4, 'c4', '0')"_s);
            });
        QCOMPARE(rows, (QList<int>{2, 3, 4, 1}));
        QCOMPARE(t.prompter().texts(), QStringList{MessageTexts::NoActionRights});
        QCOMPARE(key, QString());

        // The part twin: its category narrows the rows, and a double click chooses.
        rows.clear();
        onModal("frmPartQuickFind", [&](QWidget* screen) {
            auto* grid = child<RecordGrid>(*screen, "grdDisplay");
            rows << int(child<QPushButton>(*screen, "cmdAdd")->isEnabled()) << grid->rowCount();
            child<QComboBox>(*screen, "cboCategory")->setCurrentIndex(1);
            rows << grid->rowCount();
            const QPoint cell = grid->visualRect(grid->model()->index(0, 1)).center();
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell);
            QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell);
        });
        QCOMPARE(PartQuickFindScreen::showPartQuickFind(t.session()), u"P1"_s);
        QCOMPARE(rows, (QList<int>{0, 2, 1}));
    }
};

QTEST_MAIN(TestQuickFindScreen)
#include "tst_quickfindscreen.moc"
