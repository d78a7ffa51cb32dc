#include "ServiceDateConfirmationScreen.h"

#include "DateBox.h"
#include "NextDateCalculator.h"
#include "Prompter.h"
#include "ScreenFields.h"
#include "Session.h"

#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

QLabel* dataLabel(QWidget* parent, const char* name, const QString& text)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

QRadioButton* option(QWidget* parent, const char* name, const QString& caption)
{
    auto* button = new QRadioButton(caption, parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

} // namespace

ServiceDateConfirmationScreen::ServiceDateConfirmationScreen(Session& session, qint64 scheduleId,
                                                             const QDate& completedDate,
                                                             QWidget* parent)
    : QDialog(parent), m_session(session), m_scheduleId(scheduleId), m_completed(completedDate),
      m_chosen(completedDate)
{
    build();
}

void ServiceDateConfirmationScreen::build()
{
    setObjectName(QStringLiteral("frmServiceDateConfirmation"));
    setWindowTitle(QStringLiteral("Service Date Confirmation"));
    const WorkOrderPosting::ServiceOnMachine service =
        WorkOrderPosting(m_session).serviceOnMachine(m_scheduleId);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Equipment Name"),
                 dataLabel(this, "lblEquipmentNameData", service.equipmentName));
    form->addRow(QStringLiteral("Unit No"), dataLabel(this, "lblUnitNoData", service.unitNo));
    form->addRow(QStringLiteral("Service"),
                 dataLabel(this, "lblServiceNameData", service.serviceName));

    auto* frame = new QGroupBox(QStringLiteral("Scheduled Date Based On"), this);
    frame->setObjectName(QStringLiteral("fraScheduledDate"));
    m_serviceBased =
        option(frame, "optServiceBased", QStringLiteral("Service Based on Work Order Completion"));
    m_nextScheduled = option(frame, "optNextScheduled", QStringLiteral("Next Scheduled Date"));
    m_nextScheduled->setChecked(true);
    m_date = new QDateEdit(m_completed, frame);
    m_date->setObjectName(QStringLiteral("datNextScheduled"));
    m_date->setDisplayFormat(DateBox::DisplayFormat);
    m_date->setCalendarPopup(true);
    auto* options = new QVBoxLayout(frame);
    options->addWidget(m_serviceBased);
    options->addWidget(m_nextScheduled);
    options->addWidget(m_date);

    auto* ok = ScreenFields::button(this, "cmdOk", QStringLiteral("&OK"));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(frame);
    layout->addWidget(ok, 0, Qt::AlignRight);

    connect(m_nextScheduled, &QRadioButton::toggled, m_date, &QDateEdit::setEnabled);
    connect(m_date, &QDateEdit::dateChanged, this, &ServiceDateConfirmationScreen::checkDate);
    connect(ok, &QPushButton::clicked, this, &ServiceDateConfirmationScreen::confirm);
}

QDate ServiceDateConfirmationScreen::showServiceDateConfirmationForm(Session& session,
                                                                     const QDate& completedDate,
                                                                     qint64 scheduleId,
                                                                     QWidget* parent)
{
    ServiceDateConfirmationScreen screen(session, scheduleId, completedDate, parent);
    screen.exec();
    return screen.chosenDate();
}

WorkOrderPosting::DateConfirmation ServiceDateConfirmationScreen::dateConfirmation(Session& session,
                                                                                   QWidget* parent)
{
    return [&session, parent](qint64 scheduleId, const QDate& completedDate, const QDate&) {
        return showServiceDateConfirmationForm(session, completedDate, scheduleId, parent);
    };
}

void ServiceDateConfirmationScreen::checkDate()
{
    const WorkOrderPosting::DateCheck check =
        WorkOrderPosting::checkNextScheduled(m_completed, m_date->date());
    if (!check.refusal.isEmpty()) {
        m_session.prompter().inform(check.refusal);
        const QSignalBlocker quiet(m_date);
        m_date->setDate(check.date);
    }
}

void ServiceDateConfirmationScreen::confirm()
{
    m_chosen =
        m_serviceBased->isChecked()
            ? NextDateCalculator(m_session).nextScheduledDate(m_scheduleId, true, m_completed)
            : m_date->date();
    accept();
}
