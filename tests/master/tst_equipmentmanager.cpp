#include "EquipmentManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Where a machine's rows live, as table.column: the first ten go with it, the last two stay.
const QStringList Holders =
    u"tblEquipment.EquipmentID tblEquipmentDepreciation.EquipmentID "
    "tblEquipmentCrewHistory.EquipmentID tblWoPartHistory.ServiceUsedID "
    "tblWOServiceUsedHistory.EquipmentID tblServiceUsed.EquipmentID tblEquipmentPart.EquipmentID "
    "tblEquipmentCount.EquipmentID tblEquipmentImage.EquipmentID tblEquipmentDocument.EquipmentID "
    "tblServiceUsedPart.ServiceUsedID tblEquipmentScan.EquipmentID"_s.split(u' ');

/** The cells of every row, in order, joined by '/'. */
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
        const qint64 id = manager.newEquipmentId();
        QVERIFY(id >= 301000000 && id <= 301235959); // 1 March, any time of day
        // clang-format off
        Equipment full{id, u"O'Hara's mower"_s, 4, 7, 9, u"2t"_s, u"2019"_s, u"SN"_s, u"b2"_s,
                       {2020, 1, 2}, u"trailer"_s, 11, 12, 13, true, 2, 6, {2020, 2, 1}};
        std::tie(full.stickerNo, full.rearTires, full.barCode, full.totalCost, full.lifeYear,
                 full.inspectionDate) = std::tuple(u"ST"_s, u"R"_s, u"BC"_s, 99.5, 8, QDate(2025, 6, 30));
        full.userDefined[9] = u"tenth"_s;
        const Equipment bare{.equipmentId = id + 1, .equipmentName = u"Blower"_s,
                             .equipmentSerialNo = u"SN"_s, .unitNo = u"a1"_s};
        // clang-format on
        QVERIFY(manager.saveRecord(full, true) && manager.saveRecord(bare, true));
        full.unitNo = u"C3"_s;
        QVERIFY(manager.saveRecord(full, false));

        QCOMPARE(manager.find(id), std::optional<Equipment>(full));
        QCOMPARE(EquipmentManager::fromRow(manager.list().value(0)), bare);
        // Columns under other names, flags as text, and every empty date stored as none.
        QCOMPARE(query(t.session(),
                       u"SELECT StickerNumber, Totalcost, UserDefined10, Inactive, "
                       "CASE WHEN COALESCE(InstalledDate, LeaseStartDate, LeaseEndDate, "
                       "WarrantyStartDate, WarrantyEndDate, LicenseRenewalDate, "
                       "InspectionDate, AcquisitionDate) IS NULL THEN 'none' END "
                       "FROM tblEquipment ORDER BY EquipmentID"_s),
                 u"ST/99.5/tenth/1///0//0/none"_s);
        QVERIFY(t.failures().isEmpty());
    }

    void judgesUnitAndSerialNumbers_data()
    {
        QTest::addColumn<QString>("unitNo");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("serial");
        QTest::addColumn<QString>("told"); // refusal and its field, then the serial warning
        QTest::addRow("blank unit no")
            << u" "_s << u""_s << u""_s << u"Equipment Unit No should not be blank.|txtUnitNo|"_s;
        QTest::addRow("blank name")
            << u"U2"_s << u" "_s << u""_s << u"Equipment Name should not be blank.|txtName|"_s;
        QTest::addRow("unit no of another") << u"u1"_s << u"X"_s << u""_s
                                            << u"Unit Number you specified already exists. Please "
                                               "enter a different Unit Number.|txtUnitNo|"_s;
        QTest::addRow("own unit no, serial kept") << u"U2 "_s << u"X"_s << u"SN-3"_s << u"||"_s;
        QTest::addRow("serial of another warns") << u"U2"_s << u"X"_s << u"sn-1"_s
                                                 << u"||This serial number is already in use on "
                                                    "\"U1 - Mower\""_s;
        QTest::addRow("blank serial") << u"U2"_s << u"X"_s << u" "_s << u"||"_s;
    }
    void judgesUnitAndSerialNumbers()
    {
        QFETCH(QString, unitNo);
        QFETCH(QString, name);
        QFETCH(QString, serial);
        QFETCH(QString, told);
        TANDRILL_INSTALLATION(t);
        EquipmentManager manager(t.session());
        query(t.session(), u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                           "EquipmentSerialNo) VALUES (1, 'Mower', 'U1', 'SN-1'), "
                           "(3, 'Mower', 'U3', 'SN-3')"_s);
        const Equipment edited{
            .equipmentId = 2, .equipmentName = name, .equipmentSerialNo = serial, .unitNo = unitNo};
        const EquipmentRefusal refusal =
            manager.checkSave(edited, u"U2"_s).value_or(EquipmentRefusal());
        QCOMPARE(refusal.message + u'|' + refusal.field + u'|' +
                     manager.serialNoWarning(edited, u"sn-3 "_s),
                 told);
        QVERIFY(t.failures().isEmpty());
    }

    void deleteTakesTheMachineWithItsHistory_data()
    {
        QTest::addColumn<bool>("openOrder");
        QTest::addColumn<bool>("failing");
        QTest::addColumn<QStringList>("left"); // machines left in each holder
        const QStringList both(12, u"1/2"_s);
        QTest::addRow("refused with an open work order") << true << false << both;
        QTest::addRow("posted history goes too")
            << false << false << QStringList(10, u"2"_s) + both.first(2);
        QTest::addRow("a failed step keeps all")
            << false << true << both.first(9) + QStringList{{}} + both.first(2);
    }
    void deleteTakesTheMachineWithItsHistory()
    {
        QFETCH(bool, openOrder);
        QFETCH(bool, failing);
        QFETCH(QStringList, left);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const auto holderSql = [](const char* sql, const QString& holder) {
            return QString::fromLatin1(sql).arg(holder.section(u'.', 0, 0),
                                                holder.section(u'.', 1));
        };
        for (const QString& holder : Holders) {
            query(s, holderSql("INSERT INTO %1 (%2) VALUES (1), (2)", holder));
        }
        // Posted lines carry their parts by the line's own number.
        query(s, u"UPDATE tblWOServiceUsedHistory SET ServiceUsedID = EquipmentID"_s);
        query(s, u"INSERT INTO tblWorkorder (EquipmentID) VALUES (?)"_s, {openOrder ? 1 : 2});
        if (failing) {
            query(s, u"DROP TABLE tblEquipmentDocument"_s);
        }
        EquipmentManager manager(s);
        QCOMPARE(manager.canDeleteEquipment(1), openOrder ? u"WorkOrder"_s : QString());
        QVERIFY(openOrder || manager.deleteRecord(1) != failing);
        QStringList machines;
        for (const QString& holder : Holders) {
            machines.append(query(s, holderSql("SELECT %2 FROM %1 ORDER BY %2", holder)));
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
        QTest::addRow("changed back") << false << u"5   North"_s << u"5/North;9"_s;
        QTest::addRow("empty entry") << false << u"  "_s << u"/;9"_s;
        QTest::addRow("quote kept") << false << u"7   O'Hara"_s << u"7/O'Hara;9"_s;
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
        Equipment e{.equipmentId = 1, .unitNo = u"U1"_s, .crewId = 5};
        QVERIFY(manager.saveRecord(e, true));
        e.crewId = 9;
        QVERIFY(assign ? manager.assignCrew(1, u"5   North"_s, entry, 9)
                       : manager.saveRecord(e, false,
                                            entry.isNull() ? std::nullopt : std::optional(entry)));
        const QString history =
            query(t.session(), u"SELECT CrewNumber, CrewDescription FROM "
                               "tblEquipmentCrewHistory WHERE EquipmentID = 1"_s);
        QCOMPARE(history + u';' + QString::number(manager.find(1)->crewId), after);
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestEquipmentManager)
#include "tst_equipmentmanager.moc"
