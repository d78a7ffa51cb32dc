#include "Options.h"
#include "Sql.h"
#include "SystemSettings.h"
#include "TestInstallation.h"

#include <QSet>
#include <QSqlQuery>
#include <QTest>

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
        QTest::addRow("nothing at all") << QString() << true;
        QTest::addRow("full number in the mask")
            << QStringLiteral("(555) 123-4567        ") << true;
        QTest::addRow("number with extension") << QStringLiteral("(555) 123-456789012345") << true;
        QTest::addRow("number without trailing blanks") << QStringLiteral("(555) 123-4567") << true;
        QTest::addRow("area code only") << QStringLiteral("(555)    -            ") << false;
        QTest::addRow("exchange missing a digit")
            << QStringLiteral("(555) 12 -4567        ") << false;
        QTest::addRow("line number cut at two digits")
            << QStringLiteral("(555) 123-45          ") << false;
        QTest::addRow("last checked place is 13") << QStringLiteral("(555) 123-456") << true;
        QTest::addRow("letter in the area code")
            << QStringLiteral("(5a5) 123-4567        ") << false;
        QTest::addRow("plain digits without the mask") << QStringLiteral("5551234567") << false;
        QTest::addRow("too short") << QStringLiteral("(555) 12") << false;
    }

    void phoneCheck()
    {
        QFETCH(QString, text);
        QFETCH(bool, valid);
        QCOMPARE(SystemSettings::isValidPhone(text), valid);
    }

    void optionsAreWrittenInTheirFixedOrder()
    {
        SystemSettings s;
        s.userFields[2] = QStringLiteral("   ");
        QStringList keys;
        QString thirdCaption;
        for (const auto& [key, value] : s.optionRows()) {
            keys.append(key);
            if (key == QLatin1String("UserDefinedField3")) {
                thirdCaption = value;
            }
        }
        QStringList expected{
            QStringLiteral("GEN_COMPANY_NAME"),     QStringLiteral("GEN_COMPANY_ADDRESS1"),
            QStringLiteral("GEN_COMPANY_ADDRESS2"), QStringLiteral("GEN_COMPANY_PHONE"),
            QStringLiteral("GEN_COMPANY_EMAIL"),    QStringLiteral("GEN_COMPANY_WEBSITE"),
            QStringLiteral("SERVICE_LATE_YELLOW"),  QStringLiteral("SERVICE_LATE_RED"),
            QStringLiteral("COUNT_READING_DELAY"),  QStringLiteral("SECURITYONOFF")};
        for (int i = 1; i <= 10; ++i) {
            expected.append(QStringLiteral("UserDefinedField%1").arg(i));
        }
        QCOMPARE(keys, expected);
        QCOMPARE(thirdCaption, QStringLiteral("User Field3"));
    }

    void savedValuesReadBackWhole()
    {
        TANDRILL_INSTALLATION(t);
        SystemSettings s = SystemSettings::load(t.session());
        s.companyName = QStringLiteral("O'Brien's Grounds");
        s.companyAddress1 = QStringLiteral("1 Elm St.");
        s.companyAddress2 = QStringLiteral("Springfield");
        s.companyPhone = QStringLiteral("(555) 123-4567        ");
        s.companyEmail = QStringLiteral("office@obrien.com");
        s.companyWebSite = QStringLiteral("www.obrien.com");
        s.serviceLateYellow = QStringLiteral("5");
        s.serviceLateRed = QStringLiteral("20");
        s.countReadingDelay = QStringLiteral("14");
        s.userFields[0] = QStringLiteral("Fleet No.");
        s.userFields[9] = QString();
        s.save(t.session());

        const SystemSettings back = SystemSettings::load(t.session());
        QCOMPARE(back.companyName, s.companyName);
        QCOMPARE(back.companyPhone, s.companyPhone);
        QCOMPARE(back.serviceLateRed, QStringLiteral("20"));
        QCOMPARE(back.countReadingDelay, QStringLiteral("14"));
        QCOMPARE(back.userFields[0], QStringLiteral("Fleet No."));
        QCOMPARE(Options::option(t.session(), QStringLiteral("UserDefinedField10")),
                 QStringLiteral("User Field10"));
        QVERIFY(t.failures().isEmpty());
        QVERIFY(t.prompter().shown().isEmpty());
        // Shared options: one row each, not one per workstation.
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q,
                          QStringLiteral("SELECT COUNT(*) FROM tblSysOption WHERE "
                                         "LOWER(SysOption) = LOWER(?)"),
                          {QStringLiteral("GEN_COMPANY_NAME")}));
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toInt(), 1);
    }

    void loginSwitchMessageOnlyWhenChanged_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("check");
        QTest::addColumn<bool>("told");
        QTest::addColumn<QString>("written");
        QTest::addRow("off stays off")
            << QStringLiteral("0") << false << false << QStringLiteral("0");
        QTest::addRow("off to on") << QStringLiteral("0") << true << true << QStringLiteral("1");
        QTest::addRow("on to off") << QStringLiteral("1") << false << true << QStringLiteral("0");
        QTest::addRow("on stays on") << QStringLiteral("1") << true << false << QStringLiteral("1");
        QTest::addRow("empty counts as off") << QString() << false << false << QStringLiteral("0");
    }

    void loginSwitchMessageOnlyWhenChanged()
    {
        QFETCH(QString, stored);
        QFETCH(bool, check);
        QFETCH(bool, told);
        QFETCH(QString, written);
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), QStringLiteral("SECURITYONOFF"), stored);
        SystemSettings s = SystemSettings::load(t.session());
        s.security = check;
        QCOMPARE(s.save(t.session()), told);
        QCOMPARE(t.prompter().texts().contains(SystemSettings::SecurityChangedMessage), told);
        QCOMPARE(t.prompter().shown().size(), told ? 1 : 0);
        QCOMPARE(Options::option(t.session(), QStringLiteral("SECURITYONOFF")), written);
        // The running session keeps its login state.
        QVERIFY(t.session().userName().isEmpty());
    }

    void defaultGeometryIsWrittenPerWorkstation()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Options::setOption(s, QStringLiteral("frmCrewTOP"), QStringLiteral("99"), true);
        Options::setOption(s, QStringLiteral("frmFilterScreenLEFT"), QStringLiteral("777"), true);
        SystemSettings::writeDefaultGeometry(s);

        QCOMPARE(Options::option(s, QStringLiteral("frmCrewHEIGHT"), true), QStringLiteral("3810"));
        QCOMPARE(Options::option(s, QStringLiteral("frmCrewWIDTH"), true), QStringLiteral("7425"));
        QCOMPARE(Options::option(s, QStringLiteral("frmCrewLEFT"), true), QStringLiteral("3960"));
        QCOMPARE(Options::option(s, QStringLiteral("frmCrewTOP"), true), QStringLiteral("3855"));
        QCOMPARE(Options::option(s, QStringLiteral("frmSendEmailHEIGHT"), true),
                 QStringLiteral("8805"));
        QCOMPARE(Options::option(s, QStringLiteral("frmSetupWIDTH"), true), QStringLiteral("7965"));
        // A screen without a default place keeps the one it has.
        QCOMPARE(Options::option(s, QStringLiteral("frmFilterScreenLEFT"), true),
                 QStringLiteral("777"));
        QVERIFY(Options::option(s, QStringLiteral("frmMainScreenTOP"), true).isEmpty());
        // Nothing lands in the shared options.
        QVERIFY(Options::option(s, QStringLiteral("frmCrewTOP")).isEmpty());

        const QString guid = Options::registryValue(s, QStringLiteral("GUID"));
        QSqlQuery q(s.db());
        QVERIFY(Sql::exec(q,
                          QStringLiteral("SELECT COUNT(*) FROM tblSysOption WHERE "
                                         "SUBSTR(SysOption, 1, 32) = ?"),
                          {guid}));
        QVERIFY(q.next());
        // 25 screens with height and width, 20 of them with a place too, and the
        // filter screen's own left from before.
        QCOMPARE(q.value(0).toInt(), 25 * 2 + 20 * 2 + 1);

        // Another workstation sees none of them.
        Options::setRegistryValue(s, QStringLiteral("GUID"), Options::newGuid());
        QVERIFY(Options::option(s, QStringLiteral("frmCrewTOP"), true).isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void everyLookupHasAScreenAndIndicatorListsTheirNumber()
    {
        const QList<SystemSettings::Lookup>& lookups = SystemSettings::lookups();
        QCOMPARE(lookups.size(), 21);
        QSet<QString> names;
        for (const SystemSettings::Lookup& l : lookups) {
            names.insert(l.name);
            QCOMPARE(l.screen == QLatin1String("frmIndicator"), l.listNumber > 0);
            QVERIFY(l.listNumber != 2);
            QVERIFY(l.listNumber <= 17);
        }
        QCOMPARE(names.size(), lookups.size());
        auto numberOf = [&lookups](const QString& name) {
            for (const SystemSettings::Lookup& l : lookups) {
                if (l.name == name) {
                    return l.listNumber;
                }
            }
            return -1;
        };
        QCOMPARE(numberOf(QStringLiteral("State")), 11);
        QCOMPARE(numberOf(QStringLiteral("Engine Make")), 17);
        QCOMPARE(numberOf(QStringLiteral("Tire Type")), 12);
        QCOMPARE(numberOf(QStringLiteral("Cost Center")), 0);
    }
};

QTEST_GUILESS_MAIN(TestSystemSettings)
#include "tst_systemsettings.moc"
