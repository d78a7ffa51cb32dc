#include "CrewManager.h"

#include "WriteScope.h"

namespace {

const QString Module = QStringLiteral("clsCrewManager");

// The order decides which name the user is told when several kinds refer to the crew.
constexpr RecordUse CrewUses[] = {
    {"tblServices", "CrewID", "Services"},
    {"tblServiceUsed", "CrewID", "ServiceUsed"},
    {"tblEmployee", "Crew", "Employee"},
    {"tblEquipment", "CrewID", "Equipment"},
};

} // namespace

Rows CrewManager::list()
{
    return DataHelpers::tableInfo(m_session, QStringLiteral("tblCrew"), {},
                                  QStringLiteral("CrewNumber, CrewID"));
}

bool CrewManager::saveRecord(Crew& crew, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    if (!adding) {
        write.exec(
            QStringLiteral("UPDATE tblCrew SET CrewNumber = ?, Description = ? WHERE CrewID = ?"),
            {crew.crewNumber, crew.description, crew.crewId});
        return write.commit();
    }
    QVariant id;
    write.exec(QStringLiteral("INSERT INTO tblCrew (CrewNumber, Description) VALUES (?, ?) "
                              "RETURNING CrewID"),
               {crew.crewNumber, crew.description}, &id);
    if (!write.commit()) {
        return false;
    }
    crew.crewId = id.toLongLong();
    return true;
}

bool CrewManager::deleteRecord(qint64 crewId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblCrew WHERE CrewID = ?"), {crewId});
    return write.commit();
}

QString CrewManager::canDeleteCrew(qint64 crewId)
{
    return DataHelpers::firstUse(m_session, CrewUses, crewId, QStringLiteral("N"));
}
