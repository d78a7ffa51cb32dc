#pragma once

#include "ReportLayout.h"

#include <QByteArray>
#include <QString>
#include <optional>

/**
 * Reads report layout files (JSON, described in docs/report-layouts.md) and
 * checks them whole: an unknown key, page size, alignment or format, a
 * column without field or width, or a total on a field no column shows makes
 * the layout damaged, and the reason names the layout and what is wrong.
 */
namespace LayoutReader {

/** The layout in the file; no value, with the reason, when it is missing or damaged. */
std::optional<ReportLayout> read(const QString& path, QString* error);

/** The layout in text; name is the layout's name in the reason of a failure. */
std::optional<ReportLayout> parse(const QByteArray& text, const QString& name, QString* error);

} // namespace LayoutReader
