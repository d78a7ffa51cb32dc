#include "LabourCost.h"

#include "ErrorHandler.h"
#include "Session.h"
#include "Sql.h"
#include "WriteScope.h"

#include <QSqlError>
#include <QSqlQuery>

namespace LabourCost {

namespace {

const QString Module = QStringLiteral("General Function");

} // namespace

double laborCost(Session& session, qint64 crewId)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    // Sum over Count, not AVG: an employee without a cost still counts as a member.
    if (!Sql::exec(
            q,
            QStringLiteral("SELECT SUM(tblEmployee.LaborCost) / COUNT(tblEmployee.EmployeeID) "
                           "FROM tblEmployee LEFT JOIN tblCrew "
                           "ON tblEmployee.Crew = tblCrew.CrewID "
                           "WHERE tblCrew.CrewID = ? AND tblEmployee.Inactive = '0' "
                           "AND tblEmployee.IncludeWoList = '1'"),
            {crewId})) {
        errorHandler(session, Sql::failure(Module, QStringLiteral("SetLaborCost"), q.lastError()));
        return 0;
    }
    if (!q.next() || q.value(0).isNull()) {
        return 0;
    }
    return QString::number(q.value(0).toDouble(), 'f', 2).toDouble();
}

bool changeServiceLabourEstimate(Session& session, qint64 crewId)
{
    const double cost = laborCost(session, crewId);
    WriteScope write(session, Module, QStringLiteral("ChangeServiceLabourEstimate"));
    for (const QString& table :
         {QStringLiteral("tblServiceUsed"), QStringLiteral("tblWoServiceUsed")}) {
        write.exec(QStringLiteral("UPDATE %1 SET CostEstimate = LaborEstimate * ? WHERE CrewID = ?")
                       .arg(table),
                   {cost, crewId});
    }
    return write.commit();
}

} // namespace LabourCost
