#pragma once

#include <QDate>
#include <QString>

/** One row of tblEmployee as a screen edits it. */
struct Employee
{
    QString employeeId = {};
    /** The key before the edit: a renumbered employee keeps its row. Empty when adding. */
    QString employeeOldId = {};
    QString firstName = {};
    QString lastName = {};
    QString initialName = {};
    QDate birthDate = {};
    QString gender = {}; ///< "Male", "Female" or empty
    QString address = {};
    QString city = {};
    qint64 state = 0;   ///< an item of the state list, under its country
    qint64 country = 0; ///< an item of the country list
    QString zip = {};
    QString phone = {};
    QString cellPhone = {};
    QString email = {};
    QString pager = {};
    QString ss = {};
    QString licenseNo = {};
    qint64 site = 0;
    QString skills = {};
    qint64 crew = 0;
    qint64 position = 0; ///< an item of the employee position list
    double laborCost = 0;
    double laborRate = 0;
    bool inactive = false;
    bool includeWoList = false; ///< on the work order lists and in the crew's average
};
