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
    ServicesManagerScreen(Session& session, const QList<qint64>& excludedServiceIds,
                          qint64 equipmentId, QWidget* parent = nullptr);

    /** Shows the picker modally; the ticked services, or nothing when the user left. */
    static std::optional<ServicePick> pickServices(Session& session,
                                                   const QList<qint64>& excludedServiceIds,
                                                   qint64 equipmentId, QWidget* parent = nullptr);

    /** The ids ticked when the user processed the choice. */
    const ServicePick& pick() const { return m_pick; }

private:
    void showServices();
    void chooseOtherMachine();
    void process();
    void addService();
    void deleteService();
    qint64 serviceId(int row) const;
    bool allowed(UserRights::Right right);

    Session& m_session;
    ServicesManager m_manager;
    QList<qint64> m_excluded;
    qint64 m_otherMachine = 0;
    ServicePick m_pick;
    QRadioButton* m_master = nullptr;
    QRadioButton* m_machine = nullptr;
    QLabel* m_machineName = nullptr;
    QTableWidget* m_grid = nullptr;
};
