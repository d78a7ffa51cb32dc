#pragma once

#include "ReportDocument.h"

#include <QList>
#include <functional>

/** One line of the report body as placed on a page: a row, a group's header or totals. */
struct Band
{
    enum class Kind { GroupHeader, Detail, GroupFooter, ReportFooter };

    Kind kind = Kind::Detail;
    int level = 0;       ///< the group level of a header or footer
    qsizetype first = 0; ///< the row of a detail; the first row of a group or the report
    qsizetype last = 0;  ///< the last row of a group or the report
    double top = 0;      ///< from the top of the page's body
    double height = 0;
};

struct ReportPage
{
    QList<Band> bands;
};

/** How tall each kind of band is drawn, in the paint device's units. */
struct BandHeights
{
    double groupHeader = 0;
    double totals = 0; ///< a group's or the report's line of totals
    std::function<double(qsizetype row)> detail;
};

/**
 * Breaks a report into pages: group headers where a group's value changes,
 * totals where it ends, the report's totals at the end. A group header never
 * stands alone at the foot of a page: it moves on with its first row.
 */
namespace ReportPagination {

/** The pages, given the height of the body between page header and page footer. */
QList<ReportPage> paginate(const ReportDocument& document, double bodyHeight,
                           const BandHeights& heights);

} // namespace ReportPagination
