#include "DocumentFrom.h"
#include "ReportExport.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr double PointsPerMm = 72 / 25.4;
constexpr double MarginMm = 15;
constexpr double CostRightMm = MarginMm + 60 + 15 + 25; // the right edge of the Cost column

const QByteArray Layout = R"({"title": "Services",
    "page": {"size": "Letter", "margins": {"left": 15, "top": 15, "right": 15, "bottom": 15}},
    "pageHeader": [{"name": "lblCompanyName", "text": "Greenway", "size": 12, "bold": true}],
    "columns": [{"field": "Name", "caption": "Service", "width": 60},
                {"field": "Period", "width": 15},
                {"field": "Cost", "caption": "Cost, $", "width": 25, "format": "money"},
                {"field": "Due", "width": 30, "format": "date"}],
    "groups": [{"field": "Period", "header": "Period {value}", "footer": "Subtotal",
                "totals": ["Cost"]}],
    "reportFooter": {"label": "Grand", "totals": ["Cost"]}})";

/** 150 services in three periods; Cost i * 10.5 so the totals are known. */
ReportDocument services()
{
    QList<QVariantList> rows;
    for (int i = 0; i < 150; ++i) {
        rows.append(
            {u"S%1"_s.arg(i), u"DWM"_s.mid(i % 3, 1), i * 10.5, QDate(2025, 1, 1).addDays(i)});
    }
    rows[0] = {u"Blades, \"sharp\" — über"_s, u"D"_s, QVariant(), QVariant()};
    return documentFrom(Layout, rows);
}

struct Word
{
    QString text;
    QRectF box; ///< in points from the page's top left
};

/** What a tool prints. */
QByteArray run(const QString& program, const QStringList& arguments)
{
    QProcess tool;
    tool.start(program, arguments);
    tool.waitForFinished();
    return tool.readAllStandardOutput();
}

/** The words of each page with their boxes, as poppler reads them. */
QList<QList<Word>> pdfWords(const QString& path)
{
    const QString html = QString::fromUtf8(run(u"pdftotext"_s, {u"-bbox"_s, path, u"-"_s}));
    static const QRegularExpression word(
        uR"re(<page |<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)">([^<]*)<)re"_s);
    QList<QList<Word>> pages;
    for (const QRegularExpressionMatch& m : word.globalMatch(html)) {
        if (m.captured(0) == "<page "_L1) {
            pages.append(QList<Word>());
            continue;
        }
        const QPointF topLeft(m.captured(1).toDouble(), m.captured(2).toDouble());
        const QPointF bottomRight(m.captured(3).toDouble(), m.captured(4).toDouble());
        pages.last().append({m.captured(5), QRectF(topLeft, bottomRight)});
    }
    return pages;
}

/** The nth word of the page with that text, or an empty one. */
Word find(const QList<Word>& page, const QString& text, int nth = 0)
{
    const auto it = std::find_if(page.begin(), page.end(),
                                 [&](const Word& w) { return w.text == text && nth-- == 0; });
    return it == page.end() ? Word() : *it;
}

/** The words of the page, one blank between them. */
QString textOf(const QList<Word>& page)
{
    QStringList words;
    for (const Word& word : page) {
        words.append(word.text);
    }
    return words.join(u' ');
}

/** True when the area (fractions of the page) of a page rendered to an image holds ink. */
bool inked(const QString& pdf, int page, const QRectF& area)
{
    const QString number = QString::number(page), prefix = pdf + u"-page"_s;
    run(u"pdftoppm"_s, {u"-r"_s, u"40"_s, u"-png"_s, u"-singlefile"_s, u"-f"_s, number, u"-l"_s,
                        number, pdf, prefix});
    const QImage image(prefix + u".png"_s);
    const QImage part =
        image.copy(QTransform::fromScale(image.width(), image.height()).mapRect(area).toRect())
            .convertToFormat(QImage::Format_Grayscale8);
    QImage blank(part.size(), part.format());
    blank.fill(Qt::white);
    return part != blank;
}

} // namespace

class TestReportOutput : public QObject
{
    Q_OBJECT

private slots:
    void pdfPlacesFootersGroupsAndTotals()
    {
        const QString path = m_dir.filePath(u"services.pdf"_s);
        QString error;
        QVERIFY2(ReportExport::writePdf(services(), path, &error), qPrintable(error));
        const QList<QList<Word>> pages = pdfWords(path);
        QCOMPARE(pages.size(), 4);
        for (int n = 1; n <= pages.size(); ++n) {
            QVERIFY(textOf(pages[n - 1]).contains(u"Page %1 of 4"_s.arg(n)));
            QVERIFY(find(pages[n - 1], u"Page"_s).box.top() >
                    11 * 72 - (MarginMm + 6) * PointsPerMm);
        }
        QVERIFY(inked(path, 2, QRectF(0.7, 0.9, 0.3, 0.1)));
        QVERIFY(!inked(path, 2, QRectF(0.0, 0.9, 0.5, 0.1)));

        // The first group's header (after the column's caption) at the left margin, above its rows.
        const QList<Word>& first = pages[0];
        const Word header = find(first, u"Period"_s, 1);
        QVERIFY(qAbs(header.box.left() - MarginMm * PointsPerMm) < 1.5);
        QVERIFY(header.box.bottom() <= find(first, u"Blades,"_s).box.top());
        // Its subtotal right-aligned under the Cost column, below its last row.
        const Word subtotal = find(first, u"38,587.50"_s);
        QVERIFY(qAbs(subtotal.box.right() - (CostRightMm - 0.8) * PointsPerMm) < 2);
        QVERIFY(subtotal.box.top() > find(first, u"S147"_s).box.bottom());
        const Word grand = find(pages[3], u"117,337.50"_s);
        QVERIFY(qAbs(grand.box.right() - subtotal.box.right()) < 0.5);
        QVERIFY(textOf(pages[3]).contains(u"Grand"_s));
    }

    void xlsxHoldsTypedCells()
    {
        const QString path = m_dir.filePath(u"services.xlsx"_s);
        QString error;
        QVERIFY2(ReportExport::writeXlsx(services(), path, &error), qPrintable(error));
        QVERIFY(run(u"unzip"_s, {u"-p"_s, path, u"xl/styles.xml"_s}).contains("<b/>"));
        const QString sheet =
            QString::fromUtf8(run(u"unzip"_s, {u"-p"_s, path, u"xl/worksheets/sheet1.xml"_s}));
        QVERIFY(sheet.contains(
            uR"(<pane ySplit="1" topLeftCell="A2" activePane="bottomLeft" state="frozen"/>)"_s));
        // Rows are ordered by the group: row 2 is the first D (S0 with its null cost and date).
        const QString serialDay = QString::number(QDate(1899, 12, 30).daysTo(QDate(2025, 1, 4)));
        for (const QString& cell : {uR"(<c r="C1" s="1" t="s">)"_s, // a caption: text, bold
                                    uR"(<c r="C3" s="\d+"><v>31.5</v></c>)"_s, // money as a number
                                    uR"(<c r="D3" s="\d+"><v>)"_s + serialDay + u"</v></c>"_s}) {
            QVERIFY2(sheet.contains(QRegularExpression(cell)), qPrintable(cell));
        }
    }
    void csvMatchesTheGoldenFile()
    {
        const QString path = m_dir.filePath(u"services.csv"_s);
        QString error;
        QVERIFY2(ReportExport::writeCsv(services(), path, &error), qPrintable(error));
        QFile written(path), golden(QStringLiteral(TANDRILL_GOLDEN_DIR "/services.csv"));
        QVERIFY(written.open(QIODevice::ReadOnly));
        if (qEnvironmentVariableIsSet("TANDRILL_REGENERATE_GOLDEN")) {
            QVERIFY(golden.open(QIODevice::WriteOnly));
            golden.write(written.readAll());
            QSKIP("golden file written");
        }
        QVERIFY(golden.open(QIODevice::ReadOnly));
        QCOMPARE(written.readAll(), golden.readAll());
    }

private:
    QTemporaryDir m_dir;
};

QTEST_MAIN(TestReportOutput)
#include "tst_reportoutput.moc"
