#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class Session;

/**
 * frmEquipmentImage, "Equipment-Image": picks a picture file for one machine,
 * shows it, and stores it under a name the user may change. A refused save
 * keeps the dialog open with what was entered.
 */
class EquipmentImageScreen : public QDialog
{
    Q_OBJECT

public:
    EquipmentImageScreen(Session& session, qint64 equipmentId, QWidget* parent = nullptr);

    /** Opens the screen modally for the machine; true when a picture was stored. */
    static bool showEquipmentImageDetail(Session& session, qint64 equipmentId, QWidget* parent);

    /** The next browse asks for no file and takes this one (for tests); empty to ask again. */
    static void setNextBrowseFile(const QString& path);

private:
    void browse();
    void showPreview();
    void save();

    Session& m_session;
    qint64 m_equipmentId;
    QLineEdit* m_path = nullptr;
    QLineEdit* m_name = nullptr;
    QLabel* m_image = nullptr;
};
