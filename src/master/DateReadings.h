#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

class Session;

/** A machine listed for a date reading: its old date and the new one typed, empty until then. */
struct DateReading
{
    qint64 equipmentId = 0;
    QString unitNo;
    QString equipmentName;
    QDate oldDate;
    QDate newDate;
};

/** The days a date reading lists, both ends included. */
struct DateRange
{
    QDate from;
    QDate to;
};

/**
 * The inspection and licence renewal dates of the machines, moved on many
 * at once. The two kinds differ only in their column, options and texts.
 */
class DateReadings
{
public:
    enum class Kind { Inspection, License };

    /** How the range is shown and remembered. */
    static inline const QString RangeFormat = QStringLiteral("MM/dd/yy");

    DateReadings(Session& session, Kind kind);

    /** The screen of this kind: its name is the module failures are reported under. */
    QString formName() const;
    QString gridName() const;
    QString title() const;
    /** "Unit #", "Equipment Name", "Old ...", "New ...", "Select". */
    QStringList heads() const;

    /** The remembered range; an end the options hold no date for is a year ago or today. */
    DateRange range() const;
    void storeRange(const DateRange& range);

    /** The machines whose date lies in range, by unit number; an empty date is never listed. */
    QList<DateReading> list(const DateRange& range);

    /** The old date one calendar year on; 29 February becomes 28 February. */
    static QDate addOneYear(const QDate& oldDate);
    /** Why newDate cannot replace oldDate, or empty text when it is later. */
    QString dateFault(const QDate& oldDate, const QDate& newDate) const;

    /**
     * Writes every new date given, all or none, joining an open transaction.
     * A new date that is not later than its old one fails the whole update.
     */
    bool update(const QList<DateReading>& readings);

private:
    QDate optionDate(const QString& name) const;

    Session& m_session;
    Kind m_kind;
};
