#pragma once

#include "DataHelpers.h"
#include "Part.h"

#include <optional>

class Session;

/**
 * Reads, checks, saves and deletes parts, and tells whether a part is in
 * use. The part number is the key the user types. Failures are reported
 * through errorHandler and answered with false or an empty result.
 */
class PartManager
{
public:
    /** The lookup list that holds the part categories. */
    static constexpr qint64 PartCategoryList = 10;

    /** The field a refused save points the user to. */
    enum class Field { Number, Description, Quantity, Inactive };
    struct Problem
    {
        Field field;
        QString message;
    };

    explicit PartManager(Session& session) : m_session(session) {}

    /** Every part, by part number. */
    Rows list();
    /** The suppliers a part may name, by name. */
    Rows suppliers();
    /** The part categories, by name. */
    Rows categories();

    /**
     * The first reason the part may not be saved, in the order the user is
     * told: a blank number or description, a quantity that is no number,
     * Inactive on a part in use, a number another part has, and a new number
     * for a part that something refers to. None when it may be saved.
     */
    std::optional<Problem> checkSave(const Part& part, bool adding);
    /**
     * The warning for a number typed that another part already has, naming
     * that part's description; empty text when the number is free.
     */
    QString numberInUse(const QString& number, const QString& oldNumber);

    /**
     * Inserts the part when adding, else updates the row found by its old
     * number, so that the number itself may change. Joins an open transaction.
     */
    bool saveRecord(const Part& part, bool adding);
    bool deleteRecord(const QString& partId);

    /**
     * The word for the first kind of record that uses the part ("Equipment",
     * "Services", "ServiceUsed Part", "WorkOrder", asked in that order), or
     * empty text. Posted history does not count: it keeps its own copy.
     */
    QString canDeletePart(const QString& partId);
    /** The quantity open work orders still require of the part; 0 when none. */
    double partCommitted(const QString& partId);

    /** Removes the rows without a part number from the parts and every list of parts. */
    bool cleanUpParts();

private:
    Session& m_session;
};
