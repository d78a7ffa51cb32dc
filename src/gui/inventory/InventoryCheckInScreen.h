#pragma once

#include "InventoryCheckIn.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QTableWidget;
class QTableWidgetItem;
class Session;

/** Books received stock into many parts at once: one row a part, the quantity received typed. */
class InventoryCheckInScreen : public QDialog
{
    Q_OBJECT

public:
    explicit InventoryCheckInScreen(Session& session, QWidget* parent = nullptr);

    /** Shows the screen as a modal window. */
    static void showInventoryCheckIn(Session& session, QWidget* parent = nullptr);

    void done(int result) override;
    void reject() override;

private:
    void showGrid();
    void setChanged(bool changed);
    void onCellChanged(QTableWidgetItem* item);
    void saveChanges();

    Session& m_session;
    InventoryCheckIn m_checkIn;
    QCheckBox* m_reorder = nullptr;
    QLineEdit* m_search = nullptr;
    QTableWidget* m_grid = nullptr;
    QPushButton* m_update = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_exit = nullptr;
    bool m_filling = false;
    bool m_changed = false;
};
