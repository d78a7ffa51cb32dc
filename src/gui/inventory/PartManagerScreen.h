#pragma once

#include "PartManager.h"
#include "PartPicker.h"

#include <QDialog>

class QLineEdit;
class QPushButton;
class QTableWidget;
class QTableWidgetItem;
class Session;

/**
 * The parts to choose from, with a quantity for each. In select mode the
 * ticked parts go back to the caller; otherwise a row opens the part.
 */
class PartManagerScreen : public QDialog
{
    Q_OBJECT

public:
    /** excludeText: the parts already chosen, quoted and joined by ",", which are not offered. */
    PartManagerScreen(Session& session, const QString& excludeText, bool selectMode,
                      QWidget* parent = nullptr);

    /**
     * Shows the picker as a modal window. True when the user processed a
     * choice, which then replaces the exclude text as records of part,
     * quantity, price and supplier; false, and the text unchanged, otherwise.
     */
    static bool showPartManager(Session& session, QString* excludeInOut, bool selectMode,
                                QWidget* parent = nullptr);

    /** The processed choice; empty until the user processes one. */
    QString result() const { return m_result; }

    void done(int result) override;

private:
    void showGrid();
    void onCellChanged(QTableWidgetItem* item);
    void onRowActivated(int row);
    void process();
    void openCurrentPart();
    void addPart();
    void deletePart();
    QString partId(int row) const;

    Session& m_session;
    PartManager m_manager;
    PartPicker m_picker;
    QString m_excludeText;
    bool m_selectMode;
    QString m_result;
    QLineEdit* m_search = nullptr;
    QTableWidget* m_grid = nullptr;
    bool m_filling = false;
};
