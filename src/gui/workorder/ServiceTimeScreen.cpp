#include "ServiceTimeScreen.h"

#include "FormPlacement.h"
#include "Prompter.h"
#include "Session.h"

#include <QEvent>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

ServiceTimeScreen::ServiceTimeScreen(Session& session, qint64 id, const QStringList& times,
                                     const QString& table, QWidget* parent)
    : QDialog(parent), m_session(session), m_id(id), m_table(table)
{
    QTime* fields[] = {&m_entry.start, &m_entry.end, &m_entry.hours};
    for (int i = 0; i < 3 && i < times.size(); ++i) {
        *fields[i] = ServiceTime::fromStored(times[i]);
    }
    build();
    showEntry();
}

void ServiceTimeScreen::showServiceTimeForm(Session& session, qint64 id, const QStringList& times,
                                            const QString& table, QWidget* parent)
{
    ServiceTimeScreen screen(session, id, times, table, parent);
    screen.exec();
}

void ServiceTimeScreen::build()
{
    setObjectName(QStringLiteral("frmServiceTime"));
    setWindowTitle(QStringLiteral("Service Time"));
    setModal(true);
    m_start = timeBox("timeStart");
    m_end = timeBox("timeEnd");
    m_hours = timeBox("datWorkhrs");
    auto* saveButton = new QPushButton(QStringLiteral("&Save"), this);
    saveButton->setObjectName(QStringLiteral("cmdUpdate"));
    saveButton->setDefault(true);
    connect(saveButton, &QPushButton::clicked, this, &ServiceTimeScreen::save);
    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("Start Time"), m_start);
    form->addRow(QStringLiteral("End Time"), m_end);
    form->addRow(QStringLiteral("Work Hours"), m_hours);
    form->addRow(saveButton);
    FormPlacement::restore(m_session, this);
}

void ServiceTimeScreen::done(int result)
{
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}

QLineEdit* ServiceTimeScreen::timeBox(const char* name)
{
    auto* box = new QLineEdit(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setMaxLength(7);
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("00:00AM")) * 2);
    box->installEventFilter(this);
    return box;
}

bool ServiceTimeScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut) {
        leaveBox(qobject_cast<QLineEdit*>(watched));
    }
    return QDialog::eventFilter(watched, event);
}

void ServiceTimeScreen::leaveBox(QLineEdit* box)
{
    if (box == m_hours) {
        // The hours follow from the times but may be corrected by hand.
        m_entry.hours = ServiceTime::parse(box->text()).value_or(m_entry.hours);
    } else if (box == m_start || box == m_end) {
        const ServiceTime::Leave left = ServiceTime::leave(
            m_entry, box == m_start ? ServiceTime::Box::Start : ServiceTime::Box::End, box->text());
        m_entry = left.entry;
        if (!left.message.isEmpty()) {
            m_session.prompter().inform(left.message);
        }
    }
    showEntry();
}

void ServiceTimeScreen::showEntry()
{
    m_start->setText(ServiceTime::display(m_entry.start));
    m_end->setText(ServiceTime::display(m_entry.end));
    m_hours->setText(ServiceTime::display(m_entry.hours));
}

void ServiceTimeScreen::save()
{
    // A box typed into and saved by its shortcut has not been left yet.
    for (QLineEdit* box : {m_start, m_end, m_hours}) {
        if (box->isModified()) {
            box->setModified(false);
            leaveBox(box);
        }
    }
    if (ServiceTime::save(m_session, m_id, m_table, m_entry)) {
        accept();
    }
}
