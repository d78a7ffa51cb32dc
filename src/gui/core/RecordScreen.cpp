#include "RecordScreen.h"

#include "ErrorHandler.h"
#include "FormPlacement.h"
#include "GridSettings.h"
#include "HelpWindow.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "Prompter.h"
#include "RecordGrid.h"
#include "Session.h"
#include "Transaction.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSpinBox>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

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

QPushButton* namedButton(QWidget* parent, const char* name, const QString& caption)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

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

int RecordScreen::run(Mode startMode)
{
    m_startMode = startMode;
    return exec();
}

RecordScreen::Controls RecordScreen::standardButtons(RecordGrid* grid, Navigation navigation)
{
    Controls controls;
    controls.grid = grid;
    if (navigation == Navigation::With) {
        controls.first = namedButton(this, "cmdFirst", QStringLiteral("|<"));
        controls.previous = namedButton(this, "cmdPrevious", QStringLiteral("<"));
        controls.next = namedButton(this, "cmdNext", QStringLiteral(">"));
        controls.last = namedButton(this, "cmdLast", QStringLiteral(">|"));
    }
    controls.add = namedButton(this, "cmdAdd", QStringLiteral("&Add"));
    controls.remove = namedButton(this, "cmdDelete", QStringLiteral("&Delete"));
    controls.quickFind = namedButton(this, "cmdQFind", QStringLiteral("&Find"));
    controls.help = namedButton(this, "cmdHelp", QStringLiteral("&Help"));
    controls.exit = namedButton(this, "cmdExit", QStringLiteral("E&xit"));
    auto* saveFrame = new QFrame(this);
    saveFrame->setObjectName(QStringLiteral("fraSaveCancel"));
    controls.saveFrame = saveFrame;
    controls.update = namedButton(saveFrame, "cmdUpdate", QStringLiteral("&Save"));
    controls.cancel = namedButton(saveFrame, "cmdCancel", QStringLiteral("Re&vert"));
    auto* saveRow = new QHBoxLayout(saveFrame);
    saveRow->setContentsMargins(0, 0, 0, 0);
    saveRow->addWidget(controls.update);
    saveRow->addWidget(controls.cancel);
    return controls;
}

void RecordScreen::setStandardLayout(QLayout* fields, RecordGrid* grid, Navigation navigation)
{
    const Controls controls = standardButtons(grid, navigation);
    auto* moves = new QHBoxLayout;
    if (navigation == Navigation::With) {
        for (QPushButton* move :
             {controls.first, controls.previous, controls.next, controls.last}) {
            move->setFixedWidth(36);
            moves->addWidget(move);
        }
    }
    moves->addStretch();
    moves->addWidget(controls.quickFind);
    auto* actions = new QHBoxLayout;
    actions->addWidget(controls.add);
    actions->addWidget(controls.remove);
    actions->addStretch();
    actions->addWidget(controls.saveFrame);
    actions->addWidget(controls.help);
    actions->addWidget(controls.exit);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(grid, 1);
    layout->addLayout(moves);
    layout->addLayout(actions);
    setControls(controls);
}

void RecordScreen::setControls(const Controls& controls)
{
    Q_ASSERT(controls.grid && controls.add && controls.update && controls.cancel &&
             controls.remove && controls.exit && controls.saveFrame);
    m_controls = controls;
    // Enter in a field must not press a button.
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
    const auto connectButton = [this](QPushButton* button, void (RecordScreen::*slot)()) {
        if (button) {
            connect(button, &QPushButton::clicked, this, slot);
        }
    };
    connectButton(controls.add, &RecordScreen::addRecord);
    connectButton(controls.update, &RecordScreen::onUpdate);
    connectButton(controls.cancel, &RecordScreen::onCancel);
    connectButton(controls.remove, &RecordScreen::onDelete);
    connectButton(controls.exit, &RecordScreen::onExit);
    connectButton(controls.help, &RecordScreen::onHelp);
    connectButton(controls.first, &RecordScreen::onFirst);
    connectButton(controls.previous, &RecordScreen::onPrevious);
    connectButton(controls.next, &RecordScreen::onNext);
    connectButton(controls.last, &RecordScreen::onLast);
    if (controls.quickFind) {
        connect(controls.quickFind, &QPushButton::clicked, this, [this] {
            if (!m_quickFind || isEditing()) {
                return;
            }
            // The finder answers the key of the chosen record, or nothing when left without one.
            const QString key = m_quickFind();
            if (!key.isEmpty()) {
                refreshRecordSet(key);
            }
        });
    }
    connect(controls.grid, &RecordGrid::rowChosen, this, &RecordScreen::onRowChosen);
    controls.saveFrame->hide();
}

void RecordScreen::bindField(QWidget* field, const QString& column, FieldBindings::Member member,
                             const QString& caption, int checks)
{
    m_bindings.add(field, column, member, caption, checks);
    watchChanges(field);
}

void RecordScreen::addField(QWidget* field, const QString& requiredCaption)
{
    m_bindings.add(field, QString(), std::monostate(), requiredCaption,
                   requiredCaption.isEmpty() ? FieldBindings::None : FieldBindings::Required);
    watchChanges(field);
}

void RecordScreen::watchChanges(QWidget* field)
{
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

void RecordScreen::setActionRights(UserRights::Right add, UserRights::Right modify,
                                   UserRights::Right remove)
{
    m_rights = std::array<UserRights::Right, 3>{add, modify, remove};
}

bool RecordScreen::beginModify()
{
    if (isEditing()) {
        return true;
    }
    if (!m_loaded || m_empty || !mayModify()) {
        return false;
    }
    beginEdit(Mode::Modify, QStringLiteral("Field_Change"));
    return true;
}

void RecordScreen::clearData()
{
    m_bindings.clear();
}

void RecordScreen::displayData(const QSqlRecord& record)
{
    if (!m_bindings.display(record)) {
        m_session.prompter().inform(MessageTexts::LookupItemDeleted);
    }
}

void RecordScreen::setObjectValues()
{
    m_bindings.collect();
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

void RecordScreen::setListButton(QPushButton* button, QComboBox* list,
                                 std::function<void(qint64)> open, std::function<void()> reload)
{
    button->setEnabled(true);
    connect(button, &QPushButton::clicked, this,
            [this, list, open = std::move(open), reload = std::move(reload)] {
                const qint64 chosen = LookupCombo::currentId(list);
                open(chosen);
                setFieldQuietly([&] {
                    reload();
                    LookupCombo::selectId(list, chosen);
                });
            });
}

void RecordScreen::focusFirstField()
{
    if (!m_bindings.bindings().isEmpty()) {
        m_bindings.bindings().first().widget->setFocus();
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
    if (std::exchange(m_startMode, Mode::Browse) == Mode::Add) {
        addRecord();
    }
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
    lockFields(!editing && (m_empty || !mayModify()));
    navigationControls();
    enableControls();
}

void RecordScreen::navigationControls()
{
    // At either end the buttons stay enabled: pressing on tells the user where he is.
    const bool enabled = !isEditing() && !m_empty;
    for (QPushButton* button :
         {m_controls.first, m_controls.previous, m_controls.next, m_controls.last}) {
        if (button) {
            button->setEnabled(enabled);
        }
    }
}

void RecordScreen::lockFields(bool locked)
{
    for (QWidget* field : m_bindings.widgets()) {
        setLocked(field, locked);
    }
}

bool RecordScreen::checkFields()
{
    const auto failure = m_bindings.firstFailure();
    if (!failure) {
        return true;
    }
    m_session.prompter().inform(failure->second);
    failure->first->setFocus();
    return false;
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

bool RecordScreen::mayModify() const
{
    return !m_rights || m_session.rights().has((*m_rights)[int(Action::Modify)]);
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
    if (m_quiet == 0) {
        beginModify();
    }
}

void RecordScreen::onUpdate()
{
    // A new record needed only the add right, which cmdAdd asked for.
    if (!isEditing() || (m_mode == Mode::Modify && !allowed(Action::Modify))) {
        return;
    }
    if (!checkFields() || !validateFields() || !checkUnique()) {
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
    if (!prompter.askYesNo(deleteQuestion())) {
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

QString RecordScreen::deleteQuestion() const
{
    return MessageTexts::DeleteQuestion;
}

void RecordScreen::onExit()
{
    endEdit(false);
    m_mode = Mode::Browse;
    done(QDialog::Rejected);
}

void RecordScreen::onHelp()
{
    HelpWindow::openManual(m_session);
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
