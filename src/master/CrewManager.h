#pragma once

#include "Crew.h"
#include "DataHelpers.h"

class Session;

/**
 * Reads, saves and deletes crews, and tells whether a crew may go.
 * Failures are reported through errorHandler and answered with false or
 * an empty result.
 */
class CrewManager
{
public:
    explicit CrewManager(Session& session) : m_session(session) {}

    /** Every crew as CrewID, CrewNumber and Description, by crew number. */
    Rows list();

    /**
     * Inserts the crew when adding (mode "A") and sets its new crewId,
     * else updates the row with its crewId. Joins an open transaction.
     */
    bool saveRecord(Crew& crew, bool adding);

    /** Deletes the crew; false when it could not. */
    bool deleteRecord(qint64 crewId);

    /**
     * The name of the first kind of record that still uses the crew
     * ("Services", "ServiceUsed", "Employee", "Equipment", asked in that
     * order), or empty text when the crew may be deleted.
     */
    QString canDeleteCrew(qint64 crewId);

private:
    Session& m_session;
};
