#pragma once

#include <QString>

/**
 * One row of tblPart as the part screen edits it. The numbers are kept as
 * typed, so that a quantity which is no number can be told to the user.
 */
struct Part
{
    QString partId;
    QString partOldId; ///< the number as it was read: a save finds the row by it
    QString description;
    qint64 partCategory = 0;
    QString quantity;
    QString price;
    qint64 supplier = 0;
    QString max;
    QString min;
    bool inactive = false;
    QString notes;
    QString bin;
    bool trackInventory = false; ///< the tick of "Do Not Track for Inventory"
    QString barCode;
};
