#include "LocationManager.h"

#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("clsLocationManager");

constexpr RecordUse LocationUses[] = {
    {"tblEquipment", "LocationID", "Equipment"},
};

} // namespace

Rows LocationManager::list()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblLocation"), {},
                                  QStringLiteral("LocationName, LocationID"));
}

Rows LocationManager::sites()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblSite"), {},
                                  QStringLiteral("SiteName, SiteID"));
}

bool LocationManager::saveRecord(Location& location, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    const QVariantList values{location.locationName, location.description, location.site};
    if (!adding) {
        write.exec(QStringLiteral("UPDATE tblLocation SET LocationName = ?, Description = ?, "
                                  "Site = ? WHERE LocationID = ?"),
                   values + QVariantList{location.locationId});
        return write.commit();
    }
    QVariant id;
    write.exec(QStringLiteral("INSERT INTO tblLocation (LocationName, Description, Site) "
                              "VALUES (?, ?, ?) RETURNING LocationID"),
               values, &id);
    if (!write.commit()) {
        return false;
    }
    location.locationId = id.toLongLong();
    return true;
}

bool LocationManager::deleteRecord(qint64 locationId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblLocation WHERE LocationID = ?"), {locationId});
    return write.commit();
}

QString LocationManager::canDeleteLocation(qint64 locationId)
{
    return DataHelpers::firstUse(m_session, LocationUses, locationId, QStringLiteral("N"));
}
