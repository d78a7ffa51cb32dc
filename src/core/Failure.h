#pragma once

#include <QString>

/** What an unexpected failure carries on its way to the error report. */
struct Failure
{
    QString module;
    QString procedure;
    qint64 number = 0;
    QString description;
    int line = 0;
};

/**
 * Where failures are reported: the desktop shows the error report screen,
 * the command line prints to stderr, tests record them.
 */
class FailureSink
{
public:
    virtual ~FailureSink() = default;
    virtual void report(const Failure& failure) = 0;
};
