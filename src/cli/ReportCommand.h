#pragma once

#include "CliContext.h"

class Arguments;

/**
 * "report": lists the reports, or runs one through the same runner as the
 * desktop and writes it to a PDF, XLSX or CSV file instead of the preview.
 */
namespace ReportCommand {

ExitCode run(const CliContext& context, Arguments& arguments);

} // namespace ReportCommand
