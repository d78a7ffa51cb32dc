#include "ReportPagination.h"

namespace ReportPagination {

namespace {

bool hasFooter(const ReportGroup& group)
{
    return !group.footerLabel.isEmpty() || !group.totals.isEmpty();
}

/** The first group level whose value differs between two rows; levels when none does. */
int changedLevel(const ReportDocument& document, qsizetype a, qsizetype b)
{
    const int levels = int(document.layout().groups.size());
    for (int level = 0; level < levels; ++level) {
        const int field = document.groupField(level);
        if (ValueFormat::compare(document.value(a, field), document.value(b, field)) != 0) {
            return level;
        }
    }
    return levels;
}

/** The bands of the whole report in order, not yet placed. */
QList<Band> sequence(const ReportDocument& document, const BandHeights& heights)
{
    const QList<ReportGroup>& groups = document.layout().groups;
    const int levels = int(groups.size());
    QList<qsizetype> starts(levels, 0);
    QList<Band> bands;
    bands.reserve(document.rowCount() + 1);
    const auto closeGroups = [&](int from, qsizetype last) {
        for (int level = levels - 1; level >= from; --level) {
            if (hasFooter(groups[level])) {
                bands.append(
                    {Band::Kind::GroupFooter, level, starts[level], last, 0, heights.totals});
            }
        }
    };
    for (qsizetype row = 0; row < document.rowCount(); ++row) {
        const int changed = row == 0 ? 0 : changedLevel(document, row - 1, row);
        if (row > 0) {
            closeGroups(changed, row - 1);
        }
        for (int level = changed; level < levels; ++level) {
            starts[level] = row;
            bands.append({Band::Kind::GroupHeader, level, row, row, 0, heights.groupHeader});
        }
        bands.append({Band::Kind::Detail, 0, row, row, 0, heights.detail(row)});
    }
    if (document.rowCount() > 0) {
        closeGroups(0, document.rowCount() - 1);
    }
    const ReportFooter& footer = document.layout().footer;
    if (!footer.label.isEmpty() || !footer.totals.isEmpty()) {
        bands.append({Band::Kind::ReportFooter, 0, 0, document.rowCount() - 1, 0, heights.totals});
    }
    return bands;
}

/** The height a band needs free below it: group headers take their first row along. */
double keptHeight(const QList<Band>& bands, qsizetype i)
{
    double height = 0;
    for (; i < bands.size(); ++i) {
        height += bands[i].height;
        if (bands[i].kind != Band::Kind::GroupHeader) {
            break;
        }
    }
    return height;
}

} // namespace

QList<ReportPage> paginate(const ReportDocument& document, double bodyHeight,
                           const BandHeights& heights)
{
    const QList<Band> bands = sequence(document, heights);
    QList<ReportPage> pages(1);
    double top = 0;
    for (qsizetype i = 0; i < bands.size(); ++i) {
        const bool onEmptyPage = pages.last().bands.isEmpty();
        if (!onEmptyPage && top + keptHeight(bands, i) > bodyHeight) {
            pages.append(ReportPage());
            top = 0;
        }
        Band band = bands[i];
        band.top = top;
        top += band.height;
        pages.last().bands.append(band);
    }
    return pages;
}

} // namespace ReportPagination
