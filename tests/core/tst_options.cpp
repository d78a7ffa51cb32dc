#include "Options.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;
using Options::option;
using Options::setOption;

class TestOptions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void keysCompareWithoutCase()
    {
        TANDRILL_INSTALLATION(t);
        const QString written = u"SERVICE hISTORY FROM"_s;
        const QString read = u"Service History From"_s;
        setOption(t.session(), written, u"O'Brien's"_s);
        QCOMPARE(option(t.session(), read), u"O'Brien's"_s);
        // Writing under the other spelling changes the same row.
        setOption(t.session(), read, u"second"_s);
        QCOMPARE(option(t.session(), written), u"second"_s);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"SELECT COUNT(*) FROM tblSysOption WHERE LOWER(SysOption) = ?"_s,
                          {written.toLower()}) &&
                q.next());
        QCOMPARE(q.value(0).toInt(), 1);
        QVERIFY(t.failures().isEmpty());
    }

    void workstationsKeepTheirOwnOptionsAndShareTheRest()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        setOption(s, u"frmCrewTOP"_s, u"3855"_s, true);
        setOption(s, u"SERVICE_LATE_RED"_s, u"3855"_s);
        const QString first = Options::registryValue(s, u"GUID"_s);
        QVERIFY(Options::setRegistryValue(s, u"GUID"_s, Options::newGuid())); // another one
        QCOMPARE(option(s, u"frmCrewTOP"_s, true), QString());
        setOption(s, u"frmCrewTOP"_s, u"1450"_s, true);
        QCOMPARE(option(s, u"SERVICE_LATE_RED"_s), u"3855"_s);
        QVERIFY(Options::setRegistryValue(s, u"GUID"_s, first));
        QCOMPARE(option(s, u"frmCrewTOP"_s, true), u"3855"_s);
        QVERIFY(t.failures().isEmpty());
    }

    // Without a GUID every option reads empty; the first write makes one and keeps it.
    void guidIsMadeAtTheFirstWriteAndKept()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(Options::setRegistryValue(s, u"GUID"_s, QString()));
        QCOMPARE(option(s, u"SERVICE_LATE_RED"_s), QString());
        setOption(s, u"EqDateFrom"_s, u"01/02/2025"_s, true);
        const QString made = Options::registryValue(s, u"GUID"_s);
        QVERIFY2(QRegularExpression(u"^[0-9A-F]{32}$"_s).match(made).hasMatch(), qPrintable(made));
        QCOMPARE(option(s, u"EqDateFrom"_s, true), u"01/02/2025"_s);
        QCOMPARE(option(s, u"SERVICE_LATE_RED"_s), u"30"_s);
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
