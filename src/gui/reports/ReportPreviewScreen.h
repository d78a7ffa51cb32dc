#pragma once

#include "DataHelpers.h"
#include "ReportDocument.h"
#include "ReportExport.h"

#include <QDialog>

class QLabel;
class QPrintPreviewWidget;
class QPrinter;
class Session;

/**
 * frmReportPreview, "Report(s)": the pages of one report at 100 %, with
 * paging, zoom, the printer through the platform's print dialog, and export
 * of the shown report to PDF, XLSX and CSV. It draws with the same painter
 * as the PDF, so what is seen is what is printed.
 */
class ReportPreviewScreen : public QDialog
{
    Q_OBJECT

public:
    /** The height of the button strip above the pages. */
    static constexpr int StripHeight = 60;

    ReportPreviewScreen(Session& session, const ReportDocument& document,
                        QWidget* parent = nullptr);

    /**
     * Runs the report of that procedure through the runner with the filter and,
     * when it has rows, shows it here modally; true when it was shown.
     */
    static bool showReport(Session& session, const QString& procedure, const SqlFilter& filter,
                           QWidget* parent);

    /** The next export asks for no file and takes this one (for tests); empty to ask again. */
    static void setNextExportFile(const QString& path);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* buildStrip();
    QPushButton* addButton(QWidget* strip, const QString& name, const QString& caption);
    void paintPages(QPrinter* printer);
    void showPageNumber();
    void goToPage(int page);
    void print();
    void exportTo(ReportExport::Format format);

    Session& m_session;
    const ReportDocument& m_document;
    QWidget* m_strip = nullptr;
    QPrintPreviewWidget* m_viewer = nullptr;
    QLabel* m_page = nullptr;
};
