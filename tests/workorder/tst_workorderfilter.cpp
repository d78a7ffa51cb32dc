#include "CrewRange.h"
#include "TestInstallation.h"
#include "WorkOrderFilter.h"

#include <QTest>

using namespace Qt::StringLiterals;

/** The crew ranges, the filter they make and its remembered settings. */
class TestWorkOrderFilter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void condition_data()
    {
        QTest::addColumn<QString>("crew");
        QTest::addColumn<QString>("assign");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QVariantList>("crews");
        const QString c = u"tblCrew.CrewNumber"_s;
        QTest::newRow("the worked case")
            << u"3,7-9"_s << QString() << u"((%1 = ?) Or (%1 >= ? And %1 <= ?)) And "_s.arg(c)
            << QVariantList{3, 7, 9};
        QTest::newRow("a trailing comma")
            << u"5,"_s << QString() << u"((%1 = ?)) And "_s.arg(c) << QVariantList{5};
        QTest::newRow("an open range adds nothing")
            << u"7-"_s << QString() << QString() << QVariantList{};
        QTest::newRow("a third bound ends the range")
            << u"1-2-3,8"_s << QString() << u"((%1 >= ? And %1 <= ?)) And "_s.arg(c)
            << QVariantList{1, 2};
        QTest::newRow("a blank piece ends the range")
            << u"4, ,9"_s << QString() << u"((%1 = ?)) And "_s.arg(c) << QVariantList{4};
        QTest::newRow("assign crew in front")
            << u"2"_s << u"6-8"_s
            << u"((Ecrew.CrewNumber >= ? And Ecrew.CrewNumber <= ?)) And ((%1 = ?)) And "_s.arg(c)
            << QVariantList{6, 8, 2};
    }
    void condition()
    {
        QFETCH(QString, crew);
        QFETCH(QString, assign);
        QFETCH(QString, where);
        QFETCH(QVariantList, crews);
        WorkOrderFilter filter{QDate(2006, 5, 1), QDate(2006, 5, 31), crew, assign, false};
        const SqlFilter f = filter.condition(QString(), true);
        QCOMPARE(f.where, where + u"(NextScheduledDate >= ? and NextScheduledDate <= ?)"_s);
        QCOMPARE(f.values, crews + QVariantList({u"2006-05-01"_s, u"2006-05-31"_s}));
        // Without the flag the assign crew range has no part in it.
        QVERIFY(!filter.condition(QString(), false).where.contains(u"Ecrew"_s));
    }

    void keyFilter_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("valid");
        QTest::newRow("numbers and ranges") << u"3,7-9,12"_s << true;
        QTest::newRow("leading comma") << u",5"_s << false;
        QTest::newRow("two separators") << u"5,-6"_s << false;
        QTest::newRow("a letter") << u"5a"_s << false;
        QTest::newRow("a blank") << u"5, 6"_s << false;
    }
    void keyFilter()
    {
        QFETCH(QString, typed);
        QFETCH(bool, valid);
        QCOMPARE(CrewRange::isValid(typed), valid);
    }

    void settingsAreRememberedPerWorkstation()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        const WorkOrderFilter blank = WorkOrderFilter::load(s);
        QCOMPARE(QList<QDate>({blank.from, blank.to}), QList<QDate>({s.today(), s.today()}));
        const WorkOrderFilter kept{QDate(2025, 1, 2), QDate(2025, 2, 3), u"1-4"_s, u"9"_s, true};
        kept.save(s);
        const WorkOrderFilter read = WorkOrderFilter::load(s);
        QCOMPARE(QVariantList({read.from, read.to, read.crewRange, read.assignCrew, read.group}),
                 QVariantList({kept.from, kept.to, kept.crewRange, kept.assignCrew, true}));
    }
};

QTEST_GUILESS_MAIN(TestWorkOrderFilter)
#include "tst_workorderfilter.moc"
