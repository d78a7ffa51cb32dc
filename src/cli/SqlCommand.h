#pragma once

#include "CliContext.h"

#include <optional>

class Arguments;

/**
 * "sql": runs one statement on the installation's data. A query prints its
 * rows as CSV, any other statement the number of rows it changed.
 */
namespace SqlCommand {

ExitCode run(const CliContext& context, Arguments& arguments);

/**
 * The one statement of the text, without the semicolon that ends it and the
 * comments after it; nothing when a second statement follows. A semicolon
 * inside quotes or a comment ends nothing. The server would run several
 * statements at once where the embedded engine refuses them: both refuse here.
 */
std::optional<QString> singleStatement(const QString& sql);

} // namespace SqlCommand
