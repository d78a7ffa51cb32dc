#include "StateList.h"

#include "Session.h"

namespace StateList {

namespace {

// States hang under their country, and the countries are list 1.
constexpr qint64 CountryList = 1;

} // namespace

Rows allStates(Session& session)
{
    // Names stand in the order a reader expects, whatever the engine's collation.
    return DataHelpers::read(
        session, QStringLiteral("General Function"), QStringLiteral("GetIndicatorInfo"),
        QStringLiteral("SELECT ItemID, ItemName FROM tblIndicator WHERE ParentID IN "
                       "(SELECT ItemID FROM tblIndicator WHERE ParentID = ?) "
                       "ORDER BY LOWER(ItemName), ItemID"),
        {CountryList});
}

} // namespace StateList
