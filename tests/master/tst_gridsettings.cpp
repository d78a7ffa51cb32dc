#include "GridSettings.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QTest>

namespace {

using Column = GridSettings::Column;
using Sort = GridSettings::SortType;

QString describe(const QList<Column>& columns)
{
    QStringList parts;
    for (const Column& c : columns) {
        parts.append(QStringLiteral("%1/%2/%3/%4")
                         .arg(c.fieldName)
                         .arg(c.width)
                         .arg(c.position)
                         .arg(int(c.sortType)));
    }
    return parts.join(u' ');
}

const QString Form = QStringLiteral("frmCrew");
const QString Table = QStringLiteral("tblCrew");

} // namespace

class TestGridSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void storedLayoutComesBackInDisplayedOrder()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(GridSettings::save(t.session(), Form, Table,
                                   {{QStringLiteral("Description"), 140, 1, Sort::Descending},
                                    {QStringLiteral("CrewID"), 0, 2, Sort::None},
                                    {QStringLiteral("CrewNumber"), 60, 0, Sort::None}}));
        QCOMPARE(describe(GridSettings::load(t.session(), Form, Table)),
                 QStringLiteral("CrewNumber/60/0/0 Description/140/1/2 CrewID/0/2/0"));
        // Form and table names are matched without regard to case.
        QCOMPARE(
            GridSettings::load(t.session(), QStringLiteral("FRMCREW"), QStringLiteral("tblcrew"))
                .size(),
            3);
        QVERIFY(t.failures().isEmpty());
    }

    void saveReplacesOnlyThatGrid()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(GridSettings::save(t.session(), Form, Table,
                                   {{QStringLiteral("CrewNumber"), 60, 0, Sort::None},
                                    {QStringLiteral("Description"), 90, 1, Sort::None}}));
        QVERIFY(GridSettings::save(t.session(), QStringLiteral("frmSite"),
                                   QStringLiteral("tblSite"),
                                   {{QStringLiteral("SiteName"), 70, 0, Sort::Ascending}}));
        QVERIFY(GridSettings::save(t.session(), Form, Table,
                                   {{QStringLiteral("Description"), 100, 0, Sort::Ascending}}));
        QCOMPARE(describe(GridSettings::load(t.session(), Form, Table)),
                 QStringLiteral("Description/100/0/1"));
        QCOMPARE(describe(GridSettings::load(t.session(), QStringLiteral("frmSite"),
                                             QStringLiteral("tblSite"))),
                 QStringLiteral("SiteName/70/0/1"));
    }

    void gridWithoutColumnsForgetsNothing()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(GridSettings::save(t.session(), Form, Table,
                                   {{QStringLiteral("CrewNumber"), 60, 0, Sort::None}}));
        QVERIFY(GridSettings::save(t.session(), Form, Table, {}));
        QCOMPARE(GridSettings::load(t.session(), Form, Table).size(), 1);
        QVERIFY(GridSettings::load(t.session(), QStringLiteral("frmNone"), Table).isEmpty());
    }

    void saveInsideAnOpenTransactionGoesWithIt()
    {
        TANDRILL_INSTALLATION(t);
        {
            Transaction edit(t.session());
            QVERIFY(GridSettings::save(t.session(), Form, Table,
                                       {{QStringLiteral("CrewNumber"), 60, 0, Sort::None}}));
            QVERIFY(t.session().transactionOpen());
        }
        QVERIFY(GridSettings::load(t.session(), Form, Table).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestGridSettings)
#include "tst_gridsettings.moc"
