#pragma once

#include <QString>

/** The texts every record screen shows, kept in one place so they read alike. */
namespace MessageTexts {

inline const QString DeleteQuestion =
    QStringLiteral("Are you sure you want to Delete this record?");
inline const QString NotBlank = QStringLiteral("should not be blank.");
inline const QString Unique = QStringLiteral("should be unique.");
inline const QString Numeric = QStringLiteral("should be numeric.");
inline const QString DeletionNotAllowed = QStringLiteral("Deletion not allowed.");
inline const QString NoActionRights = QStringLiteral(
    "You do not have sufficient rights to this action. Please see your system administrator");
inline const QString NoReportRights = QStringLiteral(
    "You do not have sufficient rights to see this report. Please see your system administrator");
inline const QString LastRecord = QStringLiteral("This is Last Record");
inline const QString RecordUsedIn = QStringLiteral("Record is being used in ");
inline const QString LookupItemDeleted =
    QStringLiteral("One of lookup item has been deleted\nmanually from database");

/** "Crew Number should not be blank." */
inline QString notBlank(const QString& caption)
{
    return caption + u' ' + NotBlank;
}

/** "User Name should be unique." */
inline QString unique(const QString& caption)
{
    return caption + u' ' + Unique;
}

/** "Budget should be numeric." */
inline QString numeric(const QString& caption)
{
    return caption + u' ' + Numeric;
}

/** The refusal of a delete: "Deletion not allowed. Record is being used in tblLocation." */
inline QString recordInUse(const QString& table)
{
    return DeletionNotAllowed + u' ' + RecordUsedIn + table + u'.';
}

} // namespace MessageTexts
