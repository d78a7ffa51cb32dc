#include "ErrorHandler.h"

#include "Session.h"
#include "Sql.h"
#include "SqlValue.h"

bool errorHandler(Session& session, const Failure& failure)
{
    if (failure.number == 0) {
        return false;
    }
    if (FailureSink* sink = session.failureSink()) {
        sink->report(failure);
    } else {
        saveErrorList(session, failure);
    }
    return true;
}

bool saveErrorList(Session& session, const Failure& failure, const QString& userMessage,
                   const QString& userEmail, QSqlError* error)
{
    const QVariantList values{failure.number,
                              failure.description,
                              failure.line,
                              userMessage,
                              failure.module,
                              failure.procedure,
                              SqlValue::dateTime(session.clock().now()),
                              userEmail};
    const auto write = [values](QSqlQuery& q) {
        return Sql::exec(q,
                         QStringLiteral("INSERT INTO tblErrorList (ErrNumber, ErrDescription, "
                                        "LineNumber, UserMsg, ModuleName, ProcedureName, "
                                        "ErrDateTime, UserEmail) VALUES (?, ?, ?, ?, ?, ?, ?, ?)"),
                         values);
    };
    return session.writeAside(
        {QStringLiteral("frmSendEmail"), QStringLiteral("SaveErrorList"), write}, error);
}
