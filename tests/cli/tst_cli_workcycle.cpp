#include "CliHome.h"
#include "TestInstallation.h"

#include <QTest>

using namespace Qt::StringLiterals;

/** A month of work on the demo fleet, from generation to posting, through the command line. */
class TestCliWorkCycle : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void postedWorkMovesHistoryScheduleReadingsAndStock()
    {
        const QDate start(2025, 3, 1);
        const QDate done(2025, 3, 12);
        const QString doneText = done.toString(Qt::ISODate);
        TANDRILL_CLI_HOME(h, {u"--demo"_s, u"--password=x"_s}, start);
        const auto run = [&h, done](const QStringList& words) { return h.run(words, done); };
        const auto value = [&h](const QString& statement) { return h.value(statement); };
        const auto of = [&value](const QString& column, const QString& table, const QString& key,
                                 const QString& id) {
            return value(u"SELECT %1 FROM %2 WHERE %3 = %4"_s.arg(column, table, key, id));
        };
        QVERIFY(h.run({u"generate"_s, u"--from=2025-03-01"_s, u"--to=2025-03-31"_s}, start)
                    .out.count(u'\n') > 10);

        // A line with one part that no other posted line uses (those of the rule on v), so
        // that the stock tells this line's use alone.
        const auto pick = [&value](const QString& lineRule, const QString& postedWith) {
            return value(
                u"SELECT MIN(w.NserviceUsedID) FROM tblWoServiceUsed w JOIN tblServiceUsed s "
                "ON s.ServiceUsedID = w.ServiceUsedID JOIN tblWoPartUsed p "
                "ON p.ServiceUsedID = w.NserviceUsedID WHERE %1 AND (SELECT COUNT(*) FROM "
                "tblWoPartUsed q WHERE q.ServiceUsedID = w.NserviceUsedID) = 1 AND NOT EXISTS "
                "(SELECT 1 FROM tblWoPartUsed q JOIN tblWoServiceUsed v ON v.NserviceUsedID = "
                "q.ServiceUsedID WHERE q.PartID = p.PartID AND v.NserviceUsedID <> "
                "w.NserviceUsedID AND (%2))"_s.arg(lineRule, postedWith));
        };
        const auto orderOf = [&of](const QString& id) {
            return of(u"WorkOrderNo"_s, u"tblWoServiceUsed"_s, u"NserviceUsedID"_s, id);
        };
        // Lines are named by their own key; tblWoServiceUsed.ServiceUsedID is their schedule.
        const QString meter = pick(u"s.RenewalOn = 'W' AND w.Period = 'H'"_s, u"1 = 0"_s);
        const QString meterOrder = orderOf(meter);
        // The skipped line shares its order with lines left open, which stay after the post.
        const QString skipped =
            pick(u"s.RenewalOn = 'S' AND w.Period IN ('D', 'W', 'M', 'Y') AND w.WorkOrderNo <> "
                 "%1 AND (SELECT COUNT(*) FROM tblWoServiceUsed m WHERE m.WorkOrderNo = "
                 "w.WorkOrderNo) > 1"_s.arg(meterOrder),
                 u"v.NserviceUsedID = "_s + meter);
        const QString skippedOrder = orderOf(skipped);
        const QString calendar = pick(
            u"s.RenewalOn = 'W' AND w.Period IN ('D', 'W', 'M', 'Y') AND w.WorkOrderNo NOT IN (%1, "
            "%2) AND NOT EXISTS (SELECT 1 FROM tblWoServiceUsed m WHERE m.WorkOrderNo = "
            "w.WorkOrderNo AND m.Period IN ('C', 'H', 'K', 'I'))"_s.arg(meterOrder, skippedOrder),
            u"v.WorkOrderNo = w.WorkOrderNo OR v.NserviceUsedID IN (%1, %2)"_s.arg(meter, skipped));
        QVERIFY2(!meter.isEmpty() && !calendar.isEmpty() && !skipped.isEmpty(),
                 qPrintable(meter + u'/' + calendar + u'/' + skipped));
        const QString calendarOrder = orderOf(calendar);

        struct Line
        {
            QString schedule, part, stock, oldNext;
        };
        QHash<QString, Line> lines;
        for (const QString& id : {meter, calendar, skipped}) {
            Line& l = lines[id];
            l.schedule = of(u"ServiceUsedID"_s, u"tblWoServiceUsed"_s, u"NserviceUsedID"_s, id);
            l.part = of(u"PartID"_s, u"tblWoPartUsed"_s, u"ServiceUsedID"_s, id);
            l.stock = of(u"Quantity"_s, u"tblPart"_s, u"PartID"_s, u"'%1'"_s.arg(l.part));
            l.oldNext = of(u"NextScheduledDate"_s, u"tblWoServiceUsed"_s, u"NserviceUsedID"_s, id);
        }
        const QString machine =
            of(u"EquipmentID"_s, u"tblWoServiceUsed"_s, u"NserviceUsedID"_s, meter);
        const int count = value(u"SELECT MAX(CountValue) FROM tblEquipmentCount WHERE "
                                "CountType = 'Hours' AND EquipmentID = "_s +
                                machine)
                              .toInt() +
                          37;
        const auto nextDate = [&run](const QString& schedule, const QString& given) {
            return run({u"next-date"_s, schedule, u"--given"_s, given}).out.trimmed();
        };
        const QString calendarNext = nextDate(lines[calendar].schedule, doneText);
        const QString skippedNext =
            qMax(nextDate(lines[skipped].schedule, lines[skipped].oldNext), doneText);

        for (const QString& words :
             {u"wo complete %1 --date %2"_s.arg(calendarOrder, doneText),
              u"wo part %1 %2 --qty 3"_s.arg(calendar, lines[calendar].part),
              u"wo line %1 --count %2"_s.arg(meter).arg(count),
              u"wo line %1 --complete"_s.arg(meter), u"wo line %1 --skip rain"_s.arg(skipped)}) {
            const CliResult r = run(words.split(u' '));
            QVERIFY2(r.code == 0, qPrintable(words + u": "_s + r.err));
        }
        const CliResult posted = run({u"post"_s});
        QVERIFY2(posted.code == 0 && posted.out.endsWith(u"Held back: none\n"_s),
                 qPrintable(posted.out + posted.err));

        // History: one row for each line, with its parts, keyed by the line's own key.
        const auto history = [&value](const QString& id, const QString& columns) {
            return value(
                u"SELECT %1 FROM tblWOServiceUsedHistory s JOIN tblWoPartHistory p ON "
                "p.ServiceusedID = s.ServiceUsedID WHERE s.ServiceUsedID = %2"_s.arg(columns, id));
        };
        const QList<QStringList> expected = {{calendar, u"s.Skip"_s, u"0"_s},
                                             {calendar, u"s.CompleteDate"_s, doneText},
                                             {calendar, u"p.QuantityUsed"_s, u"3"_s},
                                             {meter, u"s.CountValue"_s, QString::number(count)},
                                             {skipped, u"s.Skip"_s, u"-1"_s},
                                             {skipped, u"s.Note"_s, u"rain"_s},
                                             {skipped, u"p.QuantityUsed"_s, u"0"_s}};
        for (const QStringList& e : expected) {
            // Numbers compared as numbers: the engines print 3 and 3.0.
            const QString got = history(e[0], e[1]);
            bool number = false;
            const double n = got.toDouble(&number);
            QCOMPARE(number ? QString::number(n) : got, e[2]);
        }

        // Schedules: W from the completed date, S from the old date, a meter by its count.
        const auto schedule = [&of, &lines](const QString& id, const QString& column) {
            return of(column, u"tblServiceUsed"_s, u"ServiceUsedID"_s, lines[id].schedule);
        };
        QCOMPARE(schedule(calendar, u"NextScheduledDate"_s), calendarNext);
        QCOMPARE(schedule(skipped, u"NextScheduledDate"_s), skippedNext);
        for (const QString& id : {meter, calendar, skipped}) {
            QCOMPARE(schedule(id, u"LastDatePerformed"_s), doneText);
            QCOMPARE(schedule(id, u"LastDateScheduled"_s), lines[id].oldNext);
        }
        QCOMPARE(schedule(meter, u"NextScheduledDate"_s), QString());
        QCOMPARE(schedule(meter, u"NextScheduledCount"_s).toInt(),
                 count + schedule(meter, u"Einterval"_s).toInt());
        QCOMPARE(value(u"SELECT COUNT(*) FROM tblEquipmentCount WHERE CountType = 'Hours' AND "
                       "ChangeDate = '%1' AND CountValue = %2 AND EquipmentID = %3"_s.arg(doneText)
                           .arg(count)
                           .arg(machine)),
                 u"1"_s);

        // Stock: only the used part leaves it; the skipped and untouched ones stay.
        const auto stock = [&of, &lines](const QString& id) {
            return of(u"Quantity"_s, u"tblPart"_s, u"PartID"_s, u"'%1'"_s.arg(lines[id].part))
                .toDouble();
        };
        QCOMPARE(stock(calendar), lines[calendar].stock.toDouble() - 3);
        QCOMPARE(stock(skipped), lines[skipped].stock.toDouble());

        // Posted lines and emptied orders are gone; an order with open lines is open again.
        QCOMPARE(value(u"SELECT COUNT(*) FROM tblWoServiceUsed WHERE NserviceUsedID IN "
                       "(%1, %2, %3)"_s.arg(meter, calendar, skipped)),
                 u"0"_s);
        QCOMPARE(value(u"SELECT COUNT(*) FROM tblWorkorder WHERE WorkOrderNo = "_s + calendarOrder),
                 u"0"_s);
        QCOMPARE(
            value(u"SELECT SUM(Complete) FROM tblWorkorder WHERE WorkOrderNo IN (%1, %2)"_s.arg(
                meterOrder, skippedOrder)),
            u"0"_s);
    }
};

QTEST_GUILESS_MAIN(TestCliWorkCycle)
#include "tst_cli_workcycle.moc"
