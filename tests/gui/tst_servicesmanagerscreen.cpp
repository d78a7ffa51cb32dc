#include "ScreenTest.h"
#include "ServicesManagerScreen.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QRadioButton>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

class TestServicesManagerScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void pickerLeavesOutWhatTheMachineHasAndReturnsTheTicked()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        Sql::exec(q, u"INSERT INTO tblServices (ServiceID, JobNo, Name) VALUES "
                     "(100, '1', 'Oil'), (200, '2', 'Belt'), (300, '3', 'Blades')"_s);
        QStringList offered;
        onModal<ServicesManagerScreen>("frmServicesManager", [&](ServicesManagerScreen* screen) {
            auto* grid = child<QTableWidget>(*screen, "grdServices");
            for (int r = 0; r < grid->rowCount(); ++r) {
                offered.append(grid->item(r, 3)->text());
            }
            grid->item(1, 0)->setCheckState(Qt::Checked);
            click(*screen, "cmdSelect");
        });
        const auto pick = ServicesManagerScreen::pickServices(t.session(), {200}, 7, nullptr);
        QCOMPARE(offered, (QStringList{u"Oil"_s, u"Blades"_s}));
        QVERIFY(pick.has_value());
        QCOMPARE(pick->ids, QList<qint64>{300});
        QCOMPARE(pick->source, u"SL"_s);
    }

    void forAWorkOrderTheMachineOffersItsOwnServicesByTheirSchedule()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        Sql::exec(q, u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, ServiceID, JobNo, "
                     "Name) VALUES (41, 7, 100, '1', 'Oil'), (42, 7, 200, '2', 'Belt'), "
                     "(43, 8, 300, '3', 'Blades')"_s);
        QString caption;
        onModal<ServicesManagerScreen>("frmServicesManager", [&](ServicesManagerScreen* screen) {
            caption = child<QRadioButton>(*screen, "optEquipmentService")->text();
            QTest::mouseClick(child<QRadioButton>(*screen, "optEquipmentService"), Qt::LeftButton);
            auto* grid = child<QTableWidget>(*screen, "grdServices");
            grid->item(0, 0)->setCheckState(Qt::Checked);
            click(*screen, "cmdSelect");
        });
        const auto pick = ServicesManagerScreen::pickServices(
            t.session(), {100}, 7, nullptr, ServicesManagerScreen::Machines::This);
        QCOMPARE(caption, u"This Equipment's Service List"_s);
        QVERIFY(pick.has_value());
        QCOMPARE(pick->ids, QList<qint64>{42});
        QCOMPARE(pick->source, u"EL"_s);
    }
};

QTEST_MAIN(TestServicesManagerScreen)
#include "tst_servicesmanagerscreen.moc"
