#pragma once

#include "DataHelpers.h"
#include "ReportCatalogue.h"
#include "ReportDocument.h"

#include <functional>
#include <optional>

class Session;

/**
 * Brings a report's layout and its rows together and hands the result to a
 * viewer: the preview screen on the desktop, a file writer on the command
 * line. Every report runs the same way: the layout from "Custom Reports"
 * before "Reports", the query with the caller's filter, the page header's
 * texts, and the fallback question when the filter breaks the query.
 */
class ReportRunner
{
public:
    /** Shows or writes the finished report; returns when the user is done with it. */
    using Viewer = std::function<void(ReportDocument& document)>;
    /** Told true while the report is being made, false when that is over. */
    using BusyHook = std::function<void(bool busy)>;

    ReportRunner(Session& session, Viewer viewer);

    void setBusyHook(BusyHook hook) { m_busy = std::move(hook); }

    /**
     * Runs the report with the filter: a WHERE text written by the caller
     * (possibly with its own leading WHERE) and its values, bound in order.
     * True when the viewer was given the report.
     */
    bool show(const ReportDefinition& report, const SqlFilter& filter = {});

    bool showEquipmentListDetail(const SqlFilter& filter);
    bool showServiceList();
    bool showErrorList();

    /** The statement of the report: its query, a blank and the filter when there is one, its
     * ending. */
    static QString statement(const ReportDefinition& report, const QString& filter);

private:
    enum class Outcome { Shown, Empty, Refused, Failed };

    std::optional<ReportLayout> openLayout(const ReportDefinition& report);
    Outcome run(const ReportDefinition& report, const ReportLayout& layout, SqlFilter filter);
    void setHeader(const ReportDefinition& report, ReportDocument& document);
    void setBusy(bool busy);
    void fail(const ReportDefinition& report, qint64 number, const QString& description);

    Session& m_session;
    Viewer m_viewer;
    BusyHook m_busy;
    bool m_isBusy = false;
};
