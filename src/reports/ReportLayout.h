#pragma once

#include "ValueFormat.h"

#include <QList>
#include <QPageLayout>
#include <QString>
#include <QStringList>

/** The look of one line of text: size in points (0: the layout's), weight, alignment. */
struct TextStyle
{
    double size = 0;
    bool bold = false;
    Qt::Alignment align = Qt::AlignLeft;
};

/**
 * A named text object of the page header. The program may set its text by
 * name (lblCompanyName, UDField1, lblDateFrom, ...); otherwise the layout's
 * own text stands. Objects sharing a row stand side by side.
 */
struct TextObject
{
    QString name;
    QString text;
    int row = 0;
    double left = 0;  ///< millimetres from the left margin
    double width = 0; ///< millimetres; 0 for the rest of the line
    TextStyle style;
};

/** A column bound by name to a field of the report's query. */
struct ReportColumn
{
    QString field;
    QString caption;  ///< the field's name unless the layout gives one
    double width = 0; ///< millimetres
    Qt::Alignment align = Qt::AlignLeft;
    ValueFormat format;
    bool wrap = false; ///< long text breaks into lines instead of being cut
};

/** A sum or a count printed under its column. */
struct ReportTotal
{
    enum class Function { Sum, Count };

    QString field;
    Function function = Function::Sum;
};

/** Rows that share a field's value, with a header line and a line of totals. */
struct ReportGroup
{
    QString field;
    QString header;      ///< "{value}" stands for the group's value
    QString footerLabel; ///< the same; no totals line when empty and without totals
    QList<ReportTotal> totals;
};

/** The last lines of the report: a label and the totals over every row. */
struct ReportFooter
{
    QString label;
    QList<ReportTotal> totals;
};

/**
 * A report layout as read from its file: the page, the page header's text
 * objects, the columns, the groups, the report footer and the page footer.
 * docs/report-layouts.md describes the file.
 */
struct ReportLayout
{
    QString name; ///< the file name without its extension, as errors name it
    QString title;
    QPageLayout page;
    QString fontFamily;
    double fontSize = 0;
    QList<TextObject> header;
    QList<ReportColumn> columns;
    QList<ReportGroup> groups;
    ReportFooter footer;
    QString pageFooter; ///< "{page}" and "{pages}" stand for the numbers
    Qt::Alignment pageFooterAlign = Qt::AlignRight;

    /** Every field the layout reads: its columns' fields, then the group fields not among them. */
    QStringList fields() const;
    /** The column showing field, compared without regard to case; -1 when none does. */
    int columnOf(const QString& field) const;
    /** The format of field number i of fields(): its column's, or text for a group field. */
    ValueFormat fieldFormat(int i) const
    {
        return i < columns.size() ? columns[i].format : ValueFormat();
    }
    const TextObject* textObject(const QString& name) const;
};
