#include "CsvWriter.h"

#include "ReportExport.h"

#include <QDate>
#include <QDateTime>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>

namespace CsvWriter {

namespace {

QString plainText(const QVariant& value)
{
    if (value.isNull()) {
        return QString();
    }
    const QMetaType type = value.metaType();
    if (type == QMetaType::fromType<QDate>()) {
        return value.toDate().toString(QStringLiteral("yyyy-MM-dd"));
    }
    if (type == QMetaType::fromType<QDateTime>()) {
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    }
    if (type == QMetaType::fromType<QByteArray>()) {
        return QString::fromLatin1(value.toByteArray().toHex());
    }
    return value.toString();
}

} // namespace

QString field(const QVariant& value)
{
    return ReportExport::csvField(plainText(value));
}

qint64 writeQuery(QSqlQuery& query, QTextStream& out)
{
    const QSqlRecord record = query.record();
    QStringList fields;
    for (int c = 0; c < record.count(); ++c) {
        fields.append(ReportExport::csvField(record.fieldName(c)));
    }
    out << fields.join(u',') << u'\n';
    qint64 rows = 0;
    while (query.next()) {
        fields.clear();
        for (int c = 0; c < record.count(); ++c) {
            fields.append(field(query.value(c)));
        }
        out << fields.join(u',') << u'\n';
        ++rows;
    }
    return rows;
}

} // namespace CsvWriter
