#pragma once

#include "DataHelpers.h"
#include "Location.h"

class Session;

/**
 * Reads, saves and deletes locations, and tells whether a location may go.
 * Failures are reported through errorHandler and answered with false or
 * an empty result.
 */
class LocationManager
{
public:
    explicit LocationManager(Session& session) : m_session(session) {}

    /** Every location, by name. */
    Rows list();
    /** The sites a location may lie in, as SiteID and SiteName, by name. */
    Rows sites();

    /** Inserts the location when adding and sets its new locationId, else updates it. */
    bool saveRecord(Location& location, bool adding);
    bool deleteRecord(qint64 locationId);

    /** "Equipment" while a piece of equipment stands there, else empty text. */
    QString canDeleteLocation(qint64 locationId);

private:
    Session& m_session;
};
