#pragma once

#include "DataHelpers.h"

#include <QChar>
#include <QString>

/**
 * Crew numbers and ranges as the filter boxes take them: "3,7-9,12".
 * The boxes admit digits, "," and "-" only, and a separator never first
 * nor after another separator.
 */
namespace CrewRange {

/** True when key may be typed behind text. */
bool acceptsKey(const QString& text, QChar key);
/** True when the whole text could have been typed key by key. */
bool isValid(const QString& text);

/**
 * The condition on field that the range selects, each number bound: pieces
 * joined by " Or ". A blank piece ends the range; "7-" adds nothing; "1-2-3"
 * keeps 1 to 2 and ends the range there. A blank range gives an empty filter.
 */
SqlFilter condition(const QString& range, const QString& field);

} // namespace CrewRange
