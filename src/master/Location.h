#pragma once

#include <QString>

/** One row of tblLocation as a screen edits it. */
struct Location
{
    qint64 locationId = 0;
    QString locationName;
    QString description;
    qint64 site = 0; ///< SiteID of the site it lies in
};
