#include "EquipmentScreen.h"

#include "CrewScreen.h"
#include "DateBox.h"
#include "FieldExit.h"
#include "FormPlacement.h"
#include "Indicator.h"
#include "IndicatorScreen.h"
#include "LocationScreen.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "Options.h"
#include "Prompter.h"
#include "QuickFindScreen.h"
#include "RecordGrid.h"
#include "Session.h"
#include "SiteScreen.h"
#include "StateList.h"
#include "SupplierScreen.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace {

const QString KeyField = QStringLiteral("EquipmentID");
const QString SaveFirst = QStringLiteral("Record must be saved. Do you want to save it.");
const QString DeleteQuestion =
    QStringLiteral("This will delete the entire piece of equipment and all its history. Are you "
                   "sure you want to do this?");

bool hasText(const QWidget* field)
{
    if (auto* line = qobject_cast<const QLineEdit*>(field)) {
        return !line->text().trimmed().isEmpty();
    }
    if (auto* combo = qobject_cast<const QComboBox*>(field)) {
        return !LookupCombo::currentText(combo).isEmpty();
    }
    if (auto* day = qobject_cast<const DateBox*>(field)) {
        return !day->isEmpty();
    }
    if (auto* grid = qobject_cast<const QTableWidget*>(field)) {
        return grid->rowCount() > 0;
    }
    return false;
}

} // namespace

EquipmentScreen::EquipmentScreen(Session& session, QWidget* parent)
    : RecordScreen(session, QStringLiteral("frmEquipment"), QStringLiteral("tblEquipment"),
                   KeyField, parent),
      m_manager(session), m_partList(session), m_depreciation(session), m_services(session),
      m_readings(session), m_attachments(session), m_history(session)
{
    setWindowTitle(QStringLiteral("Equipment"));
    auto* fields = new QHBoxLayout;
    fields->addWidget(buildToolBox());
    fields->addWidget(buildSections(), 1);
    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdEquipment"));
    grid->setFields({{KeyField, QStringLiteral("Equipment ID")},
                     {QStringLiteral("UnitNo"), QStringLiteral("Unit No")},
                     {QStringLiteral("EquipmentName"), QStringLiteral("Name")}},
                    KeyField);
    setStandardLayout(fields, grid);
    setActionRights(UserRights::EqAdd, UserRights::EqMod, UserRights::EqDel);
    setQuickFind([this] {
        return QuickFindScreen::showQuickFind(this->session(), QStringLiteral("tblEquipment"),
                                              QStringLiteral("UnitNo"), QStringLiteral("Unit No"),
                                              objectName(), {}, this);
    });
    loadLists();
    wireListButtons();
    showUserDefinedCaptions();
    relabelLease();
    onFieldExit(m_lines.value(QStringLiteral("txtUnitNo")),
                [this](QWidget* next) { checkUnitNoOnExit(next); });
    onFieldExit(m_lines.value(QStringLiteral("txtSerialNo")),
                [this](QWidget* next) { warnSerialOnExit(next); });
    connect(m_lists.value(QStringLiteral("cboCrew")), &QComboBox::activated, this,
            [this] { m_crewTouched = true; });
    connect(m_lists.value(QStringLiteral("cboOwnedLeased")), &QComboBox::currentIndexChanged, this,
            &EquipmentScreen::relabelLease);
    const auto wire = [this](const char* name, void (EquipmentScreen::*action)()) {
        connect(findChild<QPushButton*>(QString::fromLatin1(name)), &QPushButton::clicked, this,
                action);
    };
    wire("cmdAddNewPart", &EquipmentScreen::addParts);
    wire("cmdRemovePart", &EquipmentScreen::removePart);
    wire("cmdRecalculate", &EquipmentScreen::recalculate);
    wire("cmdAddImage", &EquipmentScreen::addPicture);
    wire("cmdRemoveImage", &EquipmentScreen::removePicture);
    wire("cmdAddDocument", &EquipmentScreen::addDocument);
    wire("cmdRemoveDocument", &EquipmentScreen::removeDocument);
    wire("cmdPreview", &EquipmentScreen::preview);
    wire("cmdAddNewService", &EquipmentScreen::addServices);
    wire("cmdSelectService", &EquipmentScreen::selectService);
    wire("cmdRemoveService", &EquipmentScreen::removeService);
    wire("cmdAddCount", &EquipmentScreen::addCount);
    wire("cmdDeleteCount", &EquipmentScreen::deleteCount);
    resize(11000 / FormPlacement::TwipsPerPixel, 9000 / FormPlacement::TwipsPerPixel);
}

QVariant EquipmentScreen::showEquipmentDetail(Session& session, Mode mode, const QVariant& id,
                                              QWidget* parent)
{
    EquipmentScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

EquipmentScreen::PartPicker& EquipmentScreen::partPicker()
{
    static PartPicker picker;
    return picker;
}

void EquipmentScreen::setPartPicker(PartPicker picker)
{
    partPicker() = std::move(picker);
}

int EquipmentScreen::section() const
{
    return m_sections->currentIndex();
}

bool EquipmentScreen::showSection(int index)
{
    if (index != section() && index != 0 && mode() == Mode::Add && !saveNewRecordFirst()) {
        index = 0;
    }
    m_sections->setCurrentIndex(index);
    pressToolButton(index);
    enableControls();
    return index == section();
}

void EquipmentScreen::pressToolButton(int index)
{
    for (int i = 0; i < m_toolButtons.size(); ++i) {
        m_toolButtons[i]->setChecked(i == index);
    }
}

void EquipmentScreen::onSectionClicked(int index)
{
    showSection(index);
}

bool EquipmentScreen::saveNewRecordFirst()
{
    if (!session().prompter().askYesNo(SaveFirst)) {
        return false;
    }
    findChild<QPushButton*>(QStringLiteral("cmdUpdate"))->click();
    if (mode() != Mode::Add) {
        return true;
    }
    m_lines.value(QStringLiteral("txtUnitNo"))->setFocus();
    return false;
}

Rows EquipmentScreen::loadRecords()
{
    return m_manager.list();
}

void EquipmentScreen::clearData()
{
    RecordScreen::clearData();
    m_unitNoAtStart.clear();
    m_serialAtStart.clear();
    m_serialWarned.clear();
    m_crewTouched = false;
    if (mode() == Mode::Add) {
        m_lines.value(QStringLiteral("txtEquipmentID"))
            ->setText(QString::number(m_manager.newEquipmentId()));
        showSection(0);
    }
    showChildren();
}

void EquipmentScreen::displayData(const QSqlRecord& record)
{
    RecordScreen::displayData(record);
    m_unitNoAtStart = record.value(QStringLiteral("UnitNo")).toString();
    m_serialAtStart = record.value(QStringLiteral("EquipmentSerialNo")).toString();
    m_serialWarned.clear();
    m_crewTouched = false;
    showChildren();
}

void EquipmentScreen::showChildren()
{
    const qint64 id = shownId();
    showRows(m_parts, m_partList.rows(id), {}, QStringLiteral("3"));
    showRows(m_depreciationRows, m_depreciation.rows(id),
             {QStringLiteral("End of Year"), QStringLiteral("Annual Depreciation"),
              QStringLiteral("Accumualted Depreciation"), QStringLiteral("Book Value")},
             QStringLiteral("123"));
    showRows(m_pictures, m_attachments.pictures(id), {});
    showPicture();
    showRows(m_documents, m_attachments.documents(id), {});
    showServices();
    showCounts();
    showHistory();
    const QDate acquired = findChild<DateBox*>(QStringLiteral("datAcquisitionDate"))->value();
    m_lines.value(QStringLiteral("txtPurchaseYear"))
        ->setText(acquired.isValid() ? QString::number(acquired.year()) : QString());
    markSectionsWithData();
    enableControls();
}

void EquipmentScreen::showRows(QTableWidget* grid, const Rows& rows, const QStringList& columns,
                               const QString& moneyColumns)
{
    grid->setRowCount(0);
    grid->setRowCount(int(rows.size()));
    for (int r = 0; r < rows.size(); ++r) {
        for (int c = 0; c < grid->columnCount(); ++c) {
            const QVariant value = columns.isEmpty() ? rows[r].value(c) : rows[r].value(columns[c]);
            const QString shown = moneyColumns.contains(QString::number(c))
                                      ? QStringLiteral("$%1").arg(value.toDouble(), 0, 'f', 2)
                                      : value.toString();
            grid->setItem(r, c, new QTableWidgetItem(shown));
        }
    }
}

qint64 EquipmentScreen::shownId() const
{
    return m_lines.value(QStringLiteral("txtEquipmentID"))->text().toLongLong();
}

bool EquipmentScreen::validateFields()
{
    setObjectValues();
    const auto refusal = m_manager.checkSave(m_equipment, m_unitNoAtStart);
    if (!refusal) {
        return true;
    }
    session().prompter().inform(refusal->message);
    showSection(0);
    findChild<QWidget*>(refusal->field)->setFocus();
    return false;
}

void EquipmentScreen::setObjectValues()
{
    RecordScreen::setObjectValues();
    m_equipment.equipmentId = shownId();
}

bool EquipmentScreen::saveRecord(QVariant* id)
{
    std::optional<QString> crewEntry;
    if (m_crewTouched) {
        crewEntry = m_lists.value(QStringLiteral("cboCrew"))->currentText();
    }
    if (!m_manager.saveRecord(m_equipment, mode() == Mode::Add, crewEntry)) {
        return false;
    }
    m_crewTouched = false;
    *id = m_equipment.equipmentId;
    return true;
}

QString EquipmentScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteEquipment(id.toLongLong());
}

bool EquipmentScreen::deleteRecord(const QVariant& id)
{
    if (!m_manager.deleteRecord(id.toLongLong())) {
        return false;
    }
    removeDocumentFolder(id.toLongLong());
    return true;
}

QString EquipmentScreen::deleteQuestion() const
{
    return DeleteQuestion;
}

void EquipmentScreen::removeDocumentFolder(qint64 id)
{
    const QString path =
        session().installation().path(QStringLiteral("doc/") + QString::number(id));
    if (!QFileInfo::exists(path) || QDir(path).removeRecursively()) {
        return;
    }
    session().prompter().inform(
        QStringLiteral("Unable to delete the folder. Some files is in use.") + u'\n' +
        QStringLiteral("You can delete folder manually") + u'\n' + u'"' +
        QDir::toNativeSeparators(path) + u'"');
}

void EquipmentScreen::enableControls()
{
    const bool saved = !isEmpty() && mode() != Mode::Add;
    const auto enable = [this](const char* name, bool on) {
        findChild<QPushButton*>(QString::fromLatin1(name))->setEnabled(on);
    };
    enable("cmdAddNewPart", saved && bool(partPicker()));
    enable("cmdRemovePart", saved && m_parts->rowCount() > 0);
    enable("cmdRecalculate",
           saved && !m_lines.value(QStringLiteral("txtPurchaseYear"))->text().isEmpty());
    enable("cmdAddImage", saved);
    enable("cmdRemoveImage", saved && m_pictures->rowCount() > 0);
    enable("cmdAddDocument", saved);
    enable("cmdRemoveDocument", saved && m_documents->rowCount() > 0);
    enable("cmdPreview", saved && m_documents->rowCount() > 0);
    enableServiceButtons(saved);
    enable("cmdDeleteHistory", saved && m_historyRows->rowCount() > 0);
}

void EquipmentScreen::markSectionsWithData()
{
    for (int i = 0; i < m_toolButtons.size(); ++i) {
        QPalette colours = m_toolButtons[i]->palette();
        colours.setColor(QPalette::ButtonText, sectionHasData(i)
                                                   ? QColor(Qt::blue)
                                                   : palette().color(QPalette::ButtonText));
        m_toolButtons[i]->setPalette(colours);
    }
}

bool EquipmentScreen::sectionHasData(int index) const
{
    const QList<QWidget*> fields = m_sectionFields.value(index);
    return std::any_of(fields.begin(), fields.end(), hasText);
}

void EquipmentScreen::checkUnitNoOnExit(QWidget* next)
{
    if (!isEditing() || (next && next->objectName().startsWith(QLatin1String("cmd")))) {
        return;
    }
    const QString problem =
        m_manager.unitNoProblem(m_lines.value(QStringLiteral("txtUnitNo"))->text().trimmed(),
                                mode() == Mode::Add ? QString() : m_unitNoAtStart);
    if (!problem.isEmpty()) {
        session().prompter().inform(problem);
        m_lines.value(QStringLiteral("txtUnitNo"))->setFocus();
    }
}

void EquipmentScreen::warnSerialOnExit(QWidget*)
{
    QLineEdit* serial = m_lines.value(QStringLiteral("txtSerialNo"));
    const QString value = serial->text().trimmed();
    if (!isEditing() || value == m_serialWarned) {
        return;
    }
    Equipment shown;
    shown.equipmentId = shownId();
    shown.equipmentSerialNo = value;
    const QString warning = m_manager.serialNoWarning(shown, m_serialAtStart);
    if (warning.isEmpty()) {
        return;
    }
    m_serialWarned = value;
    session().prompter().inform(warning);
    serial->setFocus();
}
