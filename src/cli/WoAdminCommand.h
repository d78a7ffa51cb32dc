#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "wo delete" and "wo unscheduled": a work order removed without history,
 * and empty work orders for work that no schedule asked for.
 */
namespace WoAdminCommand {

/** True when subcommand is one of these; run then does it. */
bool handles(const QString& subcommand);
ExitCode run(const CliContext& context, const QString& subcommand, Arguments& arguments);

} // namespace WoAdminCommand
