#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "reading": stores one meter reading of a machine through the checks a
 * typed reading passes, then runs the rule that makes meter services due.
 */
namespace ReadingCommand {

ExitCode run(const CliContext& context, Arguments& arguments);

} // namespace ReadingCommand
