#include "CostCenterScreen.h"
#include "LocationScreen.h"
#include "MessageTexts.h"
#include "ScreenTest.h"
#include "SiteScreen.h"
#include "Sql.h"
#include "SupplierScreen.h"
#include "TestInstallation.h"

#include <QComboBox>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

// The rules of sites, locations, cost centres and suppliers are tested with their managers;
// this checks only that each screen wires its fields, lists and answers to them.
namespace {

/** Depot (site 1) holds Yard, where a mower stands; Parks pays for a service; Acme sells a part. */
void seed(Session& session)
{
    QSqlQuery q(session.db());
    for (const char* sql : {"INSERT INTO tblIndicator (ItemID, ParentId, ItemName, Show) VALUES "
                            "(901, 1, 'Land', -1), (902, 901, 'Ohio', -1)",
                            "INSERT INTO tblSite (SiteName, StateID) VALUES ('Depot', 0)",
                            "INSERT INTO tblLocation (LocationName, Site) VALUES ('Yard', 1)",
                            "INSERT INTO tblEquipment (EquipmentID, LocationID) VALUES (1, 1)",
                            "INSERT INTO tblCostCenter (Description, Budget) VALUES ('Parks', 0)",
                            "INSERT INTO tblServices (ServiceID, CostCenterID) VALUES (1, 1)",
                            "INSERT INTO tblSupplier (SupplierID, Name) VALUES (5, 'Acme')",
                            "INSERT INTO tblPart (PartID, SupplierID) VALUES ('P1', 5)"}) {
        Sql::exec(q, QString::fromLatin1(sql));
    }
}

void open(Session& session, const QString& name, RecordScreen::Mode mode)
{
    if (name == u"frmSite") {
        SiteScreen::showSiteDetail(session, mode, 0);
    } else if (name == u"frmLocation") {
        LocationScreen::showLocationDetail(session, mode, 0);
    } else if (name == u"frmCostCenter") {
        CostCenterScreen::showCostCenterDetail(session, mode, 0);
    } else {
        SupplierScreen::showSupplierDetail(session, mode, 0);
    }
}

/** The steps of perform, "cboX@n" that picks item n of a list, "txtX<text" typed from the start. */
void act(QWidget& screen, ScriptedPrompter& prompter, const QString& steps, const char* grid)
{
    for (const QString& step : steps.split(u'|')) {
        const QStringList pick = step.split(u'@');
        const QStringList typed = step.split(u'<');
        if (typed.size() == 2) {
            QLineEdit* edit = child(screen, typed[0].toLatin1().constData());
            QTest::keyClick(edit, Qt::Key_Home);
            QTest::keyClicks(edit, typed[1]);
        } else if (pick.size() == 2) {
            child<QComboBox>(screen, pick[0].toLatin1().constData())
                ->setCurrentIndex(pick[1].toInt());
        } else {
            perform(screen, prompter, step, grid);
        }
    }
}

} // namespace

class TestSiteScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void screensSaveRevertAndDeleteThroughTheirManagers_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<bool>("startAdding");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QStringList>("rows"); // key and the columns asked, by key
        const QString deleteQuestion = MessageTexts::DeleteQuestion;
        QTest::addRow("site") << u"frmSite"_s << false
                              << u"cmdAdd|cmdUpdate|txtSiteName+Annex|cboState@1|cmdUpdate|"
                                 "cmdNext|Yes|cmdDelete|txtSiteName+ X|No|cmdUpdate|cmdCancel"_s
                              << QStringList{u"Site Name should not be blank."_s, deleteQuestion,
                                             MessageTexts::recordInUse(u"tblLocation"_s),
                                             u"This will change Depot for all your tblLocation. "
                                             "Do you want to do this?"_s}
                              << u"tblSite:SiteID,SiteName,StateID"_s
                              << QStringList{u"1 Depot 0"_s, u"2 Annex 902"_s};
        QTest::addRow("location")
            << u"frmLocation"_s << false
            << u"cmdAdd|txtLocationName+Barn|cmdUpdate|cboSite@1|cmdUpdate|"
               "Yes|cmdDelete|Yes|cmdDelete|txtLocationName+s|No|cmdUpdate|cmdCancel"_s
            << QStringList{u"Site Name should not be blank."_s, deleteQuestion, deleteQuestion,
                           MessageTexts::recordInUse(u"Equipment"_s),
                           u"This will change Yard for all your Equipment. "
                           "Do you want to do this?"_s}
            << u"tblLocation:LocationID,LocationName,Site"_s << QStringList{u"1 Yard 1"_s};
        QTest::addRow("cost centre")
            << u"frmCostCenter"_s << false
            << u"cmdAdd|txtDescription+Roads|txtBudget+12.5|cmdUpdate|txtBudget+9|cmdCancel|"
               "cmdPrevious|txtDescription+ Z|Yes|cmdUpdate|cmdLast|Yes|cmdDelete"_s
            << QStringList{u"This will change Parks for all your Services. Do you want to do "
                           "this?"_s,
                           deleteQuestion}
            << u"tblCostCenter:CostCenterID,Description,Budget"_s << QStringList{u"1 Parks Z 0"_s};
        QTest::addRow("supplier, opened adding")
            << u"frmSupplier"_s << true
            << u"cmdUpdate|txtName+Bolt Co|txtPhone<5551234|cmdUpdate|cmdFirst|Yes|cmdDelete|"
               "cmdAdd|txtSupplierID=5|txtName+Dup|cmdUpdate|cmdCancel"_s
            << QStringList{u"Supplier Name should not be blank."_s, deleteQuestion,
                           MessageTexts::recordInUse(u"Part"_s), u"Supplier ID should be unique."_s}
            << u"tblSupplier:SupplierID,Name,Phone"_s
            << QStringList{u"5 Acme "_s, u"6 Bolt Co (555) 123-4"_s};
    }
    void screensSaveRevertAndDeleteThroughTheirManagers()
    {
        QFETCH(QString, screen);
        QFETCH(bool, startAdding);
        QFETCH(QString, steps);
        QFETCH(QStringList, messages);
        QFETCH(QString, table);
        QFETCH(QStringList, rows);
        TANDRILL_INSTALLATION(t);
        seed(t.session());
        const QByteArray name = screen.toLatin1();
        const QByteArray grid = u"grd"_s.toLatin1() + name.mid(3);
        onModal<RecordScreen>(name.constData(), [&](RecordScreen* shown) {
            act(*shown, t.prompter(), steps, grid.constData());
            QCOMPARE(shown->modeText(), u"B"_s);
            click(*shown, "cmdExit");
        });
        open(t.session(), screen,
             startAdding ? RecordScreen::Mode::Add : RecordScreen::Mode::Browse);
        QCOMPARE(t.prompter().texts(), messages);
        const QStringList where = table.split(u':');
        const QStringList columns = where[1].split(u',');
        QStringList stored;
        for (const QSqlRecord& row :
             DataHelpers::tableInfo(t.session(), where[0], {}, columns[0])) {
            QStringList values;
            for (const QString& column : columns) {
                values.append(row.value(column).toString());
            }
            stored.append(values.join(u' '));
        }
        QCOMPARE(stored, rows);
        QVERIFY(!t.session().transactionOpen());
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_MAIN(TestSiteScreens)
#include "tst_sitescreens.moc"
