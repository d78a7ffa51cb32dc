#include "AssignCrewScreen.h"
#include "DataHelpers.h"
#include "EquipmentImageScreen.h"
#include "EquipmentManager.h"
#include "EquipmentScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

// The picture and crew rules are tested with their logic; this checks only the screens' wiring.
class TestEquipmentSmallScreens : public QObject
{
    Q_OBJECT

    static void seed(TestInstallation& t)
    {
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "CrewID) VALUES (1, 'Mower', 'U1', 0)"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (7, 'N')"_s));
    }

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    // The second time the name is taken: the dialog stays with its input until cancelled.
    void addsAPictureThenKeepsTheInputOfARefusedOne()
    {
        TANDRILL_INSTALLATION(t);
        seed(t);
        const QString file = t.home() + u"/lawn.png"_s;
        QVERIFY(QImage(8, 8, QImage::Format_RGB32).save(file));
        EquipmentScreen screen(t.session());
        screen.show();
        for (const bool nameTaken : {false, true}) {
            onModal("frmEquipmentImage", [&](QWidget* dialog) {
                EquipmentImageScreen::setNextBrowseFile(file);
                perform(*dialog, t.prompter(), u"cmdBrowse|cmdOK"_s, nullptr);
                QCOMPARE(dialog->isVisible(), nameTaken);
                QCOMPARE(QDir::fromNativeSeparators(text(*dialog, "txtPath")), file);
                QCOMPARE(text(*dialog, "txtFileName"), u"lawn"_s);
                QVERIFY(!child<QLabel>(*dialog, "imgImage")->pixmap().isNull());
                perform(*dialog, t.prompter(), nameTaken ? u"cmdExit"_s : QString(), nullptr);
            });
            child<QPushButton>(screen, "cmdAddImage")->click();
            QCOMPARE(t.prompter().texts().size(), nameTaken ? 1 : 0);
            QCOMPARE(child<QTableWidget>(screen, "grdImages")->rowCount(), 1);
        }
        // The stored picture is shown when its row is chosen.
        child<QTableWidget>(screen, "grdImages")->setCurrentCell(0, 0);
        QCOMPARE(child<QLabel>(screen, "picImage")->pixmap().size(), QSize(8, 8));
    }

    // Kept first, then changed: only the change is logged and stored.
    void assignsACrewOnlyWhenChanged()
    {
        TANDRILL_INSTALLATION(t);
        seed(t);
        for (const bool change : {false, true}) {
            onModal("frmAssignCrew", [&](QWidget* dialog) {
                QCOMPARE(text(*dialog, "txtUnitNo") + text(*dialog, "txtEquipmentName"),
                         u"U1Mower"_s);
                if (change) {
                    QTest::keyClick(child<QComboBox>(*dialog, "cboCrew"), Qt::Key_Down);
                }
                click(*dialog, "cmdOK");
            });
            QCOMPARE(AssignCrewScreen::showAssignCrew(t.session(), 1, nullptr), change);
            QCOMPARE(DataHelpers::recordCount(t.session(), u"tblEquipmentCrewHistory"_s, {}),
                     change ? 1 : 0);
            QCOMPARE(EquipmentManager(t.session()).find(1)->crewId != 0, change);
        }
    }
};

QTEST_MAIN(TestEquipmentSmallScreens)
#include "tst_equipmentsmallscreens.moc"
