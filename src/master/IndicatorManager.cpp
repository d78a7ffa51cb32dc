#include "IndicatorManager.h"

#include "MessageTexts.h"
#include "WriteScope.h"

#include <algorithm>

namespace {

const QString Module = QStringLiteral("clsIndicatorManager");
const QString Table = QStringLiteral("tblIndicator");
const QString NameField = QStringLiteral("ItemName");
constexpr qint64 UnusedList = 2;

// Every column is asked whatever list the item belongs to: crew ids and item ids are
// different number ranges that may collide, and a collision keeps the item. The order
// decides which name the user is told.
constexpr RecordUse IndicatorUses[] = {
    {"tblEmployee", "Country", "Employee"},
    {"tblServices", "CrewID", "Services"},
    {"tblEmployee", "Crew", "Employee"},
    {"tblEquipment", "CrewID", "Equipment"},
    {"tblEmployee", "EmpPosition", "Employee"},
    {"tblEquipment", "EquipmentType", "Equipment"},
    {"tblEquipment", "VehicleFuelType", "Equipment(Vehicle Info)"},
    {"tblEquipment", "EngineFuelType", "Equipment(Engine Info)"},
    {"tblEquipment", "LeaseCompany", "Equipment(Lease)"},
    {"tblEquipment", "EquipmentMake", "Equipment"},
    {"tblEquipment", "EngineMake", "Equipment(Engine Info)"},
    {"tblEquipment", "ManufactureID", "Equipment(Purchase)"},
    {"tblEquipment", "EquipmentModel", "Equipment"},
    {"tblEquipment", "EngineModel", "Equipment(Engine Info)"},
    {"tblPart", "PartCategoryID", "Part"},
    {"tblSite", "StateID", "Site"},
    {"tblEmployee", "State", "Employee"},
    {"tblSupplier", "State", "Supplier"},
    {"tblEquipment", "Body", "Equipment(Vehicle Info)"},
    {"tblEquipment", "Chassis", "Equipment(Vehicle Info)"},
    {"tblEquipment", "VehicleEngineType", "Equipment(Vehicle Info)"},
    {"tblEquipment", "Trans", "Equipment(Vehicle Info)"},
};

Indicator fromRow(const QSqlRecord& row)
{
    return {row.value(QStringLiteral("ParentId")).toLongLong(),
            row.value(QStringLiteral("ItemID")).toLongLong(),
            DataHelpers::replaceNull(row.value(NameField)).toString(),
            row.value(QStringLiteral("Show")).toInt() != 0,
            row.value(QStringLiteral("FSize")).toInt()};
}

} // namespace

const QString IndicatorManager::DuplicateMessage =
    QStringLiteral("The name you specified already exists. Specify a different name.");

Rows IndicatorManager::lists(qint64 list)
{
    if (list != 0) {
        return DataHelpers::tableInfoWithIndicator(
            m_session, Table, {QStringLiteral("ItemID = ?"), {list}}, QStringLiteral("ItemID"));
    }
    Rows all = DataHelpers::indicatorInfo(m_session, IndicatorList::Lists, true, true);
    all.removeIf([](const QSqlRecord& row) {
        return row.value(QStringLiteral("ItemID")).toLongLong() == UnusedList;
    });
    return all;
}

Rows IndicatorManager::items(qint64 parentId)
{
    return DataHelpers::indicatorInfo(m_session, parentId, true, true);
}

std::optional<Indicator> IndicatorManager::item(qint64 itemId)
{
    const Rows rows = DataHelpers::tableInfoWithIndicator(m_session, Table,
                                                          {QStringLiteral("ItemID = ?"), {itemId}});
    if (rows.isEmpty()) {
        return std::nullopt;
    }
    return fromRow(rows.first());
}

Rows IndicatorManager::parentChoices(qint64 list, qint64 parentItemId, bool engineMake)
{
    switch (list) {
    case IndicatorList::Make:
        return items(IndicatorList::EquipmentType);
    case IndicatorList::State:
        return items(IndicatorList::Country);
    case IndicatorList::Model:
        if (engineMake) {
            return items(IndicatorList::EngineMake);
        }
        return items(parentItemId > 0 ? parentItemId : IndicatorList::NoParent);
    default:
        return {};
    }
}

std::optional<IndicatorProblem> IndicatorManager::validate(const Indicator& item, qint64 list,
                                                           const QString& oldName)
{
    using Field = IndicatorProblem::Field;
    if (DataHelpers::isBlank(item.itemName)) {
        return IndicatorProblem{Field::Name, MessageTexts::notBlank(QStringLiteral("Name"))};
    }
    if (IndicatorList::isDependent(list) && item.parentId <= 0) {
        return IndicatorProblem{Field::Parent,
                                MessageTexts::notBlank(IndicatorList::parentCaption(list))};
    }
    if (nameDupl(item.parentId, item.itemName, oldName)) {
        return IndicatorProblem{Field::Name, DuplicateMessage};
    }
    return std::nullopt;
}

bool IndicatorManager::nameDupl(qint64 parentId, const QString& newName, const QString& oldName)
{
    const QString name = newName.trimmed().toUpper();
    if (name == oldName.trimmed().toUpper()) {
        return false;
    }
    // Compared here rather than in SQL, so that letters beyond ASCII fold alike on both engines.
    const Rows names = DataHelpers::tableInfoWithIndicator(
        m_session, Table, {QStringLiteral("ParentID = ?"), {parentId}});
    return std::any_of(names.cbegin(), names.cend(), [&](const QSqlRecord& row) {
        return row.value(NameField).toString().trimmed().toUpper() == name;
    });
}

bool IndicatorManager::saveRecord(Indicator& item, bool adding)
{
    WriteScope write(m_session, Module, QStringLiteral("SaveRecord"));
    const QString name = item.itemName.trimmed();
    const int show = item.show ? -1 : 0;
    if (!adding) {
        write.exec(QStringLiteral("UPDATE tblIndicator SET ItemName = ?, ParentID = ?, Show = ?, "
                                  "FSize = ? WHERE ItemID = ?"),
                   {name, item.parentId, show, item.fSize, item.itemId});
        return write.commit();
    }
    QVariant id;
    write.exec(QStringLiteral("INSERT INTO tblIndicator (ParentId, ItemName, Show, FSize) "
                              "VALUES (?, ?, ?, ?) RETURNING ItemID"),
               {item.parentId, name, show, item.fSize}, &id);
    if (!write.commit()) {
        return false;
    }
    item.itemId = id.toLongLong();
    return true;
}

bool IndicatorManager::deleteRecord(qint64 itemId)
{
    WriteScope write(m_session, Module, QStringLiteral("DeleteRecord"));
    write.exec(QStringLiteral("DELETE FROM tblIndicator WHERE ItemID = ?"), {itemId});
    return write.commit();
}

bool IndicatorManager::canDeleteParent(qint64 itemId)
{
    return DataHelpers::isRecordUsed(m_session, Table, QStringLiteral("ParentId"), itemId,
                                     QStringLiteral("N"));
}

QString IndicatorManager::canDeleteIndicator(qint64 itemId)
{
    // Children come first: a country with states or a make with models is refused for them,
    // and the later look for children of a make could never answer after this one.
    if (canDeleteParent(itemId)) {
        return QStringLiteral("Model/State");
    }
    return DataHelpers::firstUse(m_session, IndicatorUses, itemId, QStringLiteral("N"));
}

bool IndicatorManager::chkCountryExist(const QString& name)
{
    const Rows rows = DataHelpers::tableInfoWithIndicator(
        m_session, Table,
        {QStringLiteral("ParentID = ? AND LOWER(ItemName) = LOWER(?)"),
         {IndicatorList::Country, name}});
    return std::any_of(rows.cbegin(), rows.cend(), [&](const QSqlRecord& row) {
        return row.value(NameField).toString() == name;
    });
}
