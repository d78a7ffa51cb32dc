#pragma once

class QSqlError;

/**
 * Why a report's query with a user's filter failed, in the three kinds the
 * fallback question answers; any other failure is unexpected.
 */
enum class FilterFailure {
    Other,
    Syntax,       ///< the statement does not parse
    TypeMismatch, ///< a value of the wrong type in the criteria
    UnknownName,  ///< a column or function the data does not have
};

/** The kind of an error from either engine. */
FilterFailure filterFailure(const QSqlError& error);
