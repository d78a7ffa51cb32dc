#pragma once

#include <QString>

/** One row of tblCostCenter as a screen edits it. */
struct CostCenter
{
    qint64 costCenterId = 0;
    QString description;
    double budget = 0;
};
