// How the equipment quick find loads and searches a large fleet, measured against
// the engine's own floor for the same rows: reading the table's columns plainly, and one
// prefix query per keystroke, which the search in memory replaces.

#include "BenchInstallation.h"
#include "QuickFind.h"
#include "Sql.h"
#include "Transaction.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTextStream>

namespace {

QTextStream out(stdout);

void makeFleet(Session& session, int machines)
{
    Transaction transaction(session);
    QSqlQuery q(session.db());
    for (int m = 0; m < machines; ++m) {
        Sql::exec(q,
                  QStringLiteral("INSERT INTO tblEquipment (EquipmentID, UnitNo, EquipmentName, "
                                 "Inactive) VALUES (?, ?, ?, '0')"),
                  {m + 1, QStringLiteral("U%1").arg(m, 5, 10, QLatin1Char('0')),
                   QStringLiteral("Machine %1").arg(m)});
    }
    transaction.commit();
}

/** The typed texts: every prefix of some unit numbers, as a user types them. */
QStringList keystrokes(int machines)
{
    QStringList texts;
    for (int m = 0; m < machines; m += qMax(1, machines / 100)) {
        const QString unit = QStringLiteral("u%1").arg(m, 5, 10, QLatin1Char('0'));
        for (int length = 1; length <= unit.size(); ++length) {
            texts.append(unit.left(length));
        }
    }
    return texts;
}

qint64 timePlainRead(Session& session)
{
    QElapsedTimer timer;
    timer.start();
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    // The table's own columns of the quick find, without its joins.
    Sql::exec(q, QStringLiteral("SELECT EquipmentID, UnitNo, EquipmentName, EquipmentSerialNo, "
                                "Inactive, LicenseNo FROM tblEquipment ORDER BY LOWER(UnitNo)"));
    Rows rows;
    while (q.next()) {
        rows.append(q.record());
    }
    return timer.nsecsElapsed();
}

qint64 timeQueryPerKeystroke(Session& session, const QStringList& texts)
{
    QElapsedTimer timer;
    timer.start();
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    for (const QString& text : texts) {
        Sql::exec(q,
                  QStringLiteral("SELECT EquipmentID FROM tblEquipment WHERE LOWER(UnitNo) LIKE ? "
                                 "ORDER BY LOWER(UnitNo) LIMIT 1"),
                  {text.toLower() + u'%'});
        q.next();
        q.finish();
    }
    return timer.nsecsElapsed();
}

QString ms(qint64 nanoseconds)
{
    return QString::number(double(nanoseconds) / 1e6, 'f', 1) + QStringLiteral(" ms");
}

QString ratio(qint64 a, qint64 b)
{
    return QString::number(double(a) / double(qMax<qint64>(b, 1)), 'f', 2);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int machines = machinesAsked(argc, argv);
    BenchInstallation bench;
    QString error;
    if (!bench.open(&error)) {
        out << error << Qt::endl;
        return 1;
    }
    Session& session = bench.session();
    makeFleet(session, machines);

    timePlainRead(session); // warms the engine's cache for both reads
    const qint64 plain = timePlainRead(session);
    QElapsedTimer timer;
    timer.start();
    QuickFind find(session, QStringLiteral("tblEquipment"));
    const QuickFind::Loaded loaded = find.load({QStringLiteral("UnitNo"), {}, 0});
    const qint64 load = timer.nsecsElapsed();

    timer.restart();
    QVariantList units;
    for (const QSqlRecord& row : loaded.rows) {
        units.append(row.value(QStringLiteral("Unit No")));
    }
    const QuickFindColumn column(units, QStringLiteral("VARCHAR"));
    const qint64 prepare = timer.nsecsElapsed();

    const QStringList texts = keystrokes(machines);
    timer.restart();
    int found = 0;
    for (const QString& text : texts) {
        found += column.find(text) >= 0 ? 1 : 0;
    }
    const qint64 search = timer.nsecsElapsed();
    const qint64 perQuery = timeQueryPerKeystroke(session, texts);

    out << "machines " << machines << ", rows loaded " << loaded.rows.size() << ", keystrokes "
        << texts.size() << " (" << found << " found)" << Qt::endl;
    out << "plain read:          " << ms(plain) << Qt::endl;
    out << "quick find load:     " << ms(load) << " (ratio to plain read " << ratio(load, plain)
        << ")" << Qt::endl;
    out << "search preparation:  " << ms(prepare) << Qt::endl;
    out << "search in memory:    " << ms(search) << ", "
        << QString::number(double(search) / texts.size() / 1000.0, 'f', 1) << " us a keystroke"
        << Qt::endl;
    out << "query per keystroke: " << ms(perQuery) << Qt::endl;
    out << "ratio search in memory / query per keystroke: " << ratio(search, perQuery) << Qt::endl;
    return 0;
}
