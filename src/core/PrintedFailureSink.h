#pragma once

#include "Failure.h"

#include <QTextStream>

class Session;

/**
 * Failures of a command line run: printed on the error stream, one line
 * each, and kept in the error list like those of the desktop.
 */
class CliFailureSink : public FailureSink
{
public:
    CliFailureSink(Session& session, QTextStream& err) : m_session(session), m_err(err) {}

    void report(const Failure& failure) override;

    /** The line printed for a failure. */
    static QString line(const Failure& failure);

private:
    Session& m_session;
    QTextStream& m_err;
};
