#pragma once

#include "DataHelpers.h"
#include "UserRights.h"

#include <QDate>
#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <optional>

class Session;

/**
 * The rows, searchable columns and remembered choices of the quick find
 * screens, for tblEquipment, tblPart, tblEmployee, tblSupplier and
 * tblLocation. Failures go to errorHandler and give empty answers.
 */
class QuickFind
{
public:
    /** A searchable column as tblTableFields describes it. */
    struct Field
    {
        QString name;    ///< the table's column (FieldName)
        QString caption; ///< the grid column and the text of the list (FieldDesc)
        QString type;    ///< "INT", "DECIMAL", "DATETIME", "VARCHAR", "CHAR", "BIT"
    };
    /** What to read: the main field orders the rows; excluded keys stay out. */
    struct Request
    {
        QString mainField;
        QStringList exclude;
        qint64 partCategory = 0; ///< parts of this category only; 0 for all
    };
    struct Loaded
    {
        QStringList columns; ///< the result's columns, also when there are no rows
        Rows rows;
    };
    enum class Look { Plain, Money, Tick };
    /** How much may be typed into the search text, and which characters. */
    struct InputRule
    {
        int maxLength;
        QRegularExpression accepted;
    };

    QuickFind(Session& session, const QString& table);

    /** True for the five tables that have a quick find. */
    bool isKnown() const { return m_query != nullptr; }
    QString table() const { return m_table; }
    /** The column whose value a choice answers: EquipmentID, PartID, ... */
    QString keyColumn() const;

    /** True for the tables with a "Show Inactive" choice: equipment and parts. */
    bool hasInactiveChoice() const;
    /** The remembered choice of this workstation; off when never set. */
    bool showInactive();
    void setShowInactive(bool show);

    /** The rows of the table's query, ordered by the main field. */
    Loaded load(const Request& request);

    /**
     * The searchable fields of the table in RowID order, those whose caption is
     * one of columns; captions in leftOut are not offered.
     */
    QList<Field> fields(const QStringList& columns, const QStringList& leftOut = {});

    /** True when the user has the right to add a record to this table. */
    bool mayAdd() const;

    /** The place of mainField in fields, by its column name; 0 when not there. */
    static int mainFieldIndex(const QList<Field>& fields, const QString& mainField);
    static Look look(const QString& column);
    static InputRule inputRule(const QString& fieldType);

private:
    struct Query;
    static const Query* queryOf(const QString& table);

    QString optionName() const;
    QString orderBy(const QString& mainField) const;
    void report(const QString& text);

    Session& m_session;
    QString m_table;
    const Query* m_query = nullptr;
};

/**
 * One column of the rows in the order shown, prepared once so that each
 * keystroke searches memory: text by case-blind prefix, numbers and days
 * by equal value.
 */
class QuickFindColumn
{
public:
    QuickFindColumn() = default;
    QuickFindColumn(const QVariantList& values, const QString& fieldType);

    /** The first row that matches text; 0 for empty text; -1 when none does. */
    int find(const QString& text) const;

private:
    enum class Kind { Text, Number, Day };

    Kind m_kind = Kind::Text;
    QStringList m_texts;
    QList<std::optional<double>> m_numbers;
    QList<QDate> m_days;
    qsizetype m_count = 0;
};
