// How the next-date calculation scales over a large fleet, measured against
// the cheapest possible work per service row: reading that row by its key.

#include "BenchInstallation.h"
#include "DataHelpers.h"
#include "NextDateCalculator.h"
#include "Options.h"
#include "Sql.h"
#include "SqlValue.h"
#include "Transaction.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QTextStream>

namespace {

QTextStream out(stdout);

struct Fleet
{
    QList<qint64> serviceIds;
};

qint64 insertService(QSqlQuery& q, qint64 equipmentId, const QString& period, int interval,
                     const QDate& last, int kind)
{
    const QString on = QStringLiteral("1");
    const QString off = QStringLiteral("0");
    const bool dom = kind == 2;
    QVariantList values{equipmentId,
                        period,
                        interval,
                        QStringLiteral("W"),
                        dom ? on : off,
                        15,
                        SqlValue::date(last),
                        SqlValue::date(last),
                        kind == 3 ? QVariant(500) : QVariant(0)};
    for (int i = 0; i < 7; ++i) {
        values.append(i == 1 || kind == 0 ? on : off); // Monday, or every day
    }
    for (int i = 0; i < 5; ++i) {
        values.append(on);
    }
    for (int i = 0; i < 12; ++i) {
        values.append(i >= 3 && i <= 9 ? on : off); // April to October
    }
    Sql::exec(q,
              QStringLiteral(
                  "INSERT INTO tblServiceUsed (EquipmentID, Period, EInterval, RenewalOn, Dom, "
                  "DOM1, LastDatePerformed, LastDateScheduled, NextScheduledCount, Sun, Mon, "
                  "Tue, Wed, Thu, Fri, Sat, FirstW, SecondW, ThirdW, ForthW, LastW, Jan, Feb, "
                  "Mar, Apr, May, Jun, Jul, Aug, Sep, Oct, Nov, Dece) VALUES (?, ?, ?, ?, ?, ?, "
                  "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                  "?) RETURNING ServiceUsedID"),
              values);
    return q.next() ? q.value(0).toLongLong() : 0;
}

Fleet makeFleet(Session& session, int machines)
{
    Fleet fleet;
    Transaction transaction(session);
    QSqlQuery q(session.db());
    const QDateTime base(QDate(2024, 1, 1), QTime(0, 0));
    const QDate today = session.today();
    for (int m = 0; m < machines; ++m) {
        const qint64 id = DataHelpers::generateUniqueId(base.addSecs(m));
        Sql::exec(
            q,
            QStringLiteral(
                "INSERT INTO tblEquipment (EquipmentID, UnitNo, Inactive) VALUES (?, ?, '0')"),
            {id, QStringLiteral("U%1").arg(m)});
        for (int r = 0; r < 4; ++r) {
            Sql::exec(q,
                      QStringLiteral("INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, "
                                     "CountType, CountValue) VALUES (?, ?, 'Hours', ?)"),
                      {id, SqlValue::date(today.addDays(-30 * r)), 600 - 50 * r});
        }
        const QDate last = today.addDays(-(m % 90));
        fleet.serviceIds << insertService(q, id, QStringLiteral("D"), 30, last, 0)
                         << insertService(q, id, QStringLiteral("W"), 2, last, 1)
                         << insertService(q, id, QStringLiteral("M"), 1, last, 2)
                         << insertService(q, id, QStringLiteral("H"), 250, last, 3);
    }
    transaction.commit();
    return fleet;
}

qint64 timeBaseline(Session& session, const Fleet& fleet)
{
    QElapsedTimer timer;
    timer.start();
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    q.prepare(QStringLiteral("SELECT * FROM tblServiceUsed WHERE ServiceUsedID = ?"));
    for (qint64 id : fleet.serviceIds) {
        q.addBindValue(id);
        q.exec();
        q.next();
        q.finish();
    }
    return timer.nsecsElapsed();
}

qint64 timeCalculator(Session& session, const Fleet& fleet)
{
    NextDateCalculator calculator(session);
    QElapsedTimer timer;
    timer.start();
    for (qint64 id : fleet.serviceIds) {
        calculator.nextScheduledDate(id);
    }
    return timer.nsecsElapsed();
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
    session.clock().setToday(QDate(2025, 3, 1));

    QElapsedTimer build;
    build.start();
    const Fleet fleet = makeFleet(session, machines);
    out << "machines " << machines << ", service rows " << fleet.serviceIds.size()
        << ", fleet built in " << build.elapsed() << " ms" << Qt::endl;

    const qint64 baseline = timeBaseline(session, fleet);
    const qint64 calculation = timeCalculator(session, fleet);
    const double perRow = double(calculation) / fleet.serviceIds.size() / 1000.0;
    out << "read by key:      " << baseline / 1000000 << " ms" << Qt::endl;
    out << "next date:        " << calculation / 1000000 << " ms ("
        << QString::number(perRow, 'f', 1) << " us a row)" << Qt::endl;
    out << "ratio next date / read by key: "
        << QString::number(double(calculation) / double(baseline), 'f', 2) << Qt::endl;
    return 0;
}
