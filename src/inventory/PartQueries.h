#pragma once

#include "DataHelpers.h"

class Session;

/** Reading helpers the parts register, the check-in and the picker share. */
namespace PartQueries {

/** The rows of a prepared statement; a failure is reported under module and procedure. */
Rows read(Session& session, const QString& module, const QString& procedure, const QString& sql,
          const QVariantList& values = {});

/**
 * Part number or description starting with text, without regard to case,
 * for a column prefix such as "tblPart."; an empty filter for blank text.
 */
SqlFilter startsWith(const QString& text, const QString& prefix = QString());

/** A number typed into a field for binding: NULL when blank. */
QVariant number(const QString& text);

} // namespace PartQueries
