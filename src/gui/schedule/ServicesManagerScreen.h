#pragma once

#include "EquipmentServices.h"
#include "ServicesManager.h"
#include "UserRights.h"

#include <QDialog>
#include <optional>

class QLabel;
class QPushButton;
class QRadioButton;
class QTableWidget;
class Session;

/**
 * The services to pick from: the master list, or the services of another
 * machine. Services whose ServiceID the caller already has are not offered.
 */
class ServicesManagerScreen : public QDialog
{
    Q_OBJECT

public:
    /** Where the services of a machine come from: another machine found first, or this one. */
    enum class Machines { Another, This };

    ServicesManagerScreen(Session& session, const QList<qint64>& excludedServiceIds,
                          qint64 equipmentId, Machines machines = Machines::Another,
                          QWidget* parent = nullptr);

    /** Shows the picker modally; the ticked services, or nothing when the user left. */
    static std::optional<ServicePick> pickServices(Session& session,
                                                   const QList<qint64>& excludedServiceIds,
                                                   qint64 equipmentId, QWidget* parent = nullptr,
                                                   Machines machines = Machines::Another);

    /** The ids ticked when the user processed the choice. */
    const ServicePick& pick() const { return m_pick; }

private:
    void showServices();
    void chooseMachine();
    void showMachine();
    void process();
    void addService();
    void deleteService();
    qint64 serviceId(int row) const;
    bool allowed(UserRights::Right right);

    Session& m_session;
    ServicesManager m_manager;
    QList<qint64> m_excluded;
    qint64 m_equipmentId = 0;
    Machines m_machines = Machines::Another;
    qint64 m_otherMachine = 0;
    QList<qint64> m_pickIds; ///< what ticking each row picks: a ServiceID or a ServiceUsedID
    ServicePick m_pick;
    QRadioButton* m_master = nullptr;
    QRadioButton* m_machine = nullptr;
    QLabel* m_machineName = nullptr;
    QTableWidget* m_grid = nullptr;
};
