#pragma once

#include "ReportDocument.h"

#include <QString>
#include <optional>

class QSqlQuery;

/**
 * Gives a layout its rows: each field the layout reads is matched to a
 * column of the query by name, without regard to case (PostgreSQL hands its
 * names back in small letters), and each value is typed by the field's format.
 */
namespace ReportBinding {

/**
 * Reads every row of an executed query. No value, with a reason naming the
 * layout and the field, when the query has no column for a field of the layout.
 */
std::optional<ReportDocument> bind(const ReportLayout& layout, QSqlQuery& query, QString* error);

} // namespace ReportBinding
