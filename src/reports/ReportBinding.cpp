#include "ReportBinding.h"

#include <QSqlQuery>
#include <QSqlRecord>

namespace ReportBinding {

namespace {

/** The query's column of each field, in the order of the layout's fields; false on a missing one.
 */
bool matchFields(const ReportLayout& layout, const QSqlRecord& record, QList<int>* positions,
                 QString* error)
{
    for (const QString& field : layout.fields()) {
        int position = -1;
        for (int c = 0; c < record.count() && position < 0; ++c) {
            if (record.fieldName(c).compare(field, Qt::CaseInsensitive) == 0) {
                position = c;
            }
        }
        if (position < 0) {
            *error = QStringLiteral("The report layout %1 shows the field %2, which its query "
                                    "does not give.")
                         .arg(layout.name, field);
            return false;
        }
        positions->append(position);
    }
    return true;
}

} // namespace

std::optional<ReportDocument> bind(const ReportLayout& layout, QSqlQuery& query, QString* error)
{
    QList<int> positions;
    if (!matchFields(layout, query.record(), &positions, error)) {
        return std::nullopt;
    }
    QList<ValueFormat> formats;
    for (int field = 0; field < positions.size(); ++field) {
        formats.append(layout.fieldFormat(field));
    }
    QList<QVariantList> rows;
    while (query.next()) {
        QVariantList row;
        row.reserve(positions.size());
        for (int field = 0; field < positions.size(); ++field) {
            row.append(formats[field].typed(query.value(positions[field])));
        }
        rows.append(row);
    }
    return ReportDocument(layout, std::move(rows));
}

} // namespace ReportBinding
