#pragma once

#include <QDateTime>
#include <QList>
#include <QSqlRecord>
#include <QString>
#include <QVariant>
#include <QVariantList>

class Session;

/** Rows read whole; the caller owns them and the connection is free again. */
using Rows = QList<QSqlRecord>;

/** A WHERE text written by the program, with its values bound in order. */
struct SqlFilter
{
    QString where;
    QVariantList values;
};

/** Shared data helpers of every screen and manager. Failures go to errorHandler. */
namespace DataHelpers {

inline constexpr qint64 InvalidTableNumber = -2147217865;  // the engine's "missing object"
inline constexpr qint64 InvalidColumnNumber = -2147217900; // the engine's "syntax error"
inline constexpr qint64 TypeMismatchNumber = 13;

/** The value, or the replacement when the value is null. */
QVariant replaceNull(const QVariant& value, const QVariant& replacement = QString());
/** True when the trimmed text is empty. */
bool isBlank(const QString& text);

enum class KeyData { Text, WholeNumber, Decimal };
enum class KeyEvent { Press, UpDown };
/** True when the key is acceptable for the kind of data in that event. */
bool typeCheck(int keyCode, KeyData data, KeyEvent event);
/** The same with the kind of data ("STRING"/0, "INT"/1, "DOUBLE"/2) and the event
 *  ("KEYPRESS"/2, "KEYUP"/"KEYDOWN"/0/1) as words or numbers; false for unknown ones. */
bool typeCheck(int keyCode, const QVariant& dataType, const QVariant& eventType);
/** A typed small letter turned into its capital. */
int changeCase(int keyCode);

/** The highest value of column in table plus one; 1 for an empty table, 0 on failure. */
qint64 generateId(Session& session, const QString& column, const QString& table);
/** The same, reported under its own name: the lookup lists use it. */
qint64 generateIdWithIndicator(Session& session, const QString& column, const QString& table);
/** The key of equipment and master services: the moment as "MMddHHmmss". */
qint64 generateUniqueId(const QDateTime& moment);

/**
 * The rows of a statement with bound values; a failure is reported under
 * module and procedure and gives no rows.
 */
Rows read(Session& session, const QString& module, const QString& procedure, const QString& sql,
          const QVariantList& values = {});

/** All rows of table that pass the filter, in the given order ("Col" or "Col DESC, Col2"). */
Rows tableInfo(Session& session, const QString& table, const SqlFilter& filter = {},
               const QString& orderBy = QString());
/** The same, reported under its own name. */
Rows tableInfoWithIndicator(Session& session, const QString& table, const SqlFilter& filter = {},
                            const QString& orderBy = QString());
/** The items of one lookup list. */
Rows indicatorInfo(Session& session, qint64 parentId, bool showAll, bool orderByName);
/** Crews as CrewID and the shown text "number   description". */
Rows crewInfo(Session& session);
/** The crew of a service row (or of a work order line for tblWoServiceUsed); 0 when none. */
qint64 crewIdByService(Session& session, qint64 id, const QString& table);

/**
 * True when any row of table holds value in column; kind "S" compares text without regard
 * to case, "N" numbers.
 */
bool isRecordUsed(Session& session, const QString& table, const QString& column,
                  const QVariant& value, const QString& kind);
/** True when another row already holds newValue; an unchanged key is no duplicate. */
bool isDuplicate(Session& session, const QString& table, const QString& column,
                 const QString& newValue, const QString& oldValue, bool numeric);
/** The number of rows of table that pass the filter. */
qint64 recordCount(Session& session, const QString& table, const SqlFilter& filter = {});

} // namespace DataHelpers
