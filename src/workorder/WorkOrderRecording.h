#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QTime>
#include <QVariant>
#include <optional>

class Session;
class WriteScope;

/** What the recording tab tells the user; each is shown as it stands. */
namespace RecordingMessages {
inline const QString DateTooOld =
    QStringLiteral("Complete date cann't less than to 50 year of Current Date.");
inline const QString SkipReason =
    QStringLiteral("Please mention the reason for Skiping the Service");
inline const QString SkipAllReason =
    QStringLiteral("Please mention the reason for Skiping the Services");
inline const QString NoteBlank =
    QStringLiteral("Note Field Cann't left blank. When Service has Skiped.");
/** "Enter count is smaller than previous count(120). Do you want to continue ?" */
QString countBelowReading(qint64 reading);
} // namespace RecordingMessages

/**
 * Recording what was done on open work orders: marking orders complete,
 * lines completed or skipped, counts, crews, times and the parts used.
 * Every edit goes to the open tables at once, the way each cell of the
 * recording grids asks; there is no save step.
 *
 * Each edit is one call that does all its consequences itself (a line ticked
 * on an unfinished order also stamps the order's header). A caller shows the
 * outcome by reading the rows again, never by setting cells that would run an
 * edit a second time.
 */
class WorkOrderRecording
{
public:
    /** A row of the open work order list, newest first. */
    struct Order
    {
        qint64 workOrderNo = 0;
        bool complete = false;
        QDate completedDate;
        QString unitNo;
        QString equipmentName;
        QString equipmentType;
        bool printed = false;
        qint64 equipmentId = 0;
        QDate woDate;
        bool late = false; ///< drawn red: see isWorkOrderLate
    };

    /** A line of an order. */
    struct Line
    {
        qint64 lineId = 0; ///< NserviceUsedID
        qint64 workOrderNo = 0;
        bool completed = false;
        bool skip = false;
        QString jobNo;
        QString name;
        qint64 crewId = 0;
        QDate nextScheduledDate;
        QString period;       ///< the code, "H"
        QString scheduleType; ///< its text, "Hours"
        QVariant countValue;  ///< null until a count is entered
        QTime startTime;      ///< 00:00 until entered
        QTime endTime;
        QTime workHours;
        double costEstimate = 0;
        qint64 serviceId = 0;
        qint64 supplierId = 0;
        QString note;
        /** A meter period: the count cell asks for a reading. */
        bool wantsReading() const;
    };

    /** A part of a line. */
    struct Part
    {
        QString partId;
        bool used = false;
        QString description;
        double quantityRequired = 0;
        double quantityUsed = 0;
        double price = 0;
        qint64 supplierId = 0;
    };

    /** What an edit did; on anything but Stored or Unchanged the old value stands. */
    enum class Edit { Stored, Unchanged, Refused, Failed };

    /** How far UpdateWorkorder reaches. */
    enum class Reach { WithLines, HeaderOnly };

    explicit WorkOrderRecording(Session& session);

    /** grdRecordWo: every open work order, newest first. */
    QList<Order> openOrders();
    /** One order of the list; no value when there is none with that number. */
    std::optional<Order> order(qint64 workOrderNo);
    /** grdRecordService: the lines of an order in the order they were added. */
    QList<Line> lines(qint64 workOrderNo);
    /** One line; no value when there is none with that key. */
    std::optional<Line> line(qint64 lineId);
    /** grdRecordPart: the parts of a line, by part number. */
    QList<Part> parts(qint64 lineId);

    /**
     * IsWorkOrderLate: with n the smaller of SERVICE_LATE_RED and
     * SERVICE_LATE_YELLOW (blank is 0) and n above 0, true when at least two
     * lines of the order were due n days ago or earlier.
     */
    bool isWorkOrderLate(qint64 workOrderNo);

    /** The completed date may not lie more than 50 years back; a future one passes. */
    static bool completedDateAllowed(const QDate& date, const QDate& today);

    /**
     * UpdateWorkorder: a date marks the order Complete on that day, an empty one
     * clears it. With lines, a date completes every line not skipped with all its
     * parts used, and no date clears Completed and Used of every line (Skip stays).
     */
    bool updateWorkorder(qint64 workOrderNo, const QDate& completedDate,
                         Reach reach = Reach::WithLines);
    /** UpdateWorkorder2: one column of the header (Printed, EquipmentID, ...). */
    bool updateWorkorder2(qint64 workOrderNo, const QString& column, const QVariant& value);

    // grdRecordWo
    /** The Complete cell: checked stamps today, cleared empties the date (both with lines). */
    Edit setComplete(qint64 workOrderNo, bool complete);
    /** The CompletedDate cell: refused with a message when too old, an empty date clears. */
    Edit setCompletedDate(qint64 workOrderNo, const QDate& date);

    // grdRecordService
    /** Completed: the order is stamped Complete (header only) when it was not; Skip is cleared. */
    Edit setLineCompleted(qint64 lineId, bool completed);
    /** The skip reason asked for a line, its note as the default; no value on cancel. */
    std::optional<QString> askSkipReason(qint64 lineId);
    /**
     * Skip checked: a blank reason refuses. Otherwise the reason becomes the note,
     * the order is stamped Complete (header only) when it was not, and the line is
     * skipped with Completed and every Used cleared; quantities stay.
     */
    Edit skipLine(qint64 lineId, const QString& reason);
    /** Skip cleared: Completed stays as it is. */
    Edit unskipLine(qint64 lineId);
    /** Service Crew: the line's crew, and its budget priced again at that crew's rate. */
    Edit setLineCrew(qint64 lineId, qint64 crewId);
    Edit setLineSupplier(qint64 lineId, qint64 supplierId);
    /**
     * Count: a value below the machine's last reading of the line's type is stored
     * only when the user says yes. Held on the line until posting.
     */
    Edit setLineCount(qint64 lineId, qint64 count);
    /** txtRecordNote: a skipped line's note may not be blank (told with a stop icon). */
    Edit setNote(qint64 lineId, const QString& note);

    // cmdSkipAll
    /** The reason asked for skipping a whole order, with a default; no value on cancel. */
    std::optional<QString> askSkipAllReason(const QString& defaultNote);
    /** Skips every line of the order, clears Completed and Used, and gives all the reason. */
    Edit skipAll(qint64 workOrderNo, const QString& reason);

    // grdRecordPart
    Edit setPartSupplier(qint64 lineId, const QString& partId, qint64 supplierId);
    /** Qty Used: empty text is 0; the same value stores nothing. */
    Edit setPartQuantityUsed(qint64 lineId, const QString& partId, const QString& quantity);
    /** Used: refused (without a word) unless the line is Completed. */
    Edit setPartUsed(qint64 lineId, const QString& partId, bool used);
    Edit setPartPrice(qint64 lineId, const QString& partId, double price);

private:
    std::optional<Part> part(qint64 lineId, const QString& partId);
    Edit updateService(qint64 lineId, const QString& column, const QVariant& value,
                       const QString& procedure = QStringLiteral("UpdateWorkorderService"));
    Edit updatePart(qint64 lineId, const QString& partId, const QString& column,
                    const QVariant& value);
    void writeHeader(WriteScope& write, qint64 workOrderNo, const QDate& completedDate);
    void stampOrderOf(WriteScope& write, qint64 lineId);
    void writeLineDone(WriteScope& write, qint64 lineId, bool done);
    int lateDays();
    bool isLate(qint64 workOrderNo, int days);

    Session& m_session;
};
