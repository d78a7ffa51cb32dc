#include "Lateness.h"
#include "Options.h"
#include "OverdueBoard.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"
#include "WorkOrderFilter.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;
using Lateness::Colour;

/** The overdue board's two groups and the lateness colouring of due lines. */
class TestOverdueBoard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void windowOfThirtyDaysAndOpenOrders_data()
    {
        QTest::addColumn<QTime>("time");
        QTest::addColumn<QStringList>("board");
        const QStringList day = {u"A1 - Mower|"_s, u"A1 - Mower|5"_s, u"B2 - Truck|6"_s};
        QTest::addRow("during the day") << QTime(10, 0) << day;
        QTest::addRow("at midnight the 30th day back is in")
            << QTime(0, 0) << day + QStringList{u"C3 - Trailer|"_s};
    }
    void windowOfThirtyDaysAndOpenOrders()
    {
        QFETCH(QTime, time);
        QFETCH(QStringList, board);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QSqlQuery q(s.db());
        const QDate today = s.today();
        const auto day = [today](int days) { return SqlValue::date(today.addDays(days)); };
        // A1: due today and 29 days back (one row); B2: a service on an open order and one
        // 31 days back; C3: due 30 days back; D4: inactive, and its order completed.
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblEquipment (EquipmentID, UnitNo, EquipmentName) VALUES "
                          "(1, 'A1', 'Mower'), (2, 'B2', 'Truck'), (3, 'C3', 'Trailer'), "
                          "(4, 'D4', 'Van')"_s));
        QVERIFY(
            Sql::exec(q,
                      u"INSERT INTO tblServiceUsed (ServiceUsedID, EquipmentID, NextScheduledDate, "
                      "Inactive) VALUES (1, 1, ?, 0), (2, 1, ?, 0), (3, 2, ?, 0), (4, 2, ?, 0), "
                      "(5, 3, ?, 0), (6, 4, ?, 1), (7, 1, ?, 0)"_s,
                      {day(0), day(-29), day(0), day(-31), day(-30), day(0), day(1)}));
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID, CompletedDate) "
                          "VALUES (5, 1, NULL), (6, 2, NULL), (7, 4, ?)"_s,
                          {day(0)}));
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblWoServiceUsed (WorkOrderNo, ServiceUsedID, EquipmentID) "
                          "VALUES (6, 3, 2), (6, 0, 2)"_s));
        QStringList shown;
        for (const OverdueBoard::Row& row : OverdueBoard(s).loadData(QDateTime(today, time))) {
            shown.append(row.unit + u'|' + row.workOrderNo.toString());
        }
        QCOMPARE(shown, board);
        QVERIFY(t.failures().isEmpty());
    }

    void linkOfAnOverdueRowRemembersTheWindow()
    {
        TANDRILL_INSTALLATION(t);
        QCOMPARE(OverdueBoard(t.session()).preparePrintFilter(u"AB-7 - Mower"_s), u"A"_s);
        const WorkOrderFilter window = WorkOrderFilter::load(t.session());
        QCOMPARE(window.to, t.session().today());
        QCOMPARE(window.from, t.session().today().addDays(-30));
        QCOMPARE(OverdueBoard::unitNoOf(u"U12 - Truck"_s), u"U12"_s);
    }

    void lateness_data()
    {
        QTest::addColumn<QString>("red");
        QTest::addColumn<QString>("yellow");
        QTest::addColumn<int>("daysLate");
        QTest::addColumn<int>("colour");
        QTest::addRow("red from its threshold") << u"10"_s << u"5"_s << 10 << int(Colour::Red);
        QTest::addRow("between yellow and red: none")
            << u"10"_s << u"5"_s << 7 << int(Colour::None);
        QTest::addRow("red set, yellow never") << u"10"_s << u"0"_s << 9 << int(Colour::None);
        QTest::addRow("blank red: yellow") << u" "_s << u"5"_s << 7 << int(Colour::Yellow);
        QTest::addRow("yellow from its threshold") << u""_s << u"5"_s << 5 << int(Colour::Yellow);
    }
    void lateness()
    {
        QFETCH(QString, red);
        QFETCH(QString, yellow);
        QFETCH(int, daysLate);
        QFETCH(int, colour);
        TANDRILL_INSTALLATION(t);
        Options::setOption(t.session(), u"SERVICE_LATE_RED"_s, red);
        Options::setOption(t.session(), u"SERVICE_LATE_YELLOW"_s, yellow);
        const QDate today = t.session().today();
        QCOMPARE(
            Lateness::colour(today.addDays(-daysLate), today, Lateness::thresholds(t.session())),
            Colour(colour));
    }
};

QTEST_MAIN(TestOverdueBoard)
#include "tst_overdueboard.moc"
