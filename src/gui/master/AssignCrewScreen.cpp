#include "AssignCrewScreen.h"

#include "DataHelpers.h"
#include "Equipment.h"
#include "EquipmentManager.h"
#include "LookupCombo.h"
#include "ScreenFields.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Wide enough for a long machine name.
constexpr int MinimumWidth = 420;

QLineEdit* shownText(const QString& name, const QString& text, QWidget* parent)
{
    auto* edit = new QLineEdit(text, parent);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    return edit;
}

} // namespace

AssignCrewScreen::AssignCrewScreen(Session& session, qint64 equipmentId, QWidget* parent)
    : QDialog(parent), m_session(session), m_equipmentId(equipmentId), m_crew(new QComboBox(this))
{
    setObjectName(QStringLiteral("frmAssignCrew"));
    setWindowTitle(QStringLiteral("Assign Crew"));
    setMinimumWidth(MinimumWidth);
    const Equipment equipment = EquipmentManager(session).find(equipmentId).value_or(Equipment{});
    m_crew->setObjectName(QStringLiteral("cboCrew"));
    LookupCombo::loadItemWithId(m_crew, DataHelpers::crewInfo(session), QStringLiteral("CrewID"),
                                QStringLiteral("CrewNumber"), true);
    LookupCombo::selectId(m_crew, equipment.crewId);
    m_oldEntry = m_crew->currentText();

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Unit No"),
                 shownText(QStringLiteral("txtUnitNo"), equipment.unitNo, this));
    form->addRow(QStringLiteral("Equipment Name"),
                 shownText(QStringLiteral("txtEquipmentName"), equipment.equipmentName, this));
    form->addRow(QStringLiteral("Old Crew"),
                 shownText(QStringLiteral("txtOldCrew"), m_oldEntry.trimmed(), this));
    form->addRow(QStringLiteral("New Crew"), m_crew);

    auto* saveButton = ScreenFields::button(this, "cmdOK", QStringLiteral("&OK"));
    auto* cancelButton = ScreenFields::button(this, "cmdCancel", QStringLiteral("&Cancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(saveButton);
    buttons->addWidget(cancelButton);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    connect(saveButton, &QPushButton::clicked, this, &AssignCrewScreen::save);
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::reject);
}

bool AssignCrewScreen::showAssignCrew(Session& session, qint64 equipmentId, QWidget* parent)
{
    AssignCrewScreen screen(session, equipmentId, parent);
    return screen.exec() == QDialog::Accepted;
}

void AssignCrewScreen::save()
{
    const QString newEntry = m_crew->currentText();
    if (newEntry == m_oldEntry) {
        reject();
        return;
    }
    // A failure has been reported under "Equipment"; the dialog stays for another try.
    if (EquipmentManager(m_session).assignCrew(m_equipmentId, m_oldEntry, newEntry,
                                               LookupCombo::currentId(m_crew))) {
        accept();
    }
}
