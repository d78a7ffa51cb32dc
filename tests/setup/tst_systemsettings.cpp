#include "Options.h"
#include "Sql.h"
#include "SystemSettings.h"
#include "TestInstallation.h"

#include <QHash>
#include <QSqlQuery>
#include <QTest>

namespace {

/** How many option rows the query with one bound value counts. */
int countOptions(Session& session, const char* where, const QString& value)
{
    QSqlQuery q(session.db());
    if (!Sql::exec(
            q, QStringLiteral("SELECT COUNT(*) FROM tblSysOption WHERE ") + QLatin1String(where),
            {value}) ||
        !q.next()) {
        return -1;
    }
    return q.value(0).toInt();
}

} // namespace

class TestSystemSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void phoneCheck_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        const auto row = [](const char* name, const QString& text, bool valid) {
            QTest::newRow(name) << text << valid;
        };
        row("empty mask", SystemSettings::emptyPhone(), true);
        row("full number in the mask", QStringLiteral("(555) 123-4567        "), true);
        row("area code only", QStringLiteral("(555)    -            "), false);
        row("line number cut at two digits", QStringLiteral("(555) 123-45          "), false);
        row("no trailing blanks, last checked place is 13", QStringLiteral("(555) 123-456"), true);
        row("letter in the area code", QStringLiteral("(5a5) 123-4567        "), false);
        row("too short", QStringLiteral("(555) 12"), false);
    }

    void phoneCheck()
    {
        QFETCH(QString, text);
        QFETCH(bool, valid);
        QCOMPARE(SystemSettings::isValidPhone(text), valid);
    }

    void savedValuesReadBackWhole()
    {
        TANDRILL_INSTALLATION(t);
        SystemSettings s = SystemSettings::load(t.session());
        s.companyName = QStringLiteral("O'Brien's Grounds");
        s.companyPhone = QStringLiteral("(555) 123-4567        ");
        s.serviceLateRed = QStringLiteral("20");
        s.countReadingDelay = QStringLiteral("14");
        s.userFields[0] = QStringLiteral("Fleet No.");
        s.userFields[9] = QString();
        s.save(t.session());

        QCOMPARE(SystemSettings::load(t.session()).optionRows(), s.optionRows());
        QCOMPARE(Options::option(t.session(), QStringLiteral("UserDefinedField10")),
                 QStringLiteral("User Field10"));
        QVERIFY(t.failures().isEmpty());
        QVERIFY(t.prompter().shown().isEmpty());
        // Shared options: one row each, not one per workstation.
        QCOMPARE(countOptions(t.session(), "LOWER(SysOption) = LOWER(?)",
                              QStringLiteral("GEN_COMPANY_NAME")),
                 1);
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
        QCOMPARE(t.prompter().texts(),
                 told ? QStringList{SystemSettings::SecurityChangedMessage} : QStringList());
        QCOMPARE(Options::option(t.session(), QStringLiteral("SECURITYONOFF")), written);
        // The running session keeps its login state.
        QVERIFY(t.session().userName().isEmpty());
    }

    void defaultGeometryIsWrittenPerWorkstation()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const auto own = [&s](const char* name) {
            return Options::option(s, QString::fromLatin1(name), true);
        };
        Options::setOption(s, QStringLiteral("frmCrewTOP"), QStringLiteral("99"), true);
        Options::setOption(s, QStringLiteral("frmFilterScreenLEFT"), QStringLiteral("777"), true);
        SystemSettings::writeDefaultGeometry(s);

        QCOMPARE(own("frmCrewHEIGHT"), QStringLiteral("3810"));
        QCOMPARE(own("frmCrewTOP"), QStringLiteral("3855"));
        // A screen without a default place keeps the one it has.
        QCOMPARE(own("frmFilterScreenLEFT"), QStringLiteral("777"));
        QVERIFY(own("frmMainScreenTOP").isEmpty());
        // Nothing lands in the shared options.
        QVERIFY(Options::option(s, QStringLiteral("frmCrewTOP")).isEmpty());
        // 25 screens with height and width, 20 of them with a place too, and the
        // filter screen's own left from before.
        QCOMPARE(countOptions(s, "SUBSTR(SysOption, 1, 32) = ?",
                              Options::registryValue(s, QStringLiteral("GUID"))),
                 25 * 2 + 20 * 2 + 1);

        // Another workstation sees none of them.
        Options::setRegistryValue(s, QStringLiteral("GUID"), Options::newGuid());
        QVERIFY(own("frmCrewTOP").isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void indicatorLookupsCarryTheirListNumber()
    {
        QHash<QString, int> numbers;
        for (const SystemSettings::Lookup& l : SystemSettings::lookups()) {
            QCOMPARE(l.screen == QLatin1String("frmIndicator"), l.listNumber > 0);
            numbers.insert(l.name, l.listNumber);
        }
        QCOMPARE(numbers.size(), SystemSettings::lookups().size()); // no name twice
        QCOMPARE(numbers.value(QStringLiteral("State"), -1), 11);
    }
};

QTEST_GUILESS_MAIN(TestSystemSettings)
#include "tst_systemsettings.moc"
