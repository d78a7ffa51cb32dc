// How the work order cycle copes with a large fleet: a month of due services
// generated, completed and posted, then the overdue board and the work order
// list opened. Generation and posting are measured against the engine's own
// floor for the same rows: one prepared statement per table in one transaction.

#include "BenchInstallation.h"
#include "DemoFleet.h"
#include "MeterReadings.h"
#include "OverdueBoard.h"
#include "ScheduleCodes.h"
#include "Sql.h"
#include "Transaction.h"
#include "WorkOrderGeneration.h"
#include "WorkOrderLists.h"
#include "WorkOrderPosting.h"
#include "WorkOrderRecording.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTextStream>

namespace {

QTextStream out(stdout);

QString ms(qint64 nanoseconds)
{
    return QString::number(double(nanoseconds) / 1e6, 'f', 1) + QStringLiteral(" ms");
}

QString ratio(qint64 a, qint64 b)
{
    return QString::number(double(a) / double(qMax<qint64>(b, 1)), 'f', 2);
}

Rows readAll(Session& session, const QString& table)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    Sql::exec(q, QStringLiteral("SELECT * FROM ") + table);
    Rows rows;
    while (q.next()) {
        rows.append(q.record());
    }
    return rows;
}

/**
 * A statement prepared once and run for many rows; a failure is counted, not
 * hidden, so that a floor that did less work than asked is seen.
 */
class Prepared
{
public:
    Prepared(Session& session, const QString& sql) : m_query(session.db()) { m_query.prepare(sql); }

    void run(const QVariantList& values)
    {
        for (const QVariant& value : values) {
            m_query.addBindValue(value);
        }
        m_failures += m_query.exec() ? 0 : 1;
    }
    int failures() const { return m_failures; }

private:
    QSqlQuery m_query;
    int m_failures = 0;
};

/** Inserts rows into table through one statement, each column taken by name from the row. */
int insertRows(Session& session, const QString& table, const Rows& rows)
{
    const QSqlRecord columns = session.db().record(table);
    QStringList names;
    QList<int> sources;
    for (int c = 0; c < columns.count(); ++c) {
        const int source = rows.isEmpty() ? -1 : rows.first().indexOf(columns.fieldName(c));
        if (source >= 0) {
            names.append(columns.fieldName(c));
            sources.append(source);
        }
    }
    QStringList marks(names.size(), QStringLiteral("?"));
    Prepared insert(session, QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                 .arg(table, names.join(u','), marks.join(u',')));
    for (const QSqlRecord& row : rows) {
        QVariantList values;
        for (int source : sources) {
            values.append(row.value(source));
        }
        insert.run(values);
    }
    return insert.failures();
}

struct Snapshot
{
    Rows orders;
    Rows lines;
    Rows parts;
};

Snapshot openTables(Session& session)
{
    return {readAll(session, QStringLiteral("tblWorkorder")),
            readAll(session, QStringLiteral("tblWoServiceUsed")),
            readAll(session, QStringLiteral("tblWoPartUsed"))};
}

/** Generation's floor: the open tables emptied untimed, then the same rows written again. */
qint64 generationFloor(Session& session, const Snapshot& made, int* failures)
{
    Transaction transaction(session);
    QSqlQuery q(session.db());
    for (const char* table : {"tblWoPartUsed", "tblWoServiceUsed", "tblWorkorder"}) {
        Sql::exec(q, QStringLiteral("DELETE FROM ") + QLatin1String(table));
    }
    QElapsedTimer timer;
    timer.start();
    *failures += insertRows(session, QStringLiteral("tblWorkorder"), made.orders);
    *failures += insertRows(session, QStringLiteral("tblWoServiceUsed"), made.lines);
    *failures += insertRows(session, QStringLiteral("tblWoPartUsed"), made.parts);
    const qint64 elapsed = timer.nsecsElapsed();
    transaction.rollback();
    return elapsed;
}

/** Every order ticked Complete, and every meter line given a count above the last reading. */
qint64 completeAll(Session& session, const QList<qint64>& numbers, int* counts)
{
    QElapsedTimer timer;
    timer.start();
    WorkOrderRecording recording(session);
    MeterReadings readings(session);
    for (qint64 number : numbers) {
        recording.setComplete(number, true);
        const std::optional<WorkOrderRecording::Order> order = recording.order(number);
        for (const WorkOrderRecording::Line& line : recording.lines(number)) {
            if (line.wantsReading()) {
                const MeterReadings::Reading last =
                    readings.latest(order->equipmentId, ScheduleCodes::countType(line.period));
                recording.setLineCount(line.lineId, last.value + 10);
                ++*counts;
            }
        }
    }
    return timer.nsecsElapsed();
}

/**
 * Posting's floor on the completed rows: a history row per line and per part,
 * the schedule row and the stock moved, a reading per meter line, and the open
 * rows deleted; all undone afterwards.
 */
qint64 postingFloor(Session& session, const Snapshot& done, int* failures)
{
    Transaction transaction(session);
    QElapsedTimer timer;
    timer.start();
    *failures += insertRows(session, QStringLiteral("tblWOServiceUsedHistory"), done.lines);
    *failures += insertRows(session, QStringLiteral("tblWoPartHistory"), done.parts);
    Prepared schedule(session, QStringLiteral("UPDATE tblServiceUsed SET LastDateScheduled = ?, "
                                              "LastDatePerformed = ?, NextScheduledDate = ? "
                                              "WHERE ServiceUsedID = ?"));
    Prepared reading(session, QStringLiteral("INSERT INTO tblEquipmentCount (EquipmentID, "
                                             "ChangeDate, CountType, CountValue) "
                                             "VALUES (?, ?, ?, ?)"));
    Prepared deleteLine(session,
                        QStringLiteral("DELETE FROM tblWoServiceUsed WHERE NserviceUsedID = ?"));
    // Lines and the schedule rows they came from: lineId and scheduleId side by side.
    for (const QSqlRecord& line : done.lines) {
        const QVariant date = line.value(QStringLiteral("NextScheduledDate"));
        schedule.run({date, date, date, line.value(QStringLiteral("ServiceUsedID"))});
        if (!line.value(QStringLiteral("CountValue")).isNull()) {
            reading.run({line.value(QStringLiteral("EquipmentID")), date,
                         ScheduleCodes::countType(line.value(QStringLiteral("Period")).toString()),
                         line.value(QStringLiteral("CountValue"))});
        }
        deleteLine.run({line.value(QStringLiteral("NserviceUsedID"))});
    }
    Prepared stock(session, QStringLiteral("UPDATE tblPart SET Quantity = Quantity - ? "
                                           "WHERE LOWER(PartID) = LOWER(?)"));
    Prepared deletePart(session,
                        QStringLiteral("DELETE FROM tblWoPartUsed WHERE ServiceUsedID = ?"));
    for (const QSqlRecord& part : done.parts) {
        stock.run(
            {part.value(QStringLiteral("QuantityUsed")), part.value(QStringLiteral("PartID"))});
        deletePart.run({part.value(QStringLiteral("ServiceUsedID"))});
    }
    Prepared deleteOrder(session, QStringLiteral("DELETE FROM tblWorkorder WHERE WorkOrderNo = ?"));
    for (const QSqlRecord& order : done.orders) {
        deleteOrder.run({order.value(QStringLiteral("WorkOrderNo"))});
    }
    const qint64 elapsed = timer.nsecsElapsed();
    *failures += schedule.failures() + reading.failures() + deleteLine.failures() +
                 stock.failures() + deletePart.failures() + deleteOrder.failures();
    transaction.rollback();
    return elapsed;
}

QString target(bool met)
{
    return met ? QStringLiteral("met") : QStringLiteral("MISSED");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int machines = machinesAsked(argc, argv);
    BenchInstallation bench;
    Session& session = bench.session();
    QString error;
    if (!bench.open(&error)) {
        out << "cannot prepare: " << error << Qt::endl;
        return 1;
    }
    DemoFleet fleet(session, machines);
    if (!fleet.generate(&error)) {
        out << "cannot make the fleet: " << error << Qt::endl;
        return 1;
    }
    out << fleet.summary() << Qt::endl;

    WorkOrderFilter month;
    month.from = session.today();
    month.to = session.today().addMonths(1);
    WorkOrderLists lists(session);
    QElapsedTimer timer;
    timer.start();
    const QList<qint64> due = WorkOrderLists::dueEquipment(lists.printList(month));
    const qint64 dueList = timer.nsecsElapsed();
    QList<qint64> numbers;
    timer.restart();
    const bool generated = WorkOrderGeneration(session).generate(due, month, &numbers);
    const qint64 generation = timer.nsecsElapsed();
    const Snapshot made = openTables(session);
    int failures = 0;
    const qint64 generationBase = generationFloor(session, made, &failures);

    int counts = 0;
    const qint64 completion = completeAll(session, numbers, &counts);
    const Snapshot done = openTables(session);
    const qint64 postingBase = postingFloor(session, done, &failures);
    timer.restart();
    const WorkOrderPosting::Outcome posted = WorkOrderPosting(session).postCompleteWorkOrders();
    const qint64 posting = timer.nsecsElapsed();

    // Services due again within the month go on new orders: the board and the list show open work.
    WorkOrderGeneration(session).generate(due, month, &numbers);
    timer.restart();
    const QList<OverdueBoard::Row> board = OverdueBoard(session).loadData();
    const qint64 boardTime = timer.nsecsElapsed();
    timer.restart();
    const Rows list = lists.printList(month);
    const qint64 listTime = timer.nsecsElapsed();
    timer.restart();
    const QList<WorkOrderRecording::Order> open = WorkOrderRecording(session).openOrders();
    const qint64 openTime = timer.nsecsElapsed();

    out << "machines " << machines << ", due " << due.size() << ", work orders "
        << made.orders.size() << ", lines " << made.lines.size() << ", parts " << made.parts.size()
        << (generated ? "" : " (generation FAILED)") << Qt::endl;
    out << "due list:        " << ms(dueList) << Qt::endl;
    out << "generation:      " << ms(generation) << ", floor " << ms(generationBase) << ", ratio "
        << ratio(generation, generationBase)
        << " (target 3x: " << target(generation <= 3 * generationBase) << ")" << Qt::endl;
    out << "completion:      " << ms(completion) << " (" << counts << " counts given)" << Qt::endl;
    out << "posting:         " << ms(posting) << ", floor " << ms(postingBase) << ", ratio "
        << ratio(posting, postingBase) << " (target 5x: " << target(posting <= 5 * postingBase)
        << "); posted " << posted.posted.size() << ", held back " << posted.heldBack.size()
        << Qt::endl;
    out << "overdue board:   " << ms(boardTime) << " for " << board.size()
        << " rows (target 100 ms: " << target(boardTime < 100'000'000) << ")" << Qt::endl;
    out << "work order list: " << ms(listTime) << " for " << list.size()
        << " rows (target 100 ms: " << target(listTime < 100'000'000) << ")" << Qt::endl;
    out << "open orders:     " << ms(openTime) << " for " << open.size()
        << " orders (target 100 ms: " << target(openTime < 100'000'000) << ")" << Qt::endl;
    if (failures > 0) {
        out << "floor statements failed: " << failures << Qt::endl;
    }
    return 0;
}
