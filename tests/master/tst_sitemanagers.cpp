#include "CostCenterManager.h"
#include "LocationManager.h"
#include "SiteManager.h"
#include "Sql.h"
#include "StateList.h"
#include "SupplierManager.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** One record of the kind, made through its manager; its key. */
qint64 addRecord(Session& session, const QString& kind)
{
    if (kind == u"site") {
        Site site{0, u"North yard"_s, u"1 Elm St"_s, u"Ayr"_s, 0, u"123"_s};
        return SiteManager(session).saveRecord(site, true) ? site.siteId : -1;
    }
    if (kind == u"location") {
        Location location{0, u"Shed"_s, {}, 1};
        return LocationManager(session).saveRecord(location, true) ? location.locationId : -1;
    }
    if (kind == u"cost centre") {
        CostCenter center{0, u"Parks"_s, 1500.5};
        return CostCenterManager(session).saveRecord(center, true) ? center.costCenterId : -1;
    }
    Supplier supplier;
    supplier.supplierId = 7;
    supplier.name = u"Acme"_s;
    return SupplierManager(session).saveRecord(supplier, true) ? supplier.supplierId : -1;
}

QString canDelete(Session& session, const QString& kind, qint64 id)
{
    if (kind == u"site") {
        return SiteManager(session).canDeleteSite(id);
    }
    if (kind == u"location") {
        return LocationManager(session).canDeleteLocation(id);
    }
    if (kind == u"cost centre") {
        return CostCenterManager(session).canDeleteCostCenter(id);
    }
    return SupplierManager(session).canDeleteSupplier(id);
}

QStringList column(const Rows& rows, const QString& name)
{
    QStringList values;
    for (const QSqlRecord& row : rows) {
        values.append(row.value(name).toString());
    }
    return values;
}

} // namespace

class TestSiteManagers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void canDeleteNamesTheFirstUse_data()
    {
        QTest::addColumn<QString>("kind");
        // Uses added one by one, each outranking the ones before it, with the answer after each.
        QTest::addColumn<QStringList>("uses");
        QTest::addColumn<QStringList>("answers");
        QTest::addRow("site") << u"site"_s
                              << QStringList{u"tblEmployee (EmployeeID, Site) VALUES ('E1', ?)"_s,
                                             u"tblEquipment (EquipmentID, SiteID) VALUES (1, ?)"_s,
                                             u"tblLocation (LocationName, Site) VALUES ('A', ?)"_s}
                              << QStringList{u"tblEmployee"_s, u"tblEquipment"_s, u"tblLocation"_s};
        QTest::addRow("location")
            << u"location"_s
            << QStringList{u"tblEquipment (EquipmentID, LocationID) VALUES (1, ?)"_s}
            << QStringList{u"Equipment"_s};
        QTest::addRow("cost centre, copies on equipment do not count")
            << u"cost centre"_s
            << QStringList{u"tblServiceUsed (CostCenterID) VALUES (?)"_s,
                           u"tblServices (ServiceID, CostCenterID) VALUES (1, ?)"_s}
            << QStringList{QString(), u"Services"_s};
        QTest::addRow("supplier")
            << u"supplier"_s
            << QStringList{u"tblPart (PartID, SupplierID) VALUES ('P1', ?)"_s,
                           u"tblEquipment (EquipmentID, SupplierID) VALUES (1, ?)"_s}
            << QStringList{u"Part"_s, u"Equipment"_s};
    }
    void canDeleteNamesTheFirstUse()
    {
        QFETCH(QString, kind);
        QFETCH(QStringList, uses);
        QFETCH(QStringList, answers);
        TANDRILL_INSTALLATION(t);
        const qint64 id = addRecord(t.session(), kind);
        QVERIFY(id > 0);
        QCOMPARE(canDelete(t.session(), kind, id), QString());
        QSqlQuery q(t.session().db());
        QStringList given;
        for (const QString& use : uses) {
            QVERIFY(Sql::exec(q, u"INSERT INTO "_s + use, {id}));
            given.append(canDelete(t.session(), kind, id));
        }
        QCOMPARE(given, answers);
        QCOMPARE(canDelete(t.session(), kind, id + 1), QString());
        QVERIFY(t.failures().isEmpty());
    }

    void savedRecordsReadBackInOrder()
    {
        TANDRILL_INSTALLATION(t);
        SiteManager sites(t.session());
        Site north{0, u"North"_s, u"O'Hara Rd"_s, {}, 0, {}}, east{0, u"East"_s, {}, {}, 0, {}};
        QVERIFY(sites.saveRecord(north, true) && sites.saveRecord(east, true));
        north.siteName = u"West"_s;
        north.stateId = 12;
        QVERIFY(sites.saveRecord(north, false));
        QCOMPARE(column(sites.list(), u"SiteName"_s), (QStringList{u"East"_s, u"West"_s}));
        QCOMPARE(sites.list()[1].value(u"StateID"_s).toLongLong(), 12);

        LocationManager locations(t.session());
        Location shed{0, u"Shed"_s, u"by the gate"_s, north.siteId};
        Location barn{0, u"Barn"_s, {}, east.siteId};
        QVERIFY(locations.saveRecord(shed, true) && locations.saveRecord(barn, true));
        shed.site = east.siteId;
        QVERIFY(locations.saveRecord(shed, false) && locations.deleteRecord(barn.locationId));
        QCOMPARE(column(locations.list(), u"Site"_s), QStringList{QString::number(east.siteId)});
        QCOMPARE(column(locations.sites(), u"SiteName"_s), (QStringList{u"East"_s, u"West"_s}));

        CostCenterManager centers(t.session());
        CostCenter parks{0, u"Parks"_s, 10}, roads{0, u"Roads"_s, 0};
        QVERIFY(centers.saveRecord(parks, true) && centers.saveRecord(roads, true));
        parks.budget = 2500.75;
        QVERIFY(centers.saveRecord(parks, false) && centers.deleteRecord(roads.costCenterId));
        QCOMPARE(centers.list()[0].value(u"Budget"_s).toDouble(), 2500.75);
        QCOMPARE(centers.list().size(), 1);
        QVERIFY(sites.deleteRecord(east.siteId));
        QCOMPARE(column(sites.list(), u"SiteName"_s), QStringList{u"West"_s});
        QVERIFY(t.failures().isEmpty());
    }

    void supplierPhonesAndIds_data()
    {
        QTest::addColumn<QString>("phone");
        QTest::addColumn<QString>("stored");
        QTest::addRow("mask left empty") << u"(   )    -            "_s << QString();
        QTest::addRow("mask as an edit gives it") << u"() -"_s << QString();
        QTest::addRow("a number") << u"(555) 123-4567      "_s << u"(555) 123-4567      "_s;
    }
    void supplierPhonesAndIds()
    {
        QFETCH(QString, phone);
        QFETCH(QString, stored);
        TANDRILL_INSTALLATION(t);
        SupplierManager suppliers(t.session());
        QCOMPARE(suppliers.generateId(), 1);
        Supplier supplier;
        supplier.supplierId = 41;
        supplier.name = u"Acme"_s;
        QVERIFY(suppliers.saveRecord(supplier, true));
        QCOMPARE(suppliers.generateId(), 42);
        supplier.phone = supplier.fax = phone;
        supplier.creditLimit = 99.5;
        QVERIFY(suppliers.saveRecord(supplier, false));
        const QSqlRecord row = suppliers.list().value(0);
        QCOMPARE(row.value(u"Phone"_s).toString() + u'|' + row.value(u"Fax"_s).toString(),
                 stored + u'|' + stored);
        QCOMPARE(row.value(u"CreditLimit"_s).toDouble(), 99.5);
        // A taken id is refused by the table, reported, and leaves the first supplier as it was.
        QVERIFY(!suppliers.saveRecord(supplier, true));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].module, u"clsSupplier_Manager"_s);
        QVERIFY(suppliers.deleteRecord(41));
        QCOMPARE(suppliers.list().size(), 0);
    }

    void statesAreEveryCountrysByName()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblIndicator (ItemID, ParentId, ItemName, Show) "
                             "VALUES (901, 1, 'Land', -1), (902, 1, 'Other land', -1), "
                             "(903, 901, 'zeta', -1), (904, 902, 'Alpha', 0), "
                             "(905, 3, 'Foreman', -1), (906, 905, 'Beta', -1)"_s));
        QCOMPARE(column(StateList::allStates(t.session()), u"ItemName"_s),
                 (QStringList{u"Alpha"_s, u"zeta"_s}));
    }
};

QTEST_GUILESS_MAIN(TestSiteManagers)
#include "tst_sitemanagers.moc"
