#pragma once

#include "DataHelpers.h"

class Session;

/** Reading helpers the parts register, the check-in and the picker share. */
namespace PartQueries {

/**
 * Part number or description starting with text, without regard to case,
 * for a column prefix such as "tblPart."; an empty filter for blank text.
 */
SqlFilter startsWith(const QString& text, const QString& prefix = QString());

/** A number typed into a field for binding: NULL when blank. */
QVariant number(const QString& text);

} // namespace PartQueries
