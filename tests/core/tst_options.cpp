#include "Options.h"
#include "Sql.h"
#include "Store.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

qint64 rowsWithKeyEnding(Session& session, const QString& name)
{
    QSqlQuery q(session.db());
    if (!Sql::exec(q, u"SELECT COUNT(*) FROM tblSysOption WHERE LOWER(SysOption) LIKE ?"_s,
                   {u"%"_s + name.toLower()}) ||
        !q.next()) {
        return -1;
    }
    return q.value(0).toLongLong();
}

QString storedGuid(const Installation& installation)
{
    Store store(installation.storeFile());
    store.load();
    return store.value(QString::fromLatin1(Installation::MainKey), u"GUID"_s);
}

/** A second workstation on the same data: the same installation under another GUID. */
struct Workstation
{
    explicit Workstation(const Installation& installation) : session(installation, prompter)
    {
        session.setFailureSink(&failures);
        session.loadStore(nullptr);
        session.store().setValue(QString::fromLatin1(Installation::MainKey), u"GUID"_s,
                                 Options::newGuid());
        DatabaseError error;
        open = session.openDatabase(&error);
    }
    ScriptedPrompter prompter;
    RecordingFailureSink failures;
    Session session;
    bool open = false;
};

} // namespace

class TestOptions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void workstationsKeepTheirOwnOptionsAndShareTheRest()
    {
        TANDRILL_INSTALLATION(t);
        Workstation other(t.installation());
        QVERIFY(other.open);
        Session& a = t.session();
        Session& b = other.session;
        QVERIFY(Options::registryValue(a, u"GUID"_s) != Options::registryValue(b, u"GUID"_s));

        Options::setOption(a, u"frmCrewTOP"_s, u"3855"_s, true);
        Options::setOption(b, u"frmCrewTOP"_s, u"1450"_s, true);
        Options::setOption(a, u"SERVICE_LATE_RED"_s, u"10"_s);
        Options::setOption(b, u"SERVICE_LATE_RED"_s, u"12"_s);

        QCOMPARE(Options::option(a, u"frmCrewTOP"_s, true), u"3855"_s);
        QCOMPARE(Options::option(b, u"frmCrewTOP"_s, true), u"1450"_s);
        QCOMPARE(Options::option(a, u"frmCrewTOP"_s), QString());
        QCOMPARE(Options::option(a, u"SERVICE_LATE_RED"_s), u"12"_s);
        QCOMPARE(Options::option(b, u"SERVICE_LATE_RED"_s), u"12"_s);
        QCOMPARE(rowsWithKeyEnding(a, u"frmCrewTOP"_s), 2);
        QCOMPARE(rowsWithKeyEnding(a, u"SERVICE_LATE_RED"_s), 1);
        QVERIFY(t.failures().isEmpty());
        QVERIFY(other.failures.isEmpty());
    }

    void keysCompareWithoutCase_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("read");
        QTest::addColumn<bool>("perWorkstation");
        QTest::addRow("per workstation") << u"EqDateTo"_s << u"EqdateTo"_s << true;
        QTest::addRow("with blanks") << u"SERVICE hISTORY REPORT DATE FROM"_s
                                     << u"SERVICE HISTORY REPORT DATE FROM"_s << true;
        QTest::addRow("shared") << u"SECURITYONOFF"_s << u"SecurityOnOff"_s << false;
        QTest::addRow("new shared") << u"UserDefinedField11"_s << u"USERDEFINEDFIELD11"_s << false;
    }
    void keysCompareWithoutCase()
    {
        QFETCH(QString, written);
        QFETCH(QString, read);
        QFETCH(bool, perWorkstation);
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), written, u"first"_s, perWorkstation);
        QCOMPARE(Options::option(t.session(), read, perWorkstation), u"first"_s);
        // Writing under the other spelling changes the same row.
        Options::setOption(t.session(), read, u"second"_s, perWorkstation);
        QCOMPARE(Options::option(t.session(), written, perWorkstation), u"second"_s);
        QCOMPARE(rowsWithKeyEnding(t.session(), written), 1);
        QVERIFY(t.failures().isEmpty());
    }

    void valuesAreStoredWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addRow("apostrophe") << u"GEN_COMPANY_NAME"_s << u"O'Brien's Grounds"_s;
        QTest::addRow("doubled apostrophes") << u"GEN_COMPANY_NAME"_s << u"a''b'"_s;
        QTest::addRow("statement text")
            << u"GEN_COMPANY_ADDRESS1"_s << u"'; DELETE FROM tblSysOption; --"_s;
        QTest::addRow("non-ASCII") << u"GEN_COMPANY_ADDRESS2"_s << u"Größenweg 5 – Zürich ✓"_s;
        QTest::addRow("surrounding blanks") << u"GEN_COMPANY_PHONE"_s << u" (555) 123 "_s;
        QTest::addRow("empty") << u"GEN_COMPANY_WEBSITE"_s << QString();
        QTest::addRow("apostrophe in key") << u"Bob's frmCrewTOP"_s << u"it's"_s;
    }
    void valuesAreStoredWhole()
    {
        QFETCH(QString, name);
        QFETCH(QString, value);
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), name, value);
        QCOMPARE(Options::option(t.session(), name), value);
        Options::setOption(t.session(), name, value, true);
        QCOMPARE(Options::option(t.session(), name, true), value);
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(Options::option(t.session(), u"SERVICE_LATE_RED"_s), u"30"_s);
    }

    void emptyGuidReadsEverythingEmptyUntilAnOptionIsSet()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(Options::setRegistryValue(s, u"GUID"_s, QString()));
        QCOMPARE(Options::option(s, u"SERVICE_LATE_RED"_s), QString());
        QCOMPARE(Options::option(s, u"SECURITYONOFF"_s), QString());

        Options::setOption(s, u"EqDateFrom"_s, u"01/02/2025"_s, true);
        const QString guid = Options::registryValue(s, u"GUID"_s);
        QVERIFY2(QRegularExpression(u"^[0-9A-F]{32}$"_s).match(guid).hasMatch(), qPrintable(guid));
        QCOMPARE(storedGuid(t.installation()), guid);
        QCOMPARE(Options::option(s, u"SERVICE_LATE_RED"_s), u"30"_s);
        QCOMPARE(Options::option(s, u"EqDateFrom"_s, true), u"01/02/2025"_s);

        Options::setOption(s, u"EqDateTo"_s, u"31/03/2025"_s, true);
        QCOMPARE(Options::registryValue(s, u"GUID"_s), guid);
        QCOMPARE(storedGuid(t.installation()), guid);
        QVERIFY(t.failures().isEmpty());
    }

    void aShortGuidIsReplacedOnWrite()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(Options::setRegistryValue(s, u"GUID"_s, u"ABC"_s));
        QCOMPARE(Options::option(s, u"SERVICE_LATE_RED"_s), u"30"_s);
        Options::setOption(s, u"frmCrewTOP"_s, u"1"_s, true);
        QCOMPARE(Options::registryValue(s, u"GUID"_s).size(), 32);
    }

    void registryValuesReadWithoutCaseAndTrimmed_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("read");
        QTest::addColumn<QString>("expected");
        QTest::addRow("Version reads VERSION")
            << u"VERSION"_s << u"2.1.4"_s << u"Version"_s << u"2.1.4"_s;
        QTest::addRow("blanks trimmed")
            << u"SRCPATH"_s << u"  /srv/client/  "_s << u"srcpath"_s << u"/srv/client/"_s;
        QTest::addRow("missing") << u"PATH"_s << u"/opt/"_s << u"NOSUCHVALUE"_s << QString();
    }
    void registryValuesReadWithoutCaseAndTrimmed()
    {
        QFETCH(QString, written);
        QFETCH(QString, value);
        QFETCH(QString, read);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), written, value));
        QCOMPARE(Options::registryValue(t.session(), read), expected);
        Store reloaded(t.installation().storeFile());
        QVERIFY(reloaded.load());
        QCOMPARE(reloaded.value(QString::fromLatin1(Installation::MainKey), read), expected);
    }

    void registryValueThatCannotBeStoredIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), u"SRCPATH"_s, u"/srv/a/"_s));
        QVERIFY(!Options::setRegistryValue(t.session(), u"SRCPATH"_s, u"/srv/a/\n[Database]"_s));
        QCOMPARE(Options::registryValue(t.session(), u"SRCPATH"_s), u"/srv/a/"_s);
        Store reloaded(t.installation().storeFile());
        QString error;
        QVERIFY2(reloaded.load(&error), qPrintable(error));
        QCOMPARE(reloaded.value(QString::fromLatin1(Installation::MainKey), u"SRCPATH"_s),
                 u"/srv/a/"_s);
    }

    void optionsWorkWhileATransactionIsOpen()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        {
            Transaction tx(s);
            QVERIFY2(tx.isActive(), qPrintable(tx.error()));
            QSqlQuery q(s.db());
            QVERIFY(Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber) VALUES (1)"_s));
            Options::setOption(s, u"WoDateFrom"_s, u"01/03/2025"_s, true);
            QCOMPARE(Options::option(s, u"WoDateFrom"_s, true), u"01/03/2025"_s);
            QVERIFY(tx.commit());
        }
        QCOMPARE(Options::option(s, u"WoDateFrom"_s, true), u"01/03/2025"_s);
        QVERIFY2(t.failures().isEmpty(), qPrintable(t.failures().failures().value(0).description));
    }

    void failuresAreReportedUnderTheirProcedure()
    {
        TANDRILL_INSTALLATION(t);
        t.session().closeDatabase();
        QCOMPARE(Options::option(t.session(), u"SERVICE_LATE_RED"_s), QString());
        Options::setOption(t.session(), u"SERVICE_LATE_RED"_s, u"5"_s);
        const QList<Failure>& f = t.failures().failures();
        QCOMPARE(f.size(), 2);
        QCOMPARE(f[0].module, u"General Function"_s);
        QCOMPARE(f[0].procedure, u"GetOption"_s);
        QCOMPARE(f[1].module, u"General Function"_s);
        QCOMPARE(f[1].procedure, u"SetOption - "_s);
        QVERIFY(f[0].number != 0 && f[1].number != 0);
    }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "tst_options.moc"
