#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "generate": makes the work orders of every machine with services due in
 * a date range (or of the units named), as the print tab does for the rows
 * ticked, and prints the new numbers.
 */
namespace GenerateCommand {

ExitCode run(const CliContext& context, Arguments& arguments);

} // namespace GenerateCommand
