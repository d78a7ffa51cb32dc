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

QStringList keys(QuickFind& find, const QuickFind::Request& request)
{
    QStringList found;
    for (const QSqlRecord& row : find.load(request).rows) {
        found.append(row.value(find.keyColumn()).toString());
    }
    return found;
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
        QTest::addColumn<QStringList>("leftOut");
        QTest::addRow("equipment")
            << u"tblEquipment"_s << u"UnitNo"_s << u"Unit No"_s << 10 << QStringList();
        QTest::addRow("parts, the twin leaves some out")
            << u"tblPart"_s << u"PartID"_s << u"Part Number"_s << 6
            << QStringList{u"PartS"_s, u"Inactive"_s};
        QTest::addRow("employees")
            << u"tblEmployee"_s << u"EmployeeID"_s << u"Employee Number"_s << 10 << QStringList();
        QTest::addRow("suppliers")
            << u"tblSupplier"_s << u"Name"_s << u"Name"_s << 7 << QStringList();
        QTest::addRow("locations, table name without case")
            << u"TBLLOCATION"_s << u"locationname"_s << u"LocationName"_s << 3 << QStringList();
    }
    void everySeededFieldIsAColumnOfItsRows()
    {
        QFETCH(QString, table);
        QFETCH(QString, mainField);
        QFETCH(QString, mainCaption);
        QFETCH(int, count);
        QFETCH(QStringList, leftOut);
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        // A caption the rows lack, and ones a caller leaves out, are not offered.
        for (const QString& caption : QStringList{u"Gone"_s, u"Parts"_s, u"Inactive"_s}) {
            QVERIFY(Sql::exec(q,
                              u"INSERT INTO tblTableFields (TableName, FieldName, FieldDesc, "
                              "FieldType, RowID) VALUES (?, 'Inactive', ?, 'BIT', 0)"_s,
                              {table, caption}));
        }
        QuickFind find(t.session(), table);
        const QList<QuickFind::Field> fields = find.fields(find.load({}).columns, leftOut);
        const bool inactiveColumn = table != u"TBLLOCATION" && table != u"tblSupplier";
        QCOMPARE(fields.size(), count + (inactiveColumn && leftOut.isEmpty() ? 1 : 0));
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
        QTest::addRow("active machines by unit, without case")
            << u"tblEquipment"_s << false << QStringList() << 0ll << split("3|1");
        QTest::addRow("inactive machines too, no flag never")
            << u"tblEquipment"_s << true << QStringList() << 0ll << split("2|3|1");
        QTest::addRow("excluded machines")
            << u"tblEquipment"_s << true << split("2|1") << 0ll << split("3");
        QTest::addRow("active parts")
            << u"tblPart"_s << false << QStringList() << 0ll << split("P1|P3|p4");
        QTest::addRow("inactive parts too")
            << u"tblPart"_s << true << QStringList() << 0ll << split("P1|P2|P3|p4");
        QTest::addRow("parts of a category")
            << u"tblPart"_s << true << QStringList() << 10ll << split("P1|P3");
        QTest::addRow("excluded text key")
            << u"tblPart"_s << false << split("P3|O'x") << 0ll << split("P1|p4");
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
        QuickFind(t.session(), table).setShowInactive(showInactive);
        QuickFind find(t.session(), table);
        const QString mainField = table == u"tblPart" ? u"PartID"_s : u"UnitNo"_s;
        QCOMPARE(keys(find, {mainField, exclude, category}), expected);
        QVERIFY(t.failures().isEmpty());
    }

    void inactiveChoiceIsKeptPerTable()
    {
        TANDRILL_INSTALLATION(t);
        QuickFind(t.session(), u"tblEquipment"_s).setShowInactive(true);
        QVERIFY(QuickFind(t.session(), u"tblEquipment"_s).showInactive());
        QVERIFY(!QuickFind(t.session(), u"tblPart"_s).showInactive());
        QuickFind(t.session(), u"tblPart"_s).setShowInactive(true);
        QuickFind(t.session(), u"tblEquipment"_s).setShowInactive(false);
        QVERIFY(QuickFind(t.session(), u"tblPart"_s).showInactive());
        QVERIFY(!QuickFind(t.session(), u"tblEquipment"_s).showInactive());
    }

    void searchFindsTheFirstMatchingRow_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::addRow("prefix without case")
            << u"Description"_s << u"VARCHAR"_s << u"AIR"_s << u"P1"_s;
        QTest::addRow("more letters narrow")
            << u"Description"_s << u"VARCHAR"_s << u"air h"_s << u"P2"_s;
        QTest::addRow("a quote") << u"Description"_s << u"CHAR"_s << u"o'r"_s << u"P3"_s;
        QTest::addRow("no prefix match")
            << u"Description"_s << u"VARCHAR"_s << u"ring"_s << QString();
        QTest::addRow("empty text is the first row")
            << u"Description"_s << u"VARCHAR"_s << QString() << u"P1"_s;
        QTest::addRow("number by equal value")
            << u"Qty on Hand"_s << u"DECIMAL"_s << u"12"_s << u"P3"_s;
        QTest::addRow("a number is no prefix")
            << u"Qty on Hand"_s << u"INT"_s << u"1"_s << QString();
        QTest::addRow("decimal written longer")
            << u"Price"_s << u"decimal"_s << u"12.50"_s << u"P1"_s;
        QTest::addRow("text key without case")
            << u"Part Number"_s << u"VARCHAR"_s << u"P4"_s << u"p4"_s;
    }
    void searchFindsTheFirstMatchingRow()
    {
        QFETCH(QString, column);
        QFETCH(QString, type);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        QuickFind(t.session(), u"tblPart"_s).setShowInactive(true);
        const Rows rows = QuickFind(t.session(), u"tblPart"_s).load({u"PartID"_s, {}, 0}).rows;
        QVariantList values;
        for (const QSqlRecord& row : rows) {
            values.append(row.value(column));
        }
        const int found = QuickFindColumn(values, type).find(text);
        QCOMPARE(found < 0 ? QString() : rows[found].value(u"PartID"_s).toString(), expected);
    }

    void daysMatchByDate()
    {
        const QuickFindColumn days({QVariant(), u"2025-03-01"_s, QDate(2025, 3, 2)}, u"DATETIME"_s);
        QCOMPARE(days.find(u"3/2/2025"_s), 2);
        QCOMPARE(days.find(u"2025-03-01"_s), 1);
        QCOMPARE(days.find(u"2025-03-0"_s), -1);
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
    static QStringList split(const char* text) { return QString::fromLatin1(text).split(u'|'); }
};

QTEST_MAIN(TestQuickFind)
#include "tst_quickfind.moc"
