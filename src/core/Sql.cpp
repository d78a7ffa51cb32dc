#include "Sql.h"

#include <QSqlError>

namespace Sql {

bool exec(QSqlQuery& q, const QString& sql, const QVariantList& values)
{
    if (values.isEmpty()) {
        // Statements without values need no preparing, and PostgreSQL prepares no DDL.
        return q.exec(sql);
    }
    if (!q.prepare(sql)) {
        return false;
    }
    for (const QVariant& value : values) {
        q.addBindValue(value);
    }
    return q.exec();
}

Failure failure(const QString& module, const QString& procedure, const QSqlError& error)
{
    bool numeric = false;
    qint64 number = error.nativeErrorCode().toLongLong(&numeric);
    if (!numeric || number == 0) {
        // PostgreSQL names its errors with five characters; the report wants a number.
        number = 1;
    }
    QString description = error.text();
    if (!numeric && !error.nativeErrorCode().isEmpty()) {
        description += QStringLiteral(" [%1]").arg(error.nativeErrorCode());
    }
    return {module, procedure, number, description, 0};
}

} // namespace Sql
