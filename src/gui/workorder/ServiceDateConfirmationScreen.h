#pragma once

#include "WorkOrderPosting.h"

#include <QDate>
#include <QDialog>

class QDateEdit;
class QRadioButton;
class Session;

/**
 * frmServiceDateConfirmation: asked while a post runs, when a service's next
 * date would fall before the day its work was completed. The user takes the
 * date counted from the completion, or names one no earlier than it.
 */
class ServiceDateConfirmationScreen : public QDialog
{
    Q_OBJECT

public:
    ServiceDateConfirmationScreen(Session& session, qint64 scheduleId, const QDate& completedDate,
                                  QWidget* parent = nullptr);

    /** Opens the dialog modally; the date chosen, or the completed date when it is closed. */
    static QDate showServiceDateConfirmationForm(Session& session, const QDate& completedDate,
                                                 qint64 scheduleId, QWidget* parent);
    /** What posting asks on the desktop. */
    static WorkOrderPosting::DateConfirmation dateConfirmation(Session& session, QWidget* parent);

    QDate chosenDate() const { return m_chosen; }

private:
    void build();
    void checkDate();
    void confirm();

    Session& m_session;
    qint64 m_scheduleId;
    QDate m_completed;
    QDate m_chosen;
    QRadioButton* m_serviceBased = nullptr;
    QRadioButton* m_nextScheduled = nullptr;
    QDateEdit* m_date = nullptr;
};
