#include "CrewScreen.h"

#include "FormPlacement.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "Session.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace {

const QString CrewIdField = QStringLiteral("CrewID");
const QString NumberField = QStringLiteral("CrewNumber");
const QString DescriptionField = QStringLiteral("Description");

QPushButton* button(QWidget* parent, const char* name, const QString& caption)
{
    auto* result = new QPushButton(caption, parent);
    result->setObjectName(QString::fromLatin1(name));
    return result;
}

QLineEdit* lineEdit(QWidget* parent, const char* name)
{
    auto* result = new QLineEdit(parent);
    result->setObjectName(QString::fromLatin1(name));
    return result;
}

QLabel* label(QWidget* parent, const char* name, const QString& caption, QWidget* buddy)
{
    auto* result = new QLabel(caption, parent);
    result->setObjectName(QString::fromLatin1(name));
    result->setBuddy(buddy);
    return result;
}

} // namespace

CrewScreen::CrewScreen(Session& session, QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmCrew"), QStringLiteral("tblCrew"), CrewIdField,
                   parent),
      m_manager(session)
{
    setWindowTitle(QStringLiteral("Crew"));
    buildControls();
    resize(7425 / FormPlacement::TwipsPerPixel, 3810 / FormPlacement::TwipsPerPixel);
}

QVariant CrewScreen::showCrewDetail(Session& session, Mode mode, const QVariant& id,
                                    QWidget* parent)
{
    CrewScreen screen(session, parent);
    screen.setPendingId(id);
    screen.exec();
    if (mode == Mode::Add) {
        // Too late to take effect: a closed screen starts no edit.
        screen.addRecord();
    }
    return screen.chosenId();
}

void CrewScreen::buildControls()
{
    m_crewId = lineEdit(this, "txtCrewID");
    m_crewId->hide();
    m_number = lineEdit(this, "txtCrewNumber");
    m_number->setMaxLength(9);
    m_number->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), m_number));
    m_description = lineEdit(this, "txtDescription");

    auto* fields = new QGridLayout;
    fields->addWidget(label(this, "lblCrewNumber", QStringLiteral("Crew &Number"), m_number), 0, 0);
    fields->addWidget(m_number, 0, 1);
    fields->addWidget(label(this, "lblDescription", QStringLiteral("&Description"), m_description),
                      1, 0);
    fields->addWidget(m_description, 1, 1);

    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdCrew"));
    grid->setFields({{CrewIdField, CrewIdField},
                     {NumberField, QStringLiteral("Crew Number")},
                     {DescriptionField, QStringLiteral("Description")}},
                    CrewIdField);

    Controls controls;
    controls.grid = grid;
    controls.first = button(this, "cmdFirst", QStringLiteral("|<"));
    controls.previous = button(this, "cmdPrevious", QStringLiteral("<"));
    controls.next = button(this, "cmdNext", QStringLiteral(">"));
    controls.last = button(this, "cmdLast", QStringLiteral(">|"));
    controls.add = button(this, "cmdAdd", QStringLiteral("&Add"));
    controls.remove = button(this, "cmdDelete", QStringLiteral("&Delete"));
    controls.quickFind = button(this, "cmdQFind", QStringLiteral("&Find"));
    controls.exit = button(this, "cmdExit", QStringLiteral("E&xit"));
    auto* saveFrame = new QFrame(this);
    saveFrame->setObjectName(QStringLiteral("fraSaveCancel"));
    controls.saveFrame = saveFrame;
    controls.update = button(saveFrame, "cmdUpdate", QStringLiteral("&Save"));
    controls.cancel = button(saveFrame, "cmdCancel", QStringLiteral("Re&vert"));
    auto* saveRow = new QHBoxLayout(saveFrame);
    saveRow->setContentsMargins(0, 0, 0, 0);
    saveRow->addWidget(controls.update);
    saveRow->addWidget(controls.cancel);

    auto* moves = new QHBoxLayout;
    for (QPushButton* move : {controls.first, controls.previous, controls.next, controls.last}) {
        move->setFixedWidth(36);
        moves->addWidget(move);
    }
    moves->addStretch();
    moves->addWidget(controls.quickFind);
    auto* actions = new QHBoxLayout;
    actions->addWidget(controls.add);
    actions->addWidget(controls.remove);
    actions->addStretch();
    actions->addWidget(saveFrame);
    actions->addWidget(controls.exit);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(grid, 1);
    layout->addLayout(moves);
    layout->addLayout(actions);

    setControls(controls);
    addField(m_number, QStringLiteral("Crew Number"));
    addField(m_description, QStringLiteral("Description"));
    setUniqueField(m_number, NumberField, true,
                   QStringLiteral("Crew Number you specified already exists. Please enter a "
                                  "different Crew Number."));
}

Rows CrewScreen::loadRecords()
{
    return m_manager.list();
}

void CrewScreen::clearData()
{
    m_crewId->clear();
    m_number->clear();
    m_description->clear();
}

void CrewScreen::displayData(const QSqlRecord& record)
{
    m_crewId->setText(DataHelpers::replaceNull(record.value(CrewIdField)).toString());
    m_number->setText(DataHelpers::replaceNull(record.value(NumberField)).toString());
    m_description->setText(DataHelpers::replaceNull(record.value(DescriptionField)).toString());
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
    setFieldQuietly([&] {
        m_number->setText(oldNumber);
        m_description->setText(oldDescription);
    });
    (numberChanged ? m_number : m_description)->setFocus();
    return false;
}

void CrewScreen::setObjectValues()
{
    m_crew.crewId = mode() == Mode::Add ? 0 : m_crewId->text().trimmed().toLongLong();
    m_crew.crewNumber = m_number->text().trimmed().toLongLong();
    m_crew.description = m_description->text().trimmed();
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
