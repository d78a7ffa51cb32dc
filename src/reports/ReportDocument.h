#pragma once

#include "ReportLayout.h"

#include <QDate>
#include <QHash>
#include <QList>
#include <QVariant>

/**
 * A layout with its rows: what the preview, the printer and the exports
 * draw from. Row values stand in the order of ReportLayout::fields(), so
 * value(row, c) of a column index c is that column's value. The rows are
 * ordered by the groups' fields, keeping the query's order within a group.
 */
class ReportDocument
{
public:
    /** Rows already typed by the fields' formats (see ReportBinding). */
    ReportDocument(ReportLayout layout, QList<QVariantList> rows);

    const ReportLayout& layout() const { return m_layout; }
    qsizetype rowCount() const { return m_rows.size(); }
    QVariant value(qsizetype row, int field) const { return m_rows[row][field]; }

    /**
     * Sets the text of the page header's object of that name. False when the
     * layout has no such object, which the runner takes as the engine's "error 9".
     */
    bool setText(const QString& name, const QString& text);
    /** The object's text: set by the program, else the layout's, with "{today}" filled in. */
    QString text(const TextObject& object) const;

    /**
     * Column c's caption, where "{name}" stands for the text of the page header's
     * object of that name: a caption the program sets, such as a user-defined field's.
     */
    QString caption(int column) const;

    /** The day the report is printed, for "{today}". */
    void setToday(const QDate& today) { m_today = today; }
    QDate today() const { return m_today; }

    /** The field index of group level. */
    int groupField(int level) const { return m_groupFields[level]; }
    /** A group's header or footer text with "{value}" filled in from the row. */
    QString groupText(const QString& text, int level, qsizetype row) const;
    /** The total over the rows first to last: a count, or a sum of the non-empty values. */
    QVariant total(const ReportTotal& total, qsizetype first, qsizetype last) const;

private:
    void sortByGroups();

    ReportLayout m_layout;
    QList<QVariantList> m_rows;
    QList<int> m_groupFields;
    QHash<QString, QString> m_texts; ///< by object name in small letters
    QDate m_today;
};
