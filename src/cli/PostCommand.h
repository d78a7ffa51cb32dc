#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "post": posts every Complete work order in one go and prints the work
 * orders posted and those held back for want of a count.
 */
namespace PostCommand {

ExitCode run(const CliContext& context, Arguments& arguments);

} // namespace PostCommand
