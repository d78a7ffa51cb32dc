#pragma once

#include "DataHelpers.h"

class Session;

/** Booking received stock into the parts, many at a time. */
class InventoryCheckIn
{
public:
    /** One listed part and what was received of it; negative books a correction down. */
    struct Receipt
    {
        QString partId;
        QVariant onHand; ///< the quantity as listed; NULL counts as 0
        double received = 0;
    };

    explicit InventoryCheckIn(Session& session) : m_session(session) {}

    /**
     * Every part as PartID, Description and Quantity, by part number; with
     * reorderOnly those at or under their reorder point (Quantity <= QtyMin).
     * search keeps the parts whose number or description starts with it.
     */
    Rows list(bool reorderOnly, const QString& search);

    /**
     * Sets each given part's quantity to what was on hand plus what was
     * received. Rows are written one by one: those before a failure stay
     * written, and the failure ends the walk with false.
     */
    bool save(const QList<Receipt>& receipts);

private:
    Session& m_session;
};
