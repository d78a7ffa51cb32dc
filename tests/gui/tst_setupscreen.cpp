#include "Options.h"
#include "ScreenTest.h"
#include "SetupScreen.h"
#include "SystemSettings.h"
#include "TestInstallation.h"

#include <QCheckBox>
#include <QTabWidget>

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

bool pending(QWidget& screen)
{
    const bool applyShown = !child<QPushButton>(screen, "cmdApply")->isHidden();
    const bool cancelOn = child<QPushButton>(screen, "cmdCancel")->isEnabled();
    const bool exitOn = child<QPushButton>(screen, "cmdExit")->isEnabled();
    if (applyShown != cancelOn || cancelOn == exitOn) {
        qFatal("Buttons out of step: apply %d cancel %d exit %d", applyShown, cancelOn, exitOn);
    }
    return applyShown;
}

} // namespace

class TestSetupScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void opensWithStoredValuesAndNothingPending()
    {
        TANDRILL_INSTALLATION(t);
        setOption(t, "GEN_COMPANY_NAME", QStringLiteral("O'Brien Grounds"));
        setOption(t, "GEN_COMPANY_PHONE", QStringLiteral("(555) 123-4567        "));
        setOption(t, "SECURITYONOFF", QStringLiteral("1"));
        setOption(t, "UserDefinedField2", QStringLiteral("Fleet"));
        SetupScreen screen(t.session());
        QCOMPARE(screen.objectName(), QStringLiteral("frmSetup"));
        QCOMPARE(text(screen, "txtCompanyName"), QStringLiteral("O'Brien Grounds"));
        QCOMPARE(child(screen, "txtCompanyPhone")->displayText(),
                 QStringLiteral("(555) 123-4567        "));
        QVERIFY(child<QCheckBox>(screen, "chkSecurity")->isChecked());
        QCOMPARE(text(screen, "txtField2"), QStringLiteral("Fleet"));
        QVERIFY(!pending(screen));
    }

    void pendingChangeLocksTheWayOut()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        QTest::keyClicks(child(screen, "txtCompanyWebSite"), QStringLiteral("www.x.com"));
        QVERIFY(pending(screen));

        // Neither the close box nor Escape nor the disabled Return leaves now.
        screen.close();
        QVERIFY(screen.isVisible());
        QTest::keyClick(&screen, Qt::Key_Escape);
        QVERIFY(screen.isVisible());
        click(screen, "cmdExit");
        QVERIFY(screen.isVisible());

        click(screen, "cmdApply");
        QVERIFY(screen.isVisible());
        QVERIFY(!pending(screen));
        QCOMPARE(option(t, "GEN_COMPANY_WEBSITE"), QStringLiteral("www.x.com"));

        click(screen, "cmdExit");
        QVERIFY(!screen.isVisible());
        QCOMPARE(screen.result(), int(QDialog::Rejected));
    }

    void cancelReadsEveryValueAgain()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        retype(child(screen, "txtCompanyName"), QStringLiteral("Changed"));
        retype(child(screen, "txtField3"), QStringLiteral("Tag"));
        QTest::mouseClick(child<QCheckBox>(screen, "chkSecurity"), Qt::LeftButton);
        QVERIFY(pending(screen));

        click(screen, "cmdCancel");
        QVERIFY(!pending(screen));
        QVERIFY(screen.isVisible());
        QCOMPARE(text(screen, "txtCompanyName"), QString());
        QCOMPARE(text(screen, "txtField3"), QStringLiteral("User Field3"));
        QVERIFY(!child<QCheckBox>(screen, "chkSecurity")->isChecked());
        QVERIFY(t.prompter().shown().isEmpty());
    }

    void okSavesOnlyWhatChangedAndCloses()
    {
        TANDRILL_INSTALLATION(t);
        {
            SetupScreen screen(t.session());
            QVERIFY(showActive(screen));
            // Another workstation saves meanwhile; an unchanged screen must not overwrite it.
            setOption(t, "GEN_COMPANY_NAME", QStringLiteral("Other"));
            click(screen, "cmdOk");
            QVERIFY(!screen.isVisible());
            QCOMPARE(option(t, "GEN_COMPANY_NAME"), QStringLiteral("Other"));
            QVERIFY(t.prompter().shown().isEmpty());
        }
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        retype(child(screen, "txtCompanyName"), QStringLiteral("Parks & Sons"));
        QTest::mouseClick(child<QCheckBox>(screen, "chkSecurity"), Qt::LeftButton);
        click(screen, "cmdOk");
        QVERIFY(!screen.isVisible());
        QCOMPARE(screen.result(), int(QDialog::Accepted));
        QCOMPARE(option(t, "GEN_COMPANY_NAME"), QStringLiteral("Parks & Sons"));
        QCOMPARE(option(t, "SECURITYONOFF"), QStringLiteral("1"));
        QCOMPARE(t.prompter().texts(), QStringList{SystemSettings::SecurityChangedMessage});
    }

    void invalidPhoneKeepsTheFocusAndLosesNothing()
    {
        TANDRILL_INSTALLATION(t);
        setOption(t, "GEN_COMPANY_PHONE", QStringLiteral("(555) 999-0000        "));
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        QLineEdit* name = child(screen, "txtCompanyName");
        QLineEdit* phone = child(screen, "txtCompanyPhone");
        QTest::keyClicks(name, QStringLiteral("Acme"));
        phone->setFocus();
        QTRY_VERIFY(phone->hasFocus());
        QTest::keyClick(phone, Qt::Key_Home);
        QTest::keyClick(phone, Qt::Key_End, Qt::ShiftModifier);
        QTest::keyClick(phone, Qt::Key_Delete);
        QTest::keyClicks(phone, QStringLiteral("55512"));
        const QString typed = phone->displayText();
        QCOMPARE(typed, QStringLiteral("(555) 12 -            "));

        QTest::keyClick(phone, Qt::Key_Tab);
        QCOMPARE(t.prompter().texts(), QStringList{QStringLiteral("Invalid phone No.")});
        QTRY_VERIFY(phone->hasFocus());
        QCOMPARE(phone->displayText(), typed);
        // Leaving it for another tab comes back too.
        auto* tabs = child<QTabWidget>(screen, "tabSystemOption");
        tabs->setCurrentIndex(3);
        QCOMPARE(t.prompter().shown().size(), 2);
        QTRY_COMPARE(tabs->currentIndex(), 0);
        QTRY_VERIFY(phone->hasFocus());

        // Ok refuses too, and the stored number stays as it was.
        click(screen, "cmdOk");
        QVERIFY(screen.isVisible());
        QCOMPARE(t.prompter().texts(), QStringList(3, QStringLiteral("Invalid phone No.")));
        QCOMPARE(option(t, "GEN_COMPANY_PHONE"), QStringLiteral("(555) 999-0000        "));
        QCOMPARE(name->text(), QStringLiteral("Acme"));
        QCOMPARE(phone->displayText(), typed);

        QTest::keyClicks(phone, QStringLiteral("34567"));
        click(screen, "cmdOk");
        QVERIFY(!screen.isVisible());
        QCOMPARE(t.prompter().shown().size(), 3);
        QCOMPARE(option(t, "GEN_COMPANY_PHONE"), QStringLiteral("(555) 123-4567        "));
        QCOMPARE(option(t, "GEN_COMPANY_NAME"), QStringLiteral("Acme"));
    }

    void thresholdsTakeDigitsOnly()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        for (const char* field :
             {"txtServiceLateYellow", "txtServiceLateRed", "txtCountReadingDelay"}) {
            // Sign, letters and point are refused; a leading zero is a digit like any other.
            retype(child(screen, field), QStringLiteral("-0a4.5b"));
            QCOMPARE(text(screen, field), QStringLiteral("045"));
        }
    }

    void blankCaptionGoesBackToItsDefault()
    {
        TANDRILL_INSTALLATION(t);
        setOption(t, "UserDefinedField4", QStringLiteral("Tag"));
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        child<QTabWidget>(screen, "tabSystemOption")->setCurrentIndex(1);
        QLineEdit* field = child(screen, "txtField4");
        retype(field, QStringLiteral("   "));
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(field->text(), QStringLiteral("User Field4"));
        QVERIFY(screen.isVisible());

        // Blanked and saved straight away: the default is what is kept.
        retype(child(screen, "txtField5"), QString());
        click(screen, "cmdApply");
        QCOMPARE(option(t, "UserDefinedField4"), QStringLiteral("User Field4"));
        QCOMPARE(option(t, "UserDefinedField5"), QStringLiteral("User Field5"));
    }

    void setToDefaultWritesEveryScreenAndStaysPut()
    {
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), QStringLiteral("frmCrewLEFT"), QStringLiteral("1"), true);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        const QRect before = screen.geometry();
        click(screen, "cmdDefaultFormSize");
        QCOMPARE(screen.geometry(), before);
        QVERIFY(screen.isVisible());
        QVERIFY(!pending(screen));
        // Which screens get what is the settings' own test; here the button writes them.
        QCOMPARE(Options::option(t.session(), QStringLiteral("frmCrewLEFT"), true),
                 QStringLiteral("3960"));
        QVERIFY(t.failures().isEmpty());
    }

    void lookupButtonsOpenOnlyWhatTheyWereGiven()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        child<QTabWidget>(screen, "tabSystemOption")->setCurrentIndex(2);
        QVERIFY(!child<QPushButton>(screen, "cmdCostCenter")->isEnabled());
        QStringList opened;
        QWidget* parentSeen = nullptr;
        screen.setLookupOpener(QStringLiteral("Cost Center"), [&](QWidget* parent) {
            opened.append(QStringLiteral("frmCostCenter"));
            parentSeen = parent;
        });
        screen.setIndicatorOpener([&](QWidget*, int listNumber) {
            opened.append(QStringLiteral("frmIndicator %1").arg(listNumber));
        });
        QVERIFY(!child<QPushButton>(screen, "cmdSite")->isEnabled());
        for (const char* button : {"cmdSite", "cmdCostCenter", "cmdState", "cmdEngineMake"}) {
            click(screen, button);
        }
        QCOMPARE(opened,
                 QStringList({QStringLiteral("frmCostCenter"), QStringLiteral("frmIndicator 11"),
                              QStringLiteral("frmIndicator 17")}));
        QCOMPARE(parentSeen, &screen);
        screen.setIndicatorOpener({});
        QVERIFY(!child<QPushButton>(screen, "cmdState")->isEnabled());
        QVERIFY(!pending(screen));
    }
};

QTEST_MAIN(TestSetupScreen)
#include "tst_setupscreen.moc"
