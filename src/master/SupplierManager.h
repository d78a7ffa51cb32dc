#pragma once

#include "DataHelpers.h"
#include "Supplier.h"

class Session;

/**
 * Reads, saves and deletes suppliers, hands out the id of a new one, and
 * tells whether a supplier may go. Failures are reported through
 * errorHandler and answered with false, 0 or an empty result.
 */
class SupplierManager
{
public:
    explicit SupplierManager(Session& session) : m_session(session) {}

    /** Every supplier, by id. */
    Rows list();
    /** The states a supplier may lie in: those of every country. */
    Rows states();
    /** The id for a new supplier: one above the highest, 1 for the first. */
    qint64 generateId();

    /**
     * Inserts the supplier with its supplierId when adding, else updates the
     * row with it. A phone or fax that holds nothing but the phone mask's
     * literals is stored as empty text.
     */
    bool saveRecord(const Supplier& supplier, bool adding);
    bool deleteRecord(qint64 supplierId);

    /** "Equipment" or else "Part" while either still buys from the supplier; else empty text. */
    QString canDeleteSupplier(qint64 supplierId);

private:
    Session& m_session;
};
