#include "ServicesManagerScreen.h"

#include "MessageTexts.h"
#include "Prompter.h"
#include "QuickFindScreen.h"
#include "ServicesScreen.h"
#include "Session.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

namespace {

const QStringList Captions{
    QStringLiteral("Select"),       QStringLiteral("Service ID"), QStringLiteral("Service No"),
    QStringLiteral("Name"),         QStringLiteral("Crew"),       QStringLiteral("Cost Center"),
    QStringLiteral("Interval"),     QStringLiteral("RenewalOn"),  QStringLiteral("SeparateWo"),
    QStringLiteral("Budgeted Hrs"), QStringLiteral("Labor Cost")};

QPushButton* button(QWidget* parent, const char* name, const QString& caption)
{
    auto* result = new QPushButton(caption, parent);
    result->setObjectName(QString::fromLatin1(name));
    return result;
}

} // namespace

ServicesManagerScreen::ServicesManagerScreen(Session& session,
                                             const QList<qint64>& excludedServiceIds,
                                             qint64 equipmentId, Machines machines, QWidget* parent)
    : QDialog(parent), m_session(session), m_manager(session), m_excluded(excludedServiceIds),
      m_equipmentId(equipmentId), m_machines(machines)
{
    setObjectName(QStringLiteral("frmServicesManager"));
    setWindowTitle(QStringLiteral("Services"));
    m_master = new QRadioButton(QStringLiteral("Master Service List"), this);
    m_master->setObjectName(QStringLiteral("optServiceMaster"));
    m_master->setChecked(true);
    m_machine = new QRadioButton(machines == Machines::This
                                     ? QStringLiteral("This Equipment's Service List")
                                     : QStringLiteral("Another Piece of Equipment"),
                                 this);
    m_machine->setObjectName(QStringLiteral("optEquipmentService"));
    m_machineName = new QLabel(this);
    m_machineName->setObjectName(QStringLiteral("lblEquipment"));
    m_grid = new QTableWidget(this);
    m_grid->setObjectName(QStringLiteral("grdServices"));
    m_grid->setColumnCount(int(Captions.size()));
    m_grid->setHorizontalHeaderLabels(Captions);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    auto* select = button(this, "cmdSelect",
                          equipmentId ? QStringLiteral("Select") : QStringLiteral("&Process"));
    auto* add = button(this, "cmdAdd", QStringLiteral("&Add"));
    auto* remove = button(this, "cmdDelete", QStringLiteral("&Delete"));
    auto* exit = button(this, "cmdExit", QStringLiteral("E&xit"));
    auto* sources = new QHBoxLayout;
    sources->addWidget(m_master);
    sources->addWidget(m_machine);
    sources->addWidget(m_machineName, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton* b : {select, add, remove, exit}) {
        buttons->addWidget(b);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(sources);
    layout->addWidget(m_grid, 1);
    layout->addLayout(buttons);
    connect(m_master, &QRadioButton::clicked, this, &ServicesManagerScreen::showServices);
    connect(m_machine, &QRadioButton::clicked, this, &ServicesManagerScreen::chooseMachine);
    connect(m_grid, &QTableWidget::cellDoubleClicked, this, &ServicesManagerScreen::process);
    connect(select, &QPushButton::clicked, this, &ServicesManagerScreen::process);
    connect(add, &QPushButton::clicked, this, &ServicesManagerScreen::addService);
    connect(remove, &QPushButton::clicked, this, &ServicesManagerScreen::deleteService);
    connect(exit, &QPushButton::clicked, this, &QDialog::reject);
    resize(900, 450);
    showServices();
}

std::optional<ServicePick>
ServicesManagerScreen::pickServices(Session& session, const QList<qint64>& excludedServiceIds,
                                    qint64 equipmentId, QWidget* parent, Machines machines)
{
    ServicesManagerScreen screen(session, excludedServiceIds, equipmentId, machines, parent);
    if (screen.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return screen.pick();
}

void ServicesManagerScreen::showServices()
{
    const bool master = m_master->isChecked();
    const Rows rows = m_manager.pickList(master ? QStringLiteral("SL") : QStringLiteral("EL"),
                                         m_excluded, m_otherMachine);
    m_grid->setRowCount(int(rows.size()));
    m_pickIds.clear();
    for (int r = 0; r < rows.size(); ++r) {
        auto* tick = new QTableWidgetItem;
        tick->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        tick->setCheckState(Qt::Unchecked);
        m_grid->setItem(r, 0, tick);
        for (int c = 0; c + 1 < Captions.size(); ++c) {
            m_grid->setItem(r, c + 1, new QTableWidgetItem(rows[r].value(c).toString()));
        }
        m_pickIds.append(
            rows[r]
                .value(master ? QStringLiteral("ServiceID") : QStringLiteral("ServiceUsedID"))
                .toLongLong());
    }
}

void ServicesManagerScreen::chooseMachine()
{
    if (m_machines == Machines::This) {
        m_otherMachine = m_equipmentId;
        showMachine();
        return;
    }
    const QString key = QuickFindScreen::showQuickFind(
        m_session, QStringLiteral("tblEquipment"), QStringLiteral("UnitNo"),
        QStringLiteral("Unit No"), objectName(), {}, this);
    if (key.isEmpty()) {
        m_master->setChecked(m_otherMachine == 0);
        return;
    }
    m_otherMachine = key.toLongLong();
    showMachine();
}

void ServicesManagerScreen::showMachine()
{
    const Rows machine = m_manager.machineNameAndUnit(m_otherMachine);
    m_machineName->setText(machine.isEmpty()
                               ? QString()
                               : machine[0].value(0).toString() + QStringLiteral(" (") +
                                     machine[0].value(1).toString() + u')');
    showServices();
}

void ServicesManagerScreen::process()
{
    m_pick = {{}, m_master->isChecked() ? QStringLiteral("SL") : QStringLiteral("EL")};
    for (int r = 0; r < m_grid->rowCount(); ++r) {
        if (m_grid->item(r, 0)->checkState() == Qt::Checked) {
            m_pick.ids.append(m_pickIds.value(r));
        }
    }
    accept();
}

qint64 ServicesManagerScreen::serviceId(int row) const
{
    return m_grid->item(row, 1)->text().toLongLong();
}

bool ServicesManagerScreen::allowed(UserRights::Right right)
{
    if (m_session.rights().has(right)) {
        return true;
    }
    m_session.prompter().inform(MessageTexts::NoActionRights);
    return false;
}

void ServicesManagerScreen::addService()
{
    if (allowed(UserRights::SerAdd)) {
        ServicesScreen::showServicesDetail(m_session, RecordScreen::Mode::Add, {}, this);
        showServices();
    }
}

void ServicesManagerScreen::deleteService()
{
    const int row = m_grid->currentRow();
    if (row < 0 || !m_master->isChecked() || !allowed(UserRights::SerDel) ||
        !m_session.prompter().askYesNo(MessageTexts::DeleteQuestion)) {
        return;
    }
    const QString user = m_manager.canDeleteServices(serviceId(row));
    if (!user.isEmpty()) {
        m_session.prompter().inform(MessageTexts::recordInUse(user));
    } else if (m_manager.deleteRecord(serviceId(row))) {
        showServices();
    }
}
