#pragma once

#include <QString>
#include <QVariant>

/**
 * How one field of a report is typed and shown: on the page, in a
 * spreadsheet cell and in CSV. Values come from either engine in their own
 * types (SQLite hands dates back as text, PostgreSQL as QDate) and are made
 * alike once, when the rows are bound.
 */
struct ValueFormat
{
    enum class Kind { Text, Integer, Number, Money, Date, DateTime };

    Kind kind = Kind::Text;
    int decimals = 2; ///< digits after the point of a Number
    QString pattern;  ///< QDate/QDateTime pattern of a Date or DateTime

    /** The format named "text", "integer", "number", "money", "date" or "datetime". */
    static bool fromName(const QString& name, ValueFormat* format);

    bool isNumeric() const
    {
        return kind == Kind::Integer || kind == Kind::Number || kind == Kind::Money;
    }

    /** A value as read from the engine, turned into this format's type; NULL stays NULL. */
    QVariant typed(const QVariant& raw) const;
    /** The value as the page shows it: money with separators and two decimals, US dates. */
    QString display(const QVariant& value) const;
    /** The value for plain text files: ISO dates, a point for decimals, no separators. */
    QString plain(const QVariant& value) const;

    /** Orders typed values of this format; NULL first. */
    static int compare(const QVariant& a, const QVariant& b);
};
