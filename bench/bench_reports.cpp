// How fast the equipment list of a large fleet becomes a PDF, measured against
// the cheapest possible work on the same rows: running its query and reading
// every value.

#include "BenchInstallation.h"
#include "LayoutFiles.h"
#include "ReportCatalogue.h"
#include "ReportExport.h"
#include "ReportRunner.h"
#include "Sql.h"
#include "Transaction.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTextStream>

namespace {

QTextStream out(stdout);

bool makeFleet(Session& session, int machines)
{
    Transaction transaction(session);
    QSqlQuery site(session.db());
    if (!Sql::exec(site, QStringLiteral("INSERT INTO tblSite (SiteName) VALUES (?)"),
                   {QStringLiteral("Riverside Depot")})) {
        return false;
    }
    QSqlQuery q(session.db());
    q.prepare(QStringLiteral("INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "SiteID, CrewID, Inactive) VALUES (?, ?, ?, 1, 0, '0')"));
    for (int i = 1; i <= machines; ++i) {
        q.addBindValue(i);
        q.addBindValue(QStringLiteral("Greenhollow GX 48 Zero-Turn Mower %1").arg(i));
        q.addBindValue(QStringLiteral("ZT-%1").arg(i, 5, 10, QLatin1Char('0')));
        if (!q.exec()) {
            return false;
        }
    }
    return transaction.commit();
}

/** The floor: the report's query run and every value of every row read. */
qint64 timeQuery(Session& session, const ReportDefinition& report, qint64* cells)
{
    QElapsedTimer timer;
    timer.start();
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    Sql::exec(q, ReportRunner::statement(report, QString()));
    const int columns = q.record().count();
    while (q.next()) {
        for (int c = 0; c < columns; ++c) {
            *cells += q.value(c).isNull() ? 0 : 1;
        }
    }
    return timer.nsecsElapsed();
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    const int machines = machinesAsked(argc, argv);
    BenchInstallation bench;
    Session& session = bench.session();
    QString error;
    if (!bench.open(&error) || !LayoutFiles::installStandard(bench.installation(), &error) ||
        !makeFleet(session, machines)) {
        out << "cannot prepare: " << error << Qt::endl;
        return 1;
    }
    const ReportDefinition& report = *ReportCatalogue::find(QStringLiteral("rptEquipmentList"));
    qint64 cells = 0;
    const qint64 floor = timeQuery(session, report, &cells);

    QElapsedTimer timer;
    timer.start();
    qint64 bound = 0;
    int pages = 0;
    const QString pdf = bench.filePath(QStringLiteral("equipment.pdf"));
    ReportRunner runner(session, [&](ReportDocument& document) {
        bound = timer.nsecsElapsed();
        ReportExport::writePdf(document, pdf, &error, [&pages](int, int all) { pages = all; });
    });
    if (!runner.show(report)) {
        out << "the report did not run: " << bench.prompter().texts().join(u' ') << Qt::endl;
        return 1;
    }
    const qint64 total = timer.nsecsElapsed();
    const double seconds = double(total) / 1e9;
    out << "rows " << machines << ", pages " << pages << Qt::endl;
    out << "query and read (floor): " << floor / 1000000 << " ms, " << cells << " values"
        << Qt::endl;
    out << "query and bind:         " << bound / 1000000 << " ms" << Qt::endl;
    out << "whole report to PDF:    " << total / 1000000 << " ms, "
        << QString::number(machines / seconds, 'f', 0) << " rows a second" << Qt::endl;
    out << "ratio report / floor: " << QString::number(double(total) / double(floor), 'f', 1)
        << Qt::endl;
    return 0;
}
