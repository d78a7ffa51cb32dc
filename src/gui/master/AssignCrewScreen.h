#pragma once

#include <QDialog>

class QComboBox;
class Session;

/**
 * frmAssignCrew: gives one machine another crew without the full equipment
 * screen. It shows the machine and its crew; OK logs and stores the change.
 */
class AssignCrewScreen : public QDialog
{
    Q_OBJECT

public:
    AssignCrewScreen(Session& session, qint64 equipmentId, QWidget* parent = nullptr);

    /** Opens the screen modally for the machine; true when the crew was stored. */
    static bool showAssignCrew(Session& session, qint64 equipmentId, QWidget* parent);

private:
    void save();

    Session& m_session;
    qint64 m_equipmentId;
    QString m_oldEntry;
    QComboBox* m_crew = nullptr;
};
