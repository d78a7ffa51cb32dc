#pragma once

#include "MeterReadings.h"

#include <QDialog>

class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class Session;

/**
 * frmCountReading: one meter reading of one machine. By hand the count type
 * is chosen and the latest reading of it is shown; for a service that is
 * coming onto a machine without readings, the type is the service's and the
 * user gives the count at which it was last done.
 */
class CountReadingScreen : public QDialog
{
    Q_OBJECT

public:
    /** The reading by hand. */
    CountReadingScreen(Session& session, qint64 equipmentId, QWidget* parent = nullptr);
    /** The reading for one service, of its count type. */
    CountReadingScreen(Session& session, qint64 equipmentId, qint64 serviceUsedId,
                       const QString& serviceName, const QString& countType,
                       QWidget* parent = nullptr);

    /** Opens the screen modally for the machine; true when a reading was stored. */
    static bool showCountReadingForm(Session& session, qint64 equipmentId, QWidget* parent);
    /** Opens the screen for a service; true when the user gave a count and it was stored. */
    static bool showCountReadingForService(Session& session, qint64 equipmentId,
                                           qint64 serviceUsedId, const QString& serviceName,
                                           const QString& countType, QWidget* parent);
    /** What asks the screens that attach meter services for a machine's count. */
    static MeterReadings::ServiceCountAsker serviceCountAsker(Session& session, QWidget* parent);

    void done(int result) override;

private:
    void build(bool forService);
    QString countType() const;
    void refreshCountForm();
    void checkDate();
    void save();

    Session& m_session;
    MeterReadings m_readings;
    qint64 m_equipmentId;
    qint64 m_serviceUsedId = 0;
    QComboBox* m_countType = nullptr;
    QLabel* m_fixedType = nullptr;
    QLabel* m_serviceName = nullptr;
    QLabel* m_message = nullptr;
    QLabel* m_lastDate = nullptr;
    QLabel* m_lastValue = nullptr;
    QLineEdit* m_value = nullptr;
    QDateEdit* m_date = nullptr;
};
