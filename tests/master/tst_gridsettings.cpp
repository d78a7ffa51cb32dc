#include "GridSettings.h"
#include "TestInstallation.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Sort = GridSettings::SortType;

namespace {

/** The stored layout of a grid as "field/width/position/sort ...". */
QString stored(Session& session, const QString& form, const QString& table)
{
    QStringList parts;
    for (const GridSettings::Column& c : GridSettings::load(session, form, table)) {
        parts.append(
            u"%1/%2/%3/%4"_s.arg(c.fieldName).arg(c.width).arg(c.position).arg(int(c.sortType)));
    }
    return parts.join(u' ');
}

} // namespace

class TestGridSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void eachGridKeepsItsLastLayout()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const QString form = u"frmCrew"_s, table = u"tblCrew"_s;
        QVERIFY(GridSettings::save(s, u"frmSite"_s, u"tblSite"_s,
                                   {{u"SiteName"_s, 70, 0, Sort::Ascending}}));
        QVERIFY(GridSettings::save(s, form, table, {{u"Notes"_s, 60, 0, Sort::None}}));
        QVERIFY(GridSettings::save(s, form, table,
                                   {{u"Description"_s, 140, 1, Sort::Descending},
                                    {u"CrewID"_s, 0, 2, Sort::None},
                                    {u"CrewNumber"_s, 60, 0, Sort::None}}));
        QVERIFY(GridSettings::save(s, form, table, {})); // a grid without columns forgets nothing
        // In the displayed order; form and table names match without regard to case.
        QCOMPARE(stored(s, u"FRMCREW"_s, u"tblcrew"_s),
                 u"CrewNumber/60/0/0 Description/140/1/2 CrewID/0/2/0"_s);
        QCOMPARE(stored(s, u"frmSite"_s, u"tblSite"_s), u"SiteName/70/0/1"_s);
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestGridSettings)
#include "tst_gridsettings.moc"
