#pragma once

#include <QString>

class Installation;

/**
 * Where layouts lie: "Custom Reports" holds a user's own version of a
 * layout under the same file name, "Reports" those that come with the
 * program. The standard ones are built into the program and installed from it.
 */
namespace LayoutFiles {

inline const QString Extension = QStringLiteral(".rpt");
inline const QString StandardFolder = QStringLiteral("Reports");
inline const QString CustomFolder = QStringLiteral("Custom Reports");

/** The layout's file in the standard folder, whether or not it exists. */
QString standardPath(const Installation& installation, const QString& layout);
/** The custom file when it exists, else the standard one. */
QString lookup(const Installation& installation, const QString& layout);

/** Writes every standard layout into the standard folder; false with a reason when one fails. */
bool installStandard(const Installation& installation, QString* error);

} // namespace LayoutFiles
