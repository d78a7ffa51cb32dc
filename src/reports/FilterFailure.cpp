#include "FilterFailure.h"

#include <QList>
#include <QSqlError>

namespace {

struct Sign
{
    QString text; ///< PostgreSQL's SQLSTATE, or a part of SQLite's message
    FilterFailure kind;
};

// PostgreSQL names its errors by SQLSTATE; SQLite only by its message.
const QList<Sign>& postgresCodes()
{
    static const QList<Sign> codes{
        {QStringLiteral("42601"), FilterFailure::Syntax},
        {QStringLiteral("42703"), FilterFailure::UnknownName},
        {QStringLiteral("42P01"), FilterFailure::UnknownName},
        {QStringLiteral("42702"), FilterFailure::UnknownName}, // an ambiguous column
        {QStringLiteral("22P02"), FilterFailure::TypeMismatch},
        {QStringLiteral("22007"), FilterFailure::TypeMismatch},
        {QStringLiteral("22008"), FilterFailure::TypeMismatch},
        {QStringLiteral("42804"), FilterFailure::TypeMismatch},
        {QStringLiteral("42883"), FilterFailure::TypeMismatch}, // no operator for these types
        {QStringLiteral("42725"), FilterFailure::TypeMismatch},
    };
    return codes;
}

const QList<Sign>& sqliteMessages()
{
    static const QList<Sign> messages{
        {QStringLiteral("syntax error"), FilterFailure::Syntax},
        {QStringLiteral("unrecognized token"), FilterFailure::Syntax},
        {QStringLiteral("incomplete input"), FilterFailure::Syntax},
        {QStringLiteral("no such column"), FilterFailure::UnknownName},
        {QStringLiteral("no such table"), FilterFailure::UnknownName},
        {QStringLiteral("no such function"), FilterFailure::UnknownName},
        {QStringLiteral("ambiguous column name"), FilterFailure::UnknownName},
        {QStringLiteral("datatype mismatch"), FilterFailure::TypeMismatch},
        {QStringLiteral("wrong number of arguments"), FilterFailure::TypeMismatch},
    };
    return messages;
}

} // namespace

FilterFailure filterFailure(const QSqlError& error)
{
    const QString code = error.nativeErrorCode();
    for (const Sign& sign : postgresCodes()) {
        if (code == sign.text) {
            return sign.kind;
        }
    }
    const QString message = error.databaseText();
    for (const Sign& sign : sqliteMessages()) {
        if (message.contains(sign.text, Qt::CaseInsensitive)) {
            return sign.kind;
        }
    }
    return FilterFailure::Other;
}
