#include "ReportDocument.h"

#include <algorithm>

ReportDocument::ReportDocument(ReportLayout layout, QList<QVariantList> rows)
    : m_layout(std::move(layout)), m_rows(std::move(rows))
{
    const QStringList fields = m_layout.fields();
    for (const ReportGroup& group : m_layout.groups) {
        m_groupFields.append(int(fields.indexOf(group.field)));
    }
    sortByGroups();
}

void ReportDocument::sortByGroups()
{
    if (m_groupFields.isEmpty()) {
        return;
    }
    std::stable_sort(m_rows.begin(), m_rows.end(),
                     [this](const QVariantList& a, const QVariantList& b) {
                         for (int field : std::as_const(m_groupFields)) {
                             const int order = ValueFormat::compare(a[field], b[field]);
                             if (order != 0) {
                                 return order < 0;
                             }
                         }
                         return false;
                     });
}

bool ReportDocument::setText(const QString& name, const QString& text)
{
    if (!m_layout.textObject(name)) {
        return false;
    }
    m_texts.insert(name.toLower(), text);
    return true;
}

QString ReportDocument::text(const TextObject& object) const
{
    const QString text = m_texts.value(object.name.toLower(), object.text);
    return QString(text).replace(QLatin1String("{today}"),
                                 m_today.toString(QStringLiteral("MM/dd/yyyy")));
}

QString ReportDocument::caption(int column) const
{
    QString caption = m_layout.columns[column].caption;
    for (const TextObject& object : m_layout.header) {
        caption.replace(u'{' + object.name + u'}', text(object), Qt::CaseInsensitive);
    }
    return caption;
}

QString ReportDocument::groupText(const QString& text, int level, qsizetype row) const
{
    const int field = m_groupFields[level];
    return QString(text).replace(QLatin1String("{value}"),
                                 m_layout.fieldFormat(field).display(value(row, field)));
}

QVariant ReportDocument::total(const ReportTotal& total, qsizetype first, qsizetype last) const
{
    const int field = m_layout.columnOf(total.field);
    if (total.function == ReportTotal::Function::Count) {
        return qlonglong(last - first + 1);
    }
    const bool whole = m_layout.fieldFormat(field).kind == ValueFormat::Kind::Integer;
    double sum = 0;
    for (qsizetype row = first; row <= last; ++row) {
        sum += value(row, field).toDouble();
    }
    return whole ? QVariant(qRound64(sum)) : QVariant(sum);
}
