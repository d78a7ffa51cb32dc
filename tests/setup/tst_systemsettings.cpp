#include "Options.h"
#include "SystemSettings.h"
#include "TestInstallation.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestSystemSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void phoneCheck_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        QTest::addRow("empty mask") << SystemSettings::emptyPhone() << true;
        QTest::addRow("full number in the mask") << u"(555) 123-4567        "_s << true;
        QTest::addRow("line number cut at two digits") << u"(555) 123-45          "_s << false;
        QTest::addRow("no trailing blanks, last checked place is 13") << u"(555) 123-456"_s << true;
    }
    void phoneCheck()
    {
        QFETCH(QString, text);
        QFETCH(bool, valid);
        QCOMPARE(SystemSettings::isValidPhone(text), valid);
    }

    void loginSwitchMessageOnlyWhenChanged_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("check");
        QTest::addColumn<bool>("told");
        QTest::addColumn<QString>("written");
        QTest::addRow("off stays off") << u"0"_s << false << false << u"0"_s;
        QTest::addRow("off to on") << u"0"_s << true << true << u"1"_s;
        QTest::addRow("on to off") << u"1"_s << false << true << u"0"_s;
    }
    // Every value saved reads back whole; a blank user field gets its caption back.
    void loginSwitchMessageOnlyWhenChanged()
    {
        QFETCH(QString, stored);
        QFETCH(bool, check);
        QFETCH(bool, told);
        QFETCH(QString, written);
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), u"SECURITYONOFF"_s, stored);
        SystemSettings s = SystemSettings::load(t.session());
        s.security = check;
        s.companyName = u"O'Brien's Grounds"_s;
        s.userFields[9] = QString();
        QCOMPARE(s.save(t.session()), told);
        QCOMPARE(SystemSettings::load(t.session()).optionRows(), s.optionRows());
        QCOMPARE(Options::option(t.session(), u"UserDefinedField10"_s), u"User Field10"_s);
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(t.prompter().texts(),
                 told ? QStringList{SystemSettings::SecurityChangedMessage} : QStringList());
        QCOMPARE(Options::option(t.session(), u"SECURITYONOFF"_s), written);
    }

    void defaultGeometryIsWrittenPerWorkstation()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const auto own = [&s](const QString& name) { return Options::option(s, name, true); };
        Options::setOption(s, u"frmCrewTOP"_s, u"99"_s, true);
        Options::setOption(s, u"frmFilterScreenLEFT"_s, u"777"_s, true);
        SystemSettings::writeDefaultGeometry(s);
        QCOMPARE(own(u"frmCrewHEIGHT"_s) + u' ' + own(u"frmCrewTOP"_s), u"3810 3855"_s);
        // A screen without a default place keeps the one it has.
        QCOMPARE(own(u"frmFilterScreenLEFT"_s), u"777"_s);
        QVERIFY(Options::option(s, u"frmCrewTOP"_s).isEmpty()); // nothing in the shared options
    }
};

QTEST_GUILESS_MAIN(TestSystemSettings)
#include "tst_systemsettings.moc"
