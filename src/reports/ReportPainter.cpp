#include "ReportPainter.h"

#include <QFontMetricsF>
#include <QMap>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>

namespace {

constexpr double CellPaddingMm = 0.8;
constexpr double HeaderGapMm = 2;
constexpr double GroupIndentMm = 3;
constexpr double LineSpacing = 1.3;
constexpr double HeaderSpacing = 1.2;
constexpr double CaptionSpacing = 1.5;

QString fill(QString text, int page, int pages, const QDate& today)
{
    return text.replace(QLatin1String("{page}"), QString::number(page))
        .replace(QLatin1String("{pages}"), QString::number(pages))
        .replace(QLatin1String("{today}"), today.toString(QStringLiteral("MM/dd/yyyy")));
}

} // namespace

ReportPainter::ReportPainter(const ReportDocument& document) : m_document(document) {}

QFont ReportPainter::font(const TextStyle& style) const
{
    QFont font(m_document.layout().fontFamily);
    font.setPointSizeF(style.size > 0 ? style.size : m_document.layout().fontSize);
    font.setBold(style.bold);
    return font;
}

void ReportPainter::measure(QPagedPaintDevice* device)
{
    const ReportLayout& layout = m_document.layout();
    m_device = device;
    device->setPageLayout(layout.page);
    m_dpi = device->logicalDpiY();
    m_body = QRectF(QPointF(0, 0), device->pageLayout().paintRectPixels(int(m_dpi)).size());
    m_font = font({});
    m_bold = font({0, true, Qt::AlignLeft});
    const QFontMetricsF metrics(m_font, device);
    m_lineHeight = metrics.height() * LineSpacing;
    m_footerHeight = metrics.height() * 2;
    m_captionHeight = QFontMetricsF(m_bold, device).height() * CaptionSpacing;

    QMap<int, HeaderRow> rows;
    for (int i = 0; i < layout.header.size(); ++i) {
        const TextObject& object = layout.header[i];
        HeaderRow& row = rows[object.row];
        row.objects.append(i);
        row.height =
            qMax(row.height, QFontMetricsF(font(object.style), device).height() * HeaderSpacing);
    }
    m_headerRows = rows.values();
    m_bodyTop = mm(HeaderGapMm) + m_captionHeight;
    for (const HeaderRow& row : std::as_const(m_headerRows)) {
        m_bodyTop += row.height;
    }

    double total = 0;
    for (const ReportColumn& column : layout.columns) {
        total += mm(column.width);
    }
    const double scale = total > m_body.width() ? m_body.width() / total : 1.0;
    m_columnLeft.clear();
    m_columnWidth.clear();
    double left = 0;
    for (const ReportColumn& column : layout.columns) {
        m_columnLeft.append(left);
        m_columnWidth.append(mm(column.width) * scale);
        left += m_columnWidth.last();
    }
}

double ReportPainter::detailHeight(qsizetype row) const
{
    double height = m_lineHeight;
    const QList<ReportColumn>& columns = m_document.layout().columns;
    const QFontMetricsF metrics(m_font, m_device);
    for (int c = 0; c < columns.size(); ++c) {
        if (columns[c].wrap) {
            const QRectF room(0, 0, m_columnWidth[c] - 2 * mm(CellPaddingMm), 1e9);
            const QString text = columns[c].format.display(m_document.value(row, c));
            const double needed = metrics.boundingRect(room, Qt::TextWordWrap, text).height();
            height = qMax(height, needed + m_lineHeight - metrics.height());
        }
    }
    return height;
}

QList<ReportPage> ReportPainter::paginate(QPagedPaintDevice* device)
{
    measure(device);
    BandHeights heights;
    heights.groupHeader = m_lineHeight * HeaderSpacing;
    heights.totals = m_lineHeight * HeaderSpacing;
    heights.detail = [this](qsizetype row) { return detailHeight(row); };
    return ReportPagination::paginate(m_document, m_body.height() - m_bodyTop - m_footerHeight,
                                      heights);
}

bool ReportPainter::paint(QPagedPaintDevice* device, QString* error, const Progress& progress)
{
    const QList<ReportPage> pages = paginate(device);
    QPainter painter;
    if (!painter.begin(device)) {
        *error =
            QStringLiteral("The report %1 cannot be drawn there.").arg(m_document.layout().name);
        return false;
    }
    const int count = int(pages.size());
    for (int i = 0; i < count; ++i) {
        if (i > 0 && !device->newPage()) {
            *error = QStringLiteral("The report %1 stopped at page %2.")
                         .arg(m_document.layout().name)
                         .arg(i + 1);
            return false;
        }
        drawPageHeader(painter);
        painter.save();
        painter.translate(0, m_bodyTop);
        for (const Band& band : pages[i].bands) {
            drawBand(painter, band);
        }
        painter.restore();
        drawPageFooter(painter, i + 1, count);
        if (progress) {
            progress(i + 1, count);
        }
    }
    return painter.end();
}

void ReportPainter::drawPageHeader(QPainter& painter) const
{
    const ReportLayout& layout = m_document.layout();
    double top = 0;
    for (const HeaderRow& row : m_headerRows) {
        for (int i : row.objects) {
            const TextObject& object = layout.header[i];
            const double left = mm(object.left);
            const double width = object.width > 0 ? mm(object.width) : m_body.width() - left;
            painter.setFont(font(object.style));
            painter.drawText(QRectF(left, top, width, row.height),
                             object.style.align | Qt::AlignVCenter, m_document.text(object));
        }
        top += row.height;
    }
    drawCaptions(painter, top + mm(HeaderGapMm));
}

void ReportPainter::drawCaptions(QPainter& painter, double top) const
{
    const QList<ReportColumn>& columns = m_document.layout().columns;
    painter.setFont(m_bold);
    for (int c = 0; c < columns.size(); ++c) {
        painter.drawText(cell(c, top, m_captionHeight), columns[c].align | Qt::AlignVCenter,
                         m_document.caption(c));
    }
    painter.setPen(QPen(Qt::black, mm(0.2)));
    painter.drawLine(QPointF(0, top + m_captionHeight - mm(0.5)),
                     QPointF(m_body.width(), top + m_captionHeight - mm(0.5)));
}

QRectF ReportPainter::cell(int column, double top, double height) const
{
    const double padding = mm(CellPaddingMm);
    return QRectF(m_columnLeft[column] + padding, top, m_columnWidth[column] - 2 * padding, height);
}

void ReportPainter::drawBand(QPainter& painter, const Band& band) const
{
    const ReportLayout& layout = m_document.layout();
    switch (band.kind) {
    case Band::Kind::Detail:
        drawDetail(painter, band);
        break;
    case Band::Kind::GroupHeader: {
        const ReportGroup& group = layout.groups[band.level];
        const double indent = mm(GroupIndentMm) * band.level;
        painter.setFont(m_bold);
        painter.drawText(QRectF(indent, band.top, m_body.width() - indent, band.height),
                         Qt::AlignLeft | Qt::AlignBottom,
                         m_document.groupText(group.header, band.level, band.first));
        break;
    }
    case Band::Kind::GroupFooter: {
        const ReportGroup& group = layout.groups[band.level];
        drawTotals(painter, band, m_document.groupText(group.footerLabel, band.level, band.first),
                   group.totals);
        break;
    }
    case Band::Kind::ReportFooter:
        drawTotals(painter, band, layout.footer.label, layout.footer.totals);
        break;
    }
}

void ReportPainter::drawDetail(QPainter& painter, const Band& band) const
{
    const QList<ReportColumn>& columns = m_document.layout().columns;
    painter.setFont(m_font);
    const QFontMetricsF metrics(m_font, m_device);
    for (int c = 0; c < columns.size(); ++c) {
        const ReportColumn& column = columns[c];
        const QRectF rect = cell(c, band.top, band.height);
        QString text = column.format.display(m_document.value(band.first, c));
        if (column.wrap) {
            painter.drawText(rect, column.align | Qt::AlignTop | Qt::TextWordWrap, text);
            continue;
        }
        if (metrics.horizontalAdvance(text) > rect.width()) {
            text = metrics.elidedText(text, Qt::ElideRight, rect.width());
        }
        painter.drawText(rect, column.align | Qt::AlignVCenter, text);
    }
}

void ReportPainter::drawTotals(QPainter& painter, const Band& band, const QString& label,
                               const QList<ReportTotal>& totals) const
{
    const ReportLayout& layout = m_document.layout();
    painter.setFont(m_bold);
    painter.setPen(QPen(Qt::black, mm(0.2)));
    int labelEnd = int(layout.columns.size());
    for (const ReportTotal& total : totals) {
        const int c = layout.columnOf(total.field);
        labelEnd = qMin(labelEnd, c);
        const QVariant value = m_document.total(total, band.first, band.last);
        const QString text = total.function == ReportTotal::Function::Count
                                 ? value.toString()
                                 : layout.columns[c].format.display(value);
        const QRectF rect = cell(c, band.top, band.height);
        painter.drawLine(rect.topLeft() + QPointF(0, mm(0.5)),
                         rect.topRight() + QPointF(0, mm(0.5)));
        painter.drawText(rect, layout.columns[c].align | Qt::AlignVCenter, text);
    }
    const double labelWidth =
        labelEnd > 0 ? m_columnLeft[labelEnd - 1] + m_columnWidth[labelEnd - 1] : m_body.width();
    painter.drawText(QRectF(mm(CellPaddingMm), band.top, labelWidth, band.height),
                     Qt::AlignLeft | Qt::AlignVCenter, label);
}

void ReportPainter::drawPageFooter(QPainter& painter, int page, int pages) const
{
    const ReportLayout& layout = m_document.layout();
    painter.setFont(m_font);
    painter.drawText(QRectF(0, m_body.height() - m_footerHeight, m_body.width(), m_footerHeight),
                     layout.pageFooterAlign | Qt::AlignBottom,
                     fill(layout.pageFooter, page, pages, m_document.today()));
}
