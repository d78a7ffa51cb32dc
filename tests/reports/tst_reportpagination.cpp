#include "DocumentFrom.h"
#include "ReportPagination.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** Rows of (Period, Name, Cost); every band one unit high. */
ReportDocument services(const QList<QVariantList>& rows, const QByteArray& groups)
{
    QList<QVariantList> typed;
    for (const QVariantList& row : rows) {
        typed.append({row[1], row[2], row[0]}); // in the order of the layout's fields
    }
    return documentFrom(R"({"columns": [{"field": "Name", "width": 10},
                                        {"field": "Cost", "width": 10, "format": "money"}],
                            "reportFooter": {"totals": ["Cost"]}, "groups": )" +
                            groups + '}',
                        typed);
}

const QByteArray ByPeriod = R"([{"field": "Period", "totals": ["Cost"]}])";

/** Each page as a line of letters: H header, D detail, F group footer, R report footer. */
QList<ReportPage> paginate(const ReportDocument& document, double bodyHeight)
{
    return ReportPagination::paginate(document, bodyHeight, {1, 1, [](qsizetype) { return 1.0; }});
}

QStringList shapes(const ReportDocument& document, double bodyHeight)
{
    QStringList pages;
    for (const ReportPage& page : paginate(document, bodyHeight)) {
        QString shape;
        for (const Band& band : page.bands) {
            shape += "HDFR"_L1[int(band.kind)];
        }
        pages.append(shape);
    }
    return pages;
}

} // namespace

class TestReportPagination : public QObject
{
    Q_OBJECT

private slots:
    void breaksPages_data();
    void breaksPages();
    void groupsRowsAndTotalsThem();
};

void TestReportPagination::breaksPages_data()
{
    QTest::addColumn<QStringList>("periods");
    QTest::addColumn<double>("bodyHeight");
    QTest::addColumn<QByteArray>("groups");
    QTest::addColumn<QStringList>("pages");
    QTest::addRow("full pages, footer alone") << QStringList(4, u"A"_s) << 2.0 << QByteArray("[]")
                                              << QStringList{u"DD"_s, u"DD"_s, u"R"_s};
    // A header never stands alone at the foot of a page: it moves on with its first row.
    QTest::addRow("header moves on with its row") << QStringList{u"A"_s, u"A"_s, u"B"_s} << 5.0
                                                  << ByPeriod << QStringList{u"HDDF"_s, u"HDFR"_s};
    QTest::addRow("page too small for header and row")
        << QStringList{u"A"_s} << 1.5 << ByPeriod << QStringList{u"H"_s, u"D"_s, u"F"_s, u"R"_s};
}

void TestReportPagination::breaksPages()
{
    QFETCH(QStringList, periods);
    QFETCH(double, bodyHeight);
    QFETCH(QByteArray, groups);
    QFETCH(QStringList, pages);
    QList<QVariantList> data;
    for (const QString& period : periods) {
        data.append({period, u"S"_s, 1.0});
    }
    QCOMPARE(shapes(services(data, groups), bodyHeight), pages);
}

void TestReportPagination::groupsRowsAndTotalsThem()
{
    const ReportDocument document = services({{u"W"_s, u"Blades"_s, 2.5},
                                              {u"D"_s, u"Check"_s, 1.0},
                                              {u"W"_s, u"Belts"_s, QVariant()},
                                              {u"d"_s, u"Oil"_s, 4.0}},
                                             ByPeriod);
    QCOMPARE(shapes(document, 100), QStringList{u"HDDFHDDFR"_s});
    // Sorted by the group's value without regard to case, the query's order kept within.
    QCOMPARE(document.value(1, 0), u"Oil"_s);
    QCOMPARE(document.value(3, 0), u"Belts"_s);
    const QList<Band> bands = paginate(document, 100)[0].bands;
    QCOMPARE(document.groupText(u"Period {value}"_s, 0, bands[4].first), u"Period W"_s);
    const ReportTotal cost{u"Cost"_s, ReportTotal::Function::Sum};
    QCOMPARE(document.total(cost, bands[3].first, bands[3].last).toDouble(), 5.0);
    QCOMPARE(document.total(cost, bands[7].first, bands[7].last).toDouble(), 2.5);
    QCOMPARE(document.total(cost, bands[8].first, bands[8].last).toDouble(), 7.5);
}

QTEST_GUILESS_MAIN(TestReportPagination)
#include "tst_reportpagination.moc"
