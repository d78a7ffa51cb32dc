#include "Options.h"
#include "SetupScreen.h"
#include "SystemSettings.h"
#include "TestInstallation.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

namespace {

template <typename T> T* child(QWidget& screen, const char* name)
{
    T* widget = screen.findChild<T*>(QString::fromLatin1(name));
    if (!widget) {
        qFatal("No widget %s", name);
    }
    return widget;
}

void click(QWidget& screen, const char* button)
{
    QTest::mouseClick(child<QPushButton>(screen, button), Qt::LeftButton);
}

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
        Options::setOption(t.session(), QStringLiteral("GEN_COMPANY_NAME"),
                           QStringLiteral("O'Brien Grounds"));
        Options::setOption(t.session(), QStringLiteral("GEN_COMPANY_PHONE"),
                           QStringLiteral("(555) 123-4567        "));
        Options::setOption(t.session(), QStringLiteral("SECURITYONOFF"), QStringLiteral("1"));
        Options::setOption(t.session(), QStringLiteral("UserDefinedField2"),
                           QStringLiteral("Fleet"));
        SetupScreen screen(t.session());
        QCOMPARE(screen.objectName(), QStringLiteral("frmSetup"));
        QCOMPARE(child<QTabWidget>(screen, "tabSystemOption")->count(), 4);
        QCOMPARE(child<QLineEdit>(screen, "txtCompanyName")->text(),
                 QStringLiteral("O'Brien Grounds"));
        QCOMPARE(child<QLineEdit>(screen, "txtCompanyPhone")->displayText(),
                 QStringLiteral("(555) 123-4567        "));
        QVERIFY(child<QCheckBox>(screen, "chkSecurity")->isChecked());
        QCOMPARE(child<QLineEdit>(screen, "txtField2")->text(), QStringLiteral("Fleet"));
        QCOMPARE(child<QLineEdit>(screen, "txtField10")->text(), QStringLiteral("User Field10"));
        QCOMPARE(child<QLineEdit>(screen, "txtServiceLateRed")->text(), QStringLiteral("30"));
        QVERIFY(!pending(screen));
        QVERIFY(!screen.isModified());
    }

    void emptyPhoneShowsTheBareMask()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QCOMPARE(child<QLineEdit>(screen, "txtCompanyPhone")->displayText(),
                 SystemSettings::emptyPhone());
    }

    void pendingChangeLocksTheWayOut()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        QTest::keyClicks(child<QLineEdit>(screen, "txtCompanyWebSite"),
                         QStringLiteral("www.x.com"));
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
        retype(child<QLineEdit>(screen, "txtCompanyName"), QStringLiteral("Changed"));
        retype(child<QLineEdit>(screen, "txtField3"), QStringLiteral("Tag"));
        retype(child<QLineEdit>(screen, "txtServiceLateYellow"), QStringLiteral("99"));
        QTest::mouseClick(child<QCheckBox>(screen, "chkSecurity"), Qt::LeftButton);
        QVERIFY(pending(screen));

        click(screen, "cmdCancel");
        QVERIFY(!pending(screen));
        QVERIFY(screen.isVisible());
        QCOMPARE(child<QLineEdit>(screen, "txtCompanyName")->text(), QString());
        QCOMPARE(child<QLineEdit>(screen, "txtField3")->text(), QStringLiteral("User Field3"));
        QCOMPARE(child<QLineEdit>(screen, "txtServiceLateYellow")->text(), QStringLiteral("7"));
        QVERIFY(!child<QCheckBox>(screen, "chkSecurity")->isChecked());
        QCOMPARE(option(t, "UserDefinedField3"), QStringLiteral("User Field3"));
        QVERIFY(t.prompter().shown().isEmpty());
    }

    void okSavesWhenChangedAndCloses()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        retype(child<QLineEdit>(screen, "txtCompanyName"), QStringLiteral("Parks & Sons"));
        QTest::mouseClick(child<QCheckBox>(screen, "chkSecurity"), Qt::LeftButton);
        click(screen, "cmdOk");
        QVERIFY(!screen.isVisible());
        QCOMPARE(screen.result(), int(QDialog::Accepted));
        QCOMPARE(option(t, "GEN_COMPANY_NAME"), QStringLiteral("Parks & Sons"));
        QCOMPARE(option(t, "SECURITYONOFF"), QStringLiteral("1"));
        QCOMPARE(t.prompter().texts(), QStringList{SystemSettings::SecurityChangedMessage});
    }

    void okWithoutChangeWritesNothing()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        // Another workstation saves meanwhile; an unchanged screen must not overwrite it.
        Options::setOption(t.session(), QStringLiteral("GEN_COMPANY_NAME"),
                           QStringLiteral("Other"));
        click(screen, "cmdOk");
        QVERIFY(!screen.isVisible());
        QCOMPARE(option(t, "GEN_COMPANY_NAME"), QStringLiteral("Other"));
        QVERIFY(t.prompter().shown().isEmpty());
    }

    void invalidPhoneKeepsTheFocusAndLosesNothing()
    {
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), QStringLiteral("GEN_COMPANY_PHONE"),
                           QStringLiteral("(555) 999-0000        "));
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        auto* name = child<QLineEdit>(screen, "txtCompanyName");
        auto* phone = child<QLineEdit>(screen, "txtCompanyPhone");
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

        // Ok refuses too, and the stored number stays as it was.
        click(screen, "cmdOk");
        QVERIFY(screen.isVisible());
        QCOMPARE(t.prompter().shown().size(), 2);
        QCOMPARE(option(t, "GEN_COMPANY_PHONE"), QStringLiteral("(555) 999-0000        "));
        QCOMPARE(name->text(), QStringLiteral("Acme"));
        QCOMPARE(phone->displayText(), typed);

        QTest::keyClicks(phone, QStringLiteral("34567"));
        click(screen, "cmdOk");
        QVERIFY(!screen.isVisible());
        QCOMPARE(t.prompter().shown().size(), 2);
        QCOMPARE(option(t, "GEN_COMPANY_PHONE"), QStringLiteral("(555) 123-4567        "));
        QCOMPARE(option(t, "GEN_COMPANY_NAME"), QStringLiteral("Acme"));
    }

    void leavingThePhoneForAnotherTabComesBack()
    {
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        auto* phone = child<QLineEdit>(screen, "txtCompanyPhone");
        auto* tabs = child<QTabWidget>(screen, "tabSystemOption");
        phone->setFocus();
        QTRY_VERIFY(phone->hasFocus());
        QTest::keyClick(phone, Qt::Key_Home);
        QTest::keyClicks(phone, QStringLiteral("5"));
        QCOMPARE(phone->displayText(), QStringLiteral("(5  )    -            "));
        tabs->setCurrentIndex(3);
        QCOMPARE(t.prompter().texts(), QStringList{QStringLiteral("Invalid phone No.")});
        QTRY_COMPARE(tabs->currentIndex(), 0);
        QTRY_VERIFY(phone->hasFocus());
    }

    void thresholdsTakeDigitsOnly_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        for (const char* field :
             {"txtServiceLateYellow", "txtServiceLateRed", "txtCountReadingDelay"}) {
            QTest::addRow("%s letters between digits", field)
                << QString::fromLatin1(field) << QStringLiteral("1a2b") << QStringLiteral("12");
            QTest::addRow("%s sign and point", field)
                << QString::fromLatin1(field) << QStringLiteral("-3.5") << QStringLiteral("35");
            QTest::addRow("%s digits", field)
                << QString::fromLatin1(field) << QStringLiteral("045") << QStringLiteral("045");
        }
    }

    void thresholdsTakeDigitsOnly()
    {
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        TANDRILL_INSTALLATION(t);
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        auto* edit = screen.findChild<QLineEdit*>(field);
        QVERIFY(edit);
        retype(edit, typed);
        QCOMPARE(edit->text(), shown);
    }

    void blankCaptionGoesBackToItsDefault()
    {
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), QStringLiteral("UserDefinedField4"), QStringLiteral("Tag"));
        SetupScreen screen(t.session());
        QVERIFY(showActive(screen));
        child<QTabWidget>(screen, "tabSystemOption")->setCurrentIndex(1);
        auto* field = child<QLineEdit>(screen, "txtField4");
        retype(field, QStringLiteral("   "));
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(field->text(), QStringLiteral("User Field4"));
        QVERIFY(screen.isVisible());

        // Blanked and saved straight away: the default is what is kept.
        retype(child<QLineEdit>(screen, "txtField5"), QString());
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
        for (const SystemSettings::Geometry& g : SystemSettings::defaultGeometry()) {
            QCOMPARE(Options::option(t.session(), g.form + QStringLiteral("HEIGHT"), true),
                     QString::number(g.height));
            QCOMPARE(Options::option(t.session(), g.form + QStringLiteral("WIDTH"), true),
                     QString::number(g.width));
        }
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
        for (const SystemSettings::Lookup& lookup : SystemSettings::lookups()) {
            auto* button = screen.findChild<QPushButton*>(QStringLiteral("cmd") +
                                                          QString(lookup.name).remove(u' '));
            QVERIFY2(button, qPrintable(lookup.name));
            QVERIFY2(!button->isEnabled(), qPrintable(lookup.name));
        }

        QStringList opened;
        QWidget* parentSeen = nullptr;
        screen.setLookupOpener(QStringLiteral("Cost Center"), [&](QWidget* parent) {
            opened.append(QStringLiteral("frmCostCenter"));
            parentSeen = parent;
        });
        screen.setIndicatorOpener([&](QWidget*, int listNumber) {
            opened.append(QStringLiteral("frmIndicator %1").arg(listNumber));
        });
        screen.setLookupOpener(QStringLiteral("Tire Type"),
                               [&](QWidget*) { opened.append(QStringLiteral("tires")); });

        QVERIFY(child<QPushButton>(screen, "cmdCostCenter")->isEnabled());
        QVERIFY(!child<QPushButton>(screen, "cmdSite")->isEnabled());
        QVERIFY(child<QPushButton>(screen, "cmdState")->isEnabled());
        click(screen, "cmdSite");
        click(screen, "cmdCostCenter");
        click(screen, "cmdState");
        click(screen, "cmdEngineMake");
        click(screen, "cmdTireType");
        QCOMPARE(opened,
                 QStringList({QStringLiteral("frmCostCenter"), QStringLiteral("frmIndicator 11"),
                              QStringLiteral("frmIndicator 17"), QStringLiteral("tires")}));
        QCOMPARE(parentSeen, &screen);

        screen.setIndicatorOpener({});
        QVERIFY(!child<QPushButton>(screen, "cmdState")->isEnabled());
        QVERIFY(child<QPushButton>(screen, "cmdTireType")->isEnabled());
        QVERIFY(!pending(screen));
    }
};

QTEST_MAIN(TestSetupScreen)
#include "tst_setupscreen.moc"
