#include "DateReadings.h"
#include "Options.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;
using Kind = DateReadings::Kind;

class TestDateReadings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    // Today is 1 March 2025; each kind keeps its own pair of options.
    void rangeIsRememberedPerKind_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("range");
        QTest::addRow("as shown") << u"02/29/24|01/05/31"_s << u"2024-02-29 2031-01-05"_s;
        QTest::addRow("last century, no date") << u"12/31/99|x"_s << u"1999-12-31 2025-03-01"_s;
    }
    void rangeIsRememberedPerKind()
    {
        QFETCH(QString, stored);
        QFETCH(QString, range);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Options::setOption(s, u"InspectionDateFrom"_s, stored.section(u'|', 0, 0), true);
        Options::setOption(s, u"InspectionDateTo"_s, stored.section(u'|', 1), true);
        DateReadings license(s, Kind::License);
        const DateRange r = DateReadings(s, Kind::Inspection).range();
        QCOMPARE(r.from.toString(Qt::ISODate) + u' ' + r.to.toString(Qt::ISODate), range);
        QCOMPARE(license.range().from, QDate(2024, 3, 1));
        license.storeRange(r);
        QCOMPARE(Options::option(s, u"LicenseDateTo"_s, true), r.to.toString(u"MM/dd/yy"_s));
    }

    void yearStep_data()
    {
        QTest::addColumn<QDate>("old");
        QTest::addColumn<QDate>("next");
        QTest::addRow("ordinary day") << QDate(2028, 2, 10) << QDate(2029, 2, 10);
        QTest::addRow("29 February") << QDate(2028, 2, 29) << QDate(2029, 2, 28);
        QTest::addRow("31 December") << QDate(2027, 12, 31) << QDate(2028, 12, 31);
    }
    void yearStep()
    {
        QFETCH(QDate, old);
        QFETCH(QDate, next);
        QCOMPARE(DateReadings::addOneYear(old), next);
    }

    // U0 lies before the range, U2 has no date; U1 and U5 stand on its ends. Only machines
    // given a new date change, in their kind's column; a date not later undoes them all.
    void updatesOnlyNewDatesAllOrNothing()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, UnitNo, InspectionDate, "
                             "LicenseRenewalDate) VALUES (1, 'U3', '2024-06-01', '2024-06-01'), "
                             "(2, 'U1', '2025-03-01', '2025-03-01'), (3, 'U2', NULL, NULL), "
                             "(4, 'U0', '2024-02-29', '2024-02-29'), (5, 'U5', '2024-03-01', "
                             "'2024-03-01')"_s));
        const QString faults[] = {
            u"frmInspectionDateReading/cmdUpdate_Click New Inspection date should be greater "
            "than old Inspection Date(03/01/2024)."_s,
            u"frmLicenseDateReading/cmdUpdate_Click New License Renewal Date should be greater "
            "than Old License Renewal Date(03/01/2024)."_s};
        const auto shown = [](const QList<DateReading>& readings) {
            QStringList out;
            for (const DateReading& r : readings)
                out.append(r.unitNo + u' ' + r.oldDate.toString(Qt::ISODate));
            return out.join(u'|');
        };
        const DateRange range{QDate(2024, 3, 1), QDate(2025, 3, 1)},
            wider{range.from, {2026, 1, 1}};
        for (const Kind kind : {Kind::Inspection, Kind::License}) {
            DateReadings readings(t.session(), kind);
            QList<DateReading> listed = readings.list(range);
            QCOMPARE(shown(listed), u"U1 2025-03-01|U3 2024-06-01|U5 2024-03-01"_s);
            listed[1].newDate = QDate(2025, 6, 1);
            listed[2].newDate = listed[2].oldDate;
            QVERIFY(!readings.update(listed));
            const Failure& f = t.failures().failures().last();
            QCOMPARE(f.module + u'/' + f.procedure + u' ' + f.description, faults[int(kind)]);
            QCOMPARE(shown(readings.list(wider)), shown(listed));
            listed[2].newDate = {};
            QVERIFY(readings.update(listed));
            QCOMPARE(shown(readings.list(wider)), u"U1 2025-03-01|U3 2025-06-01|U5 2024-03-01"_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestDateReadings)
#include "tst_datereadings.moc"
