#include "ReportRunner.h"

#include "ErrorHandler.h"
#include "FilterFailure.h"
#include "LayoutFiles.h"
#include "LayoutReader.h"
#include "Options.h"
#include "Prompter.h"
#include "ReportBinding.h"
#include "Session.h"
#include "Sql.h"

#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QSysInfo>

namespace {

const QString Module = QStringLiteral("frmReportPreview");
const QString ReportNotFound = QStringLiteral("Report not found.");
// The number a layout that cannot be opened or bound is reported under: file not found.
constexpr qint64 LayoutFailureNumber = 53;
constexpr int UserFieldCount = 10;

/** The computer's name: the environment's ComputerName where it is set, else the host's. */
QString computerName()
{
    const QString fromEnvironment = qEnvironmentVariable("ComputerName");
    return fromEnvironment.isEmpty() ? QSysInfo::machineHostName() : fromEnvironment;
}

} // namespace

ReportRunner::ReportRunner(Session& session, Viewer viewer)
    : m_session(session), m_viewer(std::move(viewer))
{}

QString ReportRunner::statement(const ReportDefinition& report, const QString& filter)
{
    const QString trimmed = filter.trimmed();
    QString sql = trimmed.isEmpty()
                      ? report.baseQuery + report.withoutFilter
                      : report.baseQuery + report.beforeFilter + trimmed + report.afterFilter;
    // Some endings start without a blank, which a filter ending in "?" cannot do without.
    if (!report.ending.isEmpty() && !report.ending.front().isSpace() && !sql.endsWith(u' ')) {
        sql += u' ';
    }
    return sql + report.ending;
}

bool ReportRunner::showEquipmentListDetail(const SqlFilter& filter)
{
    return show(*ReportCatalogue::find(QStringLiteral("ShowEquipmentListDetail")), filter);
}

bool ReportRunner::showServiceList()
{
    return show(*ReportCatalogue::find(QStringLiteral("ShowServiceList")));
}

bool ReportRunner::showErrorList()
{
    return show(*ReportCatalogue::find(QStringLiteral("ShowErrorList")));
}

bool ReportRunner::show(const ReportDefinition& report, const SqlFilter& filter)
{
    if (!report.customLookup &&
        !QFileInfo::exists(LayoutFiles::standardPath(m_session.installation(), report.layout))) {
        m_session.prompter().inform(ReportNotFound);
        return false;
    }
    const std::optional<ReportLayout> layout = openLayout(report);
    if (!layout) {
        return false;
    }
    setBusy(true);
    const Outcome outcome = run(report, *layout, report.takesFilter ? filter : SqlFilter{});
    setBusy(false);
    if (outcome == Outcome::Empty) {
        m_session.prompter().inform(report.emptyMessage);
    }
    return outcome == Outcome::Shown;
}

std::optional<ReportLayout> ReportRunner::openLayout(const ReportDefinition& report)
{
    const QString path = report.customLookup
                             ? LayoutFiles::lookup(m_session.installation(), report.layout)
                             : LayoutFiles::standardPath(m_session.installation(), report.layout);
    QString error;
    std::optional<ReportLayout> layout = LayoutReader::read(path, &error);
    if (!layout) {
        fail(report, LayoutFailureNumber, error);
    }
    return layout;
}

ReportRunner::Outcome ReportRunner::run(const ReportDefinition& report, const ReportLayout& layout,
                                        SqlFilter filter)
{
    QSqlQuery query(m_session.db());
    query.setForwardOnly(true);
    while (!Sql::exec(query, statement(report, filter.where), filter.values)) {
        const bool filtered = !filter.where.trimmed().isEmpty();
        if (!filtered || filterFailure(query.lastError()) == FilterFailure::Other) {
            const Failure failure = Sql::failure(Module, report.procedure, query.lastError());
            fail(report, failure.number, failure.description);
            return Outcome::Failed;
        }
        setBusy(false);
        if (m_session.prompter().message(report.question, Prompter::Buttons::YesNo,
                                         Prompter::Icon::Information) != Prompter::Answer::Yes) {
            return Outcome::Refused;
        }
        filter = {};
        setBusy(true);
    }
    QString error;
    std::optional<ReportDocument> document = ReportBinding::bind(layout, query, &error);
    if (!document) {
        fail(report, LayoutFailureNumber, error);
        return Outcome::Failed;
    }
    if (document->rowCount() == 0) {
        return Outcome::Empty;
    }
    query.finish();
    setHeader(report, *document);
    setBusy(false);
    m_viewer(*document);
    return Outcome::Shown;
}

void ReportRunner::setHeader(const ReportDefinition& report, ReportDocument& document)
{
    document.setToday(m_session.today());
    QList<std::pair<QString, QString>> texts{
        {QStringLiteral("lblCompanyName"),
         Options::option(m_session, QStringLiteral("GEN_COMPANY_NAME"))}};
    if (report.header == ReportHeader::SystemFacts) {
        texts += {{QStringLiteral("lblSystem"), m_session.platform().name},
                  {QStringLiteral("lblServicePack"), m_session.platform().servicePack},
                  {QStringLiteral("lblComputerName"), computerName()},
                  {QStringLiteral("lblVersion"), Options::versionNo(m_session)},
                  {QStringLiteral("lblDBversion"),
                   Options::option(m_session, QStringLiteral("DBversion"))}};
    }
    if (report.header == ReportHeader::UserFields) {
        for (int i = 1; i <= UserFieldCount; ++i) {
            texts.append({QStringLiteral("UDField%1").arg(i),
                          Options::option(m_session, QStringLiteral("UserDefinedField%1").arg(i))});
        }
    }
    // A layout without one of these objects keeps the rest of its header as it stands.
    for (const auto& [name, text] : texts) {
        if (!document.setText(name, text)) {
            return;
        }
    }
}

void ReportRunner::setBusy(bool busy)
{
    if (m_busy && busy != m_isBusy) {
        m_busy(busy);
    }
    m_isBusy = busy;
}

void ReportRunner::fail(const ReportDefinition& report, qint64 number, const QString& description)
{
    errorHandler(m_session, Module, report.procedure, number, description);
}
