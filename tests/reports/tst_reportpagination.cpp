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

/**
 * Each page, every band one unit high, as a line of letters: H group header, D detail, F group
 * footer, R report footer.
 */
QStringList shapes(const ReportDocument& document, double bodyHeight)
{
    QStringList pages;
    const BandHeights heights{1, 1, [](qsizetype) { return 1.0; }};
    for (const ReportPage& page : ReportPagination::paginate(document, bodyHeight, heights)) {
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
        QTest::addRow("rows sorted into groups without regard to case")
            << u"BaA"_s << 100.0 << true << QStringList{u"HDDFHDFR"_s};
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
};

QTEST_GUILESS_MAIN(TestReportPagination)
#include "tst_reportpagination.moc"
