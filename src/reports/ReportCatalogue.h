#pragma once

#include <QList>
#include <QString>

/** The page-header objects a report sets before it is shown. */
enum class ReportHeader {
    Company,     ///< lblCompanyName
    SystemFacts, ///< lblCompanyName and the five facts of the error report
    UserFields,  ///< lblCompanyName and the captions UDField1 to UDField10
};

/**
 * One report of the program: its procedure, its layout file, its query with
 * the place of the filter, and its texts for the user.
 */
struct ReportDefinition
{
    QString procedure; ///< ShowEquipmentListDetail
    QString layout;    ///< the layout file's name without extension
    QString title;     ///< the menu title
    QString baseQuery;
    QString beforeFilter = QStringLiteral(" "); ///< joins the query and a filter
    QString afterFilter;                        ///< follows a filter that is not empty
    QString withoutFilter;                      ///< stands in the filter's place when it is empty
    QString ending;                             ///< after the filter: the GROUP BY and the ordering
    bool takesFilter = true;
    bool customLookup = true; ///< whether "Custom Reports" may replace the layout
    QString question;         ///< the fallback question; empty without a filter
    QString emptyMessage;
    ReportHeader header = ReportHeader::Company;
};

/** The reports built so far, as data. */
namespace ReportCatalogue {

inline const QString NoRecordsMet =
    QStringLiteral("No records met the conditions that were specified.");
inline const QString NoRecordsFound = QStringLiteral("No records found.");

const QList<ReportDefinition>& all();
/** The report of that procedure or layout name, compared without regard to case; null when none. */
const ReportDefinition* find(const QString& name);

} // namespace ReportCatalogue
