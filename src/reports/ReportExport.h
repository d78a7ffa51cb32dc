#pragma once

#include "ReportPainter.h"

#include <QString>
#include <optional>

class ReportDocument;

/**
 * Writes a finished report to a file: PDF through the same painter as the
 * preview and the printer; XLSX and CSV as its rows under the column captions.
 */
namespace ReportExport {

enum class Format { Pdf, Xlsx, Csv };

/** The format named "pdf", "xlsx" or "csv", without regard to case. */
std::optional<Format> formatNamed(const QString& name);

/** Writes the report; false with a reason naming the file when it cannot. */
bool write(const ReportDocument& document, Format format, const QString& path, QString* error,
           const ReportPainter::Progress& progress = {});

bool writePdf(const ReportDocument& document, const QString& path, QString* error,
              const ReportPainter::Progress& progress = {});
/** RFC 4180: UTF-8, CRLF line ends, a field quoted when it holds a comma, quote or line break. */
bool writeCsv(const ReportDocument& document, const QString& path, QString* error);
/** Typed cells: numbers, money with its format, dates as dates; the header row bold and frozen. */
bool writeXlsx(const ReportDocument& document, const QString& path, QString* error);

/** A text as one CSV field, quoted when it has to be. */
QString csvField(const QString& text);

} // namespace ReportExport
