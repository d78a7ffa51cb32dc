#pragma once

#include <QString>

/** One item of a lookup list, a row of tblIndicator. */
struct Indicator
{
    qint64 parentId = 0; ///< the list's number, or the parent item of a dependent list
    qint64 itemId = 0;
    QString itemName;
    bool show = true; ///< stored as -1/0; only shown items reach the record screens' lists
    int fSize = 0;
};

/**
 * The fixed lookup lists. Each is a row of tblIndicator with this ItemID,
 * and its items carry the number as ParentID, except the dependent lists
 * (makes, models, states), whose items hang under an item of another list.
 */
namespace IndicatorList {

inline constexpr qint64 Country = 1;
inline constexpr qint64 EmployeePosition = 3;
inline constexpr qint64 EquipmentType = 4;
inline constexpr qint64 FuelType = 5;
inline constexpr qint64 LeaseCompany = 6;
inline constexpr qint64 Make = 7;
inline constexpr qint64 ManufactureType = 8;
inline constexpr qint64 Model = 9;
inline constexpr qint64 PartCategory = 10;
inline constexpr qint64 State = 11;
inline constexpr qint64 TireType = 12;
inline constexpr qint64 VehicleBodyType = 13;
inline constexpr qint64 VehicleChassisType = 14;
inline constexpr qint64 VehicleEngineType = 15;
inline constexpr qint64 VehicleTransType = 16;
inline constexpr qint64 EngineMake = 17;
/** The parent id of the lists themselves. */
inline constexpr qint64 Lists = 0;
/** No item hangs under it: the items of a dependent list whose parent is not chosen. */
inline constexpr qint64 NoParent = -1;

/** True for the lists whose items hang under an item of another list. */
constexpr bool isDependent(qint64 list)
{
    return list == Make || list == Model || list == State;
}

/** The caption of the parent selector of a dependent list; empty for the others. */
inline QString parentCaption(qint64 list)
{
    switch (list) {
    case Make:
        return QStringLiteral("Type");
    case Model:
        return QStringLiteral("Make Type");
    case State:
        return QStringLiteral("Country");
    default:
        return QString();
    }
}

} // namespace IndicatorList
