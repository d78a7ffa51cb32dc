#pragma once

#include "DataHelpers.h"

#include <QStringList>

class Session;

/**
 * The parts a machine requires (tblEquipmentPart). Writes join an open
 * transaction, so the screen's revert undoes them.
 */
class EquipmentParts
{
public:
    explicit EquipmentParts(Session& session) : m_session(session) {}

    /** PartID, Description, QuantityRequired and the extended cost, by part number. */
    Rows rows(qint64 equipmentId);
    /** The machine's part numbers as the picker's exclude text: 'A-1','O''Brien'. */
    QString excludeText(qint64 equipmentId);
    /**
     * Adds the picks of a picker's result text (see PartPicker): each record's
     * part, quantity, price and supplier.
     */
    bool addPicked(qint64 equipmentId, const QString& resultText);
    bool removePart(qint64 equipmentId, const QString& partId);

private:
    Session& m_session;
};
