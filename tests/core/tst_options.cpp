#include "Options.h"
#include "Sql.h"
#include "Store.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;
using Options::option;
using Options::setOption;

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

/** A value of the main section as the store file holds it, read afresh. */
QString storedValue(const Installation& installation, const QString& name)
{
    Store store(installation.storeFile());
    QString error;
    return store.load(&error) ? store.value(QString::fromLatin1(Installation::MainKey), name)
                              : error;
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

        setOption(a, u"frmCrewTOP"_s, u"3855"_s, true);
        setOption(b, u"frmCrewTOP"_s, u"1450"_s, true);
        setOption(a, u"SERVICE_LATE_RED"_s, u"10"_s);
        setOption(b, u"SERVICE_LATE_RED"_s, u"12"_s);

        QCOMPARE(option(a, u"frmCrewTOP"_s, true), u"3855"_s);
        QCOMPARE(option(b, u"frmCrewTOP"_s, true), u"1450"_s);
        QCOMPARE(option(a, u"frmCrewTOP"_s), QString());
        QCOMPARE(option(a, u"SERVICE_LATE_RED"_s), u"12"_s);
        QCOMPARE(option(b, u"SERVICE_LATE_RED"_s), u"12"_s);
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
        setOption(t.session(), written, u"first"_s, perWorkstation);
        QCOMPARE(option(t.session(), read, perWorkstation), u"first"_s);
        // Writing under the other spelling changes the same row.
        setOption(t.session(), read, u"second"_s, perWorkstation);
        QCOMPARE(option(t.session(), written, perWorkstation), u"second"_s);
        QCOMPARE(rowsWithKeyEnding(t.session(), written), 1);
        QVERIFY(t.failures().isEmpty());
    }

    void valuesAreStoredWhole()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const std::pair<QString, QString> options[] = {
            {u"GEN_COMPANY_NAME"_s, u"O'Brien's Grounds"_s},
            {u"GEN_COMPANY_ADDRESS1"_s, u"'; DELETE FROM tblSysOption; --"_s},
            {u"GEN_COMPANY_ADDRESS2"_s, u"Größenweg 5 – Zürich ✓"_s},
            {u"GEN_COMPANY_PHONE"_s, u" (555) 123 "_s},
            {u"GEN_COMPANY_EMAIL"_s, u"a''b'"_s},
            {u"GEN_COMPANY_WEBSITE"_s, QString()},
            {u"Bob's frmCrewTOP"_s, u"it's"_s}};
        for (const auto& [name, value] : options) {
            setOption(s, name, value);
            setOption(s, name, value, true);
        }
        for (const auto& [name, value] : options) {
            QCOMPARE(option(s, name), value);
            QCOMPARE(option(s, name, true), value);
        }
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(option(s, u"SERVICE_LATE_RED"_s), u"30"_s);
    }

    void guidIsMadeAtTheFirstWriteAndKept_data()
    {
        QTest::addColumn<QString>("guid");
        QTest::addRow("empty: every option reads empty") << QString();
        QTest::addRow("too short: replaced") << u"ABC"_s;
    }
    void guidIsMadeAtTheFirstWriteAndKept()
    {
        QFETCH(QString, guid);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(Options::setRegistryValue(s, u"GUID"_s, guid));
        QCOMPARE(option(s, u"SERVICE_LATE_RED"_s), guid.isEmpty() ? QString() : u"30"_s);
        QCOMPARE(option(s, u"SECURITYONOFF"_s), guid.isEmpty() ? QString() : u"0"_s);

        setOption(s, u"EqDateFrom"_s, u"01/02/2025"_s, true);
        const QString made = Options::registryValue(s, u"GUID"_s);
        QVERIFY2(QRegularExpression(u"^[0-9A-F]{32}$"_s).match(made).hasMatch(), qPrintable(made));
        QCOMPARE(storedValue(t.installation(), u"GUID"_s), made);
        QCOMPARE(option(s, u"SERVICE_LATE_RED"_s), u"30"_s);
        QCOMPARE(option(s, u"EqDateFrom"_s, true), u"01/02/2025"_s);

        setOption(s, u"EqDateTo"_s, u"31/03/2025"_s, true);
        QCOMPARE(Options::registryValue(s, u"GUID"_s), made);
        QCOMPARE(storedValue(t.installation(), u"GUID"_s), made);
        QVERIFY(t.failures().isEmpty());
    }

    void registryValuesReadWithoutCaseAndTrimmed()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), u"SRCPATH"_s, u"  /srv/client/  "_s));
        const std::pair<QString, QString> reads[] = {
            {u"Version"_s, QStringLiteral(TANDRILL_VERSION)},
            {u"srcpath"_s, u"/srv/client/"_s},
            {u"NOSUCHVALUE"_s, QString()}};
        for (const auto& [name, expected] : reads) {
            QCOMPARE(Options::registryValue(t.session(), name), expected);
            QCOMPARE(storedValue(t.installation(), name), expected);
        }
    }

    void registryValueThatCannotBeStoredIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(Options::setRegistryValue(t.session(), u"SRCPATH"_s, u"/srv/a/"_s));
        QVERIFY(!Options::setRegistryValue(t.session(), u"SRCPATH"_s, u"/srv/a/\n[Database]"_s));
        QCOMPARE(Options::registryValue(t.session(), u"SRCPATH"_s), u"/srv/a/"_s);
        QCOMPARE(storedValue(t.installation(), u"SRCPATH"_s), u"/srv/a/"_s);
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
            setOption(s, u"WoDateFrom"_s, u"01/03/2025"_s, true);
            QCOMPARE(option(s, u"WoDateFrom"_s, true), u"01/03/2025"_s);
            QVERIFY(tx.commit());
        }
        QCOMPARE(option(s, u"WoDateFrom"_s, true), u"01/03/2025"_s);
        QVERIFY2(t.failures().isEmpty(), qPrintable(t.failures().failures().value(0).description));
    }

    void failuresAreReportedUnderTheirProcedure()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"DROP TABLE tblSysOption"_s));
        QCOMPARE(option(t.session(), u"SERVICE_LATE_RED"_s), QString());
        setOption(t.session(), u"SERVICE_LATE_RED"_s, u"5"_s);
        QStringList reported;
        for (const Failure& f : t.failures().failures()) {
            reported.append(f.module + u'/' + f.procedure +
                            (f.number ? u""_s : u" without number"_s));
        }
        QCOMPARE(reported, (QStringList{u"General Function/GetOption"_s,
                                        u"General Function/SetOption - "_s}));
    }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "tst_options.moc"
