#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "wo complete", "wo line" and "wo part": recording work on open work
 * orders as the recording grids do it, one edit per call. A refused edit
 * prints why and writes nothing.
 */
namespace WoRecordCommand {

using Command = ExitCode (*)(const CliContext&, Arguments&);

/** The command for the word after "wo", or none when it is not one of these. */
Command commandNamed(const QString& name);

ExitCode complete(const CliContext& context, Arguments& arguments);
ExitCode line(const CliContext& context, Arguments& arguments);
ExitCode part(const CliContext& context, Arguments& arguments);

} // namespace WoRecordCommand
