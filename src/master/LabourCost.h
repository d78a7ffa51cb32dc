#pragma once

#include <QtGlobal>

class Session;

/** What a crew's work costs an hour, and the budgets that follow from it. */
namespace LabourCost {

/**
 * The average labour cost of the crew's active employees who are on the
 * work order list, rounded to two decimals; 0 when there are none.
 */
double laborCost(Session& session, qint64 crewId);

/**
 * Sets the cost estimate of every service on equipment and every open work
 * order line of the crew to its labour estimate times the crew's average
 * labour cost, hand-edited costs included. Master services keep theirs.
 * Joins an open transaction; false (reported) when the change failed.
 */
bool changeServiceLabourEstimate(Session& session, qint64 crewId);

} // namespace LabourCost
