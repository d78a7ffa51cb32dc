#pragma once

#include "Failure.h"

#include <QSqlQuery>
#include <QString>
#include <QVariantList>

class QSqlError;

/** Running statements: always prepared, every value bound. */
namespace Sql {

/** Prepares sql on q's connection, binds values in order and runs it. */
bool exec(QSqlQuery& q, const QString& sql, const QVariantList& values = {});

/** A failure from a statement, numbered for the error report. */
Failure failure(const QString& module, const QString& procedure, const QSqlError& error);

} // namespace Sql
