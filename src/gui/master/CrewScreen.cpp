#include "CrewScreen.h"

#include "FormPlacement.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "Session.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace {

const QString CrewIdField = QStringLiteral("CrewID");
const QString NumberField = QStringLiteral("CrewNumber");
const QString DescriptionField = QStringLiteral("Description");

QLineEdit* lineEdit(QWidget* parent, const char* name)
{
    auto* result = new QLineEdit(parent);
    result->setObjectName(QString::fromLatin1(name));
    return result;
}

} // namespace

CrewScreen::CrewScreen(Session& session, QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmCrew"), QStringLiteral("tblCrew"), CrewIdField,
                   parent),
      m_manager(session)
{
    setWindowTitle(QStringLiteral("Crew"));
    m_number = lineEdit(this, "txtCrewNumber");
    m_number->setMaxLength(9);
    m_number->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), m_number));
    m_description = lineEdit(this, "txtDescription");
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Crew &Number"), m_number);
    fields->addRow(QStringLiteral("&Description"), m_description);

    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdCrew"));
    grid->setFields({{CrewIdField, CrewIdField},
                     {NumberField, QStringLiteral("Crew Number")},
                     {DescriptionField, QStringLiteral("Description")}},
                    CrewIdField);
    setStandardLayout(fields, grid);

    bindField(m_number, NumberField, &m_crew.crewNumber, QStringLiteral("Crew Number"),
              FieldBindings::Required);
    bindField(m_description, DescriptionField, &m_crew.description, QStringLiteral("Description"),
              FieldBindings::Required);
    // The key travels in a hidden field; empty while a new crew is added.
    auto* crewId = lineEdit(this, "txtCrewID");
    crewId->hide();
    bindField(crewId, CrewIdField, &m_crew.crewId);
    setUniqueField(m_number, NumberField, true,
                   QStringLiteral("Crew Number you specified already exists. Please enter a "
                                  "different Crew Number."));
    resize(7425 / FormPlacement::TwipsPerPixel, 3810 / FormPlacement::TwipsPerPixel);
}

QVariant CrewScreen::showCrewDetail(Session& session, Mode mode, const QVariant& id,
                                    QWidget* parent)
{
    CrewScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run();
    if (mode == Mode::Add) {
        // Too late to take effect: a closed screen starts no edit.
        screen.addRecord();
    }
    return screen.chosenId();
}

Rows CrewScreen::loadRecords()
{
    return m_manager.list();
}

bool CrewScreen::validateFields()
{
    return mode() != Mode::Modify || confirmRename();
}

bool CrewScreen::confirmRename()
{
    const QSqlRecord stored = currentRecord();
    const QString oldNumber = DataHelpers::replaceNull(stored.value(NumberField)).toString();
    const QString oldDescription =
        DataHelpers::replaceNull(stored.value(DescriptionField)).toString();
    const bool numberChanged = m_number->text().trimmed() != oldNumber;
    const bool descriptionChanged = m_description->text().trimmed() != oldDescription.trimmed();
    if (!numberChanged && !descriptionChanged) {
        return true;
    }
    // Lookups hold the key, so a rename reaches every record that shows the crew.
    const QString user = m_manager.canDeleteCrew(stored.value(CrewIdField).toLongLong());
    if (user.isEmpty()) {
        return true;
    }
    const QString old = numberChanged ? oldNumber : oldDescription;
    if (session().prompter().askYesNo(QStringLiteral("This will change ") + old +
                                      QStringLiteral(" for all your ") + user +
                                      QStringLiteral(". Do you want to do this?"))) {
        return true;
    }
    setFieldQuietly([&] { displayData(stored); });
    (numberChanged ? m_number : m_description)->setFocus();
    return false;
}

bool CrewScreen::saveRecord(QVariant* id)
{
    if (!m_manager.saveRecord(m_crew, mode() == Mode::Add)) {
        return false;
    }
    *id = m_crew.crewId;
    return true;
}

QString CrewScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteCrew(id.toLongLong());
}

bool CrewScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toLongLong());
}
