#include "Depreciation.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QTest>

using namespace Qt::StringLiterals;

static const QString Kept = u"|1999 1 1 0"_s, Where = u"frmEquipment/cmdRecalculate_Click "_s;

class TestDepreciation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    // in: year|cost|salvage|life; out: the refusal or failure, then the years shown in the edit.
    void recalculateInsideAnEdit_data()
    {
        QTest::addColumn<QString>("in");
        QTest::addColumn<QString>("out");
        const auto row = [](const char* name, QString in, QString out) {
            QTest::addRow("%s", name) << in << out;
        };
        row("cents dropped", u"2020|10000.60|1000.40|4"_s,
            u"2020 2250.25 2250.25 7750.75|2021 2250.25 4500.5 5500.5|"
            "2022 2250.25 6750.75 3250.25|2023 2250.25 9001 1000"_s);
        row("life of one, halves to even", u"2021|5001.5|500.5|1"_s, u"2021 4502 4502 500"_s);
        row("life of 0", u"2020|12.4|10|0"_s, Where + u"11 Division by zero"_s);
        row("nothing to share", u"2020|12.4|11.6|0"_s, Where + u"6 Overflow"_s);
        row("year", u" |||"_s,
            u"0 Equipment purchase year is empty.First Enter Equipment purchase year."_s + Kept);
        row("cost", u"2020| ||"_s, u"1 Total cost should not be blank."_s + Kept);
        row("salvage", u"2020|9||"_s, u"2 Salvage Value should not be blank."_s + Kept);
        row("salvage = cost", u"2020|9|9.0|"_s,
            u"2 Salvage Value should be less then the Total Cost."_s + Kept);
        row("life", u"2020|9.4|9.2|"_s, u"3 Life of Asset should not be blank."_s + Kept);
    }
    void recalculateInsideAnEdit()
    {
        QFETCH(QString, in);
        QFETCH(QString, out);
        const QStringList f = in.split(u'|');
        TANDRILL_INSTALLATION(t);
        Depreciation depreciation(t.session());
        for (qint64 machine : {1, 2})
            QVERIFY(depreciation.recalculate(machine, {u"1999"_s, u"1"_s, u"0"_s, u"1"_s}));
        Transaction edit(t.session());
        const bool saved = depreciation.recalculate(1, {f[0], f[1], f[2], f[3]});
        QStringList answer;
        if (const auto problem = Depreciation::validate({f[0], f[1], f[2], f[3]}))
            answer.append(QString::number(int(problem->field)) + u' ' + problem->message);
        for (const Failure& e : t.failures().failures())
            answer.append(
                u"%1/%2 %3 %4"_s.arg(e.module, e.procedure).arg(e.number).arg(e.description));
        QCOMPARE(saved, answer.isEmpty());
        for (const QSqlRecord& r : depreciation.rows(1))
            answer.append(u"%1 %2 %3 %4"_s.arg(r.value(u"End of Year"_s).toString(),
                                               r.value(1).toString(), r.value(2).toString(),
                                               r.value(3).toString()));
        QCOMPARE(answer.join(u'|'), out);
        QCOMPARE(depreciation.rows(2).size(), 1);
        edit.rollback();
        const Rows kept = depreciation.rows(1);
        QVERIFY(kept.size() == 1 && kept[0].value(0).toInt() == 1999);
    }
};

QTEST_GUILESS_MAIN(TestDepreciation)
#include "tst_depreciation.moc"
