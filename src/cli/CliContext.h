#pragma once

#include <QDate>
#include <QString>
#include <QTextStream>

/** What the command line answers the shell with. */
enum class ExitCode : int {
    Success = 0,
    Failure = 1, ///< the command ran and could not do its work
    Usage = 2,   ///< the command line itself was wrong
};

/**
 * What every command receives: the installation folder, the day to take as
 * today (invalid for the real one) and the two streams it writes to, so that
 * tests can capture them.
 */
struct CliContext
{
    QString home;
    QDate today;
    QTextStream& out;
    QTextStream& err;
};
