#include "SiteManager.h"

#include "StateList.h"
#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("clsSiteManager");

// The user is told the table's own name, as the site screen has always done.
constexpr RecordUse SiteUses[] = {
    {"tblLocation", "Site", "tblLocation"},
    {"tblEquipment", "SiteID", "tblEquipment"},
    {"tblEmployee", "Site", "tblEmployee"},
};

} // namespace

Rows SiteManager::list()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblSite"), {},
                                  QStringLiteral("SiteName, SiteID"));
}

Rows SiteManager::states()
{
    return StateList::allStates(m_session);
}

bool SiteManager::saveRecord(Site& site, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    const QVariantList values{site.siteName, site.address, site.city, site.stateId, site.zip};
    if (!adding) {
        write.exec(QStringLiteral("UPDATE tblSite SET SiteName = ?, Address = ?, City = ?, "
                                  "StateID = ?, Zip = ? WHERE SiteID = ?"),
                   values + QVariantList{site.siteId});
        return write.commit();
    }
    QVariant id;
    write.exec(QStringLiteral("INSERT INTO tblSite (SiteName, Address, City, StateID, Zip) "
                              "VALUES (?, ?, ?, ?, ?) RETURNING SiteID"),
               values, &id);
    if (!write.commit()) {
        return false;
    }
    site.siteId = id.toLongLong();
    return true;
}

bool SiteManager::deleteRecord(qint64 siteId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblSite WHERE SiteID = ?"), {siteId});
    return write.commit();
}

QString SiteManager::canDeleteSite(qint64 siteId)
{
    return DataHelpers::firstUse(m_session, SiteUses, siteId, QStringLiteral("N"));
}
