#include "QuickFind.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** Four machines (2 inactive, 4 with no flag) and three parts (P2 inactive, P1 and P3 in 10). */
void seed(Session& session)
{
    QSqlQuery q(session.db());
    Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, UnitNo, Inactive) VALUES "
                 "(1, 'b2', '0'), (2, 'A1', '1'), (3, 'a3', '0'), (4, 'C4', NULL)"_s);
    Sql::exec(q, u"INSERT INTO tblPart (PartID, Description, PartCategoryID, Quantity, Price, "
                 "Inactive) VALUES ('P1', 'Air filter', 10, 5, 12.5, 0), "
                 "('P2', 'air hose', 11, 0, 3, -1), ('P3', 'O''Ring', 10, 12, 0.75, 0), "
                 "('p4', 'Belt', 0, 5, NULL, 0)"_s);
}

} // namespace

class TestQuickFind : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void everySeededFieldIsAColumnOfItsRows_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("mainField");
        QTest::addColumn<QString>("mainCaption");
        QTest::addColumn<int>("count");
        const auto row = [](const char* name, const char* table, const char* main,
                            const char* caption, int count) {
            QTest::addRow("%s", name) << QString::fromLatin1(table) << QString::fromLatin1(main)
                                      << QString::fromLatin1(caption) << count;
        };
        row("equipment", "tblEquipment", "UnitNo", "Unit No", 10);
        row("parts", "tblPart", "PartID", "Part Number", 6);
        row("employees", "tblEmployee", "EmployeeID", "Employee Number", 10);
        row("suppliers", "tblSupplier", "Name", "Name", 7);
        row("locations, table name without case", "TBLLOCATION", "locationname", "LocationName", 3);
    }
    void everySeededFieldIsAColumnOfItsRows()
    {
        QFETCH(QString, table);
        QFETCH(QString, mainField);
        QFETCH(QString, mainCaption);
        QFETCH(int, count);
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        // A caption the rows lack, and those the part twin leaves out, are not offered.
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblTableFields (TableName, FieldDesc, RowID) VALUES "
                          "(?, 'Gone', 0), (?, 'Parts', 0), (?, 'Inactive', 0)"_s,
                          {table, table, table}));
        QuickFind find(t.session(), table);
        const QList<QuickFind::Field> fields =
            find.fields(find.load({}).columns, {u"PartS"_s, u"Inactive"_s});
        QCOMPARE(fields.size(), count);
        QCOMPARE(fields[QuickFind::mainFieldIndex(fields, mainField)].caption, mainCaption);
        QVERIFY(t.failures().isEmpty());
    }

    void loadFiltersAndOrders_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<bool>("showInactive");
        QTest::addColumn<QStringList>("exclude");
        QTest::addColumn<qint64>("category");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const char* table, bool show, const char* exclude,
                            qint64 category, const char* expected) {
            QTest::addRow("%s", name) << QString::fromLatin1(table) << show << split(exclude)
                                      << category << split(expected);
        };
        row("active machines by unit, without case", "tblEquipment", false, "", 0, "3|1");
        row("inactive machines too, no flag never", "tblEquipment", true, "", 0, "2|3|1");
        row("excluded machines", "tblEquipment", true, "2|1", 0, "3");
        row("active parts", "tblPart", false, "", 0, "P1|P3|p4");
        row("inactive parts too", "tblPart", true, "", 0, "P1|P2|P3|p4");
        row("parts of a category", "tblPart", true, "", 10, "P1|P3");
        row("excluded text key", "tblPart", false, "P3|O'x", 0, "P1|p4");
    }
    void loadFiltersAndOrders()
    {
        QFETCH(QString, table);
        QFETCH(bool, showInactive);
        QFETCH(QStringList, exclude);
        QFETCH(qint64, category);
        QFETCH(QStringList, expected);
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        // Each table keeps its own choice: the other one's opposite changes nothing here.
        QuickFind(t.session(), table).setShowInactive(showInactive);
        const bool equipment = table == u"tblEquipment";
        QuickFind(t.session(), equipment ? u"tblPart"_s : u"tblEquipment"_s)
            .setShowInactive(!showInactive);
        QuickFind find(t.session(), table);
        QCOMPARE(find.showInactive(), showInactive);
        const QString mainField = equipment ? u"UnitNo"_s : u"PartID"_s;
        QStringList keys;
        for (const QSqlRecord& row : find.load({mainField, exclude, category}).rows) {
            keys.append(row.value(find.keyColumn()).toString());
        }
        QCOMPARE(keys, expected);
        QVERIFY(t.failures().isEmpty());
    }

    void searchFindsTheFirstMatchingRow_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");
        const auto row = [](const char* name, const char* type, const char* text, int expected) {
            QTest::addRow("%s", name)
                << QString::fromLatin1(type) << QString::fromLatin1(text) << expected;
        };
        row("prefix without case", "VARCHAR", "AIR", 1);
        row("a quote", "CHAR", "o'r", 3);
        row("no prefix match", "VARCHAR", "ring", -1);
        row("empty text is the first row", "VARCHAR", "", 0);
        row("number by equal value", "INT", "12", 2);
        row("a number is no prefix", "INT", "1", -1);
        row("decimal written longer", "decimal", "12.50", 3);
        row("day as the screen shows it", "DATETIME", "3/2/2025", 2);
        row("day in full only", "DATETIME", "2025-03-0", -1);
    }
    void searchFindsTheFirstMatchingRow()
    {
        QFETCH(QString, type);
        QFETCH(QString, text);
        QFETCH(int, expected);
        // Values as either engine hands them back: text, numbers or days, and nulls.
        const QVariantList values =
            type == u"DATETIME" ? QVariantList{QVariant(), u"2025-03-01"_s, QDate(2025, 3, 2)}
            : type.endsWith(u"CHAR")
                ? QVariantList{QVariant(), u"Air filter"_s, u"air hose"_s, u"O'Ring"_s}
                : QVariantList{QVariant(), 5, 12.0, u"12.5"_s};
        QCOMPARE(QuickFindColumn(values, type).find(text), expected);
    }

    void failedLoadIsReportedUnderItsTable()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"DROP TABLE tblSite"_s));
        QuickFind find(t.session(), u"tblLocation"_s);
        QVERIFY(find.load({u"LocationName"_s, {}, 0}).rows.isEmpty());
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].procedure, u"ShowQuickFindMain - tblLocation"_s);
    }

private:
    static QStringList split(const char* text)
    {
        return QString::fromLatin1(text).split(u'|', Qt::SkipEmptyParts);
    }
};

QTEST_MAIN(TestQuickFind)
#include "tst_quickfind.moc"
