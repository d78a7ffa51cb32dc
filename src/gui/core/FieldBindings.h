#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <optional>
#include <variant>

class QSqlRecord;
class QWidget;

/**
 * The table that ties a record screen's fields to the columns of its rows and
 * to the members of its record object, so that emptying the fields, showing
 * a row and copying the fields into the record are written once:
 *
 *     bindings.add(m_number, "CrewNumber", &m_crew.crewNumber, "Crew Number", Required);
 *
 * Fields: line edits, plain text edits, check boxes, combo boxes (a lookup's
 * id into a whole-number member, or its text into a text member), date boxes
 * and spin boxes. What a field holds follows its member: text (trimmed),
 * whole number, number, date that may be empty (NULL), or yes/no, where a
 * check box reads both the -1/0 and the "0"/"1" form. Money shows two
 * decimals.
 */
class FieldBindings
{
public:
    /** Where a field's value goes; std::monostate for a field the screen fills itself. */
    using Member = std::variant<std::monostate, QString*, qint64*, int*, double*, QDate*, bool*>;
    enum Check {
        None = 0,
        Required = 1, ///< "Caption should not be blank."
        Money = 2,    ///< shown with two decimals
    };

    /** A field of the table, in the order of checking and focus. */
    struct Binding
    {
        QWidget* widget;
        QString column;
        Member member;
        QString caption;
        int checks;
    };

    void add(QWidget* widget, const QString& column, Member member,
             const QString& caption = QString(), int checks = None);
    /** The widgets, in order. */
    QList<QWidget*> widgets() const;
    const QList<Binding>& bindings() const { return m_bindings; }

    /** Empties every field: blank text, no date, unticked, the blank item of a list. */
    void clear() const;
    /**
     * Shows the row's columns in the fields. False when a list has no item for the
     * row's value: its lookup row was deleted, and the list shows nothing.
     */
    bool display(const QSqlRecord& row) const;
    /**
     * The first field whose text fails its checks, in order, with the message for
     * it ("Crew Number should not be blank.", "Budget should be numeric.").
     */
    std::optional<std::pair<QWidget*, QString>> firstFailure() const;
    /** Copies every field, trimmed, into its member. */
    void collect() const;

private:
    QList<Binding> m_bindings;
};
