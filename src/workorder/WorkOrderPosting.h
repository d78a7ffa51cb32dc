#pragma once

#include "NextDateCalculator.h"

#include <QDate>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>

class Session;
class WriteScope;

/** What posting tells the user; each is shown as it stands. */
namespace PostingMessages {
inline const QString NothingToPost = QStringLiteral("No Work Order is selected to post");
inline const QString ScheduleBehindCompletion =
    QStringLiteral("You have chosen to reschedule this services based on the scheduled date \n"
                   "rather then on the completed date and the new date is already older then\n"
                   "the completed date.");
inline const QString NextBeforeComplete =
    QStringLiteral("Next Scheduled Date cann't be Less than to Complete Date");

/** "Following Work Orders (12, 14) aren't posted. Enter counts for these Work Orders." */
QString notPosted(const QList<qint64>& workOrders);
} // namespace PostingMessages

/**
 * Posting closes recorded work, all of it in one transaction: each done or
 * skipped line becomes a history row with its parts, its schedule row moves to
 * the next date or meter count, the meter readings taken with the work are
 * stored, used parts leave stock, and what was posted leaves the open tables.
 * A work order with a meter line done or skipped but without its count is held
 * back whole and stays Complete; every other work order is open again after a
 * post, with whatever lines were neither done nor skipped.
 *
 * Two ids meet here: a line's own key (lineId, NserviceUsedID), which history
 * keeps, and the schedule row it came from (scheduleId), 0 for a line added
 * from the master list.
 */
class WorkOrderPosting
{
public:
    /**
     * Asked, inside the open transaction, when a service's next date lies before the
     * completed date; returns the date to store.
     */
    using DateConfirmation = std::function<QDate(qint64 scheduleId, const QDate& completedDate,
                                                 const QDate& proposedDate)>;
    /** Told after each line posted. */
    using Progress = std::function<void(int done, int total)>;

    struct Outcome
    {
        bool ok = false;
        QList<qint64> posted;   ///< work orders whose done and skipped lines were posted
        QList<qint64> heldBack; ///< work orders waiting for counts
    };

    /** What the date confirmation shows of a schedule row. */
    struct ServiceOnMachine
    {
        QString equipmentName;
        QString unitNo;
        QString serviceName;
    };

    struct DateCheck
    {
        QDate date;
        QString refusal; ///< empty when the date asked for stands
    };

    explicit WorkOrderPosting(Session& session);

    /** The answer of the confirmation closed without a choice: the completed date. */
    static DateConfirmation keepCompletedDate();
    void setDateConfirmation(DateConfirmation confirm) { m_confirm = std::move(confirm); }
    void setProgress(Progress progress) { m_progress = std::move(progress); }

    /** Every work order marked Complete, by number. */
    QList<qint64> completeWorkOrders();
    /** Posts every Complete work order; with none, tells the user so and posts nothing. */
    Outcome postCompleteWorkOrders();
    /**
     * Posts the given work orders (numbers without a work order are passed over) and
     * tells which were held back. On a failure (reported) nothing of it is kept.
     */
    Outcome postWorkOrders(const QList<qint64>& workOrders);

    bool isServiceSkipped(qint64 lineId);
    /** True when the machine already has exactly this reading. */
    bool isCountAvailable(qint64 equipmentId, const QDate& date, const QString& countType,
                          qint64 value);

    ServiceOnMachine serviceOnMachine(qint64 scheduleId);
    /** A next date chosen by hand may not lie before the completed date. */
    static DateCheck checkNextScheduled(const QDate& completedDate, const QDate& chosen);

private:
    struct Line;
    struct PartLine;

    bool addServiceHistoryRecord(WriteScope& write, const QList<qint64>& workOrders,
                                 QList<qint64>* postedLines);
    bool postLine(WriteScope& write, const Line& line);
    bool moveSchedule(WriteScope& write, const Line& line);
    bool storeReading(WriteScope& write, const Line& line, const QString& countType);
    /**
     * Moves a meter service's trigger on by its interval: from the count it was done at
     * when it renews on completion (W), else from the trigger it had.
     */
    bool serviceCountUpdate(WriteScope& write, qint64 scheduleId, qint64 countValue);
    QDate confirmedNextDate(const Line& line, const QDate& proposed);
    bool addPartHistory(WriteScope& write, const QList<qint64>& postedLines);
    void postPart(WriteScope& write, const PartLine& part);
    void deletePosted(WriteScope& write, const QList<qint64>& postedLines,
                      const QList<qint64>& workOrders);
    void reopenTheRest(WriteScope& write, const QList<qint64>& heldBack);
    QSet<qint64> waitingForCounts(WriteScope& write, const QList<qint64>& workOrders);
    QList<qint64> existingWorkOrders(WriteScope& write, const QList<qint64>& workOrders);

    Session& m_session;
    NextDateCalculator m_nextDates;
    DateConfirmation m_confirm;
    Progress m_progress;
};
