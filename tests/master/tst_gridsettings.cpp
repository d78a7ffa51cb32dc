#include "GridSettings.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QTest>

namespace {

using Sort = GridSettings::SortType;

const QString Form = QStringLiteral("frmCrew");
const QString Table = QStringLiteral("tblCrew");

/** The stored layout of a grid as "field/width/position/sort ...". */
QString stored(Session& session, const QString& form = Form, const QString& table = Table)
{
    QStringList parts;
    for (const GridSettings::Column& c : GridSettings::load(session, form, table)) {
        parts.append(QStringLiteral("%1/%2/%3/%4")
                         .arg(c.fieldName)
                         .arg(c.width)
                         .arg(c.position)
                         .arg(int(c.sortType)));
    }
    return parts.join(u' ');
}

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
        const QString expected =
            QStringLiteral("CrewNumber/60/0/0 Description/140/1/2 CrewID/0/2/0");
        QCOMPARE(stored(t.session()), expected);
        // Form and table names are matched without regard to case.
        QCOMPARE(stored(t.session(), QStringLiteral("FRMCREW"), QStringLiteral("tblcrew")),
                 expected);
        QVERIFY(t.failures().isEmpty());
    }

    void saveReplacesOnlyThatGridAndNeverWithNothing()
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
        QCOMPARE(stored(t.session()), QStringLiteral("Description/100/0/1"));
        QCOMPARE(stored(t.session(), QStringLiteral("frmSite"), QStringLiteral("tblSite")),
                 QStringLiteral("SiteName/70/0/1"));
        // A grid without columns forgets nothing.
        QVERIFY(GridSettings::save(t.session(), Form, Table, {}));
        QCOMPARE(stored(t.session()), QStringLiteral("Description/100/0/1"));
        QVERIFY(stored(t.session(), QStringLiteral("frmNone")).isEmpty());
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
        QVERIFY(stored(t.session()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestGridSettings)
#include "tst_gridsettings.moc"
