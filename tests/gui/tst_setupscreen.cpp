#include "Options.h"
#include "ScreenTest.h"
#include "SetupScreen.h"
#include "SystemSettings.h"
#include "TestInstallation.h"

#include <QCheckBox>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace {

/** Shows the screen as the active window, so that focus moves as it does for a user. */
bool showActive(QWidget& screen)
{
    screen.show();
    QApplication::setActiveWindow(&screen);
    return QTest::qWaitForWindowActive(&screen);
}

/** Replaces a field's text the way a user does: select all, then type. */
void retype(QLineEdit* edit, const QString& text)
{
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

QString option(TestInstallation& t, const char* name)
{
    return Options::option(t.session(), QString::fromLatin1(name));
}

void setOption(TestInstallation& t, const char* name, const QString& value)
{
    Options::setOption(t.session(), QString::fromLatin1(name), value);
}

/** How many signs of a waiting change show: Save in sight, Cancel on, Return off; all or none. */
int pending(QWidget& screen)
{
    return int(!child<QPushButton>(screen, "cmdApply")->isHidden()) +
           int(child<QPushButton>(screen, "cmdCancel")->isEnabled()) +
           int(!child<QPushButton>(screen, "cmdExit")->isEnabled());
}

} // namespace

class TestSetupScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void cancelReadsEveryValueAgain()
    {
        TANDRILL_INSTALLATION(t);
        setOption(t, "GEN_COMPANY_NAME", u"O'Brien Grounds"_s);
        setOption(t, "GEN_COMPANY_PHONE", u"(555) 123-4567        "_s);
        setOption(t, "SECURITYONOFF", u"1"_s);
        setOption(t, "UserDefinedField2", u"Fleet"_s);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        QCOMPARE(pending(screen), 0);
        retype(child(screen, "txtCompanyName"), u"Changed"_s);
        retype(child(screen, "txtField2"), u"Tag"_s);
        QTest::mouseClick(child<QCheckBox>(screen, "chkSecurity"), Qt::LeftButton);
        // Sign, letters and point are refused; a leading zero is a digit like any other.
        retype(child(screen, "txtServiceLateRed"), u"-0a4.5b"_s);
        QCOMPARE(text(screen, "txtServiceLateRed"), u"045"_s);
        QCOMPARE(pending(screen), 3);

        click(screen, "cmdCancel");
        QCOMPARE(pending(screen), 0);
        QCOMPARE(text(screen, "txtCompanyName"), u"O'Brien Grounds"_s);
        QCOMPARE(child(screen, "txtCompanyPhone")->displayText(), u"(555) 123-4567        "_s);
        QCOMPARE(text(screen, "txtField2") + u'|' + text(screen, "txtField3"),
                 u"Fleet|User Field3"_s);
        QVERIFY(child<QCheckBox>(screen, "chkSecurity")->isChecked());
    }

    void pendingChangeLocksTheWayOut()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        QTest::keyClicks(child(screen, "txtCompanyWebSite"), u"www.x.com"_s);
        QCOMPARE(pending(screen), 3);
        // Neither the close box nor Escape nor the disabled Return leaves now.
        screen.close();
        QTest::keyClick(&screen, Qt::Key_Escape);
        click(screen, "cmdExit");
        QVERIFY(screen.isVisible());

        click(screen, "cmdApply");
        QCOMPARE(pending(screen), 0);
        QCOMPARE(option(t, "GEN_COMPANY_WEBSITE"), u"www.x.com"_s);
        click(screen, "cmdExit");
        QVERIFY(!screen.isVisible());
        QCOMPARE(screen.result(), int(QDialog::Rejected));
    }

    void invalidPhoneKeepsTheFocusAndLosesNothing()
    {
        TANDRILL_INSTALLATION(t);
        setOption(t, "GEN_COMPANY_PHONE", u"(555) 999-0000        "_s);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        QLineEdit* phone = child(screen, "txtCompanyPhone");
        QTest::keyClicks(child(screen, "txtCompanyName"), u"Acme"_s);
        retype(phone, u"55512"_s);
        const QString typed = phone->displayText();
        QTest::keyClick(phone, Qt::Key_Tab);
        QTRY_VERIFY(phone->hasFocus());
        // Leaving it for another tab comes back too.
        auto* tabs = child<QTabWidget>(screen, "tabSystemOption");
        tabs->setCurrentIndex(3);
        QTRY_COMPARE(tabs->currentIndex(), 0);
        QTRY_VERIFY(phone->hasFocus());

        // Ok refuses too, and the stored number stays as it was.
        click(screen, "cmdOk");
        QVERIFY(screen.isVisible());
        QCOMPARE(t.prompter().texts(), QStringList(3, SystemSettings::InvalidPhoneMessage));
        QCOMPARE(option(t, "GEN_COMPANY_PHONE"), u"(555) 999-0000        "_s);
        QCOMPARE(text(screen, "txtCompanyName") + u'|' + phone->displayText(), u"Acme|"_s + typed);

        QTest::keyClicks(phone, u"34567"_s);
        click(screen, "cmdOk");
        QVERIFY(!screen.isVisible());
        QCOMPARE(option(t, "GEN_COMPANY_PHONE") + u'|' + option(t, "GEN_COMPANY_NAME"),
                 u"(555) 123-4567        |Acme"_s);
        QCOMPARE(t.prompter().shown().size(), 3);
    }

    void blankCaptionGoesBackToItsDefault()
    {
        TANDRILL_INSTALLATION(t);
        setOption(t, "UserDefinedField4", u"Tag"_s);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        child<QTabWidget>(screen, "tabSystemOption")->setCurrentIndex(1);
        QLineEdit* field = child(screen, "txtField4");
        retype(field, u"   "_s);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(field->text(), u"User Field4"_s);
        QVERIFY(screen.isVisible());

        // Blanked and saved straight away: the default is what is kept.
        retype(child(screen, "txtField5"), QString());
        click(screen, "cmdApply");
        QCOMPARE(option(t, "UserDefinedField4") + u'|' + option(t, "UserDefinedField5"),
                 u"User Field4|User Field5"_s);
    }

    void okSavesOnlyWhatChangedAndCloses()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        const QRect before = screen.geometry();
        click(screen, "cmdDefaultFormSize");
        // Which screens get what is the settings' own test; here the button writes them.
        QCOMPARE(Options::option(t.session(), u"frmCrewLEFT"_s, true), u"3960"_s);
        QCOMPARE(screen.geometry(), before);

        QStringList opened; // the parent a lookup screen is given, or the list an indicator
        screen.setLookupOpener(u"Cost Center"_s,
                               [&](QWidget* parent) { opened.append(parent->objectName()); });
        screen.setIndicatorOpener(
            [&](QWidget*, int list) { opened.append(QString::number(list)); });
        QVERIFY(!child<QPushButton>(screen, "cmdSite")->isEnabled()); // no list, no screen given
        for (const char* button : {"cmdSite", "cmdCostCenter", "cmdState", "cmdEngineMake"}) {
            click(screen, button);
        }
        QCOMPARE(opened, split("frmSetup|11|17"));
        screen.setIndicatorOpener({});
        QVERIFY(!child<QPushButton>(screen, "cmdState")->isEnabled());

        // Another workstation saves meanwhile; an unchanged screen must not overwrite it.
        setOption(t, "GEN_COMPANY_NAME", u"Other"_s);
        click(screen, "cmdOk");
        QVERIFY(!screen.isVisible());
        QCOMPARE(screen.result(), int(QDialog::Accepted));
        QCOMPARE(option(t, "GEN_COMPANY_NAME"), u"Other"_s);
        QVERIFY(t.prompter().shown().isEmpty());
    }
};

QTEST_MAIN(TestSetupScreen)
#include "tst_setupscreen.moc"
