#include "StateList.h"

#include "ErrorHandler.h"
#include "Session.h"
#include "Sql.h"

#include <QSqlError>
#include <QSqlQuery>

namespace StateList {

namespace {

// States hang under their country, and the countries are list 1.
constexpr qint64 CountryList = 1;

} // namespace

Rows allStates(Session& session)
{
    QSqlQuery q(session.db());
    q.setForwardOnly(true);
    // Names stand in the order a reader expects, whatever the engine's collation.
    if (!Sql::exec(q,
                   QStringLiteral("SELECT ItemID, ItemName FROM tblIndicator WHERE ParentID IN "
                                  "(SELECT ItemID FROM tblIndicator WHERE ParentID = ?) "
                                  "ORDER BY LOWER(ItemName), ItemID"),
                   {CountryList})) {
        errorHandler(session, Sql::failure(QStringLiteral("General Function"),
                                           QStringLiteral("GetIndicatorInfo"), q.lastError()));
        return {};
    }
    Rows rows;
    while (q.next()) {
        rows.append(q.record());
    }
    return rows;
}

} // namespace StateList
