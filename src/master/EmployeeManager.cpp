#include "EmployeeManager.h"

#include "LabourCost.h"
#include "Prompter.h"
#include "Session.h"
#include "SqlValue.h"
#include "WriteScope.h"

const QString EmployeeManager::EmptyPhone = QStringLiteral("(   )    -            ");
const QString EmployeeManager::LabourQuestion =
    QStringLiteral("Do you to update all the labor costs in every service that this employee is "
                   "assiged to.?");
const QString EmployeeManager::LabourProblem =
    QStringLiteral("Problem in changing Service Total Lobour cost.");

namespace {

const QString Module = QStringLiteral("clsEmployee_Manager");

// Every column but the key, in the order of the record.
const QString Columns = QStringLiteral(
    "FirstName, Lastname, InitialName, BirthDate, Gender, Address, City, State, Country, Zip, "
    "Phone, CellPhone, Email, Pager, SS, LicenseNo, Site, Skills, Crew, EmpPosition, LaborCost, "
    "LaborRate, Inactive, IncludeWoList");

// A login names its employee; nothing else refers to one.
constexpr RecordUse EmployeeUses[] = {{"tblUser", "EmployeeID", "User"}};

/** An untouched phone field holds the mask alone, which means no phone. */
QString storedPhone(const QString& phone)
{
    const QString text = phone.trimmed();
    return text == EmployeeManager::EmptyPhone.trimmed() ? QString() : text;
}

/** The values of Columns, in their order and stored form. */
QVariantList values(const Employee& e)
{
    return {e.firstName,
            e.lastName,
            e.initialName,
            SqlValue::date(e.birthDate),
            e.gender,
            e.address,
            e.city,
            e.state,
            e.country,
            e.zip,
            storedPhone(e.phone),
            storedPhone(e.cellPhone),
            e.email,
            e.pager,
            e.ss,
            e.licenseNo,
            e.site,
            e.skills,
            e.crew,
            e.position,
            e.laborCost,
            e.laborRate,
            SqlValue::flag(e.inactive),
            SqlValue::flag(e.includeWoList)};
}

bool sameMoney(double a, double b)
{
    return qRound64(a * 100) == qRound64(b * 100);
}

/** True when the crew or the labour cost differ from the row as stored (none when adding). */
bool labourChanged(WriteScope& write, const Employee& e, bool adding)
{
    qint64 crew = 0;
    double cost = 0;
    if (!adding) {
        const Rows stored = write.select(QStringLiteral("SELECT Crew, LaborCost FROM tblEmployee "
                                                        "WHERE LOWER(EmployeeID) = LOWER(?)"),
                                         {e.employeeOldId});
        if (!stored.isEmpty()) {
            crew = stored[0].value(0).toLongLong();
            cost = stored[0].value(1).toDouble();
        }
    }
    return e.crew != crew || !sameMoney(e.laborCost, cost);
}

void writeRow(WriteScope& write, const Employee& e, bool adding)
{
    QVariantList bound = values(e);
    if (adding) {
        bound.prepend(e.employeeId);
        write.exec(QStringLiteral("INSERT INTO tblEmployee (EmployeeID, %1) VALUES (?%2)")
                       .arg(Columns, QStringLiteral(", ?").repeated(bound.size() - 1)),
                   bound);
        return;
    }
    QString assignments = QStringLiteral("EmployeeID = ?");
    for (const QString& column : Columns.split(QStringLiteral(", "))) {
        assignments += QStringLiteral(", ") + column + QStringLiteral(" = ?");
    }
    bound.prepend(e.employeeId);
    bound.append(e.employeeOldId);
    write.exec(QStringLiteral("UPDATE tblEmployee SET %1 WHERE LOWER(EmployeeID) = LOWER(?)")
                   .arg(assignments),
               bound);
}

} // namespace

Rows EmployeeManager::list()
{
    // Keys sort alike on both engines, whatever their collation.
    return read(QStringLiteral("getEmployeeInfo"),
                QStringLiteral("SELECT * FROM tblEmployee ORDER BY LOWER(EmployeeID), EmployeeID"));
}

Rows EmployeeManager::siteInfo()
{
    return read(QStringLiteral("GetSiteInfo"),
                QStringLiteral("SELECT SiteID, SiteName FROM tblSite ORDER BY SiteID"));
}

Rows EmployeeManager::crewInfo()
{
    return read(QStringLiteral("GetCrewInfo"),
                QStringLiteral("SELECT CrewID, CAST(CrewNumber AS TEXT) || '   ' || "
                               "COALESCE(Description, '') AS CrewNumber FROM tblCrew "
                               "ORDER BY CrewID"));
}

bool EmployeeManager::saveRecord(const Employee& employee, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    const bool askLabour = labourChanged(write, employee, adding);
    writeRow(write, employee, adding);
    if (write.ok() && askLabour && m_session.prompter().askYesNo(LabourQuestion) &&
        !LabourCost::changeServiceLabourEstimate(m_session, employee.crew)) {
        // The change reported itself; leaving the scope uncommitted undoes the save too.
        m_session.prompter().inform(LabourProblem);
        return false;
    }
    return write.commit();
}

bool EmployeeManager::deleteRecord(const QString& employeeId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblEmployee WHERE LOWER(EmployeeID) = LOWER(?)"),
               {employeeId});
    return write.commit();
}

QString EmployeeManager::canDeleteEmployee(const QString& employeeId)
{
    return DataHelpers::firstUse(m_session, EmployeeUses, employeeId, QStringLiteral("S"));
}

Rows EmployeeManager::read(const QString& procedure, const QString& sql)
{
    return DataHelpers::read(m_session, Module, procedure, sql);
}
