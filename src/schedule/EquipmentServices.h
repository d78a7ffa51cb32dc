#pragma once

#include "DataHelpers.h"
#include "MeterReadings.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QVariant>

class Session;

/** The services a caller picked, and where they came from. */
struct ServicePick
{
    QList<qint64> ids;
    QString source; ///< "SL" the master list, "EL" another machine's services
};

/**
 * The services a machine carries (tblServiceUsed, each a private copy of a
 * master service or of another machine's service) and the rules of editing
 * their schedule from the equipment screen. Every write joins an open
 * transaction, the equipment screen's edit, so a revert undoes it.
 */
class EquipmentServices
{
public:
    /** Where attached services are copied from. */
    static inline const QString FromServiceList = QStringLiteral("SL");
    static inline const QString FromEquipment = QStringLiteral("EL");

    /** The editable cells of the service grid. */
    enum class Cell { NextSchedule, NextCount, Crew, BudgetedHours, LaborCost, Interval };

    /** One reading of a machine, as the count grid shows it. */
    struct Reading
    {
        QString countType;
        QDate date;
        QVariant value;
    };

    explicit EquipmentServices(Session& session);

    /**
     * The grid rows: ServiceUsedID, "Service No", ServiceID, Name, "Next Schedule",
     * "Next Count", "Service Crew" (an id), "Budgeted Hrs", "Labor Cost", "Interval",
     * "Schedule Type" (the period's text) and SeparateWo.
     */
    Rows rows(qint64 equipmentId);
    /** The master services already on the machine, for the picker to leave out. */
    QList<qint64> serviceIds(qint64 equipmentId);

    /**
     * Copies the services ids (master services with FromServiceList, other machines'
     * with FromEquipment) onto the machine with their parts. A calendar copy is due
     * today; a meter copy waits for the latest reading of its type plus its interval,
     * and a machine without such a reading is asked for one through ask first.
     */
    bool addServiceRecord(qint64 equipmentId, const QList<qint64>& ids, const QString& source,
                          const MeterReadings::ServiceCountAsker& ask);
    /** Removes a service from its machine, with its parts. */
    bool deleteServiceRecord(qint64 serviceUsedId);
    /** Stores one schedule column of a service; field must be one the grid edits. */
    bool updateEquipmentService(const QString& field, const QVariant& value, qint64 serviceUsedId);

    /** False for a cell the schedule type (the grid's text, "Hours"...) leaves read-only. */
    static bool isEditable(Cell cell, const QString& scheduleType);
    /**
     * Applies an edited cell by its rules: asks before changing a service on a work
     * order, refuses with a message what may not be stored, and keeps the costs in
     * step with crew and hours. False when nothing was stored.
     */
    bool editCell(qint64 serviceUsedId, Cell cell, const QVariant& value);

    /** The machine's readings, newest first. */
    QList<Reading> readings(qint64 equipmentId);
    /** Removes a reading; it has no key, so every row equal to it goes. */
    bool deleteReading(qint64 equipmentId, const Reading& reading);

private:
    struct Source;

    qint64 copyService(WriteScope& write, qint64 equipmentId, const Source& source, qint64 id);
    bool startMeterService(qint64 equipmentId, qint64 serviceUsedId,
                           const MeterReadings::ServiceCountAsker& ask);
    bool editNextSchedule(qint64 serviceUsedId, const QDate& date);
    bool editNextCount(qint64 serviceUsedId, const QVariant& value);
    bool storeWithCost(qint64 serviceUsedId, const QString& field, const QVariant& value);
    QSqlRecord service(qint64 serviceUsedId);

    Session& m_session;
};
