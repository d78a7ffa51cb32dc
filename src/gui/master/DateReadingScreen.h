#pragma once

#include "DateReadings.h"

#include <QDialog>

class QDateEdit;
class QPushButton;
class QTableWidget;
class QTableWidgetItem;
class Session;

/**
 * frmInspectionDateReading and frmLicenseDateReading: the machines whose
 * inspection or licence renewal date lies in a range, with a new date for
 * each. A typed date or "Add one year" opens an edit; cmdUpdate writes every
 * new date at once, cmdCancel drops them. The range is kept on leaving.
 */
class DateReadingScreen : public QDialog
{
    Q_OBJECT

public:
    DateReadingScreen(Session& session, DateReadings::Kind kind, QWidget* parent = nullptr);

    /** Opens the screen of kind modally. */
    static void showDateReading(Session& session, DateReadings::Kind kind, QWidget* parent);

    void done(int result) override;
    /** The close box and Escape: refused while new dates wait. */
    void reject() override;

private:
    enum Column { UnitNo, EquipmentName, OldDate, NewDate, Select, ColumnCount };

    QWidget* makeRange();
    QWidget* makeButtons();
    void refreshRecordSet();
    void addRow(int row, const DateReading& reading);
    void addOneYear(int row);
    void onCellChanged(QTableWidgetItem* item);
    void update();
    void setEditing(bool editing);

    Session& m_session;
    DateReadings m_readings;
    QList<DateReading> m_rows;
    bool m_editing = false;
    QDateEdit* m_from = nullptr;
    QDateEdit* m_to = nullptr;
    QTableWidget* m_grid = nullptr;
    QPushButton* m_update = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_exit = nullptr;
    QPushButton* m_print = nullptr;
    QPushButton* m_refresh = nullptr;
};
