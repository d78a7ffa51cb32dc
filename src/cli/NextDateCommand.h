#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "next-date": the next date of one service on a machine, or of all of
 * them, as the scheduling logic calculates it. The data is only read.
 */
namespace NextDateCommand {

ExitCode run(const CliContext& context, Arguments& arguments);

/** A day as the command prints it: yyyy-MM-dd, or "none" for the empty date. */
QString dayText(const QDate& day);

} // namespace NextDateCommand
