#include "EquipmentManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Where a machine's rows live: the first ten go with it, the last two stay.
// clang-format off
const QList<QStringList> Holders{
    {u"tblEquipment"_s, u"EquipmentID"_s}, {u"tblEquipmentDepreciation"_s, u"EquipmentID"_s},
    {u"tblEquipmentCrewHistory"_s, u"EquipmentID"_s}, {u"tblWoPartHistory"_s, u"ServiceUsedID"_s},
    {u"tblWOServiceUsedHistory"_s, u"EquipmentID"_s}, {u"tblServiceUsed"_s, u"EquipmentID"_s},
    {u"tblEquipmentPart"_s, u"EquipmentID"_s}, {u"tblEquipmentCount"_s, u"EquipmentID"_s},
    {u"tblEquipmentImage"_s, u"EquipmentID"_s}, {u"tblEquipmentDocument"_s, u"EquipmentID"_s},
    {u"tblServiceUsedPart"_s, u"ServiceUsedID"_s}, {u"tblEquipmentScan"_s, u"EquipmentID"_s}};
// clang-format on

QString query(Session& s, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    QStringList cells;
    for (bool ok = Sql::exec(q, sql, values); ok && q.next();) {
        for (int i = 0; i < q.record().count(); ++i) {
            cells.append(q.value(i).toString());
        }
    }
    return cells.join(u'/');
}

} // namespace

class TestEquipmentManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void savesReadsAndListsByUnitNo()
    {
        TANDRILL_INSTALLATION(t);
        EquipmentManager manager(t.session());
        QCOMPARE(manager.newEquipmentId() / 1000000, 301); // "MMddHHmmss" of 1 March
        // clang-format off
        Equipment full{1, u"O'Hara's mower"_s, 4, 7, 9, u"2t"_s, u"2019"_s, u"SN"_s, u"b2"_s,
                       {2020, 1, 2}, u"trailer"_s, 11, 12, 13, true, 2, 6, {2020, 2, 1}};
        std::tie(full.stickerNo, full.barCode, full.totalCost, full.lifeYear, full.userDefined[9]) =
            std::tuple(u"ST"_s, u"BC"_s, 99.5, 8, u"tenth"_s);
        const Equipment bare{.equipmentId = 2, .equipmentName = u"Blower"_s,
                             .equipmentSerialNo = u"SN"_s, .unitNo = u"a1"_s};
        // clang-format on
        QVERIFY(manager.saveRecord(full, true) && manager.saveRecord(bare, true));
        full.unitNo = u"C3"_s;
        QVERIFY(manager.saveRecord(full, false));
        QCOMPARE(manager.find(1), std::optional<Equipment>(full));
        QCOMPARE(EquipmentManager::fromRow(manager.list().value(0)), bare);
        QCOMPARE(query(t.session(), u"SELECT StickerNumber, Totalcost, UserDefined10, Inactive, "
                                    "CASE WHEN InstalledDate IS NULL THEN 'none' END FROM "
                                    "tblEquipment ORDER BY EquipmentID"_s),
                 u"ST/99.5/tenth/1///0//0/none"_s);
    }

    void judgesUnitAndSerialNumbers_data()
    {
        QTest::addColumn<QString>("edited"); // unit number, name, serial number
        QTest::addColumn<QString>("told");   // refusal and its field, then the serial warning
        // clang-format off
        QTest::addRow("blank unit no") << u" ||"_s << u"Equipment Unit No should not be blank.|txtUnitNo|"_s;
        QTest::addRow("blank name") << u"U2| |"_s << u"Equipment Name should not be blank.|txtName|"_s;
        QTest::addRow("unit no of another") << u"u1|X|"_s << u"Unit Number you specified already exists. Please enter a different Unit Number.|txtUnitNo|"_s;
        QTest::addRow("own unit no, serial kept") << u"U2 |X|SN-3"_s << u"||"_s;
        QTest::addRow("serial of another warns") << u"U2|X|sn-1"_s << u"||This serial number is already in use on \"U1 - Mower\""_s;
        QTest::addRow("blank serial") << u"U2|X| "_s << u"||"_s;
        // clang-format on
    }
    void judgesUnitAndSerialNumbers()
    {
        QFETCH(QString, edited);
        QFETCH(QString, told);
        const QStringList f = edited.split(u'|');
        TANDRILL_INSTALLATION(t);
        EquipmentManager manager(t.session());
        query(t.session(), u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                           "EquipmentSerialNo) VALUES (1, 'Mower', 'U1', 'SN-1'), "
                           "(3, 'Mower', 'U3', 'SN-3')"_s);
        const Equipment e{
            .equipmentId = 2, .equipmentName = f[1], .equipmentSerialNo = f[2], .unitNo = f[0]};
        const EquipmentRefusal refusal = manager.checkSave(e, u"U2"_s).value_or(EquipmentRefusal());
        QCOMPARE(refusal.message + u'|' + refusal.field + u'|' +
                     manager.serialNoWarning(e, u"sn-3 "_s),
                 told);
    }

    void deleteTakesTheMachineWithItsHistory_data()
    {
        QTest::addColumn<bool>("failing");
        QTest::addColumn<QStringList>("left"); // machines left in each holder
        const QStringList both(9, u"1/2"_s);
        QTest::addRow("posted history goes too")
            << false << QStringList(10, u"2"_s) + both.first(2);
        QTest::addRow("a failed step keeps all") << true << both + QStringList{{}} + both.first(2);
    }
    void deleteTakesTheMachineWithItsHistory()
    {
        QFETCH(bool, failing);
        QFETCH(QStringList, left);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        for (const QStringList& h : Holders) {
            query(s, u"INSERT INTO %1 (%2) VALUES (1), (2)"_s.arg(h[0], h[1]));
        }
        query(s, u"UPDATE tblWOServiceUsedHistory SET ServiceUsedID = EquipmentID"_s); // parts' key
        query(s, u"INSERT INTO tblWorkorder (EquipmentID) VALUES (2)"_s);
        query(s, failing ? u"DROP TABLE tblEquipmentDocument"_s : u"SELECT 1"_s);
        EquipmentManager manager(s);
        QCOMPARE(manager.canDeleteEquipment(2) + u'|' + manager.canDeleteEquipment(1),
                 u"WorkOrder|"_s);
        QCOMPARE(manager.deleteRecord(1), !failing);
        QStringList machines;
        for (const QStringList& h : Holders) {
            machines.append(query(s, u"SELECT %2 FROM %1 ORDER BY %2"_s.arg(h[0], h[1])));
        }
        QCOMPARE(machines, left);
        QCOMPARE(t.failures().failures().size(), failing ? 1 : 0);
    }

    void crewChangesAreLoggedOnce_data()
    {
        QTest::addColumn<bool>("assign");   // through the crew assignment instead of a save
        QTest::addColumn<QString>("entry"); // null: the list was not touched
        QTest::addColumn<QString>("after"); // history rows; the stored crew
        QTest::addRow("list untouched") << false << QString() << u";9"_s;
        QTest::addRow("changed back") << false << u"5   North's"_s << u"5/North's;9"_s;
        QTest::addRow("empty entry") << false << u"  "_s << u"/;9"_s;
        QTest::addRow("assign the same") << true << u"5   North"_s << u";5"_s;
        QTest::addRow("assign another") << true << u"7   O'Hara"_s << u"7/O'Hara;9"_s;
    }
    void crewChangesAreLoggedOnce()
    {
        QFETCH(bool, assign);
        QFETCH(QString, entry);
        QFETCH(QString, after);
        TANDRILL_INSTALLATION(t);
        EquipmentManager manager(t.session());
        QVERIFY(manager.saveRecord({.equipmentId = 1, .unitNo = u"U1"_s, .crewId = 5}, true));
        const Equipment e{.equipmentId = 1, .unitNo = u"U1"_s, .crewId = 9};
        QVERIFY(assign ? manager.assignCrew(1, u"5   North"_s, entry, 9)
                       : manager.saveRecord(e, false,
                                            entry.isNull() ? std::nullopt : std::optional(entry)));
        QCOMPARE(query(t.session(), u"SELECT CrewNumber, CrewDescription FROM "
                                    "tblEquipmentCrewHistory WHERE EquipmentID = 1"_s) +
                     u';' + QString::number(manager.find(1)->crewId),
                 after);
    }
};

QTEST_GUILESS_MAIN(TestEquipmentManager)
#include "tst_equipmentmanager.moc"
