#include "RecordScreen.h"

#include "ErrorHandler.h"
#include "FormPlacement.h"
#include "GridSettings.h"
#include "MessageTexts.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "Session.h"
#include "Transaction.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSpinBox>
#include <QTextEdit>

namespace {

/** True when a field that holds text holds only blanks; other kinds are never blank. */
bool isBlankField(const QWidget* field)
{
    if (auto* line = qobject_cast<const QLineEdit*>(field)) {
        return DataHelpers::isBlank(line->text());
    }
    if (auto* combo = qobject_cast<const QComboBox*>(field)) {
        return DataHelpers::isBlank(combo->currentText());
    }
    if (auto* plain = qobject_cast<const QPlainTextEdit*>(field)) {
        return DataHelpers::isBlank(plain->toPlainText());
    }
    if (auto* rich = qobject_cast<const QTextEdit*>(field)) {
        return DataHelpers::isBlank(rich->toPlainText());
    }
    return false;
}

void setLocked(QWidget* field, bool locked)
{
    if (auto* line = qobject_cast<QLineEdit*>(field)) {
        line->setReadOnly(locked);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(field)) {
        plain->setReadOnly(locked);
    } else if (auto* rich = qobject_cast<QTextEdit*>(field)) {
        rich->setReadOnly(locked);
    } else {
        field->setEnabled(!locked);
    }
    // White while the field takes input, the button face while it is locked.
    QPalette palette = field->palette();
    palette.setColor(QPalette::Base, locked ? palette.color(QPalette::Button) : QColor(Qt::white));
    field->setPalette(palette);
}

const QString SavepointName = QStringLiteral("record_save");

} // namespace

RecordScreen::RecordScreen(Session& session, const QString& formName, const QString& tableName,
                           const QString& keyField, QWidget* parent)
    : QDialog(parent), m_session(session), m_tableName(tableName), m_keyField(keyField)
{
    setObjectName(formName);
}

RecordScreen::~RecordScreen() = default;

QString RecordScreen::modeText() const
{
    switch (m_mode) {
    case Mode::Add:
        return QStringLiteral("A");
    case Mode::Modify:
        return QStringLiteral("M");
    case Mode::Browse:
        break;
    }
    return QStringLiteral("B");
}

void RecordScreen::setControls(const Controls& controls)
{
    Q_ASSERT(controls.grid && controls.add && controls.update && controls.cancel &&
             controls.remove && controls.exit && controls.first && controls.previous &&
             controls.next && controls.last && controls.saveFrame);
    m_controls = controls;
    // Enter in a field must not press a button.
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
    connect(controls.add, &QPushButton::clicked, this, &RecordScreen::addRecord);
    connect(controls.update, &QPushButton::clicked, this, &RecordScreen::onUpdate);
    connect(controls.cancel, &QPushButton::clicked, this, &RecordScreen::onCancel);
    connect(controls.remove, &QPushButton::clicked, this, &RecordScreen::onDelete);
    connect(controls.exit, &QPushButton::clicked, this, &RecordScreen::onExit);
    connect(controls.first, &QPushButton::clicked, this, &RecordScreen::onFirst);
    connect(controls.previous, &QPushButton::clicked, this, &RecordScreen::onPrevious);
    connect(controls.next, &QPushButton::clicked, this, &RecordScreen::onNext);
    connect(controls.last, &QPushButton::clicked, this, &RecordScreen::onLast);
    if (controls.quickFind) {
        connect(controls.quickFind, &QPushButton::clicked, this, [this] {
            if (m_quickFind && !isEditing()) {
                m_quickFind();
            }
        });
    }
    connect(controls.grid, &RecordGrid::rowChosen, this, &RecordScreen::onRowChosen);
    controls.saveFrame->hide();
}

void RecordScreen::addField(QWidget* field, const QString& requiredCaption)
{
    m_fields.append({field, requiredCaption});
    if (auto* line = qobject_cast<QLineEdit*>(field)) {
        connect(line, &QLineEdit::textChanged, this, &RecordScreen::onFieldChanged);
    } else if (auto* combo = qobject_cast<QComboBox*>(field)) {
        connect(combo, &QComboBox::currentIndexChanged, this, &RecordScreen::onFieldChanged);
        connect(combo, &QComboBox::editTextChanged, this, &RecordScreen::onFieldChanged);
    } else if (auto* button = qobject_cast<QAbstractButton*>(field)) {
        connect(button, &QAbstractButton::toggled, this, &RecordScreen::onFieldChanged);
    } else if (auto* spin = qobject_cast<QSpinBox*>(field)) {
        connect(spin, &QSpinBox::valueChanged, this, &RecordScreen::onFieldChanged);
    } else if (auto* real = qobject_cast<QDoubleSpinBox*>(field)) {
        connect(real, &QDoubleSpinBox::valueChanged, this, &RecordScreen::onFieldChanged);
    } else if (auto* moment = qobject_cast<QDateTimeEdit*>(field)) {
        connect(moment, &QDateTimeEdit::dateTimeChanged, this, &RecordScreen::onFieldChanged);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(field)) {
        connect(plain, &QPlainTextEdit::textChanged, this, &RecordScreen::onFieldChanged);
    } else if (auto* rich = qobject_cast<QTextEdit*>(field)) {
        connect(rich, &QTextEdit::textChanged, this, &RecordScreen::onFieldChanged);
    } else {
        qWarning("RecordScreen: %s is no kind of field a record screen knows",
                 qPrintable(field->objectName()));
    }
}

void RecordScreen::setUniqueField(QLineEdit* field, const QString& column, bool numeric,
                                  const QString& message)
{
    m_unique = {field, column, numeric, message};
}

void RecordScreen::setActionRights(UserRights::Right add, UserRights::Right update,
                                   UserRights::Right remove)
{
    m_rights = std::array<UserRights::Right, 3>{add, update, remove};
}

void RecordScreen::setVisible(bool visible)
{
    if (visible && !m_loaded) {
        load();
    }
    QDialog::setVisible(visible);
}

void RecordScreen::done(int result)
{
    unload();
    QDialog::done(result);
}

void RecordScreen::reject()
{
    // The close box and Escape end here too: refused while an edit is open.
    if (isEditing()) {
        return;
    }
    QDialog::reject();
}

QSqlRecord RecordScreen::currentRecord() const
{
    const int row = m_controls.grid->currentRow();
    if (m_empty || row < 0) {
        return QSqlRecord();
    }
    return m_controls.grid->record(row);
}

QVariant RecordScreen::currentId() const
{
    const QSqlRecord record = currentRecord();
    return record.isEmpty() ? QVariant() : record.value(m_keyField);
}

void RecordScreen::refreshRecordSet(const QVariant& id)
{
    RecordGrid* grid = m_controls.grid;
    grid->setRows(loadRecords());
    if (!m_gridLayoutApplied) {
        grid->applyColumnSettings(GridSettings::load(m_session, objectName(), m_tableName));
        m_gridLayoutApplied = true;
    }
    m_mode = Mode::Browse;
    m_empty = grid->rowCount() == 0;
    if (m_empty) {
        clearAll();
    } else {
        const int row = grid->findKey(id);
        showRow(row < 0 ? 0 : row);
    }
    updateControls();
}

void RecordScreen::setFieldQuietly(const std::function<void()>& change)
{
    ++m_quiet;
    const auto restore = qScopeGuard([this] { --m_quiet; });
    change();
}

void RecordScreen::focusFirstField()
{
    if (!m_fields.isEmpty()) {
        m_fields.first().widget->setFocus();
    }
}

void RecordScreen::reportFailure(const QString& procedure, const QString& description)
{
    errorHandler(m_session, objectName(), procedure, 1, description);
}

void RecordScreen::addRecord()
{
    if (!m_loaded || isEditing() || !allowed(Action::Add)) {
        return;
    }
    beginEdit(Mode::Add, QStringLiteral("cmdAdd_Click"));
    clearAll();
    focusFirstField();
}

void RecordScreen::load()
{
    FormPlacement::restore(m_session, this);
    m_loaded = true;
    m_oldKey.clear();
    m_mode = Mode::Browse;
    refreshRecordSet(m_pendingId);
}

void RecordScreen::unload()
{
    if (!m_loaded) {
        return;
    }
    endEdit(false);
    m_mode = Mode::Browse;
    m_pendingId = currentId();
    FormPlacement::store(m_session, this);
    GridSettings::save(m_session, objectName(), m_tableName, m_controls.grid->columnSettings());
    m_loaded = false;
}

void RecordScreen::beginEdit(Mode mode, const QString& procedure)
{
    m_edit = std::make_unique<Transaction>(m_session);
    if (!m_edit->isActive()) {
        // The edit goes on; the save then runs in a transaction of its own.
        reportFailure(procedure, m_edit->error());
        m_edit.reset();
    }
    m_mode = mode;
    updateControls();
}

void RecordScreen::endEdit(bool commit)
{
    if (!m_edit) {
        return;
    }
    if (commit && !m_edit->commit()) {
        reportFailure(QStringLiteral("cmdUpdate_Click"), m_edit->error());
    } else if (!commit) {
        m_edit->rollback();
    }
    m_edit.reset();
}

void RecordScreen::showRow(int row)
{
    m_controls.grid->setCurrentRow(row);
    setFieldQuietly([&] { displayData(m_controls.grid->record(row)); });
    m_oldKey = m_unique.field ? m_unique.field->text() : QString();
    m_mode = Mode::Browse;
}

void RecordScreen::clearAll()
{
    setFieldQuietly([&] { clearData(); });
    m_oldKey.clear();
}

void RecordScreen::updateControls()
{
    const bool editing = isEditing();
    const bool browsingRows = !editing && !m_empty;
    m_controls.add->setEnabled(!editing);
    m_controls.remove->setEnabled(browsingRows);
    if (m_controls.quickFind) {
        m_controls.quickFind->setEnabled(browsingRows && m_quickFind);
    }
    m_controls.saveFrame->setVisible(editing);
    // The grid stays in sight but cannot move to another record during an edit.
    m_controls.grid->setEnabled(!editing);
    lockFields(!editing && m_empty);
    navigationControls();
    enableControls();
}

void RecordScreen::navigationControls()
{
    // At either end the buttons stay enabled: pressing on tells the user where he is.
    const bool enabled = !isEditing() && !m_empty;
    for (QPushButton* button :
         {m_controls.first, m_controls.previous, m_controls.next, m_controls.last}) {
        button->setEnabled(enabled);
    }
}

void RecordScreen::lockFields(bool locked)
{
    for (const Field& field : std::as_const(m_fields)) {
        setLocked(field.widget, locked);
    }
}

bool RecordScreen::checkRequired()
{
    for (const Field& field : std::as_const(m_fields)) {
        if (!field.requiredCaption.isEmpty() && isBlankField(field.widget)) {
            m_session.prompter().inform(MessageTexts::notBlank(field.requiredCaption));
            field.widget->setFocus();
            return false;
        }
    }
    return true;
}

bool RecordScreen::checkUnique()
{
    if (!m_unique.field) {
        return true;
    }
    const QString oldKey = m_mode == Mode::Add ? QString() : m_oldKey;
    if (!DataHelpers::isDuplicate(m_session, m_tableName, m_unique.column, m_unique.field->text(),
                                  oldKey, m_unique.numeric)) {
        return true;
    }
    m_session.prompter().inform(m_unique.message);
    m_unique.field->setFocus();
    return false;
}

bool RecordScreen::allowed(Action action)
{
    if (!m_rights || m_session.rights().has((*m_rights)[int(action)])) {
        return true;
    }
    m_session.prompter().inform(MessageTexts::NoActionRights);
    return false;
}

bool RecordScreen::saveInsideSavepoint(QVariant* id)
{
    // A failed save must leave the edit's transaction usable for the next try;
    // PostgreSQL would otherwise refuse everything up to the rollback.
    if (!m_edit) {
        return saveRecord(id);
    }
    Savepoint savepoint(m_session, SavepointName);
    if (!savepoint.isActive()) {
        reportFailure(QStringLiteral("cmdUpdate_Click"), savepoint.error());
        return false;
    }
    const bool saved = saveRecord(id);
    if (saved) {
        savepoint.release();
    }
    return saved;
}

void RecordScreen::onFieldChanged()
{
    if (m_quiet > 0 || !m_loaded || isEditing() || m_empty) {
        return;
    }
    beginEdit(Mode::Modify, QStringLiteral("Field_Change"));
}

void RecordScreen::onUpdate()
{
    if (!isEditing() || !allowed(Action::Update)) {
        return;
    }
    if (!checkRequired() || !validateFields() || !checkUnique()) {
        return;
    }
    setObjectValues();
    QVariant id;
    if (!saveInsideSavepoint(&id)) {
        return;
    }
    if (m_edit && !m_edit->commit()) {
        // Everything was rolled back; the input stays for another try.
        reportFailure(QStringLiteral("cmdUpdate_Click"), m_edit->error());
        m_edit.reset();
        beginEdit(m_mode, QStringLiteral("cmdUpdate_Click"));
        return;
    }
    m_edit.reset();
    refreshRecordSet(id);
    focusFirstField();
}

void RecordScreen::onCancel()
{
    if (!isEditing()) {
        return;
    }
    endEdit(false);
    m_mode = Mode::Browse;
    if (m_empty) {
        clearAll();
    } else {
        showRow(qMax(0, m_controls.grid->currentRow()));
    }
    updateControls();
}

void RecordScreen::onDelete()
{
    if (isEditing() || m_empty || !allowed(Action::Delete)) {
        return;
    }
    Prompter& prompter = m_session.prompter();
    if (!prompter.askYesNo(MessageTexts::DeleteQuestion)) {
        return;
    }
    const QVariant id = currentId();
    const QString user = canDelete(id);
    if (!user.isEmpty()) {
        prompter.inform(MessageTexts::recordInUse(user));
        return;
    }
    if (!deleteRecord(id)) {
        return;
    }
    refreshRecordSet(id);
    focusFirstField();
}

void RecordScreen::onExit()
{
    endEdit(false);
    m_mode = Mode::Browse;
    done(QDialog::Rejected);
}

void RecordScreen::onFirst()
{
    if (!isEditing() && !m_empty) {
        showRow(0);
    }
}

void RecordScreen::onPrevious()
{
    if (isEditing() || m_empty) {
        return;
    }
    const int row = m_controls.grid->currentRow();
    if (row <= 0) {
        m_session.prompter().inform(MessageTexts::LastRecord);
        return;
    }
    showRow(row - 1);
}

void RecordScreen::onNext()
{
    if (isEditing() || m_empty) {
        return;
    }
    const int row = m_controls.grid->currentRow();
    if (row >= m_controls.grid->rowCount() - 1) {
        m_session.prompter().inform(MessageTexts::LastRecord);
        return;
    }
    showRow(row + 1);
}

void RecordScreen::onLast()
{
    if (!isEditing() && !m_empty) {
        showRow(m_controls.grid->rowCount() - 1);
    }
}

void RecordScreen::onRowChosen(int row)
{
    if (!isEditing() && !m_empty) {
        showRow(row);
    }
}
