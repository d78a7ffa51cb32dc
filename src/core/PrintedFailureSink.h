#pragma once

#include "Failure.h"

#include <QTextStream>

class Session;

/**
 * Failures where nobody can answer a screen (the command line, a desktop run
 * without a display): printed on a stream, one line each, and kept in the
 * error list like those of the desktop.
 */
class PrintedFailureSink : public FailureSink
{
public:
    PrintedFailureSink(Session& session, QTextStream& err) : m_session(session), m_err(err) {}

    void report(const Failure& failure) override;

    /** The line printed for a failure. */
    static QString line(const Failure& failure);

private:
    Session& m_session;
    QTextStream& m_err;
};
