#include "ReportLayout.h"

QStringList ReportLayout::fields() const
{
    QStringList names;
    for (const ReportColumn& column : columns) {
        names.append(column.field);
    }
    for (const ReportGroup& group : groups) {
        if (!names.contains(group.field, Qt::CaseInsensitive)) {
            names.append(group.field);
        }
    }
    return names;
}

int ReportLayout::columnOf(const QString& field) const
{
    for (int i = 0; i < columns.size(); ++i) {
        if (columns[i].field.compare(field, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

const TextObject* ReportLayout::textObject(const QString& name) const
{
    for (const TextObject& object : header) {
        if (object.name.compare(name, Qt::CaseInsensitive) == 0) {
            return &object;
        }
    }
    return nullptr;
}
