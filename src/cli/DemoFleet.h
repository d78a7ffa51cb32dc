#pragma once

#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QRandomGenerator>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <functional>

class BatchInsert;
class EquipmentServices;
class Session;

/**
 * A small, realistic grounds-care fleet for trying the program out and for
 * tests: lookup lists, sites, crews, employees, suppliers, parts in stock,
 * master services with calendar and meter schedules, those services on the
 * machines with their first dates and counts, and three years of meter readings.
 *
 * The same day and size give the same data: the numbers come from a fixed
 * seed and every date is counted back or forward from the session's today.
 * The hand-made machines make the fleet of the default size; a smaller fleet
 * takes some of every kind of them, a larger one adds machines made after
 * their pattern, each from numbers of its own.
 */
class DemoFleet
{
public:
    struct Counts
    {
        int machines = 0;
        int services = 0;
        int servicesOnMachines = 0;
        int readings = 0;
        int parts = 0;
        int employees = 0;
    };

    /** The hand-made machines: the fleet's size unless another is asked for. */
    static constexpr int DefaultMachines = 40;
    /** The largest fleet; keys stay distinct well beyond it. */
    static constexpr int MaxMachines = 100000;

    /** Tells how far a step of the work has come: done of total. */
    using Progress = std::function<void(const QString& step, int done, int total)>;

    explicit DemoFleet(Session& session, int machines = DefaultMachines);
    ~DemoFleet();

    /** Writes the whole fleet in one transaction; false with a reason, and nothing written. */
    bool generate(QString* error);
    void setProgress(Progress progress) { m_progress = std::move(progress); }

    const Counts& counts() const { return m_counts; }
    /** One line that tells what was made. */
    QString summary() const;

    /** The moment the keys of machines and master services count on from. */
    static QDateTime keyBase();

private:
    struct Reading
    {
        QDate day;
        qint64 value;
    };
    struct Machine
    {
        qint64 id = 0;
        int index = 0; ///< in the order the keys count
        bool generated = false;
        int kind = 0;
        int ordinal = 0; ///< among the machines of its kind
        int site = 0;
        int crew = 0;
        bool retired = false;
        QString countType;
        QList<Reading> readings;
    };

    bool addLookupLists();
    bool addPlacesAndCrews();
    bool addEmployees();
    bool addSuppliersAndParts();
    bool addServices();
    using Values = QHash<QString, QVariant>; ///< column values by name
    Machine newMachine(int kind, int ordinal, int index) const;
    QRandomGenerator ownNumbers(const Machine& machine, quint32 step) const;
    void tell(const QString& step, int done, int total) const;
    bool addMachines();
    QVariantList machineValues(const QStringList& columns, const Machine& machine);
    void addIdentity(Values& v, const Machine& machine, const QDate& installed);
    void addEngine(Values& v, const Machine& machine);
    void addVehicle(Values& v, const Machine& machine, bool leased);
    void addPurchase(Values& v, const Machine& machine, const QDate& installed, bool leased);
    bool addReadings(BatchInsert& insert, Machine& machine);
    QList<qint64> serviceIdsOf(const Machine& machine);
    bool attachServices();
    bool giveHistory(EquipmentServices& services, const Machine& machine, qint64 serviceUsedId,
                     int service);
    bool lastDoneByMeter(const Machine& machine, qint64 serviceUsedId, int service);
    bool lastDoneByCalendar(const Machine& machine, qint64 serviceUsedId, int service);
    bool recordLastDone(qint64 serviceUsedId, const QDate& scheduled, const QDate& performed,
                        const QVariant& nextCount);
    bool run(const QString& sql, const QVariantList& values);

    qint64 item(const QString& list, const QString& name) const;
    qint64 addItem(BatchInsert& insert, qint64 parent, const QString& name);
    bool fail(const QString& reason);
    int between(int low, int high);
    QDate daysAgo(int days) const { return m_today.addDays(-days); }

    Session& m_session;
    int m_size;
    Progress m_progress;
    QRandomGenerator m_random;
    QRandomGenerator* m_draw = &m_random; ///< where between() draws from
    QDate m_today;
    QString m_error;
    Counts m_counts;

    QHash<QString, qint64> m_items;
    QList<qint64> m_siteIds;
    QList<QList<qint64>> m_locationIds; ///< per site
    QList<qint64> m_crewIds;
    QList<qint64> m_costCenterIds;
    QList<qint64> m_serviceIds;
    QList<Machine> m_machines;
};
