#include "ScreenTest.h"
#include "ServiceTimeScreen.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The time rules are tested with ServiceTime; this checks that the boxes apply them on
// leaving and that Save stores what they show.
class TestServiceTimeScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void leavingABoxShowsTheRule_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown"); ///< start|end|hours
        QTest::addColumn<int>("messages");
        QTest::newRow("end padded") << u"timeEnd"_s << u"5:3P"_s << u"08:00A|05:03P|09:03A"_s << 0;
        QTest::newRow("start after end copied")
            << u"timeStart"_s << u"6P"_s << u"06:00P|06:00P|02:00A"_s << 0;
        QTest::newRow("blank start reset")
            << u"timeStart"_s << u":15"_s << u"08:00A|04:00P|08:00A"_s << 1;
    }
    void leavingABoxShowsTheRule()
    {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(int, messages);
        TANDRILL_INSTALLATION(t);
        ServiceTimeScreen screen(t.session(), 1, {u"08:00"_s, u"16:00"_s, u"08:00"_s}, QString());
        auto* edit = child(screen, qPrintable(box));
        edit->setText(typed);
        QFocusEvent left(QEvent::FocusOut);
        QApplication::sendEvent(edit, &left);
        QCOMPARE(text(screen, "timeStart") + u'|' + text(screen, "timeEnd") + u'|' +
                     text(screen, "datWorkhrs"),
                 shown);
        QCOMPARE(t.prompter().texts().count(ServiceTime::InvalidTime), messages);
    }

    void saveStoresTheTypedTimes()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo) "
                             "VALUES (4, 1)"_s));
        ServiceTimeScreen screen(t.session(), 4, {u"00:00"_s, u"00:00"_s, u"00:00"_s}, QString());
        screen.show();
        child(screen, "timeEnd")->selectAll();
        QTest::keyClicks(child(screen, "timeEnd"), u"1:30P"_s);
        click(screen, "cmdUpdate");
        QCOMPARE(screen.result(), int(QDialog::Accepted));
        QVERIFY(Sql::exec(q, u"SELECT StartTime || EndTime || Workhrs FROM tblWoServiceUsed"_s));
        QCOMPARE(q.next() ? q.value(0).toString() : QString(), u"00:0013:3013:30"_s);
    }
};

QTEST_MAIN(TestServiceTimeScreen)
#include "tst_servicetimescreen.moc"
