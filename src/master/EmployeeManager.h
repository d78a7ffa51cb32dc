#pragma once

#include "DataHelpers.h"
#include "Employee.h"

class Session;

/**
 * Reads, saves and deletes employees, and keeps the budgets of the crew's
 * services in step with its labour cost. Failures are reported through
 * errorHandler and answered with false or an empty result.
 */
class EmployeeManager
{
public:
    /** The phone mask's empty form, which is stored as no phone. */
    static const QString EmptyPhone;
    static const QString LabourQuestion;
    static const QString LabourProblem;

    explicit EmployeeManager(Session& session) : m_session(session) {}

    /** Every employee, all columns, by EmployeeID. */
    Rows list();
    /** The sites for the site list: SiteID and SiteName, by SiteID. */
    Rows siteInfo();
    /** The crews for the crew list: CrewID and the shown text "number   description". */
    Rows crewInfo();

    /**
     * Inserts the employee when adding, else updates the row that held
     * employeeOldId, its key included. When the crew or the labour cost
     * differ from what was stored, asks whether the crew's service budgets
     * should follow; on Yes they are recomputed, and if that fails the user
     * is told and nothing of the save is kept. Joins an open transaction.
     */
    bool saveRecord(const Employee& employee, bool adding);

    /** Deletes the employee; false when it could not. */
    bool deleteRecord(const QString& employeeId);

    /** "User" while a login names the employee, else empty text. */
    QString canDeleteEmployee(const QString& employeeId);

private:
    Rows read(const QString& procedure, const QString& sql);

    Session& m_session;
};
