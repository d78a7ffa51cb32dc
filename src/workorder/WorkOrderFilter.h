#pragma once

#include "DataHelpers.h"

#include <QDate>
#include <QString>

class Session;

/**
 * The filter above the work order tabs: the range of next service dates,
 * the service crew range, the machine's (assign) crew range and the choice
 * of the grouped print. Remembered per workstation between sessions.
 */
struct WorkOrderFilter
{
    QDate from;
    QDate to;
    QString crewRange;
    QString assignCrew;
    bool group = false;

    /** The field the service crew range tests when none is named. */
    static const QString DefaultCrewField;

    /**
     * The condition of the filter, every value bound: the crew range on
     * crewField (blank: DefaultCrewField) and the dates on NextScheduledDate,
     * with the assign crew range on Ecrew.CrewNumber in front when
     * useAssignCrew is set and the range is not blank.
     */
    SqlFilter condition(const QString& crewField, bool useAssignCrew) const;

    /** The remembered filter; a blank or unreadable date is today. */
    static WorkOrderFilter load(Session& session);
    /** Remembers the filter, dates as yyyy-MM-dd. */
    void save(Session& session) const;
};
