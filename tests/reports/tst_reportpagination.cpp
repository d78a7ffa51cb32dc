#include "DocumentFrom.h"
#include "ReportPagination.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** Rows of (Name, Cost, Period), the report and each group totalling Cost. */
ReportDocument services(const QList<QVariantList>& rows, bool byPeriod)
{
    const QByteArray groups = byPeriod ? R"([{"field": "Period", "totals": ["Cost"]}])" : "[]";
    return documentFrom(R"({"columns": [{"field": "Name", "width": 10},
                                        {"field": "Cost", "width": 10, "format": "money"}],
                            "reportFooter": {"totals": ["Cost"]}, "groups": )" +
                            groups + '}',
                        rows);
}

/** Every band one unit high. */
QList<ReportPage> paginate(const ReportDocument& document, double bodyHeight)
{
    return ReportPagination::paginate(document, bodyHeight, {1, 1, [](qsizetype) { return 1.0; }});
}

/** Each page as a line of letters: H header, D detail, F group footer, R report footer. */
QStringList shapes(const ReportDocument& document, double bodyHeight)
{
    QStringList pages;
    for (const ReportPage& page : paginate(document, bodyHeight)) {
        pages.append(QString());
        for (const Band& band : page.bands) {
            pages.last() += "HDFR"_L1[int(band.kind)];
        }
    }
    return pages;
}

} // namespace

class TestReportPagination : public QObject
{
    Q_OBJECT

private slots:
    void breaksPages_data()
    {
        QTest::addColumn<QString>("periods");
        QTest::addColumn<double>("bodyHeight");
        QTest::addColumn<bool>("byPeriod");
        QTest::addColumn<QStringList>("pages");
        QTest::addRow("full pages, footer alone")
            << u"AAAA"_s << 2.0 << false << QStringList{u"DD"_s, u"DD"_s, u"R"_s};
        // A header never stands alone at the foot of a page: it moves on with its first row.
        QTest::addRow("header moves on with its row")
            << u"AAB"_s << 5.0 << true << QStringList{u"HDDF"_s, u"HDFR"_s};
        QTest::addRow("page too small for header and row")
            << u"A"_s << 1.5 << true << QStringList{u"H"_s, u"D"_s, u"F"_s, u"R"_s};
    }
    void breaksPages()
    {
        QFETCH(QString, periods);
        QFETCH(double, bodyHeight);
        QFETCH(bool, byPeriod);
        QFETCH(QStringList, pages);
        QList<QVariantList> rows;
        for (const QChar period : periods) {
            rows.append({u"S"_s, 1.0, QString(period)});
        }
        QCOMPARE(shapes(services(rows, byPeriod), bodyHeight), pages);
    }

    void groupsRowsAndTotalsThem()
    {
        const ReportDocument document = services({{u"Blades"_s, 2.5, u"W"_s},
                                                  {u"Check"_s, 1.0, u"D"_s},
                                                  {u"Belts"_s, QVariant(), u"W"_s},
                                                  {u"Oil"_s, 4.0, u"d"_s}},
                                                 true);
        const QList<Band> bands = paginate(document, 100)[0].bands;
        QCOMPARE(shapes(document, 100), QStringList{u"HDDFHDDFR"_s});
        // Sorted by the group's value without regard to case, the query's order kept within.
        QCOMPARE(document.value(1, 0), u"Oil"_s);
        QCOMPARE(document.value(3, 0), u"Belts"_s);
        QCOMPARE(document.groupText(u"Period {value}"_s, 0, bands[4].first), u"Period W"_s);
        const ReportTotal cost{u"Cost"_s, ReportTotal::Function::Sum};
        QCOMPARE(document.total(cost, bands[3].first, bands[3].last).toDouble(), 5.0);
        QCOMPARE(document.total(cost, bands[7].first, bands[7].last).toDouble(), 2.5);
        QCOMPARE(document.total(cost, bands[8].first, bands[8].last).toDouble(), 7.5);
    }
};

QTEST_GUILESS_MAIN(TestReportPagination)
#include "tst_reportpagination.moc"
