#include "ReportExport.h"

#include "ReportDocument.h"

#include <QFile>
#include <QPdfWriter>
#include <QSaveFile>

namespace ReportExport {

std::optional<Format> formatNamed(const QString& name)
{
    const QString lower = name.toLower();
    if (lower == QLatin1String("pdf")) {
        return Format::Pdf;
    }
    if (lower == QLatin1String("xlsx")) {
        return Format::Xlsx;
    }
    if (lower == QLatin1String("csv")) {
        return Format::Csv;
    }
    return std::nullopt;
}

bool write(const ReportDocument& document, Format format, const QString& path, QString* error,
           const ReportPainter::Progress& progress)
{
    switch (format) {
    case Format::Pdf:
        return writePdf(document, path, error, progress);
    case Format::Xlsx:
        return writeXlsx(document, path, error);
    case Format::Csv:
        break;
    }
    return writeCsv(document, path, error);
}

bool writePdf(const ReportDocument& document, const QString& path, QString* error,
              const ReportPainter::Progress& progress)
{
    QFile probe(path);
    if (!probe.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("Cannot write %1: %2").arg(path, probe.errorString());
        return false;
    }
    probe.close();
    QPdfWriter writer(path);
    writer.setTitle(document.layout().title);
    writer.setCreator(QStringLiteral("Tandrill"));
    writer.setResolution(600);
    ReportPainter painter(document);
    return painter.paint(&writer, error, progress);
}

QString csvField(const QString& text)
{
    static const QString needsQuotes = QStringLiteral(",\"\r\n");
    for (const QChar c : text) {
        if (needsQuotes.contains(c)) {
            return u'"' + QString(text).replace(u'"', QStringLiteral("\"\"")) + u'"';
        }
    }
    return text;
}

bool writeCsv(const ReportDocument& document, const QString& path, QString* error)
{
    const QList<ReportColumn>& columns = document.layout().columns;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    QStringList fields;
    for (int c = 0; c < columns.size(); ++c) {
        fields.append(csvField(document.caption(c)));
    }
    file.write((fields.join(u',') + QStringLiteral("\r\n")).toUtf8());
    for (qsizetype row = 0; row < document.rowCount(); ++row) {
        fields.clear();
        for (int c = 0; c < columns.size(); ++c) {
            fields.append(csvField(columns[c].format.plain(document.value(row, c))));
        }
        file.write((fields.join(u',') + QStringLiteral("\r\n")).toUtf8());
    }
    if (!file.commit()) {
        *error = QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace ReportExport
