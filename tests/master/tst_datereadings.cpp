#include "DateReadings.h"
#include "Options.h"
#include "Sql.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;
using Kind = DateReadings::Kind;

static const DateRange Range{QDate(2024, 3, 1), QDate(2025, 3, 1)};
static const QString Seeded = u"U1 2025-03-01|U3 2024-06-01|U5 2024-03-01"_s;

// The machines, as listed: unit, old date, new date (empty when none).
static QString shown(const QList<DateReading>& readings)
{
    QStringList out;
    for (const DateReading& r : readings)
        out.append(r.unitNo + u' ' + r.oldDate.toString(Qt::ISODate) + r.newDate.toString(u" d"_s));
    return out.join(u'|');
}

// U0 lies before the range, U2 has no date; U1 and U5 stand on its ends.
static void seed(TestInstallation& t)
{
    QSqlQuery q(t.session().db());
    const QString dates[] = {
        u"2024-06-01"_s, u"2025-03-01"_s, {}, u"2024-02-29"_s, u"2024-03-01"_s};
    const char* units[] = {"U3", "U1", "U2", "U0", "U5"};
    for (int i = 0; i < 5; ++i) {
        const QVariant day = dates[i].isEmpty() ? QVariant() : QVariant(dates[i]);
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                          "InspectionDate, LicenseRenewalDate) VALUES (?, 'M', ?, ?, ?)"_s,
                          {i + 1, QString::fromLatin1(units[i]), day, day}));
    }
}

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
        QTest::addRow("nothing stored") << u"|"_s << u"2024-03-01 2025-03-01"_s;
        QTest::addRow("as shown") << u"02/29/24|01/05/31"_s << u"2024-02-29 2031-01-05"_s;
        QTest::addRow("last century") << u"12/31/99|x"_s << u"1999-12-31 2025-03-01"_s;
        QTest::addRow("year written whole") << u"7/4/2023|"_s << u"2023-07-04 2025-03-01"_s;
    }
    void rangeIsRememberedPerKind()
    {
        QFETCH(QString, stored);
        QFETCH(QString, range);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Options::setOption(s, u"InspectionDateFrom"_s, stored.section(u'|', 0, 0), true);
        Options::setOption(s, u"InspectionDateTo"_s, stored.section(u'|', 1), true);
        const auto text = [](const DateRange& r) {
            return r.from.toString(Qt::ISODate) + u' ' + r.to.toString(Qt::ISODate);
        };
        DateReadings inspection(s, Kind::Inspection), license(s, Kind::License);
        QCOMPARE(text(inspection.range()), range);
        QCOMPARE(text(license.range()), u"2024-03-01 2025-03-01"_s);
        license.storeRange(inspection.range());
        QCOMPARE(text(license.range()), range);
        QCOMPARE(Options::option(s, u"LicenseDateTo"_s, true),
                 inspection.range().to.toString(u"MM/dd/yy"_s));
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

    void newDateMustBeLater_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QDate>("next");
        QTest::addColumn<QString>("fault");
        const QDate old(2025, 3, 1);
        QTest::addRow("later") << Kind::Inspection << old.addDays(1) << QString();
        QTest::addRow("same day")
            << Kind::Inspection << old
            << u"New Inspection date should be greater than old Inspection Date(03/01/2025)."_s;
        QTest::addRow("earlier")
            << Kind::License << old.addYears(-1)
            << u"New License Renewal Date should be greater than Old License Renewal Date(03/01/2025)."_s;
    }
    void newDateMustBeLater()
    {
        QFETCH(Kind, kind);
        QFETCH(QDate, next);
        QFETCH(QString, fault);
        TANDRILL_INSTALLATION(t);
        QCOMPARE(DateReadings(t.session(), kind).dateFault(QDate(2025, 3, 1), next), fault);
    }

    // Only the machine given a new date changes, and only in its kind's column.
    void listsTheRangeAndUpdatesOnlyNewDates()
    {
        TANDRILL_INSTALLATION(t);
        seed(t);
        for (const Kind kind : {Kind::Inspection, Kind::License}) {
            DateReadings readings(t.session(), kind);
            QList<DateReading> listed = readings.list(Range);
            QCOMPARE(shown(listed), Seeded);
            listed[1].newDate = QDate(2025, 6, 1);
            QVERIFY(readings.update(listed));
            QCOMPARE(shown(readings.list({Range.from, QDate(2025, 12, 31)})),
                     u"U1 2025-03-01|U3 2025-06-01|U5 2024-03-01"_s);
        }
        QVERIFY(t.failures().isEmpty());
    }

    // A refused row undoes the rows before it; inside an edit the edit decides.
    void updateIsAllOrNothing()
    {
        TANDRILL_INSTALLATION(t);
        seed(t);
        DateReadings readings(t.session(), Kind::License);
        QList<DateReading> listed = readings.list(Range);
        listed[0].newDate = QDate(2026, 3, 1);
        listed[2].newDate = listed[2].oldDate;
        QVERIFY(!readings.update(listed));
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure& failure = t.failures().failures().first();
        QCOMPARE(failure.module + u'/' + failure.procedure,
                 u"frmLicenseDateReading/cmdUpdate_Click"_s);
        QVERIFY(failure.description.startsWith(u"New License Renewal Date"_s));
        QCOMPARE(shown(readings.list(Range)), Seeded);
        listed[2].newDate = {};
        Transaction edit(t.session());
        QVERIFY(readings.update(listed) && edit.ownsTransaction() && t.session().transactionOpen());
        QCOMPARE(readings.list(Range).size(), 2);
        edit.rollback();
        QCOMPARE(shown(readings.list(Range)), Seeded);
    }
};

QTEST_GUILESS_MAIN(TestDateReadings)
#include "tst_datereadings.moc"
