#pragma once

#include "QuickFind.h"

#include <QDialog>
#include <functional>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLineEdit;
class QPushButton;
class QRadioButton;
class RecordGrid;
class Session;

/**
 * A large master list as a grid that moves to the first row starting with
 * what the user types, and answers the key of the chosen row.
 */
class QuickFindScreen : public QDialog
{
    Q_OBJECT

public:
    /** Opens the table's record screen for a new record, over parent. */
    using AddOpener = std::function<void(QWidget* parent)>;

    /** formName is the caller's: the grid's layout is remembered per caller and table. */
    QuickFindScreen(Session& session, const QString& table, const QString& mainField,
                    const QString& caption, const QString& formName, const QStringList& exclude,
                    QWidget* parent = nullptr);

    /**
     * Shows the table modally and answers the chosen row's key as text, or empty
     * text when the user left without a choice. Without an opener there is no add.
     */
    static QString showQuickFind(Session& session, const QString& table, const QString& mainField,
                                 const QString& caption, const QString& formName,
                                 const QStringList& exclude, QWidget* parent = nullptr,
                                 const AddOpener& addOpener = {});

    void setAddOpener(const AddOpener& opener);
    QString chosenKey() const { return m_chosenKey; }

protected:
    /** The list without captions the screen does not offer; call once the screen is built. */
    void start(const QStringList& leftOutFields = {});
    /** A row above the grid for a screen's own filter. */
    QGridLayout* filterRow() const { return m_filters; }
    virtual QuickFind::Request request() const;
    /** Reads the rows again, keeping the row shown when it is still there. */
    void reload();
    void done(int result) override;

private:
    void buildControls(const QString& caption);
    void showRows(const QuickFind::Loaded& loaded);
    void chooseField(int index);
    void prepareSearch();
    void search();
    void setAutoMode(bool on);
    void choose();
    void addNew();

    Session& m_session;
    QuickFind m_find;
    QString m_mainField;
    QString m_formName;
    QStringList m_exclude;
    QList<QuickFind::Field> m_fields;
    QuickFindColumn m_column;
    AddOpener m_addOpener;
    QString m_chosenKey;

    QGridLayout* m_filters = nullptr;
    QComboBox* m_fieldNames = nullptr;
    QRadioButton* m_manual = nullptr;
    QRadioButton* m_auto = nullptr;
    QLineEdit* m_searchText = nullptr;
    QLineEdit* m_searchText2 = nullptr;
    QCheckBox* m_inactive = nullptr;
    RecordGrid* m_grid = nullptr;
    QPushButton* m_add = nullptr;
};
