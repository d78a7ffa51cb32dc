#include "Depreciation.h"
#include "Sql.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QSqlQuery>
#include <QTest>

Q_DECLARE_METATYPE(DepreciationInputs)

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 Machine = 1;

// A stale year of the machine and a year of another one, which must survive.
bool addOldRows(Session& s)
{
    QSqlQuery q(s.db());
    return Sql::exec(q,
                     u"INSERT INTO tblEquipmentDepreciation (EndofYear, AnnualDepreciation, "
                     "AccumualtedDepreciation, BookValue, EquipmentID) VALUES "
                     "(1999, 1, 1, 9, ?), (1999, 2, 2, 8, ?)"_s,
                     {Machine, Machine + 1});
}

QStringList shown(Session& s, qint64 equipmentId = Machine)
{
    QStringList lines;
    for (const QSqlRecord& r : Depreciation(s).rows(equipmentId)) {
        QStringList line{r.value(u"End of Year"_s).toString()};
        for (const char* column : {"Annual Depreciation", "Accumualted Depreciation", "Book Value"})
            line.append(QString::number(r.value(QLatin1StringView(column)).toDouble(), 'f', 2));
        lines.append(line.join(u' '));
    }
    return lines;
}

} // namespace

class TestDepreciation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void recalculateReplacesTheMachinesYears_data()
    {
        QTest::addColumn<QString>("cost");
        QTest::addColumn<QString>("salvage");
        QTest::addColumn<QString>("life");
        QTest::addColumn<QStringList>("years");
        QTest::addRow("cents dropped, one row a year")
            << u"10000.60"_s << u"1000.40"_s << u"4"_s
            << QStringList{u"2020 2250.25 2250.25 7750.75"_s, u"2021 2250.25 4500.50 5500.50"_s,
                           u"2022 2250.25 6750.75 3250.25"_s, u"2023 2250.25 9001.00 1000.00"_s};
        QTest::addRow("life of one ends at the salvage")
            << u"5000"_s << u" 500"_s << u"1"_s << QStringList{u"2020 4500.00 4500.00 500.00"_s};
        QTest::addRow("halves to even")
            << u"3.5"_s << u"2.5"_s << u"2"_s
            << QStringList{u"2020 1.00 1.00 3.00"_s, u"2021 1.00 2.00 2.00"_s};
    }
    void recalculateReplacesTheMachinesYears()
    {
        QFETCH(QString, cost);
        QFETCH(QString, salvage);
        QFETCH(QString, life);
        QFETCH(QStringList, years);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addOldRows(t.session()));
        QVERIFY(Depreciation(t.session()).recalculate(Machine, {u"2020"_s, cost, salvage, life}));
        QCOMPARE(shown(t.session()), years);
        QCOMPARE(shown(t.session(), Machine + 1).size(), 1);
        QVERIFY(t.failures().isEmpty());
    }

    void inputsAreCheckedInOrder_data()
    {
        using F = DepreciationProblem::Field;
        QTest::addColumn<DepreciationInputs>("inputs");
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("message");
        const auto row = [](const char* name, const DepreciationInputs& in, F field, QString m) {
            QTest::addRow("%s", name) << in << int(field) << m;
        };
        row("year empty", {u" "_s, {}, {}, {}}, F::PurchaseYear,
            u"Equipment purchase year is empty.First Enter Equipment purchase year."_s);
        row("cost blank", {u"2020"_s, u" "_s, {}, {}}, F::TotalCost,
            u"Total cost should not be blank."_s);
        row("salvage blank", {u"2020"_s, u"100"_s, {}, {}}, F::SalvageValue,
            u"Salvage Value should not be blank."_s);
        row("salvage equal to cost", {u"2020"_s, u"100"_s, u"100.00"_s, {}}, F::SalvageValue,
            u"Salvage Value should be less then the Total Cost."_s);
        row("salvage over cost", {u"2020"_s, u"99"_s, u"100"_s, {}}, F::SalvageValue,
            u"Salvage Value should be less then the Total Cost."_s);
        row("life blank", {u"2020"_s, u"100.4"_s, u"100.2"_s, {}}, F::AssetYears,
            u"Life of Asset should not be blank."_s);
        row("life of 0 passes", {u"2020"_s, u"100"_s, u"10"_s, u"0"_s}, F::AssetYears, {});
    }
    void inputsAreCheckedInOrder()
    {
        QFETCH(DepreciationInputs, inputs);
        QFETCH(int, field);
        QFETCH(QString, message);
        const std::optional<DepreciationProblem> problem = Depreciation::validate(inputs);
        QCOMPARE(problem ? problem->message : QString(), message);
        if (!problem)
            return;
        QCOMPARE(int(problem->field), field);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addOldRows(t.session()));
        QVERIFY(!Depreciation(t.session()).recalculate(Machine, inputs));
        QCOMPARE(shown(t.session()).size(), 1);
        QVERIFY(t.failures().isEmpty());
    }

    void lifeOfZeroFailsAfterTheDeleteInsideTheEdit_data()
    {
        QTest::addColumn<QString>("salvage");
        QTest::addColumn<qint64>("number");
        QTest::addColumn<QString>("description");
        QTest::addRow("division by zero") << u"10"_s << qint64(11) << u"Division by zero"_s;
        QTest::addRow("nothing to share overflows") << u"11.6"_s << qint64(6) << u"Overflow"_s;
    }
    void lifeOfZeroFailsAfterTheDeleteInsideTheEdit()
    {
        QFETCH(QString, salvage);
        QFETCH(qint64, number);
        QFETCH(QString, description);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(addOldRows(s));
        Transaction edit(s);
        QVERIFY(!Depreciation(s).recalculate(Machine, {u"2020"_s, u"12.4"_s, salvage, u"0"_s}));
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure& f = t.failures().failures()[0];
        QCOMPARE(f.module + u'/' + f.procedure, u"frmEquipment/cmdRecalculate_Click"_s);
        QCOMPARE(f.number, number);
        QCOMPARE(f.description, description);
        QCOMPARE(shown(s), QStringList());
        edit.rollback();
        QCOMPARE(shown(s), QStringList{u"1999 1.00 1.00 9.00"_s});
    }
};

QTEST_GUILESS_MAIN(TestDepreciation)
#include "tst_depreciation.moc"
