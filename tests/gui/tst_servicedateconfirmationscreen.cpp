#include "NextDateCalculator.h"
#include "ScreenTest.h"
#include "ServiceDateConfirmationScreen.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QDateEdit>
#include <QLabel>
#include <QRadioButton>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The date rule is tested with posting; this checks the dialog's wiring to it.
class TestServiceDateConfirmationScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void answersTheDateChosen_data()
    {
        QTest::addColumn<int>("typed"); ///< days after completion
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("answer"); ///< days after completion; -1: counted by the service
        QTest::newRow("closed") << 5 << u"close"_s << 0;
        QTest::newRow("date typed") << 5 << u"cmdOk"_s << 5;
        QTest::newRow("date before completion put back") << -3 << u"cmdOk"_s << 0;
        QTest::newRow("based on the completion") << 5 << u"optServiceBased"_s << -1;
    }
    void answersTheDateChosen()
    {
        QFETCH(int, typed);
        QFETCH(QString, steps);
        QFETCH(int, answer);
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, "
                             "Period, EInterval) VALUES (3, 1, 'Oil', 'D', 10)"_s));
        const QDate completed(2025, 2, 20);
        ServiceDateConfirmationScreen screen(t.session(), 3, completed);
        screen.show();
        QCOMPARE(child<QLabel>(screen, "lblServiceNameData")->text(), u"Oil"_s);
        auto* date = child<QDateEdit>(screen, "datNextScheduled");
        date->setDate(completed.addDays(typed));
        QCOMPARE(t.prompter().texts().count(PostingMessages::NextBeforeComplete), typed < 0);
        if (steps == u"optServiceBased"_s) {
            child<QRadioButton>(screen, "optServiceBased")->click();
            QVERIFY(!date->isEnabled());
            steps = u"cmdOk"_s;
        }
        perform(screen, t.prompter(), steps, nullptr);
        QCOMPARE(screen.chosenDate(),
                 answer < 0 ? NextDateCalculator(t.session()).nextScheduledDate(3, true, completed)
                            : completed.addDays(answer));
    }
};

QTEST_MAIN(TestServiceDateConfirmationScreen)
#include "tst_servicedateconfirmationscreen.moc"
