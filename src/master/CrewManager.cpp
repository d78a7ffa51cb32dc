#include "CrewManager.h"

#include "ErrorHandler.h"
#include "Session.h"
#include "Sql.h"
#include "Transaction.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

const QString Module = QStringLiteral("clsCrewManager");

struct CrewUse
{
    const char* table;
    const char* column;
    const char* shownName;
};

// The order decides which name the user is told when several kinds refer to the crew.
constexpr CrewUse CrewUses[] = {
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
    const QString procedure = QStringLiteral("SaveRecord");
    if (adding) {
        QVariant id;
        if (!run(procedure,
                 QStringLiteral("INSERT INTO tblCrew (CrewNumber, Description) VALUES (?, ?) "
                                "RETURNING CrewID"),
                 {crew.crewNumber, crew.description}, &id)) {
            return false;
        }
        crew.crewId = id.toLongLong();
        return true;
    }
    return run(
        procedure,
        QStringLiteral("UPDATE tblCrew SET CrewNumber = ?, Description = ? WHERE CrewID = ?"),
        {crew.crewNumber, crew.description, crew.crewId});
}

bool CrewManager::deleteRecord(qint64 crewId)
{
    return run(QStringLiteral("DeleteRecord"),
               QStringLiteral("DELETE FROM tblCrew WHERE CrewID = ?"), {crewId});
}

QString CrewManager::canDeleteCrew(qint64 crewId)
{
    for (const CrewUse& use : CrewUses) {
        if (DataHelpers::isRecordUsed(m_session, QString::fromLatin1(use.table),
                                      QString::fromLatin1(use.column), crewId,
                                      QStringLiteral("N"))) {
            return QString::fromLatin1(use.shownName);
        }
    }
    return QString();
}

bool CrewManager::run(const QString& procedure, const QString& sql, const QVariantList& values,
                      QVariant* returned)
{
    Transaction transaction(m_session);
    if (!transaction.isActive()) {
        errorHandler(m_session, Module, procedure, 1, transaction.error());
        return false;
    }
    QSqlQuery q(m_session.db());
    if (!Sql::exec(q, sql, values)) {
        errorHandler(m_session, Sql::failure(Module, procedure, q.lastError()));
        return false;
    }
    if (returned) {
        *returned = q.next() ? q.value(0) : QVariant();
    }
    q.finish();
    if (!transaction.commit()) {
        errorHandler(m_session, Module, procedure, 1, transaction.error());
        return false;
    }
    return true;
}
