#pragma once

#include <QString>

/**
 * The few places where SQLite and PostgreSQL need different SQL text.
 * Everything else is written once in the dialect both engines run.
 */
class SqlDialect
{
public:
    enum class Engine { SQLite, PostgreSQL };

    enum class ColumnType {
        AutoKey, ///< whole-number key given by the engine
        Key,     ///< whole-number key given by the program
        TextKey, ///< text key typed by the user
        Long,    ///< whole number, ids and counts
        Int,     ///< small whole number, codes and day numbers
        Double,  ///< money and quantities
        Text,
        Date,     ///< day only
        DateTime, ///< day and time of day
        Time,     ///< time of day "HH:mm"
        YesNo,    ///< -1 / 0
        Flag,     ///< text "0" / "1"
        Pattern,  ///< text "1" selects; any other value does not
        Blob,
    };

    explicit SqlDialect(Engine engine = Engine::SQLite) : m_engine(engine) {}
    static SqlDialect forDriver(const QString& driverName);

    Engine engine() const { return m_engine; }
    bool isSqlite() const { return m_engine == Engine::SQLite; }
    QString driverName() const;

    /** Column definition text, without the column's name. */
    QString columnType(ColumnType type) const;
    /** Default expression of a column filled with the present day or moment at insert. */
    QString currentDateDefault(ColumnType type) const;
    /** Statement that opens a transaction that will write. */
    QString beginWrite() const;

private:
    Engine m_engine;
};
