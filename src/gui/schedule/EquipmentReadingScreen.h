#pragma once

#include "CountSheet.h"

#include <QDialog>

class QPushButton;
class QTableWidget;
class QTableWidgetItem;
class Session;

/**
 * frmEquipmentReading: the count sheet on screen. Every machine and count
 * type due for a reading is a line; counts written in the "Count" column
 * are stored together with today's date.
 */
class EquipmentReadingScreen : public QDialog
{
    Q_OBJECT

public:
    explicit EquipmentReadingScreen(Session& session, QWidget* parent = nullptr);

    static void showEquipmentReading(Session& session, QWidget* parent);

    void done(int result) override;

private:
    void refreshRecordSet();
    void checkCount(QTableWidgetItem* item);
    /** Tells and reopens a line whose count is below its last one; true when so. */
    bool refuseBelowLast(int row);
    void update();

    Session& m_session;
    CountSheet m_sheet;
    QList<CountSheet::Line> m_lines;
    QTableWidget* m_grid = nullptr;
    bool m_filling = false;
};
