#include "PrintedFailureSink.h"

#include "ErrorHandler.h"

QString PrintedFailureSink::line(const Failure& failure)
{
    return QStringLiteral("Error %1 in %2 (%3): %4")
        .arg(QString::number(failure.number), failure.module, failure.procedure,
             failure.description);
}

void PrintedFailureSink::report(const Failure& failure)
{
    m_err << line(failure) << Qt::endl;
    if (!saveErrorList(m_session, failure)) {
        m_err << QStringLiteral("The failure could not be kept in the error list.") << Qt::endl;
    }
}
