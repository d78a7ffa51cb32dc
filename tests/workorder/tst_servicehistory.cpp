#include "ServiceHistory.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;
using Cell = ServiceHistory::Cell;

namespace {

QVariant sql(Session& s, const QString& text, const QVariantList& values = {})
{
    QSqlQuery q(s.db());
    const bool ok = Sql::exec(q, text, values);
    return !ok ? QVariant() : !q.next() ? QVariant(true) : q.isNull(0) ? QVariant() : q.value(0);
}

/** Machine 7 with history rows 11 (09:00-17:00, crew 1, 2 hours, two parts) and 12. */
bool addHistory(Session& s)
{
    const QVariantList dates{SqlValue::date({2025, 2, 1}), SqlValue::date({2025, 2, 20})};
    return sql(s, u"INSERT INTO tblCrew (CrewID, CrewNumber) VALUES (1, 10), (2, 20)"_s)
               .isValid() &&
           sql(s, u"INSERT INTO tblEmployee (EmployeeID, Crew, LaborCost, Inactive, "
                  "IncludeWoList) VALUES ('a', 2, 30, '0', '1')"_s)
               .isValid() &&
           sql(s,
               u"INSERT INTO tblWOServiceUsedHistory (WorkOrderNo, ServiceUsedID, EquipmentID, "
               "ServiceName, CrewID, LaborEstimate, CostEstimate, StartTime, EndTime, "
               "CountValue, CompleteDate) VALUES (5, 11, 7, 'Oil', 1, 2, 40, '09:00', "
               "'17:00', 300, ?), (5, 12, 7, 'Belt', 1, 1, 5, NULL, NULL, NULL, ?)"_s,
               dates)
               .isValid() &&
           sql(s, u"INSERT INTO tblWoPartHistory (ServiceusedID, PartID, QuantityUsed, Price) "
                  "VALUES (11, 'P1', 2, 1.5), (11, 'P2', 0, 9), (12, 'P1', 1, 1)"_s)
               .isValid();
}

QVariant column(Session& s, const char* name, qint64 lineId = 11)
{
    return sql(s,
               u"SELECT "_s + QLatin1String(name) +
                   u" FROM tblWOServiceUsedHistory WHERE ServiceUsedID = ?"_s,
               {lineId});
}

} // namespace

/** Correcting posted work of a machine from its history section. */
class TestServiceHistory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void rowsPartsAndDelete()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(addHistory(t.session()));
        ServiceHistory history(t.session());
        QCOMPARE(history.range().from, QDate(2024, 3, 1));
        const Rows rows = history.rows(7, {{2025, 2, 1}, {2025, 2, 19}});
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0].value(ServiceHistory::PartCost).toDouble(), 3.0);
        QCOMPARE(history.rows(7, {{2025, 2, 2}, {2025, 2, 20}}).size(), 1);
        QCOMPARE(history.partRows(11).size(), 2);
        history.storeRange({{2025, 1, 2}, {2025, 2, 3}});
        QCOMPARE(history.range().from, QDate(2025, 1, 2));
        QVERIFY(history.editCell(12, Cell::Crew, 2));
        QCOMPARE(column(t.session(), "CrewNumber", 12).toInt(), 20);
        QVERIFY(!history.editPartCell(11, u"P1"_s, ServiceHistory::PartCell::QtyUsed, 2.0));
        QVERIFY(history.editPartCell(11, u"P2"_s, ServiceHistory::PartCell::Price, u""_s));
        QVERIFY(history.editPartCell(11, u"P1"_s, ServiceHistory::PartCell::QtyUsed, u""_s));
        QCOMPARE(history.partCost(11) + history.partCost(12), 1.0);
        t.prompter().queueAnswer(Prompter::Answer::No);
        QVERIFY(!history.deleteHistory(11));
        t.prompter().queueAnswer(Prompter::Answer::Yes);
        QVERIFY(history.deleteHistory(11));
        const QString question = u"Are you sure you want to Delete this record? history"_s;
        QCOMPARE(t.prompter().texts(),
                 (QStringList{u"This will not adjust the quantity on hand for the inventory. You "
                              "will manually need to adjust this if needed."_s,
                              question, question}));
        QCOMPARE(sql(t.session(), u"SELECT COUNT(*) FROM tblWoPartHistory"_s).toInt(), 1);
        QCOMPARE(history.rows(7, {{2025, 1, 1}, {2025, 3, 1}}).size(), 1);
    }

    void cellRules_data()
    {
        QTest::addColumn<int>("cell");
        QTest::addColumn<qint64>("lineId");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("stored"); // "Column=value", an empty value for null
        const auto row = [](const char* name, Cell cell, qint64 id, const QVariant& value,
                            const QString& message, const char* stored) {
            QTest::addRow("%s", name)
                << int(cell) << id << value << message << QString::fromUtf8(stored);
        };
        const QString noStart = u"Start Time should be less than End Time"_s;
        const QString noEnd = u"End Time should be greater than Start Time"_s;
        const QString shortWork = u"Work Hrs should be greater than 10 Minutes."_s;
        row("start before end sets hours", Cell::StartTime, 11, u"9:30"_s, {}, "Workhrs=07:30");
        row("start equal to end refused", Cell::StartTime, 11, u"17:00"_s, noStart,
            "StartTime=09:00");
        row("any start without an end", Cell::StartTime, 12, u"23:00"_s, {}, "StartTime=23:00");
        row("end without a start refused", Cell::EndTime, 12, u"10:00"_s,
            u"Start Time Shouln't be Blank"_s, "EndTime=");
        row("end after start sets hours", Cell::EndTime, 11, QTime(17, 45), {}, "Workhrs=08:45");
        row("end before start refused", Cell::EndTime, 11, u"08:00"_s, noEnd, "EndTime=17:00");
        row("ten minutes refused", Cell::WorkHrs, 11, u"00:10"_s, shortWork, "Workhrs=");
        row("eleven minutes taken", Cell::WorkHrs, 11, u"0:11"_s, {}, "Workhrs=00:11");
        row("count told and kept", Cell::Count, 11, u"420"_s,
            u"Changing the count will not effect the schedule"_s, "CountValue=420");
        row("emptied count is null", Cell::Count, 11, u""_s, ServiceHistory::CountMessage,
            "CountValue=");
        row("date told and kept", Cell::Date, 11, QDate(2025, 2, 9),
            u"Changing the date will not adjust the schedule"_s, "CompleteDate=2025-02-09");
        row("crew prices the labour again", Cell::Crew, 11, 2, {}, "CostEstimate=60");
    }
    void cellRules()
    {
        QFETCH(int, cell);
        QFETCH(qint64, lineId);
        QFETCH(QVariant, value);
        QFETCH(QString, message);
        QFETCH(QString, stored);
        TANDRILL_INSTALLATION(t);
        QVERIFY(addHistory(t.session()));
        ServiceHistory(t.session()).editCell(lineId, Cell(cell), value);
        QCOMPARE(t.prompter().texts(), message.isEmpty() ? QStringList() : QStringList{message});
        const QString name = stored.section(u'=', 0, 0);
        const QVariant now = column(t.session(), name.toLatin1().constData(), lineId);
        QCOMPARE(name + u'=' +
                     (name == u"CompleteDate" ? SqlValue::toDate(now).toString(Qt::ISODate)
                                              : now.toString()),
                 stored);
        QVERIFY(t.failures().isEmpty());
    }
};

QTEST_MAIN(TestServiceHistory)
#include "tst_servicehistory.moc"
