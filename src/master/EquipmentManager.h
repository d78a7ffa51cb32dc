#pragma once

#include "DataHelpers.h"
#include "Equipment.h"

#include <QStringList>
#include <optional>

class Session;

/** What stops a save: the text to tell and the control that takes the focus. */
struct EquipmentRefusal
{
    QString message;
    QString field; ///< objectName of the control, "txtUnitNo" or "txtName"
};

/**
 * Reads, saves and deletes equipment with everything that hangs on it,
 * logs crew changes, and judges unit and serial numbers. Failures are
 * reported through errorHandler and answered with false or an empty result.
 */
class EquipmentManager
{
public:
    static const QString UnitNoTaken;

    explicit EquipmentManager(Session& session) : m_session(session) {}

    /** A key for a new record: the session's moment as "MMddHHmmss". */
    qint64 newEquipmentId() const;

    /** Every piece of equipment, all columns, by unit number. */
    Rows list();
    /** The record with that key, or none. */
    std::optional<Equipment> find(qint64 equipmentId);
    /** A row of list() as a record. */
    static Equipment fromRow(const QSqlRecord& row);

    /**
     * Why the record may not be saved, checked in the order the user is told:
     * a blank unit number, a blank name, a unit number another record holds.
     * unitNoAtStart is the number held when the edit began. None when it may.
     */
    std::optional<EquipmentRefusal> checkSave(const Equipment& equipment,
                                              const QString& unitNoAtStart);
    /** UnitNoTaken when another record holds unitNo, else empty text. */
    QString unitNoProblem(const QString& unitNo, const QString& unitNoAtStart);
    /**
     * The warning when another record already has the serial number, naming
     * that record; empty text when the number is unchanged, blank or free.
     * The user may overrule it: a save does not ask again.
     */
    QString serialNoWarning(const Equipment& equipment, const QString& serialAtStart);

    /**
     * Inserts the record when adding, else updates it by its key. When the
     * crew list was touched during the edit, crewEntry holds its shown text
     * ("number   description") and a crew history row is written first, even
     * if the crew ended where it began. Joins an open transaction.
     */
    bool saveRecord(const Equipment& equipment, bool adding,
                    const std::optional<QString>& crewEntry = std::nullopt);

    /** "WorkOrder" while a work order is open on the equipment, else empty text. */
    QString canDeleteEquipment(qint64 equipmentId);
    /** Deletes the record and its children and history, all or nothing. */
    bool deleteRecord(qint64 equipmentId);

    /** Adds one crew history row for the equipment. */
    bool changeCrew(qint64 equipmentId, const QString& crewNumber, const QString& crewDescription);
    /**
     * Gives the equipment the crew crewId shown as newEntry, logging the
     * change; nothing happens when newEntry equals oldEntry.
     */
    bool assignCrew(qint64 equipmentId, const QString& oldEntry, const QString& newEntry,
                    qint64 crewId);

    /** A crew list entry split into crew number and description; the empty entry gives none. */
    static std::pair<QString, QString> splitCrewEntry(const QString& entry);
    /** The captions of the company, interval, start, end and payment fields for the code. */
    static QStringList leaseCaptions(int leaseOwnedLeased);

private:
    Rows read(const QString& procedure, const QString& sql, const QVariantList& values = {});

    Session& m_session;
};
