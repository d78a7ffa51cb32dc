#include "IndicatorManager.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

qint64 add(IndicatorManager& manager, qint64 parentId, const QString& name)
{
    Indicator item{parentId, 0, name};
    return manager.saveRecord(item, true) ? item.itemId : 0;
}

} // namespace

class TestIndicatorManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void itemsAreSavedListedAndDeleted()
    {
        TANDRILL_INSTALLATION(t);
        IndicatorManager manager(t.session());
        const QString name = u"ItemName"_s;
        const qint64 mower = add(manager, IndicatorList::EquipmentType, u"  Mower "_s);
        const qint64 truck = add(manager, IndicatorList::EquipmentType, u"Lorry"_s);
        const qint64 chipper = add(manager, IndicatorList::EquipmentType, u"chipper"_s);
        Indicator renamed{IndicatorList::EquipmentType, truck, u"Truck "_s};
        QVERIFY(manager.saveRecord(renamed, false) && manager.deleteRecord(chipper));
        add(manager, mower, u"Deere"_s);
        // Shown items reach the record screens' lists, which leave out the hidden ones.
        const Rows types =
            DataHelpers::indicatorInfo(t.session(), IndicatorList::EquipmentType, false, true);
        QVERIFY(types.size() == 2 && types[0].value(name) == u"Mower"_s);
        QCOMPARE(manager.item(truck)->itemName, u"Truck"_s);
        QCOMPARE(manager.parentChoices(IndicatorList::Model, mower, false).value(0).value(name),
                 u"Deere"_s);
        const Rows lists = manager.lists(); // by name, without the unused number 2
        QVERIFY(lists.size() == 16 && lists[2].value(name) == u"Engine Make"_s);
        add(manager, add(manager, IndicatorList::Country, u"New Zealand"_s), u"Ohio"_s);
        QVERIFY(manager.chkCountryExist(u"New Zealand"_s));
        QVERIFY(!manager.chkCountryExist(u"new zealand"_s) && !manager.chkCountryExist(u"Ohio"_s));
        QVERIFY(t.failures().isEmpty());
    }

    void checksBeforeSaving_data()
    {
        QTest::addColumn<qint64>("list");
        QTest::addColumn<qint64>("parent"); // -1: the type Mower
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("oldName");
        QTest::addColumn<QString>("message");
        const auto row = [](const char* tag, qint64 list, qint64 parent, const char* name,
                            const char* oldName, const QString& message) {
            QTest::addRow("%s", tag) << list << parent << QString::fromUtf8(name)
                                     << QString::fromUtf8(oldName) << message;
        };
        const QString duplicate = IndicatorManager::DuplicateMessage;
        row("blank name", 4, 4, "   ", "", u"Name should not be blank."_s);
        row("state without country", 11, 0, "Ohio", "", u"Country should not be blank."_s);
        row("taken name on rename", 4, 4, " mOWER", "Truck", duplicate);
        row("own name kept", 4, 4, "mower", "Mower", QString());
        row("name of another parent's item", 7, -1, "Mower", "", QString());
        row("duplicate under its type", 7, -1, "deere", "", duplicate);
    }

    void checksBeforeSaving()
    {
        QFETCH(qint64, list);
        QFETCH(qint64, parent);
        QFETCH(QString, name);
        QFETCH(QString, oldName);
        QFETCH(QString, message);
        TANDRILL_INSTALLATION(t);
        IndicatorManager manager(t.session());
        const qint64 mower = add(manager, IndicatorList::EquipmentType, u"Mower"_s);
        add(manager, mower, u"Deere"_s);
        add(manager, add(manager, IndicatorList::EquipmentType, u"Loader"_s), u"Mower"_s);
        const Indicator item{parent < 0 ? mower : parent, 0, name};
        const auto problem = manager.validate(item, list, oldName);
        QCOMPARE(problem ? problem->message : QString(), message);
        QCOMPARE(problem && problem->field == IndicatorProblem::Field::Parent,
                 message.startsWith(IndicatorList::parentCaption(list) + u' '));
    }

    void firstUseIsTold_data()
    {
        QTest::addColumn<QStringList>("uses"); // rows inserted with the item's id, in order
        QTest::addColumn<QString>("usedIn");
        const QString part = u"tblPart (PartID, PartCategoryID) VALUES ('P1', ?)"_s;
        const QString trans = u"tblEquipment (EquipmentID, Trans) VALUES (1, ?)"_s;
        QTest::addRow("free") << QStringList() << QString();
        QTest::addRow("children before users")
            << QStringList{u"tblEmployee (EmployeeID, Country) VALUES ('E1', ?)"_s,
                           u"tblIndicator (ParentId, ItemName) VALUES (?, 'Ohio')"_s}
            << u"Model/State"_s;
        QTest::addRow("crew with the same id")
            << QStringList{u"tblServices (ServiceID, CrewID) VALUES (1, ?)"_s} << u"Services"_s;
        QTest::addRow("earlier step wins") << QStringList{trans, part} << u"Part"_s;
    }

    void firstUseIsTold()
    {
        QFETCH(QStringList, uses);
        QFETCH(QString, usedIn);
        TANDRILL_INSTALLATION(t);
        IndicatorManager manager(t.session());
        const qint64 id = add(manager, IndicatorList::Country, u"USA"_s);
        QSqlQuery q(t.session().db());
        for (const QString& use : uses) {
            QVERIFY(Sql::exec(q, u"INSERT INTO "_s + use, {id}));
        }
        QCOMPARE(manager.canDeleteIndicator(id), usedIn);
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestIndicatorManager)
#include "tst_indicatormanager.moc"
