#include "ScreenTest.h"
#include "ServicesScreen.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpinBox>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The save rules are the logic's; this checks the screen's own control rules and checks.
namespace {

/** Master 100 and its copy 1 on machine 7, fully ticked, with a crew and a cost centre. */
void seed(Session& s)
{
    QSqlQuery q(s.db());
    Sql::exec(q, u"INSERT INTO tblCrew (CrewID, CrewNumber, Description) VALUES (1, 10, 'Mow')"_s);
    Sql::exec(q, u"INSERT INTO tblCostCenter (CostCenterID, Description) VALUES (1, 'Parks')"_s);
    QString ticks = u"Sun, Mon, Tue, Wed, Thu, Fri, Sat, FirstW, SecondW, ThirdW, ForthW, LastW, "
                    "Jan, Feb, Mar, Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece"_s;
    const QString ones = QStringList(24, u"'1'"_s).join(u", "_s);
    for (const QString& table : {u"tblServices (ServiceID, "_s,
                                 u"tblServiceUsed (ServiceUsedID, EquipmentID, ServiceID, "_s}) {
        Sql::exec(q, u"INSERT INTO "_s + table +
                         u"JobNo, Name, CrewID, CostCenterID, Period, EInterval, RenewalOn, "_s +
                         ticks + u") VALUES ("_s +
                         (table.contains(u"Used"_s) ? u"1, 7, 100"_s : u"100"_s) +
                         u", '1', 'Oil', 1, 1, 'D', 1, 'W', "_s + ones + u')');
    }
}

template <class T> T* at(QWidget& w, const char* name)
{
    return child<T>(w, name);
}

} // namespace

class TestServicesScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void scheduleControlsFollowTheChoices_data()
    {
        QTest::addColumn<QString>("choice");
        QTest::addColumn<QString>("enabled"); // chkMon, cboDOM1, RRSpin1, cboRenewalPeriod
        QTest::addRow("calendar") << u"Days"_s << u"1111"_s;
        QTest::addRow("meter") << u"Hours"_s << u"0011"_s;
        QTest::addRow("day of the month") << u"chkUseDayoftheMonth"_s << u"0101"_s;
        QTest::addRow("don't schedule again") << u"OptDSA"_s << u"0001"_s;
        QTest::addRow("inactive copy") << u"chkInactive"_s << u"0000"_s;
    }
    void scheduleControlsFollowTheChoices()
    {
        QFETCH(QString, choice);
        QFETCH(QString, enabled);
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        QString shown;
        onModal<ServicesScreen>("frmServices", [&](ServicesScreen* screen) {
            if (choice.startsWith(u"chk"_s)) {
                at<QCheckBox>(*screen, choice.toLatin1().constData())->click();
            } else if (choice == u"OptDSA"_s) {
                at<QRadioButton>(*screen, "OptDSA")->click();
            } else {
                auto* period = at<QComboBox>(*screen, "cboRenewalPeriod");
                period->setCurrentIndex(period->findText(choice));
            }
            for (const char* name : {"chkMon", "cboDOM1", "RRSpin1", "cboRenewalPeriod"}) {
                shown += at<QWidget>(*screen, name)->isEnabled() ? u'1' : u'0';
            }
            click(*screen, "cmdExit");
        });
        if (choice == u"chkInactive"_s) {
            ServicesScreen::showServiceUsedDetail(t.session(), 1);
        } else {
            ServicesScreen::showServicesDetail(t.session(), RecordScreen::Mode::Browse, 100);
        }
        QCOMPARE(shown, enabled);
    }

    void checksStopAtTheFirstFault_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("message");
        QTest::addRow("name") << u"txtName"_s << u"Name should not be blank"_s;
        QTest::addRow("cost centre") << u"cboCostCenter"_s << u"Select one Cost Center"_s;
        QTest::addRow("crew") << u"cboCrew"_s << u"Select one Crew"_s;
        QTest::addRow("day list") << u"chkUseDayoftheMonth"_s
                                  << u"User Should fill at least one day of the month"_s;
        QTest::addRow("days") << u"cmdMarkAllDays"_s << u"At least select one day of week."_s;
        QTest::addRow("weeks") << u"cmdAllWeeks"_s << u"At least select one week of month."_s;
        QTest::addRow("months") << u"cmdMOY"_s << u"At least select one month of year."_s;
        QTest::addRow("none") << QString() << QString();
    }
    void checksStopAtTheFirstFault()
    {
        QFETCH(QString, fault);
        QFETCH(QString, message);
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        QString mode;
        onModal<ServicesScreen>("frmServices", [&](ServicesScreen* screen) {
            const QByteArray name = fault.toLatin1();
            perform(*screen, t.prompter(), u"txtBudgetedlabor=2"_s, nullptr);
            if (fault == u"txtName"_s) {
                perform(*screen, t.prompter(), u"txtName="_s, nullptr);
            } else if (fault.startsWith(u"cbo"_s)) {
                at<QComboBox>(*screen, name.constData())->setCurrentIndex(0);
            } else if (!fault.isEmpty()) {
                at<QAbstractButton>(*screen, name.constData())->click();
            }
            click(*screen, "cmdUpdate");
            mode = screen->modeText();
            click(*screen, "cmdExit");
        });
        ServicesScreen::showServicesDetail(t.session(), RecordScreen::Mode::Browse, 100);
        QCOMPARE(t.prompter().texts().value(0), message);
        QCOMPARE(mode, fault.isEmpty() ? u"B"_s : u"M"_s);
    }

    void meterProposalBeyondTheFieldIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                          "CountValue) VALUES (7, ?, 'Hours', 999999999)"_s,
                          {SqlValue::date(t.session().today())}));
        QString count;
        onModal<ServicesScreen>("frmServices", [&](ServicesScreen* screen) {
            auto* period = at<QComboBox>(*screen, "cboRenewalPeriod");
            period->setCurrentIndex(period->findText(u"Hours"_s));
            count = at<QLineEdit>(*screen, "txtCount")->text();
            click(*screen, "cmdCancel");
            click(*screen, "cmdExit");
        });
        ServicesScreen::showServiceUsedDetail(t.session(), 1);
        QVERIFY(t.prompter().texts().value(0).startsWith(
            u"Next service count is bigger than field size. please contact "_s));
        QVERIFY(count.toLongLong() <= 999999999);
    }
};

QTEST_MAIN(TestServicesScreen)
#include "tst_servicesscreen.moc"
