#include "DataHelpers.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace DataHelpers;
using namespace Qt::StringLiterals;

namespace {

void insert(Session& session, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(session.db());
    if (!Sql::exec(q, sql, values)) {
        qFatal("insert failed: %s", qPrintable(sql));
    }
}

void addCrews(Session& session, const QList<std::pair<qint64, QString>>& crews)
{
    for (const auto& [number, description] : crews) {
        insert(session, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (?, ?)"_s,
               {number, description});
    }
}

QStringList column(const Rows& rows, const QString& name)
{
    QStringList values;
    for (const QSqlRecord& row : rows) {
        values.append(row.value(name).toString());
    }
    return values;
}

/** Exactly one failure was reported, by the procedure, with that description if one is given. */
bool reportedOnce(TestInstallation& t, const QString& procedure, const QString& description = {})
{
    const QList<Failure>& f = t.failures().failures();
    return f.size() == 1 && f[0].module == u"General Function"_s && f[0].procedure == procedure &&
           (description.isEmpty() || f[0].description == description);
}

} // namespace

class TestDataHelpers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void replaceNullGivesReplacementOnlyForNull()
    {
        // An invalid replacement stands for the default one.
        const auto replaced = [](const QVariant& value, const QVariant& replacement) {
            const QVariant r =
                replacement.isValid() ? replaceNull(value, replacement) : replaceNull(value);
            return r.isNull() ? u"<null>"_s : r.toString();
        };
        QCOMPARE(replaced(QVariant(QMetaType::fromType<QString>()), {}), u""_s);
        QCOMPARE(replaced(QVariant(QMetaType::fromType<int>()), 0), u"0"_s);
        QCOMPARE(replaced(u""_s, u"x"_s), u""_s);
        QCOMPARE(replaced(0, 7), u"0"_s);
        QCOMPARE(replaced(u"O'Brien"_s, u"x"_s), u"O'Brien"_s);
    }

    void isBlankTrims()
    {
        QVERIFY(isBlank(u" \t\n"_s));
        QVERIFY(!isBlank(u" 0 "_s));
    }

    void typeCheckAcceptsTheKeysOfEachKind_data()
    {
        QTest::addColumn<QVariant>("dataType");
        QTest::addColumn<QVariant>("event");
        QTest::addColumn<QString>("accepted"); // key codes and "from-to" ranges
        const char* pressText = "65-90 97-122 32 8 13";
        const struct
        {
            const char* name;
            QVariantList types;
            const char* press;
            const char* upDown;
        } kinds[] = {
            {"text",
             {u"STRING"_s, 0},
             pressText,
             "65-90 32-40 9 16-20 112-123 8 12 13 27 44 45 46 92 93 144 145"},
            {"whole",
             {u"INT"_s, 1},
             "48-57 8 13",
             "48-57 96-105 33-40 16-20 112-123 8 12 13 27 44 45 46 92 93 144 145"},
            {"decimal", {u"DOUBLE"_s, 2}, "48-57 8 13 46", "48-57 8 13 46"},
        };
        // The first two are the press event, the others key up and down.
        const QVariantList events = {u"KEYPRESS"_s, 2, u"KEYUP"_s, u"KEYDOWN"_s, 0, 1};
        for (const auto& kind : kinds) {
            for (const QVariant& type : kind.types) {
                for (int i = 0; i < events.size(); ++i) {
                    QTest::addRow("%s %s %s", kind.name, qPrintable(type.toString()),
                                  qPrintable(events[i].toString()))
                        << type << events[i]
                        << QString::fromLatin1(i < 2 ? kind.press : kind.upDown);
                }
            }
        }
        const auto none = [](const char* name, const QVariant& type, const QVariant& event) {
            QTest::newRow(name) << type << event << QString();
        };
        QTest::addRow("small-letter words")
            << QVariant(u"string"_s) << QVariant(u"keypress"_s) << QString::fromLatin1(pressText);
        none("unknown data type", u"DATE"_s, u"KEYPRESS"_s);
        none("data type 3", 3, 2);
        none("unknown event", u"STRING"_s, u"CLICK"_s);
        none("event 3", u"INT"_s, 3);
    }
    void typeCheckAcceptsTheKeysOfEachKind()
    {
        QFETCH(QVariant, dataType);
        QFETCH(QVariant, event);
        QFETCH(QString, accepted);
        QList<int> codes;
        for (const QString& part : accepted.split(u' ', Qt::SkipEmptyParts)) {
            for (int i = part.section(u'-', 0, 0).toInt(); i <= part.section(u'-', -1).toInt();
                 ++i) {
                codes.append(i);
            }
        }
        for (int code = 0; code <= 300; ++code) {
            QVERIFY2(typeCheck(code, dataType, event) == codes.contains(code),
                     qPrintable(u"key code %1"_s.arg(code)));
        }
    }

    void changeCaseCapitalisesSmallLetters()
    {
        QCOMPARE(changeCase('a'), int('A'));
        QCOMPARE(changeCase('z'), int('Z'));
        QCOMPARE(changeCase('{'), int('{'));
    }

    void generateIdIsOneOnEmptyTableThenMaxPlusOne()
    {
        TANDRILL_INSTALLATION(t);
        QCOMPARE(generateId(t.session(), u"SupplierID"_s, u"tblSupplier"_s), 1);
        insert(t.session(),
               u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (7, 'A'), (3, 'B')"_s);
        QCOMPARE(generateId(t.session(), u"supplierid"_s, u"TBLSUPPLIER"_s), 8);
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(generateId(t.session(), u"Nope"_s, u"tblSupplier"_s), 0);
        QVERIFY(reportedOnce(t, u"GenerateID"_s, u"Invalid Column Name"_s));
    }

    void generateUniqueIdIsMonthDayAndTime()
    {
        const auto id = [](int month, int day, int year, QTime time) {
            return generateUniqueId(QDateTime(QDate(year, month, day), time));
        };
        QCOMPARE(id(3, 5, 2025, {14, 7, 9}), 305140709);
        QCOMPARE(id(12, 31, 2024, {23, 59, 59}), 1231235959);
        QCOMPARE(id(1, 1, 2025, {0, 0, 0}), 101000000);
        QCOMPARE(id(3, 5, 2026, {14, 7, 9}), 305140709); // the year plays no part
    }

    void tableInfoFiltersWithBoundValuesAndOrders()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(tableInfo(s, u"tblCrew"_s).isEmpty());
        addCrews(s, {{10, u"Tree"_s}, {2, u"O'Neil's"_s}, {5, u"Mowing"_s}});
        QCOMPARE(
            column(tableInfo(s, u"tblCrew"_s, {u"CrewNumber > ?"_s, {3}}, u"CrewNumber DESC"_s),
                   u"CrewNumber"_s),
            (QStringList{u"10"_s, u"5"_s}));
        QCOMPARE(column(tableInfo(s, u"TBLCREW"_s, {u"Description = ?"_s, {u"O'Neil's"_s}}),
                        u"CrewNumber"_s),
                 QStringList{u"2"_s});
        QCOMPARE(column(tableInfo(s, u"tblCrew"_s, {}, u"Description, CrewNumber asc"_s),
                        u"Description"_s),
                 (QStringList{u"Mowing"_s, u"O'Neil's"_s, u"Tree"_s}));
        QVERIFY(tableInfo(s, u"tblCrew"_s, {u"CrewNumber = ?"_s, {1}}).isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void tableInfoReportsBadNames_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("orderBy");
        QTest::addColumn<QString>("text");
        const QString table = u"Invalid Table Name"_s;
        const QString col = u"Invalid Column Name"_s;
        const auto row = [](const char* name, const char* table, const char* where,
                            const char* orderBy, const QString& text) {
            QTest::newRow(name) << QString::fromLatin1(table) << QString::fromLatin1(where)
                                << QString::fromLatin1(orderBy) << text;
        };
        row("unknown table", "tblNope", "", "", table);
        row("table with SQL in it", "tblCrew; DELETE FROM tblCrew", "", "", table);
        row("order with SQL in it", "tblCrew", "", "CrewID; DELETE FROM tblCrew", col);
        row("faulty filter", "tblCrew", "CrewID = = 1", "", col);
        row("unknown table in filter", "tblCrew", "CrewID IN (SELECT CrewID FROM tblNope)", "",
            table);
    }
    void tableInfoReportsBadNames()
    {
        QFETCH(QString, table);
        QFETCH(QString, where);
        QFETCH(QString, orderBy);
        QFETCH(QString, text);
        TANDRILL_INSTALLATION(t);
        addCrews(t.session(), {{1, u"One"_s}});
        QVERIFY(tableInfo(t.session(), table, {where, {}}, orderBy).isEmpty());
        QVERIFY(reportedOnce(t, u"GetTableInfo"_s, text));
        QCOMPARE(t.failures().failures()[0].number,
                 text == u"Invalid Table Name"_s ? InvalidTableNumber : InvalidColumnNumber);
        QCOMPARE(recordCount(t.session(), u"tblCrew"_s), 1);
    }

    void indicatorInfoHonoursShowAndOrder_data()
    {
        QTest::addColumn<bool>("showAll");
        QTest::addColumn<bool>("byName");
        QTest::addColumn<QString>("expected");
        QTest::addRow("shown, by id") << false << false << u"cherry Banana apple"_s;
        QTest::addRow("all, by name") << true << true << u"apple Banana cherry Hidden"_s;
    }
    void indicatorInfoHonoursShowAndOrder()
    {
        QFETCH(bool, showAll);
        QFETCH(bool, byName);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        insert(t.session(), u"INSERT INTO tblIndicator (ParentId, ItemName, Show, FSize) VALUES "
                            "(4, 'cherry', -1, 0), (4, 'Banana', -1, 0), (4, 'Hidden', 0, 0), "
                            "(4, 'apple', -1, 0), (5, 'Diesel', -1, 0)"_s);
        const Rows rows = indicatorInfo(t.session(), 4, showAll, byName);
        QCOMPARE(column(rows, u"ItemName"_s).join(u' '), expected);
        QVERIFY(indicatorInfo(t.session(), -1, true, true).isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void crewInfoShowsNumberAndDescriptionInNumberOrder()
    {
        TANDRILL_INSTALLATION(t);
        addCrews(t.session(), {{10, u"Trees"_s}, {5, u"Mowing"_s}, {2, u"Beds"_s}});
        const Rows rows = crewInfo(t.session());
        QCOMPARE(column(rows, u"CrewNumber"_s),
                 (QStringList{u"2   Beds"_s, u"5   Mowing"_s, u"10   Trees"_s}));
        QCOMPARE(rows.first().value(u"CrewID"_s).toLongLong(), 3);
        QVERIFY(t.failures().isEmpty());
    }

    // Work order lines are found by their own key, the other tables by the service's, last row
    // first.
    void crewIdByServiceReadsTheTablesKey()
    {
        TANDRILL_INSTALLATION(t);
        insert(t.session(), u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, "
                            "ServiceUsedID, CrewID) VALUES (1, 1, 2, 11), (2, 1, 1, 22)"_s);
        insert(t.session(), u"INSERT INTO tblWOServiceUsedHistory (ServiceUsedID, CrewID) "
                            "VALUES (7, 3), (7, 8), (6, NULL)"_s);
        QCOMPARE(crewIdByService(t.session(), 1, u"TBLWOSERVICEUSED"_s), 11);
        QCOMPARE(crewIdByService(t.session(), 3, u"tblWoServiceUsed"_s), 0);
        QCOMPARE(crewIdByService(t.session(), 7, u"tblWOServiceUsedHistory"_s), 8);
        QCOMPARE(crewIdByService(t.session(), 6, u"tblWOServiceUsedHistory"_s), 0);
        QVERIFY(t.failures().isEmpty());
    }

    void isRecordUsedComparesByKind_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("used");
        QTest::addColumn<QString>("failure"); // the description of the one failure reported
        const auto row = [](const char* name, const char* table, const char* column,
                            const QVariant& value, const char* kind, bool used,
                            const char* failure = "") {
            QTest::newRow(name) << QString::fromLatin1(table) << QString::fromLatin1(column)
                                << value << QString::fromLatin1(kind) << used
                                << QString::fromLatin1(failure);
        };
        const QString oRing = u"O'Ring 5/8\""_s;
        row("text with apostrophe", "tblPart", "PartID", oRing, "S", true);
        row("small s", "tblPart", "partid", oRing, "s", true);
        row("text not there", "tblPart", "PartID", u"O'Ring"_s, "S", false);
        row("number", "tblEquipment", "CrewID", 12, "N", true);
        row("number as text", "tblEquipment", "CrewID", u" 12 "_s, "n", true);
        row("kind N with text", "tblEquipment", "CrewID", u"12'; DELETE FROM tblPart --"_s, "N",
            false, "Type mismatch");
        row("unknown table", "tblNope", "CrewID", 1, "N", false, "Invalid Table Name");
    }
    void isRecordUsedComparesByKind()
    {
        QFETCH(QString, table);
        QFETCH(QString, column);
        QFETCH(QVariant, value);
        QFETCH(QString, kind);
        QFETCH(bool, used);
        QFETCH(QString, failure);
        TANDRILL_INSTALLATION(t);
        insert(t.session(), u"INSERT INTO tblPart (PartID) VALUES (?), (?)"_s,
               {u"O'Ring 5/8\""_s, u"Dichtung Ø12 – Größe"_s});
        insert(t.session(), u"INSERT INTO tblEquipment (EquipmentID, CrewID) VALUES (1, 12)"_s);
        QCOMPARE(isRecordUsed(t.session(), table, column, value, kind), used);
        QVERIFY(failure.isEmpty() ? t.failures().isEmpty()
                                  : reportedOnce(t, u"IsRecordUsed"_s, failure));
        QCOMPARE(recordCount(t.session(), u"tblPart"_s), 2);
    }

    void isDuplicateFindsAnotherRowWithTheKey_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("newValue");
        QTest::addColumn<QString>("oldValue");
        QTest::addColumn<bool>("numeric");
        QTest::addColumn<bool>("duplicate");
        const auto row = [](const char* name, const char* column, const QString& newValue,
                            const QString& oldValue, bool numeric, bool duplicate) {
            QTest::newRow(name) << QString::fromLatin1(column) << newValue << oldValue << numeric
                                << duplicate;
        };
        row("text taken", "Description", u"O'Neil's"_s, QString(), false, true);
        row("text taken in another case", "Description", u"o'neil'S"_s, u"Trees"_s, false, true);
        row("number taken", "CrewNumber", u"5"_s, u"6"_s, true, true);
        row("number free", "CrewNumber", u"7"_s, u"6"_s, true, false);
        // An unchanged key is no duplicate; the unknown column would be reported if asked.
        row("unchanged", "Nope", u"Mower"_s, u"Mower"_s, false, false);
        row("unchanged but both", "Nope", u"o'neil "_s, u" O'Neil"_s, false, false);
    }
    void isDuplicateFindsAnotherRowWithTheKey()
    {
        QFETCH(QString, column);
        QFETCH(QString, newValue);
        QFETCH(QString, oldValue);
        QFETCH(bool, numeric);
        QFETCH(bool, duplicate);
        TANDRILL_INSTALLATION(t);
        addCrews(t.session(), {{5, u"O'Neil's"_s}});
        QCOMPARE(isDuplicate(t.session(), u"tblCrew"_s, column, newValue, oldValue, numeric),
                 duplicate);
        QVERIFY(t.failures().isEmpty());
    }

    void isDuplicateOfANumberRefusesText()
    {
        TANDRILL_INSTALLATION(t);
        addCrews(t.session(), {{5, u"5x"_s}});
        QVERIFY(!isDuplicate(t.session(), u"tblCrew"_s, u"CrewNumber"_s, u"5x"_s, u"6"_s, true));
        QVERIFY(reportedOnce(t, u"IsDuplicate"_s, u"Type mismatch"_s));
    }

    void recordCountCountsFilteredRows()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QCOMPARE(recordCount(s, u"tblCrew"_s), 0);
        addCrews(s, {{1, u"A"_s}, {2, u"B"_s}, {3, u"B"_s}});
        QCOMPARE(recordCount(s, u"tblcrew"_s), 3);
        QCOMPARE(recordCount(s, u"tblCrew"_s, {u"Description = ?"_s, {u"B"_s}}), 2);
        QCOMPARE(recordCount(s, u"tblCrew"_s, {u"   "_s, {}}), 3);
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(recordCount(s, u"tblNope"_s), 0);
        QVERIFY(reportedOnce(t, u"GetRecordCount"_s));
    }
};

QTEST_GUILESS_MAIN(TestDataHelpers)
#include "tst_datahelpers.moc"
