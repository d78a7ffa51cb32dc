#include "AssignCrewScreen.h"
#include "DataHelpers.h"
#include "EquipmentImageScreen.h"
#include "EquipmentScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QSqlQuery>
#include <QTableWidget>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

int count(TestInstallation& t, const char* table, const QString& where = QString())
{
    return DataHelpers::recordCount(t.session(), QString::fromLatin1(table), {where, {}});
}

void addMachine(TestInstallation& t)
{
    QSqlQuery q(t.session().db());
    QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, CrewID) "
                         "VALUES (1, 'Mower', 'U1', 0)"_s));
    QVERIFY(Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (7, 'North')"_s));
}

} // namespace

// The picture and crew rules are tested with their logic; this checks only the screens' wiring.
class TestEquipmentSmallScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void addsAPictureOrKeepsTheInput_data()
    {
        QTest::addColumn<bool>("nameTaken");
        QTest::newRow("new name is stored") << false;
        QTest::newRow("taken name keeps the dialog") << true;
    }
    void addsAPictureOrKeepsTheInput()
    {
        QFETCH(bool, nameTaken);
        TANDRILL_INSTALLATION(t);
        addMachine(t);
        if (nameTaken) {
            QSqlQuery q(t.session().db());
            QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipmentImage (EquipmentID, ImageName) "
                                 "VALUES (1, 'lawn')"_s));
        }
        QTemporaryDir dir;
        const QString file = dir.filePath(u"lawn.png"_s);
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::green);
        QVERIFY(picture.save(file));
        EquipmentScreen screen(t.session());
        screen.show();
        bool stayed = false;
        onModal("frmEquipmentImage", [&](QWidget* dialog) {
            EquipmentImageScreen::setNextBrowseFile(file);
            click(*dialog, "cmdBrowse");
            QCOMPARE(text(*dialog, "txtFileName"), u"lawn"_s);
            QVERIFY(!child<QLabel>(*dialog, "imgImage")->pixmap().isNull());
            click(*dialog, "cmdOK");
            stayed = dialog->isVisible();
            if (stayed) {
                QCOMPARE(QDir::fromNativeSeparators(text(*dialog, "txtPath")), file);
                click(*dialog, "cmdExit");
            }
        });
        child<QPushButton>(screen, "cmdAddImage")->click();
        QCOMPARE(stayed, nameTaken);
        QCOMPARE(t.prompter().texts().size(), nameTaken ? 1 : 0);
        QCOMPARE(count(t, "tblEquipmentImage", u"ImageName = 'lawn'"_s), 1);
        QCOMPARE(child<QTableWidget>(screen, "grdImages")->rowCount(), 1);
    }

    void assignsACrewOnlyWhenChanged_data()
    {
        QTest::addColumn<bool>("change");
        QTest::newRow("another crew") << true;
        QTest::newRow("unchanged") << false;
    }
    void assignsACrewOnlyWhenChanged()
    {
        QFETCH(bool, change);
        TANDRILL_INSTALLATION(t);
        addMachine(t);
        onModal("frmAssignCrew", [&](QWidget* dialog) {
            QCOMPARE(text(*dialog, "txtUnitNo"), u"U1"_s);
            QCOMPARE(text(*dialog, "txtEquipmentName"), u"Mower"_s);
            if (change) {
                QTest::keyClick(child<QComboBox>(*dialog, "cboCrew"), Qt::Key_Down);
            }
            click(*dialog, "cmdOK");
        });
        QCOMPARE(AssignCrewScreen::showAssignCrew(t.session(), 1, nullptr), change);
        QCOMPARE(count(t, "tblEquipmentCrewHistory", u"CrewNumber = '7'"_s), change ? 1 : 0);
        QCOMPARE(count(t, "tblEquipment", u"CrewID <> 0"_s), change ? 1 : 0);
    }
};

QTEST_MAIN(TestEquipmentSmallScreens)
#include "tst_equipmentsmallscreens.moc"
