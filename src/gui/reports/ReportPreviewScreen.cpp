#include "ReportPreviewScreen.h"

#include "Prompter.h"
#include "ReportPainter.h"
#include "ReportRunner.h"
#include "Session.h"

#include <QApplication>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProgressDialog>
#include <QPushButton>

namespace {

QString& nextExportFile()
{
    static QString path;
    return path;
}

struct ExportKind
{
    const char* name;
    const char* caption;
    const char* filter;
    ReportExport::Format format;
};

const ExportKind Exports[] = {
    {"cmdExportPdf", "Export PDF", "PDF (*.pdf)", ReportExport::Format::Pdf},
    {"cmdExportXlsx", "Export XLSX", "Excel workbook (*.xlsx)", ReportExport::Format::Xlsx},
    {"cmdExportCsv", "Export CSV", "CSV (*.csv)", ReportExport::Format::Csv},
};

constexpr double ZoomStep = 1.25;
constexpr int PagingButtonWidth = 40;
constexpr int ProgressDelayMs = 500;

} // namespace

ReportPreviewScreen::ReportPreviewScreen(Session& session, const ReportDocument& document,
                                         QWidget* parent)
    : QDialog(parent), m_session(session), m_document(document)
{
    setObjectName(QStringLiteral("frmReportPreview"));
    setWindowTitle(QStringLiteral("Report(s)"));
    m_strip = buildStrip();
    m_viewer = new QPrintPreviewWidget(this);
    m_viewer->setObjectName(QStringLiteral("CRViewerReport"));
    connect(m_viewer, &QPrintPreviewWidget::paintRequested, this, &ReportPreviewScreen::paintPages);
    connect(m_viewer, &QPrintPreviewWidget::previewChanged, this,
            &ReportPreviewScreen::showPageNumber);
    m_viewer->setZoomMode(QPrintPreviewWidget::CustomZoom);
    m_viewer->setZoomFactor(1.0);
    resize(1000, 760);
}

QPushButton* ReportPreviewScreen::addButton(QWidget* strip, const QString& name,
                                            const QString& caption)
{
    auto* button = new QPushButton(caption, strip);
    button->setObjectName(name);
    button->setAutoDefault(false);
    strip->layout()->addWidget(button);
    return button;
}

QWidget* ReportPreviewScreen::buildStrip()
{
    auto* strip = new QWidget(this);
    auto* row = new QHBoxLayout(strip);
    connect(addButton(strip, QStringLiteral("cmdPrint"), QStringLiteral("Printer Settings")),
            &QPushButton::clicked, this, &ReportPreviewScreen::print);
    const QList<std::pair<const char*, std::function<int()>>> paging{
        {"cmdFirstPage", [] { return 1; }},
        {"cmdPreviousPage", [this] { return m_viewer->currentPage() - 1; }},
        {"cmdNextPage", [this] { return m_viewer->currentPage() + 1; }},
        {"cmdLastPage", [this] { return m_viewer->pageCount(); }}};
    const QStringList pagingCaptions{QStringLiteral("|<"), QStringLiteral("<"), QStringLiteral(">"),
                                     QStringLiteral(">|")};
    for (int i = 0; i < paging.size(); ++i) {
        const auto target = paging[i].second;
        QPushButton* button =
            addButton(strip, QString::fromLatin1(paging[i].first), pagingCaptions[i]);
        button->setMaximumWidth(PagingButtonWidth);
        connect(button, &QPushButton::clicked, this, [this, target] { goToPage(target()); });
    }
    m_page = new QLabel(strip);
    m_page->setObjectName(QStringLiteral("lblPage"));
    row->addWidget(m_page);
    connect(addButton(strip, QStringLiteral("cmdZoomIn"), QStringLiteral("Zoom In")),
            &QPushButton::clicked, this, [this] { m_viewer->zoomIn(ZoomStep); });
    connect(addButton(strip, QStringLiteral("cmdZoomOut"), QStringLiteral("Zoom Out")),
            &QPushButton::clicked, this, [this] { m_viewer->zoomOut(ZoomStep); });
    row->addStretch();
    for (const ExportKind& kind : Exports) {
        connect(addButton(strip, QString::fromLatin1(kind.name), QString::fromLatin1(kind.caption)),
                &QPushButton::clicked, this, [this, kind] { exportTo(kind.format); });
    }
    return strip;
}

void ReportPreviewScreen::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    m_strip->setGeometry(0, 0, width(), StripHeight);
    if (height() > StripHeight) {
        m_viewer->setGeometry(0, StripHeight, width(), height() - StripHeight);
    }
}

void ReportPreviewScreen::paintPages(QPrinter* printer)
{
    QString error;
    ReportPainter painter(m_document);
    if (!painter.paint(printer, &error)) {
        m_session.prompter().message(error, Prompter::Buttons::Ok, Prompter::Icon::Critical);
    }
}

void ReportPreviewScreen::showPageNumber()
{
    m_page->setText(
        QStringLiteral("Page %1 of %2").arg(m_viewer->currentPage()).arg(m_viewer->pageCount()));
}

void ReportPreviewScreen::goToPage(int page)
{
    m_viewer->setCurrentPage(qBound(1, page, m_viewer->pageCount()));
    showPageNumber();
}

void ReportPreviewScreen::print()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageLayout(m_document.layout().page);
    printer.setDocName(m_document.layout().title);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted) {
        paintPages(&printer);
    }
}

void ReportPreviewScreen::exportTo(ReportExport::Format format)
{
    const ExportKind& kind = Exports[int(format)];
    QString path = std::exchange(nextExportFile(), QString());
    if (path.isEmpty()) {
        path = QFileDialog::getSaveFileName(this, QString::fromLatin1(kind.caption),
                                            m_document.layout().name,
                                            QString::fromLatin1(kind.filter));
    }
    if (path.isEmpty()) {
        return;
    }
    // A PDF of a large fleet runs to hundreds of pages: show how far it is.
    QProgressDialog progress(QStringLiteral("Writing %1").arg(path), QString(), 0, 1, this);
    progress.setObjectName(QStringLiteral("dlgExportProgress"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(ProgressDelayMs);
    QString error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool written =
        ReportExport::write(m_document, format, path, &error, [&progress](int page, int pages) {
            progress.setMaximum(pages);
            progress.setValue(page);
        });
    QApplication::restoreOverrideCursor();
    progress.reset();
    if (!written) {
        m_session.prompter().message(error, Prompter::Buttons::Ok, Prompter::Icon::Exclamation);
    }
}

void ReportPreviewScreen::setNextExportFile(const QString& path)
{
    nextExportFile() = path;
}

bool ReportPreviewScreen::showReport(Session& session, const QString& procedure,
                                     const SqlFilter& filter, QWidget* parent)
{
    const ReportDefinition* report = ReportCatalogue::find(procedure);
    if (!report) {
        return false;
    }
    ReportRunner runner(session, [&session, parent](ReportDocument& document) {
        ReportPreviewScreen screen(session, document, parent);
        screen.exec();
    });
    runner.setBusyHook([](bool busy) {
        if (busy) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        } else {
            QApplication::restoreOverrideCursor();
        }
    });
    return runner.show(*report, filter);
}
