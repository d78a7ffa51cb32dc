#pragma once

#include "CostCenter.h"
#include "DataHelpers.h"

class Session;

/**
 * Reads, saves and deletes cost centres, and tells whether one may go.
 * Failures are reported through errorHandler and answered with false or
 * an empty result.
 */
class CostCenterManager
{
public:
    explicit CostCenterManager(Session& session) : m_session(session) {}

    /** Every cost centre, by description. */
    Rows list();

    /** Inserts the cost centre when adding and sets its new id, else updates it. */
    bool saveRecord(CostCenter& center, bool adding);
    bool deleteRecord(qint64 costCenterId);

    /**
     * "Services" while a master service books to it, else empty text: the
     * copies of services on equipment do not hold it back.
     */
    QString canDeleteCostCenter(qint64 costCenterId);

private:
    Session& m_session;
};
