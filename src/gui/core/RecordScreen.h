#pragma once

#include "DataHelpers.h"
#include "FieldBindings.h"
#include "UserRights.h"

#include <QDialog>
#include <QSqlRecord>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class QComboBox;
class QLayout;
class QLineEdit;
class QPushButton;
class RecordGrid;
class Session;
class Transaction;

/**
 * The behaviour every screen that maintains a table shares, in one place:
 * browse, add and modify ("B", "A", "M"), navigation, save, revert, delete,
 * rights, the grid, the window's place and the grid's remembered layout.
 *
 * A screen builds its fields, binds them to the columns of its rows and the
 * members of its record object (bindField), lays them out with the common
 * buttons (setStandardLayout, or standardButtons and setControls for a
 * layout of its own), and fills in the hooks: loadRecords, saveRecord,
 * canDelete and deleteRecord; validateFields and enableControls when it has
 * rules or controls of its own; clearData, displayData and setObjectValues
 * only for what the bindings do not cover.
 *
 * While an edit is open the screen holds a transaction through the session
 * flag: save commits it, revert rolls it back, and writes made meanwhile (a
 * child grid's, another screen's) join it. Qt cannot grey the close box of
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

    /** Shows the screen as a modal window; in mode Add it starts with cmdAdd. */
    int run(Mode startMode = Mode::Browse);

    /** The cmdAdd event; nothing on a screen that is not open. */
    void addRecord();

    void setVisible(bool visible) override;
    void done(int result) override;
    void reject() override;

protected:
    /** The common controls; every pointer but quickFind and the moves is required. */
    struct Controls
    {
        RecordGrid* grid = nullptr;
        QPushButton* add = nullptr;
        QPushButton* update = nullptr;
        QPushButton* cancel = nullptr;
        QPushButton* remove = nullptr;
        QPushButton* exit = nullptr;
        QPushButton* help = nullptr;
        QPushButton* first = nullptr;
        QPushButton* previous = nullptr;
        QPushButton* next = nullptr;
        QPushButton* last = nullptr;
        QPushButton* quickFind = nullptr;
        QWidget* saveFrame = nullptr; ///< holds update and cancel, shown while editing
    };
    enum class Navigation { With, Without };

    /**
     * formName is the screen's objectName and the key of its remembered
     * place and grid layout; tableName and keyField name the table it keeps.
     */
    RecordScreen(Session& session, const QString& formName, const QString& tableName,
                 const QString& keyField, QWidget* parent = nullptr);

    /**
     * The common buttons with their names and captions: cmdAdd, cmdDelete,
     * cmdQFind, cmdHelp, cmdExit, the frame fraSaveCancel with cmdUpdate and
     * cmdCancel, and cmdFirst, cmdPrevious, cmdNext, cmdLast unless without.
     */
    Controls standardButtons(RecordGrid* grid, Navigation navigation = Navigation::With);
    /** Lays fields above the grid and the common buttons below it, and connects them. */
    void setStandardLayout(QLayout* fields, RecordGrid* grid,
                           Navigation navigation = Navigation::With);
    /** Connects the common controls. Call once, after building them. */
    void setControls(const Controls& controls);

    /**
     * A field tied to a column of the rows and a member of the record object
     * (see FieldBindings), in the order of checking and focus. A user's change
     * starts an edit; the field is locked while the table is empty or the
     * user may not change records.
     */
    void bindField(QWidget* field, const QString& column, FieldBindings::Member member,
                   const QString& caption = QString(), int checks = FieldBindings::None);
    /** A field the screen fills and reads itself; with a caption it must not be blank. */
    void addField(QWidget* field, const QString& requiredCaption = QString());

    /**
     * The field whose value must be unique in column of the table. It is
     * checked after validateFields, with the value last shown as the old key,
     * so that a record keeps its own key; a duplicate shows message.
     */
    void setUniqueField(QLineEdit* field, const QString& column, bool numeric,
                        const QString& message);

    /**
     * The rights the screen's actions need: cmdAdd asks for add, cmdDelete
     * for remove, and without modify a record's fields stay locked. Without
     * this call every action is open.
     */
    void setActionRights(UserRights::Right add, UserRights::Right modify, UserRights::Right remove);

    /**
     * Makes a list's small button open the screen that keeps the list's items,
     * given the key chosen in the list, then reload the list and keep its choice.
     */
    void setListButton(QPushButton* button, QComboBox* list, std::function<void(qint64)> open,
                       std::function<void()> reload);

    /**
     * What cmdQFind does: finder answers the key of the record to show, or empty
     * text when the user left without a choice. Without one the button stays disabled.
     */
    void setQuickFind(std::function<QString()> finder) { m_quickFind = std::move(finder); }

    /**
     * Starts a modify edit for a change the screen makes itself, such as a
     * child grid's cell, through the same transaction as a field's change.
     * True when an edit is open afterwards; false without a record or the
     * right to change it, and the change must then not be made.
     */
    bool beginModify();

    // The hooks a screen fills in.
    /** The table's rows, in order, with the key field and the grid's fields. */
    virtual Rows loadRecords() = 0;
    /** Empties every field; the bound ones by default. */
    virtual void clearData();
    /** Shows record in the fields; the bound ones by default, with the missing-lookup warning. */
    virtual void displayData(const QSqlRecord& record);
    /** The screen's own checks after the fields' own: message, focus, false. */
    virtual bool validateFields() { return true; }
    /** Copies the fields, trimmed, into the record object; the bound ones by default. */
    virtual void setObjectValues();
    /** Saves the record object by the mode; on success the saved key into id. */
    virtual bool saveRecord(QVariant* id) = 0;
    /** The question cmdDelete asks before anything else. */
    virtual QString deleteQuestion() const;
    /** The name of what still uses the record, or empty text. */
    virtual QString canDelete(const QVariant& id) = 0;
    virtual bool deleteRecord(const QVariant& id) = 0;
    /** Sets the screen's own controls after the common ones; see mode() and isEmpty(). */
    virtual void enableControls() {}

    Session& session() const { return m_session; }
    RecordGrid* grid() const { return m_controls.grid; }
    const FieldBindings& bindings() const { return m_bindings; }
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
    enum class Action { Add, Modify, Delete };

    void load();
    void unload();
    void beginEdit(Mode mode, const QString& procedure);
    void endEdit(bool commit);
    void showRow(int row);
    void clearAll();
    void updateControls();
    void navigationControls();
    void lockFields(bool locked);
    void watchChanges(QWidget* field);
    bool checkFields();
    bool checkUnique();
    bool mayModify() const;
    bool allowed(Action action);
    bool saveInsideSavepoint(QVariant* id);

    void onFieldChanged();
    void onUpdate();
    void onCancel();
    void onDelete();
    void onExit();
    void onHelp();
    void onFirst();
    void onPrevious();
    void onNext();
    void onLast();
    void onRowChosen(int row);

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
    FieldBindings m_bindings;
    Unique m_unique;
    std::function<QString()> m_quickFind;
    std::optional<std::array<UserRights::Right, 3>> m_rights;
    std::unique_ptr<Transaction> m_edit;
    Mode m_mode = Mode::Browse;
    Mode m_startMode = Mode::Browse;
    bool m_empty = true;
    bool m_loaded = false;
    bool m_gridLayoutApplied = false;
    int m_quiet = 0; ///< above 0 while the program itself fills the fields
    QVariant m_pendingId;
    QString m_oldKey;
};
