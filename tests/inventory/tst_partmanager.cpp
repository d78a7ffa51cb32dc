#include "PartManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** P-1 on a machine's list, P-2 only in posted history, P-3 used nowhere. */
void seedParts(Session& session)
{
    QSqlQuery q(session.db());
    Sql::exec(q, u"INSERT INTO tblPart (PartID, Description, Quantity) VALUES "
                 "('P-1', 'Blade', 2), ('P-2', 'Belt', 1), ('P-3', 'Filter', 0)"_s);
    Sql::exec(q, u"INSERT INTO tblEquipmentPart (EquipmentID, PartID) VALUES (1, 'P-1')"_s);
    Sql::exec(q, u"INSERT INTO tblWoPartHistory (ServiceusedID, PartID) VALUES (7, 'P-2')"_s);
}

QVariant cell(Session& session, const QString& sql)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, sql) && q.next() ? q.value(0) : QVariant(u"(no row)"_s);
}

} // namespace

class TestPartManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void checkSave_data()
    {
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("oldNumber"); // empty: a new part
        QTest::addColumn<QString>("quantity");
        QTest::addColumn<bool>("inactive");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("field");
        const int number = int(PartManager::Field::Number);
        QTest::addRow("blank number first") << u"  "_s << u""_s << u""_s << u"x"_s << true
                                            << u"Part Number should not be blank."_s << number;
        QTest::addRow("blank description")
            << u"P-9"_s << u" "_s << u""_s << u"x"_s << true
            << u"Description should not be blank."_s << int(PartManager::Field::Description);
        QTest::addRow("quantity no number")
            << u"P-9"_s << u"Cap"_s << u""_s << u"1.2.3"_s << true
            << u"Quantity should be numeric."_s << int(PartManager::Field::Quantity);
        QTest::addRow("inactive while used")
            << u"P-1"_s << u"Cap"_s << u"P-1"_s << u""_s << true
            << u"This part is already assigned to Equipment and can not be decativated."_s
            << int(PartManager::Field::Inactive);
        QTest::addRow("number taken, other case")
            << u"p-3"_s << u"Cap"_s << u""_s << u"4"_s << false
            << u"Part Number you specified already exists. Please enter a different Part Number."_s
            << number;
        QTest::addRow("used part renumbered")
            << u"P-1X"_s << u"Cap"_s << u"P-1"_s << u"4"_s << false
            << u"You can't modified this Part Number. It's being used in Equipment."_s << number;
        QTest::addRow("own number kept")
            << u"P-1"_s << u"Cap"_s << u"P-1"_s << u"-2.5"_s << false << u""_s << number;
        QTest::addRow("history-only part renumbered")
            << u"P-2B"_s << u"Cap"_s << u"P-2"_s << u""_s << true << u""_s << number;
    }
    void checkSave()
    {
        QFETCH(QString, number);
        QFETCH(QString, description);
        QFETCH(QString, oldNumber);
        QFETCH(QString, quantity);
        QFETCH(bool, inactive);
        QFETCH(QString, message);
        QFETCH(int, field);
        TANDRILL_INSTALLATION(t);
        seedParts(t.session());
        Part part;
        part.partId = number;
        part.partOldId = oldNumber;
        part.description = description;
        part.quantity = quantity;
        part.inactive = inactive;
        const auto problem = PartManager(t.session()).checkSave(part, oldNumber.isEmpty());
        QCOMPARE(problem ? problem->message : QString(), message);
        if (problem) {
            QCOMPARE(int(problem->field), field);
        }
    }

    void savesRenumbersAndCleansUp()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        seedParts(s);
        PartManager manager(s);
        Part part{u"O'Neil-4"_s, {},     u"Cap"_s, 3,      u""_s,   u"9.5"_s, 2,
                  u""_s,         u"1"_s, false,    u"n"_s, u"B1"_s, true,     u"123"_s};
        QVERIFY(manager.saveRecord(part, true));
        // Ticked "Do Not Track" is stored as yes; a blank quantity as nothing.
        QCOMPARE(cell(s, u"SELECT TrackInventory FROM tblPart WHERE PartID = 'O''Neil-4'"_s), -1);
        QVERIFY(cell(s, u"SELECT Quantity FROM tblPart WHERE PartID = 'O''Neil-4'"_s).isNull());
        part = {u"P-2B"_s, u"P-2"_s, u"Belt"_s, 0,  u"4"_s, u"0"_s, 0,
                u"1"_s,    u"0"_s,   false,     {}, {},     false,  {}};
        QVERIFY(manager.saveRecord(part, false));
        QCOMPARE(cell(s, u"SELECT TrackInventory FROM tblPart WHERE PartID = 'P-2B'"_s), 0);
        QCOMPARE(cell(s, u"SELECT Quantity FROM tblPart WHERE PartID = 'P-2B'"_s).toDouble(), 4.0);
        QCOMPARE(cell(s, u"SELECT PartID FROM tblWoPartHistory"_s), u"P-2"_s);
        QVERIFY(manager.deleteRecord(u"P-3"_s));
        QStringList listed;
        for (const QSqlRecord& row : manager.list()) {
            listed.append(row.value(u"PartID"_s).toString());
        }
        QCOMPARE(listed, (QStringList{u"O'Neil-4"_s, u"P-1"_s, u"P-2B"_s}));

        QSqlQuery q(s.db());
        const char* const lists[] = {"tblEquipmentPart (EquipmentID", "tblServicesPart (ServiceID",
                                     "tblServiceUsedPart (ServiceUsedID",
                                     "tblWoPartUsed (ServiceUsedID",
                                     "tblWoPartHistory (ServiceusedID"};
        for (const char* list : lists) {
            QVERIFY(Sql::exec(q, u"INSERT INTO "_s + QString::fromLatin1(list) +
                                     u", PartID) VALUES (8, NULL)"_s));
        }
        QVERIFY(manager.cleanUpParts());
        int left = 0;
        for (const char* list : lists) {
            const QString table = QString::fromLatin1(list).section(u' ', 0, 0);
            left += cell(s, u"SELECT COUNT(*) FROM "_s + table).toInt();
        }
        QCOMPARE(left, 2); // P-1's machine row and P-2's history
        QVERIFY(t.failures().isEmpty());
    }

    void namesUsersAndCommitments()
    {
        TANDRILL_INSTALLATION(t);
        PartManager manager(t.session());
        QSqlQuery q(t.session().db());
        QCOMPARE(manager.partCommitted(u"P'7"_s), 0.0);
        // Each use added outranks the ones before it; posted history does not count.
        const std::pair<const char*, QString> uses[] = {
            {"tblWoPartHistory (ServiceusedID, PartID) VALUES (1, ?)", {}},
            {"tblWoPartUsed (ServiceUsedID, PartID, QuantityRequired) VALUES (1, ?, 2.5)",
             u"WorkOrder"_s},
            {"tblServiceUsedPart (ServiceUsedID, PartID) VALUES (1, ?)", u"ServiceUsed Part"_s},
            {"tblServicesPart (ServiceID, PartID) VALUES (1, ?)", u"Services"_s},
            {"tblEquipmentPart (EquipmentID, PartID) VALUES (1, ?)", u"Equipment"_s}};
        for (const auto& [use, expected] : uses) {
            QVERIFY(Sql::exec(q, u"INSERT INTO "_s + QString::fromLatin1(use), {u"P'7"_s}));
            QCOMPARE(manager.canDeletePart(u"P'7"_s), expected);
        }
        QVERIFY(Sql::exec(q, u"INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, "
                             "QuantityRequired) VALUES (2, 'P''7', 4), (3, 'P''7', NULL), "
                             "(4, 'P8', 9)"_s));
        QCOMPARE(manager.partCommitted(u"P'7"_s), 6.5);
        QVERIFY(Sql::exec(q, u"INSERT INTO tblPart (PartID, Description) VALUES ('P8', 'Hose')"_s));
        QCOMPARE(manager.numberInUse(u"p8"_s, {}),
                 u"This part number is already in use on \"Hose\". Please assign a different "
                 "number."_s);
        QCOMPARE(manager.numberInUse(u"P8"_s, u"P8"_s), QString());
    }
};

QTEST_GUILESS_MAIN(TestPartManager)
#include "tst_partmanager.moc"
