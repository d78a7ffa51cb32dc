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

QString column(const Rows& rows, const QString& name = u"CrewNumber"_s)
{
    QStringList values;
    for (const QSqlRecord& row : rows) {
        values.append(row.value(name).toString());
    }
    return values.join(u'|');
}

/** Exactly one failure was reported since the last look, by the procedure, with that text. */
bool reportedOnce(TestInstallation& t, const QString& procedure, const QString& description = {})
{
    const QList<Failure> f = t.failures().failures();
    t.failures().clear();
    return f.size() == 1 && f[0].module == u"General Function"_s && f[0].procedure == procedure &&
           (description.isEmpty() || f[0].description == description);
}

} // namespace

class TestDataHelpers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void blanksAndSmallLetters()
    {
        QVERIFY(isBlank(u" \t\n"_s) && !isBlank(u" 0 "_s));
        QCOMPARE(changeCase('z'), int('Z'));
        QCOMPARE(changeCase('{'), int('{'));
    }

    void typeCheckAcceptsTheKeysOfEachKind_data()
    {
        QTest::addColumn<QVariant>("dataType");
        QTest::addColumn<QVariant>("event");
        QTest::addColumn<QString>("accepted"); // key codes and "from-to" ranges
        const auto row = [](const char* name, const QVariant& type, const QVariant& event,
                            const QString& accepted) {
            QTest::newRow(name) << type << event << accepted;
        };
        const QString keys = u" 112-123 8 12 13 27 44 45 46 92 93 144 145"_s;
        row("text press", u"string"_s, u"keypress"_s, u"65-90 97-122 32 8 13"_s);
        row("text up", 0, u"KEYUP"_s, u"65-90 32-40 9 16-20"_s + keys);
        row("whole press", 1, 2, u"48-57 8 13"_s);
        row("whole down", u"INT"_s, u"KEYDOWN"_s, u"48-57 96-105 33-40 16-20"_s + keys);
        row("decimal press", u"DOUBLE"_s, u"KEYPRESS"_s, u"48-57 8 13 46"_s);
        row("decimal down", 2, 1, u"48-57 8 13 46"_s);
        row("unknown data type", u"DATE"_s, u"KEYPRESS"_s, u""_s);
        row("unknown event", u"STRING"_s, u"CLICK"_s, u""_s);
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

    void readersFilterWithBoundValuesAndRefuseBadNames()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QCOMPARE(generateId(s, u"SupplierID"_s, u"tblSupplier"_s), 1); // then the highest plus one
        insert(s, u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (7, 'A'), (3, 'B')"_s);
        QCOMPARE(generateId(s, u"supplierid"_s, u"TBLSUPPLIER"_s), 8);
        const QVariant oNeil = u"O'Neil's"_s;
        insert(s,
               u"INSERT INTO tblCrew (CrewNumber, Description) "
               "VALUES (10, 'Tree'), (2, ?), (5, ?)"_s,
               {oNeil, oNeil});
        QCOMPARE(
            column(tableInfo(s, u"tblCrew"_s, {u"CrewNumber > ?"_s, {3}}, u"CrewNumber DESC"_s)),
            u"10|5"_s);
        const QString byName = u"Description, CrewNumber asc"_s;
        QCOMPARE(column(tableInfo(s, u"TBLCREW"_s, {u"Description = ?"_s, {oNeil}}, byName)),
                 u"2|5"_s);
        QCOMPARE(recordCount(s, u"tblCrew"_s, {u"Description = ?"_s, {oNeil}}), 2);
        QCOMPARE(recordCount(s, u"tblcrew"_s, {u"   "_s, {}}), 3);
        QCOMPARE(column(crewInfo(s)), u"2   O'Neil's|5   O'Neil's|10   Tree"_s);
        QVERIFY(t.failures().isEmpty());

        QCOMPARE(generateId(s, u"Nope"_s, u"tblSupplier"_s), 0);
        QVERIFY(reportedOnce(t, u"GenerateID"_s, u"Invalid Column Name"_s));
        QCOMPARE(recordCount(s, u"tblNope"_s), 0);
        QVERIFY(reportedOnce(t, u"GetRecordCount"_s, u"Invalid Table Name"_s));
        const auto refused = [&](const QString& table, const QString& where, const QString& orderBy,
                                 const QString& text) {
            return tableInfo(s, table, {where, {}}, orderBy).isEmpty() &&
                   reportedOnce(t, u"GetTableInfo"_s, text);
        };
        const QString badTable = u"Invalid Table Name"_s;
        const QString badColumn = u"Invalid Column Name"_s;
        QVERIFY(refused(u"tblCrew; DELETE FROM tblCrew"_s, {}, {}, badTable));
        QVERIFY(refused(u"tblCrew"_s, {}, u"CrewID; DELETE FROM tblCrew"_s, badColumn));
        QVERIFY(refused(u"tblCrew"_s, u"CrewID = = 1"_s, {}, badColumn));
        QVERIFY(refused(u"tblCrew"_s, u"CrewID IN (SELECT CrewID FROM tblNope)"_s, {}, badTable));
        QCOMPARE(recordCount(s, u"tblCrew"_s), 3);
    }

    void indicatorInfoHonoursShowAndOrder()
    {
        TANDRILL_INSTALLATION(t);
        insert(t.session(), u"INSERT INTO tblIndicator (ParentId, ItemName, Show, FSize) VALUES "
                            "(4, 'cherry', -1, 0), (4, 'Banana', -1, 0), (4, 'Hidden', 0, 0), "
                            "(4, 'apple', -1, 0), (5, 'Diesel', -1, 0)"_s);
        const auto names = [&](bool showAll, bool byName) {
            return column(indicatorInfo(t.session(), 4, showAll, byName), u"ItemName"_s);
        };
        QCOMPARE(names(false, false), u"cherry|Banana|apple"_s);
        QCOMPARE(names(true, true), u"apple|Banana|cherry|Hidden"_s);
        QVERIFY(t.failures().isEmpty());
    }

    // Text keys are one whatever their case; numbers are compared as numbers. Work order lines
    // are found by their own key, the other tables by the service's, last row first.
    void keyLookupsCompareByKind()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        insert(s, u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, "
                  "ServiceUsedID, CrewID) VALUES (1, 1, 2, 11), (2, 1, 1, 22)"_s);
        insert(s, u"INSERT INTO tblWOServiceUsedHistory (ServiceUsedID, CrewID) "
                  "VALUES (7, 3), (7, 8)"_s);
        QCOMPARE(crewIdByService(s, 1, u"TBLWOSERVICEUSED"_s), 11);
        QCOMPARE(crewIdByService(s, 7, u"tblWOServiceUsedHistory"_s), 8);
        QCOMPARE(crewIdByService(s, 3, u"tblWoServiceUsed"_s), 0);
        insert(s, u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (5, ?)"_s,
               {u"O'Neil's"_s});
        insert(s, u"INSERT INTO tblPart (PartID) VALUES ('P1')"_s);
        const QString crew = u"tblCrew"_s;
        const QString number = u"CrewNumber"_s;
        QVERIFY(isDuplicate(s, u"tblPart"_s, u"PartID"_s, u"p1"_s, QString(), false));
        QVERIFY(isDuplicate(s, crew, number, u" 5 "_s, u"6"_s, true));
        QVERIFY(!isDuplicate(s, crew, number, u"7"_s, u"6"_s, true));
        // Unchanged is no duplicate; the unknown column would be reported if asked.
        QVERIFY(!isDuplicate(s, crew, u"Nope"_s, u"o'neil "_s, u" O'Neil"_s, false));
        QVERIFY(isRecordUsed(s, crew, u"Description"_s, u"o'neil'S"_s, u"s"_s));
        QVERIFY(isRecordUsed(s, crew, number, 5, u"n"_s));
        QVERIFY(t.failures().isEmpty());
        QVERIFY(!isDuplicate(s, crew, number, u"5'; DELETE FROM tblCrew --"_s, u"6"_s, true));
        QVERIFY(reportedOnce(t, u"IsDuplicate"_s, u"Type mismatch"_s));
        QVERIFY(!isRecordUsed(s, u"tblNope"_s, number, 5, u"N"_s));
        QVERIFY(reportedOnce(t, u"IsRecordUsed"_s, u"Invalid Table Name"_s));
        QCOMPARE(recordCount(s, crew), 1);
    }
};

QTEST_GUILESS_MAIN(TestDataHelpers)
#include "tst_datahelpers.moc"
