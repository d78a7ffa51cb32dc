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
        QTest::addColumn<QString>("steps");
        QTest::addColumn<int>("daysAfterCompletion"); ///< -1: the date counted by the service
        QTest::newRow("closed") << u"close"_s << 0;
        QTest::newRow("date typed") << u"date:5|cmdOk"_s << 5;
        QTest::newRow("date before completion put back") << u"date:-3|cmdOk"_s << 0;
        QTest::newRow("based on the completion") << u"optServiceBased|cmdOk"_s << -1;
    }
    void answersTheDateChosen()
    {
        QFETCH(QString, steps);
        QFETCH(int, daysAfterCompletion);
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "Inactive) VALUES (1, 'Mower', 'U-1', '0')"_s));
        QVERIFY(Sql::exec(q, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, Name, "
                             "Period, EInterval) VALUES (3, 1, 'Oil', 'D', 10)"_s));
        const QDate completed(2025, 2, 20);
        ServiceDateConfirmationScreen screen(t.session(), 3, completed);
        screen.show();
        QCOMPARE(child<QLabel>(screen, "lblUnitNoData")->text() +
                     child<QLabel>(screen, "lblServiceNameData")->text(),
                 u"U-1Oil"_s);
        auto* date = child<QDateEdit>(screen, "datNextScheduled");
        for (const QString& step : steps.split(u'|')) {
            if (step.startsWith(u"date:"_s)) {
                date->setDate(completed.addDays(step.mid(5).toInt()));
            } else if (step == u"optServiceBased"_s) {
                child<QRadioButton>(screen, "optServiceBased")->click();
                QVERIFY(!date->isEnabled());
            } else {
                perform(screen, t.prompter(), step, nullptr);
            }
        }
        QCOMPARE(t.prompter().texts().count(PostingMessages::NextBeforeComplete),
                 steps.contains(u"-3"_s) ? 1 : 0);
        QCOMPARE(screen.chosenDate(),
                 daysAfterCompletion < 0
                     ? NextDateCalculator(t.session()).nextScheduledDate(3, true, completed)
                     : completed.addDays(daysAfterCompletion));
    }
};

QTEST_MAIN(TestServiceDateConfirmationScreen)
#include "tst_servicedateconfirmationscreen.moc"
