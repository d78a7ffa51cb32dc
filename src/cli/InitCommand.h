#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "init": makes a new installation with a new data file, on the embedded
 * engine or on a PostgreSQL server, and with --demo fills it with a sample fleet.
 */
namespace InitCommand {

/** Runs the command on what is left of the command line after the command's name. */
ExitCode run(const CliContext& context, Arguments& arguments);

} // namespace InitCommand
