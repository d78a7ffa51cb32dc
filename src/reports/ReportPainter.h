#pragma once

#include "ReportDocument.h"
#include "ReportPagination.h"

#include <QFont>
#include <QList>
#include <QRectF>
#include <functional>

class QPagedPaintDevice;
class QPainter;

/**
 * Draws a report on any paged device through QPainter, so that the preview,
 * the printer and a PDF show the same pages: on each page the header's text
 * objects and the column captions, the page's bands, and the page footer
 * with "Page n of m". Layout units (millimetres, points) become device units
 * from the device's resolution.
 */
class ReportPainter
{
public:
    /** Told after each page drawn: the page's number and the number of pages. */
    using Progress = std::function<void(int page, int pages)>;

    explicit ReportPainter(const ReportDocument& document);

    /**
     * Sets the device's page to the layout's and draws every page. False with
     * the reason when the device cannot be painted on (a PDF file not writable).
     */
    bool paint(QPagedPaintDevice* device, QString* error, const Progress& progress = {});

    /** The pages as laid out for device; the device's page is set to the layout's. */
    QList<ReportPage> paginate(QPagedPaintDevice* device);

private:
    struct HeaderRow
    {
        double height = 0;
        QList<int> objects;
    };

    void measure(QPagedPaintDevice* device);
    double mm(double millimetres) const { return millimetres * m_dpi / 25.4; }
    QFont font(const TextStyle& style) const;
    double detailHeight(qsizetype row) const;

    void drawPageHeader(QPainter& painter) const;
    void drawCaptions(QPainter& painter, double top) const;
    void drawBand(QPainter& painter, const Band& band) const;
    void drawDetail(QPainter& painter, const Band& band) const;
    void drawTotals(QPainter& painter, const Band& band, const QString& label,
                    const QList<ReportTotal>& totals) const;
    void drawPageFooter(QPainter& painter, int page, int pages) const;
    QRectF cell(int column, double top, double height) const;

    const ReportDocument& m_document;
    QPagedPaintDevice* m_device = nullptr;
    double m_dpi = 72;
    QRectF m_body; ///< the printable area of a page
    double m_bodyTop = 0;
    double m_footerHeight = 0;
    double m_lineHeight = 0;
    double m_captionHeight = 0;
    QFont m_font;
    QFont m_bold;
    QList<double> m_columnLeft;
    QList<double> m_columnWidth;
    QList<HeaderRow> m_headerRows;
};
