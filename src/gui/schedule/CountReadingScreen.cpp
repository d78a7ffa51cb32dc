#include "CountReadingScreen.h"

#include "DateBox.h"
#include "EquipmentManager.h"
#include "FormPlacement.h"
#include "Prompter.h"
#include "ScreenFields.h"
#include "Session.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace {

constexpr int HeightTwips = 3345;
constexpr int WidthTwips = 3825;

QLabel* label(QWidget* parent, const char* name, const QString& text = QString())
{
    auto* result = new QLabel(text, parent);
    result->setObjectName(QString::fromLatin1(name));
    return result;
}

} // namespace

CountReadingScreen::CountReadingScreen(Session& session, qint64 equipmentId, QWidget* parent)
    : QDialog(parent), m_session(session), m_readings(session), m_equipmentId(equipmentId)
{
    build(false);
}

CountReadingScreen::CountReadingScreen(Session& session, qint64 equipmentId, qint64 serviceUsedId,
                                       const QString& serviceName, const QString& countType,
                                       QWidget* parent)
    : QDialog(parent), m_session(session), m_readings(session), m_equipmentId(equipmentId),
      m_serviceUsedId(serviceUsedId)
{
    build(true);
    m_fixedType->setText(countType);
    m_serviceName->setText(serviceName);
    m_message->setText(QStringLiteral("Enter the last count that this service was performed."));
    refreshCountForm();
}

void CountReadingScreen::build(bool forService)
{
    setObjectName(QStringLiteral("frmCountReading"));
    setWindowTitle(QStringLiteral("Count Reading"));
    m_countType = ScreenFields::comboBox(this, "cboCountType");
    m_countType->addItems({QStringLiteral("Counts"), QStringLiteral("Hours"),
                           QStringLiteral("Kilometers"), QStringLiteral("Miles")});
    m_fixedType = label(this, "lblCounttypedata");
    m_serviceName = label(this, "lblServiceNameData");
    m_message = label(this, "lblmsg");
    m_message->setWordWrap(true);
    m_lastDate = label(this, "lblLastCountDateData");
    m_lastValue = label(this, "lblLastCountValueData");
    m_value = ScreenFields::lineEdit(this, "txtCountValue", 9);
    m_value->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), m_value));
    m_date = new QDateEdit(m_session.today(), this);
    m_date->setObjectName(QStringLiteral("datCountdate"));
    m_date->setDisplayFormat(DateBox::DisplayFormat);
    m_date->setCalendarPopup(true);

    const Equipment machine = EquipmentManager(m_session).find(m_equipmentId).value_or(Equipment{});
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Unit No"), label(this, "lblUnitNoData", machine.unitNo));
    if (forService) {
        form->addRow(QStringLiteral("Service"), m_serviceName);
        form->addRow(QStringLiteral("Count Type"), m_fixedType);
    } else {
        form->addRow(QStringLiteral("Count Type"), m_countType);
        form->addRow(QStringLiteral("Last Count Date"), m_lastDate);
        form->addRow(QStringLiteral("Last Count Value"), m_lastValue);
    }
    form->addRow(QStringLiteral("New Count Value"), m_value);
    form->addRow(QStringLiteral("Count Date"), m_date);
    // The controls of the other form stay hidden, so that both forms have every control.
    for (QWidget* other : forService ? QList<QWidget*>{m_countType, m_lastDate, m_lastValue}
                                     : QList<QWidget*>{m_fixedType, m_serviceName, m_message}) {
        other->hide();
    }

    auto* update = ScreenFields::button(this, "cmdUpdate", QStringLiteral("&Save"));
    auto* exit = ScreenFields::button(this, "cmdExit", QStringLiteral("&Return"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(update);
    buttons->addWidget(exit);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_message);
    layout->addLayout(form);
    layout->addLayout(buttons);

    connect(m_countType, &QComboBox::currentTextChanged, this,
            &CountReadingScreen::refreshCountForm);
    connect(m_date, &QDateEdit::dateChanged, this, &CountReadingScreen::checkDate);
    connect(update, &QPushButton::clicked, this, &CountReadingScreen::save);
    connect(exit, &QPushButton::clicked, this, &QDialog::reject);
    resize(WidthTwips / FormPlacement::TwipsPerPixel, HeightTwips / FormPlacement::TwipsPerPixel);
    FormPlacement::restore(m_session, this);
    refreshCountForm();
}

bool CountReadingScreen::showCountReadingForm(Session& session, qint64 equipmentId, QWidget* parent)
{
    CountReadingScreen screen(session, equipmentId, parent);
    return screen.exec() == QDialog::Accepted;
}

bool CountReadingScreen::showCountReadingForService(Session& session, qint64 equipmentId,
                                                    qint64 serviceUsedId,
                                                    const QString& serviceName,
                                                    const QString& countType, QWidget* parent)
{
    CountReadingScreen screen(session, equipmentId, serviceUsedId, serviceName, countType, parent);
    return screen.exec() == QDialog::Accepted;
}

MeterReadings::ServiceCountAsker CountReadingScreen::serviceCountAsker(Session& session,
                                                                       QWidget* parent)
{
    return [&session, parent](qint64 equipmentId, qint64 serviceUsedId, const QString& serviceName,
                              const QString& countType) {
        return showCountReadingForService(session, equipmentId, serviceUsedId, serviceName,
                                          countType, parent);
    };
}

void CountReadingScreen::done(int result)
{
    FormPlacement::store(m_session, this);
    QDialog::done(result);
}

QString CountReadingScreen::countType() const
{
    return m_serviceUsedId != 0 ? m_fixedType->text() : m_countType->currentText();
}

void CountReadingScreen::refreshCountForm()
{
    const MeterReadings::Reading last = m_readings.latest(m_equipmentId, countType());
    m_lastDate->setText(last.exists ? last.date.toString(DateBox::DisplayFormat)
                                    : QStringLiteral("None"));
    m_lastValue->setText(QString::number(last.value));
}

void CountReadingScreen::checkDate()
{
    const MeterReadings::DateCheck check =
        m_readings.checkDate(m_equipmentId, countType(), m_date->date());
    if (!check.refusal.isEmpty()) {
        m_session.prompter().inform(check.refusal);
        const QSignalBlocker quiet(m_date);
        m_date->setDate(check.date);
    }
}

void CountReadingScreen::save()
{
    const QString typed = m_value->text().trimmed();
    const std::optional<qint64> value =
        typed.isEmpty() ? std::nullopt : std::optional<qint64>(typed.toLongLong());
    QString refusal;
    if (m_readings.addCheckedCount(m_equipmentId, m_date->date(), countType(), value, &refusal,
                                   m_serviceUsedId)) {
        accept();
    } else if (!refusal.isEmpty()) {
        m_session.prompter().inform(refusal);
        m_value->setFocus();
    }
}
