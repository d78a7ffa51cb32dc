#include "DataHelpers.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace DataHelpers;
using namespace Qt::StringLiterals;

namespace {

void insert(Session& session, const QString& sql, const QVariantList& values)
{
    QSqlQuery q(session.db());
    if (!Sql::exec(q, sql, values)) {
        qFatal("insert failed: %s", qPrintable(sql));
    }
}

void addCrew(Session& session, qint64 number, const QString& description)
{
    insert(session, QStringLiteral("INSERT INTO tblCrew (CrewNumber, Description) VALUES (?, ?)"),
           {number, description});
}

QList<qint64> column(const Rows& rows, const QString& name)
{
    QList<qint64> values;
    for (const QSqlRecord& row : rows) {
        values.append(row.value(name).toLongLong());
    }
    return values;
}

QStringList textColumn(const Rows& rows, const QString& name)
{
    QStringList values;
    for (const QSqlRecord& row : rows) {
        values.append(row.value(name).toString());
    }
    return values;
}

} // namespace

class TestDataHelpers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void replaceNullGivesReplacementOnlyForNull_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("replacement");
        QTest::addColumn<QVariant>("expected");
        const QVariant nullText(QMetaType::fromType<QString>());
        QTest::addRow("null text, default") << nullText << QVariant() << QVariant(QString());
        QTest::addRow("null, given")
            << QVariant(QMetaType::fromType<int>()) << QVariant(0) << QVariant(0);
        QTest::addRow("empty text stays")
            << QVariant(QString(u""_s)) << QVariant(u"x"_s) << QVariant(QString(u""_s));
        QTest::addRow("zero stays") << QVariant(0) << QVariant(7) << QVariant(0);
        QTest::addRow("text stays")
            << QVariant(u"O'Brien"_s) << QVariant(u"x"_s) << QVariant(u"O'Brien"_s);
    }
    void replaceNullGivesReplacementOnlyForNull()
    {
        QFETCH(QVariant, value);
        QFETCH(QVariant, replacement);
        QFETCH(QVariant, expected);
        const QVariant result =
            replacement.isValid() ? replaceNull(value, replacement) : replaceNull(value);
        QCOMPARE(result.toString(), expected.toString());
        QCOMPARE(result.isNull(), false);
    }

    void isBlankTrims_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("blank");
        QTest::addRow("empty") << QString() << true;
        QTest::addRow("blanks") << u"   "_s << true;
        QTest::addRow("tab and newline") << u"\t\n"_s << true;
        QTest::addRow("letter in blanks") << u"  a "_s << false;
        QTest::addRow("zero") << u"0"_s << false;
    }
    void isBlankTrims()
    {
        QFETCH(QString, text);
        QFETCH(bool, blank);
        QCOMPARE(isBlank(text), blank);
    }

    void typeCheckAcceptsTheKeysOfEachKind_data()
    {
        QTest::addColumn<QVariant>("dataType");
        QTest::addColumn<QVariant>("event");
        QTest::addColumn<QList<int>>("accepted");

        const auto range = [](int from, int to) {
            QList<int> r;
            for (int i = from; i <= to; ++i) {
                r.append(i);
            }
            return r;
        };
        const QList<int> pressText = range(65, 90) + range(97, 122) + QList<int>{32, 8, 13};
        const QList<int> pressWhole = range(48, 57) + QList<int>{8, 13};
        const QList<int> pressDecimal = pressWhole + QList<int>{46};
        const QList<int> upDownCommon = range(16, 20) + range(112, 123) +
                                        QList<int>{8, 12, 13, 27, 44, 45, 46, 92, 93, 144, 145};
        const QList<int> upDownText = range(65, 90) + range(32, 40) + upDownCommon + QList<int>{9};
        const QList<int> upDownWhole =
            range(48, 57) + range(96, 105) + range(33, 40) + upDownCommon;
        const QList<int> upDownDecimal = range(48, 57) + QList<int>{8, 13, 46};

        const struct
        {
            const char* name;
            QList<QVariant> types;
            QList<int> press;
            QList<int> upDown;
        } kinds[] = {
            {"text", {u"STRING"_s, 0}, pressText, upDownText},
            {"whole", {u"INT"_s, 1}, pressWhole, upDownWhole},
            {"decimal", {u"DOUBLE"_s, 2}, pressDecimal, upDownDecimal},
        };
        for (const auto& kind : kinds) {
            for (const QVariant& type : kind.types) {
                for (const QVariant& event : {QVariant(u"KEYPRESS"_s), QVariant(2)}) {
                    QTest::addRow("%s %s %s", kind.name, qPrintable(type.toString()),
                                  qPrintable(event.toString()))
                        << type << event << kind.press;
                }
                for (const QVariant& event :
                     {QVariant(u"KEYUP"_s), QVariant(u"KEYDOWN"_s), QVariant(0), QVariant(1)}) {
                    QTest::addRow("%s %s %s", kind.name, qPrintable(type.toString()),
                                  qPrintable(event.toString()))
                        << type << event << kind.upDown;
                }
            }
        }
        QTest::addRow("small-letter words")
            << QVariant(u"string"_s) << QVariant(u"keypress"_s) << pressText;
        QTest::addRow("unknown data type")
            << QVariant(u"DATE"_s) << QVariant(u"KEYPRESS"_s) << QList<int>{};
        QTest::addRow("data type 3") << QVariant(3) << QVariant(2) << QList<int>{};
        QTest::addRow("unknown event")
            << QVariant(u"STRING"_s) << QVariant(u"CLICK"_s) << QList<int>{};
        QTest::addRow("event 3") << QVariant(u"INT"_s) << QVariant(3) << QList<int>{};
    }
    void typeCheckAcceptsTheKeysOfEachKind()
    {
        QFETCH(QVariant, dataType);
        QFETCH(QVariant, event);
        QFETCH(QList<int>, accepted);
        for (int code = 0; code <= 300; ++code) {
            QVERIFY2(typeCheck(code, dataType, event) == accepted.contains(code),
                     qPrintable(QStringLiteral("key code %1").arg(code)));
        }
    }

    void changeCaseCapitalisesSmallLetters_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("expected");
        QTest::addRow("a") << 97 << 65;
        QTest::addRow("z") << 122 << 90;
        QTest::addRow("A stays") << 65 << 65;
        QTest::addRow("backtick stays") << 96 << 96;
        QTest::addRow("brace stays") << 123 << 123;
        QTest::addRow("digit stays") << 48 << 48;
    }
    void changeCaseCapitalisesSmallLetters()
    {
        QFETCH(int, code);
        QFETCH(int, expected);
        QCOMPARE(changeCase(code), expected);
    }

    void generateIdIsOneOnEmptyTableThenMaxPlusOne()
    {
        TANDRILL_INSTALLATION(t);
        QCOMPARE(generateId(t.session(), u"SupplierID"_s, u"tblSupplier"_s), 1);
        insert(t.session(), u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (?, ?)"_s,
               {7, u"A"_s});
        insert(t.session(), u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (?, ?)"_s,
               {3, u"B"_s});
        QCOMPARE(generateId(t.session(), u"supplierid"_s, u"TBLSUPPLIER"_s), 8);
        QVERIFY(t.failures().isEmpty());
    }

    void generateIdReportsUnknownNames()
    {
        TANDRILL_INSTALLATION(t);
        QCOMPARE(generateId(t.session(), u"Nope"_s, u"tblSupplier"_s), 0);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures().first().description, u"Invalid Column Name"_s);
        QCOMPARE(t.failures().failures().first().procedure, u"GenerateID"_s);
    }

    void generateUniqueIdIsMonthDayAndTime_data()
    {
        QTest::addColumn<QDateTime>("moment");
        QTest::addColumn<qint64>("expected");
        QTest::addRow("5 March 14:07:09")
            << QDateTime(QDate(2025, 3, 5), QTime(14, 7, 9)) << qint64(305140709);
        QTest::addRow("31 December 23:59:59")
            << QDateTime(QDate(2024, 12, 31), QTime(23, 59, 59)) << qint64(1231235959);
        QTest::addRow("1 January midnight")
            << QDateTime(QDate(2025, 1, 1), QTime(0, 0, 0)) << qint64(101000000);
        QTest::addRow("same moment a year later")
            << QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9)) << qint64(305140709);
    }
    void generateUniqueIdIsMonthDayAndTime()
    {
        QFETCH(QDateTime, moment);
        QFETCH(qint64, expected);
        QCOMPARE(generateUniqueId(moment), expected);
    }

    void tableInfoFiltersWithBoundValuesAndOrders()
    {
        TANDRILL_INSTALLATION(t);
        addCrew(t.session(), 10, u"Tree"_s);
        addCrew(t.session(), 2, u"O'Neil's"_s);
        addCrew(t.session(), 5, u"Mowing"_s);
        Rows rows =
            tableInfo(t.session(), u"tblCrew"_s, {u"CrewNumber > ?"_s, {3}}, u"CrewNumber DESC"_s);
        QCOMPARE(column(rows, u"CrewNumber"_s), (QList<qint64>{10, 5}));

        rows = tableInfo(t.session(), u"TBLCREW"_s, {u"Description = ?"_s, {u"O'Neil's"_s}});
        QCOMPARE(column(rows, u"CrewNumber"_s), QList<qint64>{2});

        rows = tableInfo(t.session(), u"tblCrew"_s, {}, u"Description, CrewNumber asc"_s);
        QCOMPARE(textColumn(rows, u"Description"_s),
                 (QStringList{u"Mowing"_s, u"O'Neil's"_s, u"Tree"_s}));
        QVERIFY(t.failures().isEmpty());
    }

    void tableInfoOnEmptyTableIsEmptyWithoutReport()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(tableInfo(t.session(), u"tblCostCenter"_s).isEmpty());
        QVERIFY(tableInfo(t.session(), u"tblCrew"_s, {u"CrewNumber = ?"_s, {1}}).isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void tableInfoReportsBadNames_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("orderBy");
        QTest::addColumn<qint64>("number");
        QTest::addColumn<QString>("text");
        const qint64 table = InvalidTableNumber;
        const qint64 col = InvalidColumnNumber;
        QTest::addRow("unknown table")
            << u"tblNope"_s << QString() << QString() << table << u"Invalid Table Name"_s;
        QTest::addRow("table with SQL in it") << u"tblCrew; DELETE FROM tblCrew"_s << QString()
                                              << QString() << table << u"Invalid Table Name"_s;
        QTest::addRow("unknown order column")
            << u"tblCrew"_s << QString() << u"Nope"_s << col << u"Invalid Column Name"_s;
        QTest::addRow("order with SQL in it")
            << u"tblCrew"_s << QString() << u"CrewID; DELETE FROM tblCrew"_s << col
            << u"Invalid Column Name"_s;
        QTest::addRow("order with bad direction")
            << u"tblCrew"_s << QString() << u"CrewID DOWN"_s << col << u"Invalid Column Name"_s;
        QTest::addRow("unknown filter column")
            << u"tblCrew"_s << u"Nope = 1"_s << QString() << col << u"Invalid Column Name"_s;
        QTest::addRow("faulty filter")
            << u"tblCrew"_s << u"CrewID = = 1"_s << QString() << col << u"Invalid Column Name"_s;
        QTest::addRow("unknown table in filter")
            << u"tblCrew"_s << u"CrewID IN (SELECT CrewID FROM tblNope)"_s << QString() << table
            << u"Invalid Table Name"_s;
    }
    void tableInfoReportsBadNames()
    {
        QFETCH(QString, table);
        QFETCH(QString, where);
        QFETCH(QString, orderBy);
        QFETCH(qint64, number);
        QFETCH(QString, text);
        TANDRILL_INSTALLATION(t);
        addCrew(t.session(), 1, u"One"_s);
        QVERIFY(tableInfo(t.session(), table, {where, {}}, orderBy).isEmpty());
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure& f = t.failures().failures().first();
        QCOMPARE(f.module, u"General Function"_s);
        QCOMPARE(f.procedure, u"GetTableInfo"_s);
        QCOMPARE(f.number, number);
        QCOMPARE(f.description, text);
        QCOMPARE(recordCount(t.session(), u"tblCrew"_s), 1);
    }

    void indicatorInfoHonoursShowAndOrder_data()
    {
        QTest::addColumn<bool>("showAll");
        QTest::addColumn<bool>("byName");
        QTest::addColumn<QStringList>("expected");
        QTest::addRow("shown, by id")
            << false << false << QStringList{u"cherry"_s, u"Banana"_s, u"apple"_s};
        QTest::addRow("shown, by name")
            << false << true << QStringList{u"apple"_s, u"Banana"_s, u"cherry"_s};
        QTest::addRow("all, by id")
            << true << false << QStringList{u"cherry"_s, u"Banana"_s, u"Hidden"_s, u"apple"_s};
        QTest::addRow("all, by name")
            << true << true << QStringList{u"apple"_s, u"Banana"_s, u"cherry"_s, u"Hidden"_s};
    }
    void indicatorInfoHonoursShowAndOrder()
    {
        QFETCH(bool, showAll);
        QFETCH(bool, byName);
        QFETCH(QStringList, expected);
        TANDRILL_INSTALLATION(t);
        const QString sql = u"INSERT INTO tblIndicator (ParentId, ItemName, Show, FSize) "
                            "VALUES (?, ?, ?, 0)"_s;
        insert(t.session(), sql, {4, u"cherry"_s, -1});
        insert(t.session(), sql, {4, u"Banana"_s, -1});
        insert(t.session(), sql, {4, u"Hidden"_s, 0});
        insert(t.session(), sql, {4, u"apple"_s, -1});
        insert(t.session(), sql, {5, u"Diesel"_s, -1});
        const Rows rows = indicatorInfo(t.session(), 4, showAll, byName);
        QCOMPARE(textColumn(rows, u"ItemName"_s), expected);
        QVERIFY(indicatorInfo(t.session(), -1, true, true).isEmpty());
        QVERIFY(t.failures().isEmpty());
    }

    void crewInfoShowsNumberAndDescriptionInNumberOrder()
    {
        TANDRILL_INSTALLATION(t);
        addCrew(t.session(), 10, u"Trees"_s);
        addCrew(t.session(), 5, u"Mowing"_s);
        addCrew(t.session(), 2, u"Beds"_s);
        const Rows rows = crewInfo(t.session());
        QCOMPARE(textColumn(rows, u"CrewNumber"_s),
                 (QStringList{u"2   Beds"_s, u"5   Mowing"_s, u"10   Trees"_s}));
        QCOMPARE(rows.first().value(u"CrewID"_s).toLongLong(), 3);
        QVERIFY(t.failures().isEmpty());
    }

    void crewIdByServiceUsesTheLineKeyForWorkOrderLines_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addRow("canonical") << u"tblWoServiceUsed"_s;
        QTest::addRow("as written in places") << u"tblWoserviceUsed"_s;
        QTest::addRow("capitals") << u"TBLWOSERVICEUSED"_s;
    }
    void crewIdByServiceUsesTheLineKeyForWorkOrderLines()
    {
        QFETCH(QString, table);
        TANDRILL_INSTALLATION(t);
        // Line 1 refers to schedule row 2 and line 2 to schedule row 1: the key decides.
        const QString sql = u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, "
                            "ServiceUsedID, CrewID) VALUES (?, 1, ?, ?)"_s;
        insert(t.session(), sql, {1, 2, 11});
        insert(t.session(), sql, {2, 1, 22});
        QCOMPARE(crewIdByService(t.session(), 1, table), 11);
        QCOMPARE(crewIdByService(t.session(), 2, table), 22);
        QCOMPARE(crewIdByService(t.session(), 3, table), 0);
        QVERIFY(t.failures().isEmpty());
    }

    void crewIdByServiceGivesTheLastRowsCrewOrZero()
    {
        TANDRILL_INSTALLATION(t);
        insert(
            t.session(),
            u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, CrewID) VALUES (?, 1, ?)"_s,
            {4, 9});
        QCOMPARE(crewIdByService(t.session(), 4, u"tblServiceUsed"_s), 9);
        const QString history = u"INSERT INTO tblWOServiceUsedHistory (ServiceUsedID, CrewID) "
                                "VALUES (?, ?)"_s;
        insert(t.session(), history, {7, 3});
        insert(t.session(), history, {7, 8});
        QCOMPARE(crewIdByService(t.session(), 7, u"tblWOServiceUsedHistory"_s), 8);
        insert(t.session(), history, {6, QVariant(QMetaType::fromType<qlonglong>())});
        QCOMPARE(crewIdByService(t.session(), 6, u"tblWOServiceUsedHistory"_s), 0);
        QCOMPARE(crewIdByService(t.session(), 5, u"tblServiceUsed"_s), 0);
        QVERIFY(t.failures().isEmpty());
    }

    void isRecordUsedComparesByKind_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("used");
        QTest::addRow("text with apostrophe")
            << u"tblPart"_s << u"PartID"_s << QVariant(u"O'Ring 5/8\""_s) << u"S"_s << true;
        QTest::addRow("small s") << u"tblPart"_s << u"partid"_s << QVariant(u"O'Ring 5/8\""_s)
                                 << u"s"_s << true;
        QTest::addRow("non-ASCII text")
            << u"tblPart"_s << u"PartID"_s << QVariant(u"Dichtung Ø12 – Größe"_s) << u"S"_s << true;
        QTest::addRow("text not there")
            << u"tblPart"_s << u"PartID"_s << QVariant(u"O'Ring"_s) << u"S"_s << false;
        QTest::addRow("text differs in blanks")
            << u"tblPart"_s << u"PartID"_s << QVariant(u" O'Ring 5/8\""_s) << u"S"_s << false;
        QTest::addRow("number") << u"tblEquipment"_s << u"CrewID"_s << QVariant(12) << u"N"_s
                                << true;
        QTest::addRow("number as text")
            << u"tblEquipment"_s << u"CrewID"_s << QVariant(u" 12 "_s) << u"n"_s << true;
        QTest::addRow("number not there")
            << u"tblEquipment"_s << u"CrewID"_s << QVariant(13) << u"N"_s << false;
    }
    void isRecordUsedComparesByKind()
    {
        QFETCH(QString, table);
        QFETCH(QString, column);
        QFETCH(QVariant, value);
        QFETCH(QString, kind);
        QFETCH(bool, used);
        TANDRILL_INSTALLATION(t);
        insert(t.session(), u"INSERT INTO tblPart (PartID) VALUES (?)"_s, {u"O'Ring 5/8\""_s});
        insert(t.session(), u"INSERT INTO tblPart (PartID) VALUES (?)"_s,
               {u"Dichtung Ø12 – Größe"_s});
        insert(t.session(), u"INSERT INTO tblEquipment (EquipmentID, CrewID) VALUES (1, 12)"_s, {});
        QCOMPARE(isRecordUsed(t.session(), table, column, value, kind), used);
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(recordCount(t.session(), u"tblPart"_s), 2);
    }

    void isRecordUsedReportsBadInput_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("description");
        QTest::addRow("kind N with text")
            << u"tblEquipment"_s << u"CrewID"_s << QVariant(u"12'; DELETE FROM tblPart --"_s)
            << u"N"_s << u"Type mismatch"_s;
        QTest::addRow("unknown table")
            << u"tblNope"_s << u"CrewID"_s << QVariant(1) << u"N"_s << u"Invalid Table Name"_s;
        QTest::addRow("unknown column")
            << u"tblEquipment"_s << u"Nope"_s << QVariant(1) << u"N"_s << u"Invalid Column Name"_s;
    }
    void isRecordUsedReportsBadInput()
    {
        QFETCH(QString, table);
        QFETCH(QString, column);
        QFETCH(QVariant, value);
        QFETCH(QString, kind);
        QFETCH(QString, description);
        TANDRILL_INSTALLATION(t);
        insert(t.session(), u"INSERT INTO tblPart (PartID) VALUES ('P1')"_s, {});
        QVERIFY(!isRecordUsed(t.session(), table, column, value, kind));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures().first().module, u"General Function"_s);
        QCOMPARE(t.failures().failures().first().procedure, u"IsRecordUsed"_s);
        QCOMPARE(t.failures().failures().first().description, description);
        QCOMPARE(recordCount(t.session(), u"tblPart"_s), 1);
    }

    void isDuplicateLeavesAnUnchangedKeyAlone_data()
    {
        QTest::addColumn<QString>("newValue");
        QTest::addColumn<QString>("oldValue");
        QTest::addRow("same") << u"Mower"_s << u"Mower"_s;
        QTest::addRow("case") << u"mower"_s << u"MOWER"_s;
        QTest::addRow("blanks") << u"  Mower "_s << u"Mower"_s;
        QTest::addRow("both") << u"o'neil "_s << u" O'Neil"_s;
        QTest::addRow("both empty") << QString() << u"   "_s;
    }
    void isDuplicateLeavesAnUnchangedKeyAlone()
    {
        QFETCH(QString, newValue);
        QFETCH(QString, oldValue);
        TANDRILL_INSTALLATION(t);
        // A table that does not exist would be reported if the data were asked.
        QVERIFY(!isDuplicate(t.session(), u"tblNope"_s, u"Nope"_s, newValue, oldValue, false));
        QVERIFY(!isDuplicate(t.session(), u"tblNope"_s, u"Nope"_s, newValue, oldValue, true));
        QVERIFY(t.failures().isEmpty());
    }

    void isDuplicateFindsAnotherRowWithTheKey_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("newValue");
        QTest::addColumn<QString>("oldValue");
        QTest::addColumn<bool>("numeric");
        QTest::addColumn<bool>("duplicate");
        QTest::addRow("text taken")
            << u"Description"_s << u"O'Neil's"_s << QString() << false << true;
        QTest::addRow("text free")
            << u"Description"_s << u"O'Neil"_s << u"Trees"_s << false << false;
        QTest::addRow("number taken") << u"CrewNumber"_s << u"5"_s << u"6"_s << true << true;
        QTest::addRow("number free") << u"CrewNumber"_s << u"7"_s << u"6"_s << true << false;
    }
    void isDuplicateFindsAnotherRowWithTheKey()
    {
        QFETCH(QString, column);
        QFETCH(QString, newValue);
        QFETCH(QString, oldValue);
        QFETCH(bool, numeric);
        QFETCH(bool, duplicate);
        TANDRILL_INSTALLATION(t);
        addCrew(t.session(), 5, u"O'Neil's"_s);
        QCOMPARE(isDuplicate(t.session(), u"tblCrew"_s, column, newValue, oldValue, numeric),
                 duplicate);
        QVERIFY(t.failures().isEmpty());
    }

    void recordCountCountsFilteredRows()
    {
        TANDRILL_INSTALLATION(t);
        QCOMPARE(recordCount(t.session(), u"tblCrew"_s), 0);
        addCrew(t.session(), 1, u"A"_s);
        addCrew(t.session(), 2, u"B"_s);
        addCrew(t.session(), 3, u"B"_s);
        QCOMPARE(recordCount(t.session(), u"tblcrew"_s), 3);
        QCOMPARE(recordCount(t.session(), u"tblCrew"_s, {u"Description = ?"_s, {u"B"_s}}), 2);
        QCOMPARE(recordCount(t.session(), u"tblCrew"_s, {u"   "_s, {}}), 3);
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(recordCount(t.session(), u"tblNope"_s), 0);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures().first().procedure, u"GetRecordCount"_s);
    }
};

QTEST_GUILESS_MAIN(TestDataHelpers)
#include "tst_datahelpers.moc"
