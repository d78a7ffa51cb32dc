#include "CountReadingScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The reading checks are tested with their logic; this checks the form's wiring to them.
class TestCountReadingScreen : public QObject
{
    Q_OBJECT

    /** Machine 1 read at 500 hours a week ago, with a kilometre service (id 3). */
    static void seed(TestInstallation& t)
    {
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "Inactive) VALUES (1, 'Mower', 'U1', '0')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, "
                             "Period, EInterval) VALUES (3, 1, 'Tyres', 'H', 100)"_s));
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                          "CountValue) VALUES (1, ?, 'Hours', 500)"_s,
                          {SqlValue::date(t.session().today().addDays(-7))}));
    }

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void handFormShowsTheLastReadingAndSavesOrRefuses_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("saved") << u"500"_s << QString();
        QTest::newRow("refused") << u"499"_s << ReadingMessages::CountBelowLast;
    }
    void handFormShowsTheLastReadingAndSavesOrRefuses()
    {
        QFETCH(QString, typed);
        QFETCH(QString, refusal);
        TANDRILL_INSTALLATION(t);
        seed(t);
        CountReadingScreen screen(t.session(), 1);
        screen.show();
        QCOMPARE(child<QLabel>(screen, "lblLastCountDateData")->text(), u"None"_s);
        QCOMPARE(child<QLabel>(screen, "lblLastCountValueData")->text(), u"0"_s);
        child<QComboBox>(screen, "cboCountType")->setCurrentText(u"Hours"_s);
        QCOMPARE(child<QLabel>(screen, "lblLastCountValueData")->text(), u"500"_s);
        QVERIFY(!child<QLabel>(screen, "lblLastCountDateData")->text().isEmpty());
        // A date after today is told and goes back at once.
        child<QDateEdit>(screen, "datCountdate")->setDate(t.session().today().addDays(2));
        QCOMPARE(t.prompter().texts(), QStringList{ReadingMessages::DateAfterToday});
        t.prompter().clear();
        QTest::keyClicks(child(screen, "txtCountValue"), u"x"_s + typed);
        click(screen, "cmdUpdate");
        QCOMPARE(t.prompter().texts(), refusal.isEmpty() ? QStringList() : QStringList{refusal});
        QCOMPARE(screen.isVisible(), !refusal.isEmpty());
        QCOMPARE(text(screen, "txtCountValue"), typed);
        QCOMPARE(MeterReadings(t.session()).latest(1, u"Hours"_s).date,
                 t.session().today().addDays(refusal.isEmpty() ? 0 : -7));
    }

    void serviceAskerAnswersWhetherACountWasStored_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<bool>("stored");
        QTest::newRow("count given") << u"txtCountValue+450|cmdUpdate"_s << true;
        QTest::newRow("left without") << u"cmdExit"_s << false;
    }
    void serviceAskerAnswersWhetherACountWasStored()
    {
        QFETCH(QString, steps);
        QFETCH(bool, stored);
        TANDRILL_INSTALLATION(t);
        seed(t);
        onModal("frmCountReading", [&](QWidget* form) {
            QCOMPARE(child<QLabel>(*form, "lblCounttypedata")->text(), u"Kilometers"_s);
            QCOMPARE(child<QLabel>(*form, "lblServiceNameData")->text(), u"Tyres"_s);
            QVERIFY(!child<QLabel>(*form, "lblLastCountValueData")->isVisible());
            perform(*form, t.prompter(), steps, nullptr);
        });
        const MeterReadings::ServiceCountAsker ask =
            CountReadingScreen::serviceCountAsker(t.session(), nullptr);
        QCOMPARE(ask(1, 3, u"Tyres"_s, u"Kilometers"_s), stored);
        QCOMPARE(MeterReadings(t.session()).latest(1, u"Kilometers"_s).value, stored ? 450 : 0);
    }
};

QTEST_MAIN(TestCountReadingScreen)
#include "tst_countreadingscreen.moc"
