#pragma once

#include "Session.h"
#include "Sql.h"
#include "WorkOrderFilter.h"

#include <QSqlQuery>
#include <QSqlRecord>

using namespace Qt::StringLiterals;

/** The first value a statement answers; true for a write that ran, null on a failure. */
inline QVariant sql(Session& s, const QString& text, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    const bool ok = Sql::exec(q, text, values);
    return !ok ? QVariant() : q.next() ? q.value(0) : QVariant(true);
}

inline double num(Session& s, const QString& text)
{
    return sql(s, text).toDouble();
}

inline QStringList column(const Rows& rows, const QString& name)
{
    QStringList values;
    for (const QSqlRecord& row : rows) {
        values.append(row.value(name).toString());
    }
    return values;
}

/**
 * Crews 1 and 2; machine 7 ("U7", crew 2) with services (scheduleIds 101 to 106) due in
 * March 2025: "A" with part P-1 and a part without number, and "B", both crew 1 sharing;
 * "C" crew 2 alone; "D" crew 2 without SeparateWo; "E" crew 1 in May. Machine 8 ("U8",
 * crew 1) has "F" sharing without a crew. Master service 50 "M" has part P-2.
 */
inline bool addFleet(Session& s)
{
    for (const char* statement :
         {"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (1, 1), (2, 2)",
          "INSERT INTO tblEquipment (EquipmentID, UnitNo, CrewID, Inactive) VALUES (7, 'U7', 2, "
          "'0'), (8, 'U8', 1, '0')",
          "INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, ServiceID, Name, CrewID, "
          "SeparateWo, NextScheduledDate, Note) VALUES (101, 7, 11, 'A', 1, '0', '2025-03-05', "
          "'it''s'), (102, 7, 12, 'B', 1, '0', '2025-03-10', NULL), (103, 7, 13, 'C', 2, '1', "
          "'2025-03-12', NULL), (104, 7, 14, 'D', 2, NULL, '2025-03-12', NULL), (105, 7, 15, "
          "'E', 1, '0', '2025-05-01', NULL), (106, 8, 16, 'F', NULL, '0', '2025-03-03', NULL)",
          "INSERT INTO tblServiceUsedPart (ServiceUsedID, PartID, QuantityRequired, Price, "
          "SupplierID) VALUES (101, 'P-1', 2, 3.5, 8), (101, NULL, 1, 1, 1)",
          "INSERT INTO tblServices (ServiceID, Name) VALUES (50, 'M')",
          "INSERT INTO tblServicesPart (ServiceID, PartID, QuantityRequired) VALUES (50, 'P-2', "
          "4), (50, NULL, 1)"}) {
        if (!sql(s, QString::fromLatin1(statement)).isValid()) {
            return false;
        }
    }
    return true;
}

inline const WorkOrderFilter March{QDate(2025, 3, 1), QDate(2025, 3, 31), {}, {}, false};
