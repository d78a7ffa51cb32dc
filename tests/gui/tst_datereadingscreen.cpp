#include "DateReadingScreen.h"
#include "Options.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QDateEdit>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

// The date rules are tested with their logic; this checks the screen's wiring and state.
class TestDateReadingScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void editsThenUpdatesOrCancels()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, UnitNo, LicenseRenewalDate) "
                             "VALUES (1, 'U1', '2024-06-01'), (2, 'U2', '2024-12-01')"_s));
        DateReadingScreen screen(t.session(), DateReadings::Kind::License);
        screen.show();
        auto* grid = child<QTableWidget>(screen, "grdLicensedate");
        // Old and new dates, then which buttons are on; the button adds from the old date.
        const auto state = [&] {
            QString on;
            for (int row = 0; row < grid->rowCount(); ++row)
                on += grid->item(row, 2)->text() + u' ' + grid->item(row, 3)->text() + u'|';
            for (const char* name : {"cmdUpdate", "cmdCancel", "cmdExit", "cmdPrint", "cmdRefresh"})
                on += child<QPushButton>(screen, name)->isEnabled() ? u'1' : u'0';
            return on;
        };
        QCOMPARE(state(), u"2024-06-01 |2024-12-01 |00101"_s);
        QTest::mouseClick(grid->cellWidget(0, 4), Qt::LeftButton);
        QTest::mouseClick(grid->cellWidget(0, 4), Qt::LeftButton);
        QCOMPARE(state(), u"2024-06-01 2025-06-01|2024-12-01 |11000"_s);
        screen.close();
        QVERIFY(screen.isVisible());
        // A date not later than the old one is refused and the cell keeps its value.
        grid->item(1, 3)->setData(Qt::EditRole, QDate(2024, 12, 1));
        QCOMPARE(t.prompter().texts().size(), 1);
        QCOMPARE(state(), u"2024-06-01 2025-06-01|2024-12-01 |11000"_s);
        click(screen, "cmdCancel");
        QCOMPARE(state(), u"2024-06-01 |2024-12-01 |00101"_s);
        QTest::mouseClick(grid->cellWidget(0, 4), Qt::LeftButton);
        click(screen, "cmdUpdate"); // the machine moved out of the range shown
        QCOMPARE(state(), u"2024-12-01 |00101"_s);
        child<QDateEdit>(screen, "datINPDateTo")->setDate(QDate(2025, 12, 31));
        click(screen, "cmdExit");
        QCOMPARE(Options::option(t.session(), u"LicenseDateTo"_s, true), u"12/31/25"_s);
    }
};

QTEST_MAIN(TestDateReadingScreen)
#include "tst_datereadingscreen.moc"
