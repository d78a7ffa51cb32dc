#pragma once

#include "DataHelpers.h"
#include "Site.h"

class Session;

/**
 * Reads, saves and deletes sites, and tells whether a site may go.
 * Failures are reported through errorHandler and answered with false or
 * an empty result.
 */
class SiteManager
{
public:
    explicit SiteManager(Session& session) : m_session(session) {}

    /** Every site, by name. */
    Rows list();
    /** The states a site may lie in: those of every country. */
    Rows states();

    /** Inserts the site when adding and sets its new siteId, else updates it. */
    bool saveRecord(Site& site, bool adding);
    bool deleteRecord(qint64 siteId);

    /**
     * The table that still uses the site ("tblLocation", "tblEquipment",
     * "tblEmployee", asked in that order), or empty text when it may go.
     */
    QString canDeleteSite(qint64 siteId);

private:
    Session& m_session;
};
