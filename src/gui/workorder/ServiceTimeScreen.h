#pragma once

#include "ServiceTime.h"

#include <QDialog>

class QLineEdit;
class Session;

/**
 * frmServiceTime: the start, end and hours worked of a work order line or of
 * a posted line. Leaving a time box applies the entry rules at once; Save
 * stores the three times with the actual labour cost and closes.
 */
class ServiceTimeScreen : public QDialog
{
    Q_OBJECT

public:
    /** times: start, end and hours as "HH:mm"; table: empty for the open lines. */
    ServiceTimeScreen(Session& session, qint64 id, const QStringList& times, const QString& table,
                      QWidget* parent = nullptr);

    /** Opens the dialog modally; fits EquipmentScreen::HistoryTimeDialog. */
    static void showServiceTimeForm(Session& session, qint64 id, const QStringList& times,
                                    const QString& table, QWidget* parent);

    ServiceTime::Entry entry() const { return m_entry; }

    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    QLineEdit* timeBox(const char* name);
    void leaveBox(QLineEdit* box);
    void showEntry();
    void save();

    Session& m_session;
    qint64 m_id;
    QString m_table;
    ServiceTime::Entry m_entry;
    QLineEdit* m_start = nullptr;
    QLineEdit* m_end = nullptr;
    QLineEdit* m_hours = nullptr;
};
