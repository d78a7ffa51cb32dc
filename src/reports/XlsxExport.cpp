#include "ReportDocument.h"
#include "ReportExport.h"

#include <QDateTime>
#include <QFileInfo>
#include <xlsxwriter.h>

namespace ReportExport {

namespace {

constexpr double MillimetresPerCharacter = 2.0;

/** The cell formats of one workbook, made once. */
struct Formats
{
    explicit Formats(lxw_workbook* book)
        : header(workbook_add_format(book)), date(workbook_add_format(book)),
          dateTime(workbook_add_format(book)), money(workbook_add_format(book)), book(book)
    {
        format_set_bold(header);
        format_set_num_format(date, "mm/dd/yyyy");
        format_set_num_format(dateTime, "mm/dd/yyyy hh:mm");
        format_set_num_format(money, "#,##0.00");
    }

    /** A number's format with its decimals, made on first use. */
    lxw_format* number(int decimals)
    {
        lxw_format*& format = m_numbers[decimals];
        if (!format) {
            format = workbook_add_format(book);
            const QByteArray pattern =
                decimals > 0 ? "0." + QByteArray(decimals, '0') : QByteArray("0");
            format_set_num_format(format, pattern.constData());
        }
        return format;
    }

    lxw_format* header;
    lxw_format* date;
    lxw_format* dateTime;
    lxw_format* money;
    lxw_workbook* book;

private:
    QHash<int, lxw_format*> m_numbers;
};

lxw_datetime cellMoment(const QDateTime& moment)
{
    const QDate day = moment.date();
    const QTime time = moment.time();
    return {day.year(), day.month(), day.day(), time.hour(), time.minute(), double(time.second())};
}

lxw_error writeCell(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t col, const ValueFormat& format,
                    const QVariant& value, Formats& formats)
{
    if (value.isNull()) {
        return LXW_NO_ERROR;
    }
    const bool typedAsText = value.typeId() == QMetaType::QString;
    if (format.kind == ValueFormat::Kind::Date && !typedAsText) {
        lxw_datetime moment = cellMoment(QDateTime(value.toDate(), QTime(0, 0)));
        return worksheet_write_datetime(sheet, row, col, &moment, formats.date);
    }
    if (format.kind == ValueFormat::Kind::DateTime && !typedAsText) {
        lxw_datetime moment = cellMoment(value.toDateTime());
        return worksheet_write_datetime(sheet, row, col, &moment, formats.dateTime);
    }
    if (format.isNumeric() && !typedAsText) {
        lxw_format* cell = format.kind == ValueFormat::Kind::Money ? formats.money
                           : format.kind == ValueFormat::Kind::Number
                               ? formats.number(format.decimals)
                               : nullptr;
        return worksheet_write_number(sheet, row, col, value.toDouble(), cell);
    }
    return worksheet_write_string(sheet, row, col, format.plain(value).toUtf8().constData(),
                                  nullptr);
}

} // namespace

bool writeXlsx(const ReportDocument& document, const QString& path, QString* error)
{
    const QList<ReportColumn>& columns = document.layout().columns;
    lxw_workbook* book = workbook_new(QFile::encodeName(path).constData());
    if (!book) {
        *error = QStringLiteral("Cannot write %1").arg(path);
        return false;
    }
    Formats formats(book);
    lxw_worksheet* sheet = workbook_add_worksheet(book, document.layout().name.left(31).toUtf8());
    lxw_error result = LXW_NO_ERROR;
    for (int c = 0; c < columns.size(); ++c) {
        worksheet_set_column(sheet, lxw_col_t(c), lxw_col_t(c),
                             qMax(8.0, columns[c].width / MillimetresPerCharacter), nullptr);
        worksheet_write_string(sheet, 0, lxw_col_t(c), document.caption(c).toUtf8().constData(),
                               formats.header);
    }
    worksheet_freeze_panes(sheet, 1, 0);
    for (qsizetype row = 0; row < document.rowCount() && result == LXW_NO_ERROR; ++row) {
        for (int c = 0; c < columns.size() && result == LXW_NO_ERROR; ++c) {
            result = writeCell(sheet, lxw_row_t(row + 1), lxw_col_t(c), columns[c].format,
                               document.value(row, c), formats);
        }
    }
    const lxw_error closed = workbook_close(book);
    if (result == LXW_NO_ERROR) {
        result = closed;
    }
    if (result != LXW_NO_ERROR) {
        *error = QStringLiteral("Cannot write %1: %2")
                     .arg(path, QString::fromUtf8(lxw_strerror(result)));
        return false;
    }
    return true;
}

} // namespace ReportExport
