#pragma once

#include "Session.h"
#include "Sql.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

/** The first value a statement answers; true for a write that ran, null on a failure. */
inline QVariant sql(Session& s, const QString& text, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    const bool ok = Sql::exec(q, text, values);
    return !ok ? QVariant() : q.next() ? q.value(0) : QVariant(true);
}

inline qint64 count(Session& s, const QString& tableAndWhere)
{
    return sql(s, u"SELECT COUNT(*) FROM "_s + tableAndWhere).toLongLong();
}

/**
 * Crews 1 and 2 (numbers 1 and 2); machine 7 ("U7", machine crew 2) with services (scheduleIds 101
 * to 106) due in March 2025: 1 "A" and 2 "B" crew 1 sharing, 3 "C" crew 2 alone, 4 "D" crew 2
 * without a SeparateWo, 5 "E" crew 1 in May; A has part P-1 and a part without a number. Machine 8
 * ("U8") has service 6 "F" without a crew, sharing. Master service 50 "M" has part P-2.
 */
inline bool addFleet(Session& s)
{
    for (const QString& statement :
         {u"INSERT INTO tblCrew (CrewID, CrewNumber, Description) VALUES (1, 1, 'One'), "
          "(2, 2, 'Two')"_s,
          u"INSERT INTO tblEquipment (EquipmentID, UnitNo, EquipmentName, CrewID, Inactive) "
          "VALUES (7, 'U7', 'Mower', 2, '0'), (8, 'U8', 'Edger', 1, '0')"_s,
          u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, ServiceID, Name, CrewID, "
          "SeparateWo, NextScheduledDate, Note) VALUES "
          "(101, 7, 11, 'A', 1, '0', '2025-03-05', 'it''s'), (102, 7, 12, 'B', 1, '0', "
          "'2025-03-10', NULL), (103, 7, 13, 'C', 2, '1', '2025-03-12', NULL), "
          "(104, 7, 14, 'D', 2, NULL, '2025-03-12', NULL), (105, 7, 15, 'E', 1, '0', "
          "'2025-05-01', NULL), (106, 8, 16, 'F', NULL, '0', '2025-03-03', NULL)"_s,
          u"INSERT INTO tblServiceUsedPart (ServiceUsedID, PartID, QuantityRequired, Price, "
          "SupplierID) VALUES (101, 'P-1', 2, 3.5, 8), (101, NULL, 1, 1, 1)"_s,
          u"INSERT INTO tblServices (ServiceID, Name, CrewID, SeparateWo) VALUES "
          "(50, 'M', 1, '0')"_s,
          u"INSERT INTO tblServicesPart (ServiceID, PartID, QuantityRequired, Price) VALUES "
          "(50, 'P-2', 4, 1.25), (50, NULL, 1, 1)"_s}) {
        if (!sql(s, statement).isValid()) {
            return false;
        }
    }
    return true;
}

/** March 2025, no crew ranges. */
inline WorkOrderFilter march()
{
    WorkOrderFilter filter;
    filter.from = QDate(2025, 3, 1);
    filter.to = QDate(2025, 3, 31);
    return filter;
}
