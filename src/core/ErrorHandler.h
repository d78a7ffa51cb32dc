#pragma once

#include "Failure.h"

#include <QString>

class QSqlError;
class Session;

/**
 * The one road of unexpected failures. A failure numbered 0 is none and
 * returns false; any other goes to the session's failure sink (or, without
 * one, straight into the error list) and returns true.
 */
bool errorHandler(Session& session, const Failure& failure);

inline bool errorHandler(Session& session, const QString& module, const QString& procedure,
                         qint64 number, const QString& description, int line = 0)
{
    return errorHandler(session, Failure{module, procedure, number, description, line});
}

/**
 * Keeps a failure in tblErrorList with the user's note and address, stamped with the
 * session's clock; false, with why in error, when it could not. Written aside from the
 * main connection's work (Session::writeAside), so that a rollback of the work that failed
 * keeps the row, and held until the data is open when it is not yet.
 */
bool saveErrorList(Session& session, const Failure& failure, const QString& userMessage = QString(),
                   const QString& userEmail = QString(), QSqlError* error = nullptr);
