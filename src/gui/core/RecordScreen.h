#pragma once

#include "DataHelpers.h"
#include "UserRights.h"

#include <QDialog>
#include <QSqlRecord>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class QLineEdit;
class QPushButton;
class RecordGrid;
class Session;
class Transaction;

/**
 * The behaviour every screen that maintains a table shares, in one place:
 * browse, add and modify ("B", "A", "M"), navigation, save, revert, delete,
 * the grid, the window's place and the grid's remembered layout.
 *
 * A screen builds its controls, hands them over with setControls() and
 * addField(), and fills in the hooks: loadRecords, clearData, displayData,
 * setObjectValues, saveRecord, canDelete and deleteRecord; validateFields
 * and enableControls when it has rules or controls of its own.
 *
 * While an edit is open the screen holds a transaction through the session
 * flag: save commits it, revert rolls it back, and a screen opened meanwhile
 * joins it instead of opening a second one. Qt cannot grey the close box of
 * a shown window without hiding and re-showing it, which would end a modal
 * exec(); so while an edit is open a close request (close box, Escape) is
 * refused instead, and only cmdExit closes, dropping the edit.
 */
class RecordScreen : public QDialog
{
    Q_OBJECT

public:
    enum class Mode { Browse, Add, Modify };

    ~RecordScreen() override;

    Mode mode() const { return m_mode; }
    /** The mode as the one-letter text "B", "A" or "M". */
    QString modeText() const;
    bool isEditing() const { return m_mode != Mode::Browse; }
    /** True when the table has no rows. */
    bool isEmpty() const { return m_empty; }

    /** The record shown first when the screen opens; when it is gone, the first row. */
    void setPendingId(const QVariant& id) { m_pendingId = id; }
    /** The key of the record shown when the screen closed: the screen's choice. */
    QVariant chosenId() const { return m_pendingId; }

    /** The cmdAdd event; nothing on a screen that is not open. */
    void addRecord();

    void setVisible(bool visible) override;
    void done(int result) override;
    void reject() override;

protected:
    /** The common controls; every pointer but quickFind is required. */
    struct Controls
    {
        RecordGrid* grid = nullptr;
        QPushButton* add = nullptr;
        QPushButton* update = nullptr;
        QPushButton* cancel = nullptr;
        QPushButton* remove = nullptr;
        QPushButton* exit = nullptr;
        QPushButton* first = nullptr;
        QPushButton* previous = nullptr;
        QPushButton* next = nullptr;
        QPushButton* last = nullptr;
        QPushButton* quickFind = nullptr;
        QWidget* saveFrame = nullptr; ///< holds update and cancel, shown while editing
    };

    /**
     * formName is the screen's objectName and the key of its remembered
     * place and grid layout; tableName and keyField name the table it keeps.
     */
    RecordScreen(Session& session, const QString& formName, const QString& tableName,
                 const QString& keyField, QWidget* parent = nullptr);

    /** Connects the common controls. Call once, after building them. */
    void setControls(const Controls& controls);

    /**
     * An edit field, in the order of checking and focus: a user's change
     * starts an edit, and it is locked while the table is empty. A field
     * with a caption must not be blank ("Crew Number should not be blank.").
     * Takes line edits, combo boxes, check boxes, spin boxes and text edits.
     */
    void addField(QWidget* field, const QString& requiredCaption = QString());

    /**
     * The field whose value must be unique in column of the table. It is
     * checked after validateFields, with the value last shown as the old key,
     * so that a record keeps its own key; a duplicate shows message.
     */
    void setUniqueField(QLineEdit* field, const QString& column, bool numeric,
                        const QString& message);

    /** The rights cmdAdd, cmdUpdate and cmdDelete need; without this call none. */
    void setActionRights(UserRights::Right add, UserRights::Right update, UserRights::Right remove);

    /** What cmdQFind does; without one the button stays disabled. */
    void setQuickFind(std::function<void()> handler) { m_quickFind = std::move(handler); }

    // The hooks a screen fills in.
    /** The table's rows, in order, with the key field and the grid's fields. */
    virtual Rows loadRecords() = 0;
    /** Empties every field. */
    virtual void clearData() = 0;
    /** Copies record into the fields. */
    virtual void displayData(const QSqlRecord& record) = 0;
    /** The screen's own checks after the required fields: message, focus, false. */
    virtual bool validateFields() { return true; }
    /** Copies the fields, trimmed, into the screen's record object. */
    virtual void setObjectValues() = 0;
    /** Saves the record object by the mode; on success the saved key into id. */
    virtual bool saveRecord(QVariant* id) = 0;
    /** The name of what still uses the record, or empty text. */
    virtual QString canDelete(const QVariant& id) = 0;
    virtual bool deleteRecord(const QVariant& id) = 0;
    /** Sets the screen's own controls after the common ones; see mode() and isEmpty(). */
    virtual void enableControls() {}

    Session& session() const { return m_session; }
    RecordGrid* grid() const { return m_controls.grid; }
    /** The record shown, or an empty one when the table is empty. */
    QSqlRecord currentRecord() const;
    QVariant currentId() const;
    /** Reads the rows, binds the grid and shows the row with id (else the first). */
    void refreshRecordSet(const QVariant& id);
    /** Sets a field's value as the program, without starting an edit. */
    void setFieldQuietly(const std::function<void()>& change);
    void focusFirstField();
    /** Sends a failure of one of the screen's procedures to the error report. */
    void reportFailure(const QString& procedure, const QString& description);

private:
    enum class Action { Add, Update, Delete };

    void load();
    void unload();
    void beginEdit(Mode mode, const QString& procedure);
    void endEdit(bool commit);
    void showRow(int row);
    void clearAll();
    void updateControls();
    void navigationControls();
    void lockFields(bool locked);
    bool checkRequired();
    bool checkUnique();
    bool allowed(Action action);
    bool saveInsideSavepoint(QVariant* id);

    void onFieldChanged();
    void onUpdate();
    void onCancel();
    void onDelete();
    void onExit();
    void onFirst();
    void onPrevious();
    void onNext();
    void onLast();
    void onRowChosen(int row);

    struct Field
    {
        QWidget* widget;
        QString requiredCaption;
    };
    struct Unique
    {
        QLineEdit* field = nullptr;
        QString column;
        bool numeric = false;
        QString message;
    };

    Session& m_session;
    QString m_tableName;
    QString m_keyField;
    Controls m_controls;
    QList<Field> m_fields;
    Unique m_unique;
    std::function<void()> m_quickFind;
    std::optional<std::array<UserRights::Right, 3>> m_rights;
    std::unique_ptr<Transaction> m_edit;
    Mode m_mode = Mode::Browse;
    bool m_empty = true;
    bool m_loaded = false;
    bool m_gridLayoutApplied = false;
    int m_quiet = 0; ///< above 0 while the program itself fills the fields
    QVariant m_pendingId;
    QString m_oldKey;
};
