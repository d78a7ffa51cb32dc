#pragma once

#include <QString>

/** One row of tblSite as a screen edits it. */
struct Site
{
    qint64 siteId = 0;
    QString siteName;
    QString address;
    QString city;
    qint64 stateId = 0; ///< ItemID of a state, 0 for none
    QString zip;
};
