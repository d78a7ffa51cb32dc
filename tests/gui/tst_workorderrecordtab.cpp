#include "ScreenTest.h"
#include "ServiceTimeScreen.h"
#include "Sql.h"
#include "TestInstallation.h"
#include "WorkOrderRecordTab.h"

#include <QPlainTextEdit>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

// The recording rules are tested with WorkOrderRecording; this checks that every grid
// hands each edit to them once and shows what they stored.
namespace {

bool run(Session& s, const QString& sql)
{
    QSqlQuery q(s.db());
    return Sql::exec(q, sql);
}

/**
 * Order 1 on machine 7 (hours read 100): line 1 Oil (hours, part F-1), line 2 Belt,
 * line 3 Wash skipped. Order 2 with line 4. Every update of the open tables is counted
 * per row in tblUpdates, so that an edit run twice shows.
 */
bool addOrders(Session& s)
{
    const bool pg = TestInstallation::wantsPostgres();
    bool ok = run(s, u"INSERT INTO tblWorkorder (WorkOrderNo, EquipmentID, Printed) VALUES "
                     "(1, 7, 0), (2, 7, 0)"_s) &&
              run(s, u"INSERT INTO tblWoServiceUsed (NserviceUsedID, WorkOrderNo, ServiceUsedID, "
                     "EquipmentID, Name, Period, CrewID, Skip, Note) VALUES (1, 1, 0, 7, 'Oil', "
                     "'H', 0, NULL, NULL), (2, 1, 0, 7, 'Belt', 'M', 0, 0, NULL), (3, 1, 0, 7, "
                     "'Wash', 'M', 0, -1, 'rain'), (4, 2, 0, 7, 'Tyre', 'M', 0, 0, NULL)"_s) &&
              run(s, u"INSERT INTO tblWoPartUsed (ServiceUsedID, PartID, QuantityRequired, "
                     "QuantityUsed, Price, Used) VALUES (1, 'F-1', 2, 2, 5, 0)"_s) &&
              run(s, u"INSERT INTO tblEquipmentCount (EquipmentID, ChangeDate, CountType, "
                     "CountValue) VALUES (7, '2025-01-01', 'Hours', 100)"_s) &&
              run(s, u"CREATE TABLE tblUpdates (tbl VARCHAR(40), n INTEGER)"_s) &&
              (!pg || run(s, u"CREATE FUNCTION count_update() RETURNS trigger AS $$ BEGIN "
                             "UPDATE tblUpdates SET n = n + 1 WHERE tbl = lower(TG_TABLE_NAME); "
                             "RETURN NULL; END $$ LANGUAGE plpgsql"_s));
    for (const QString& table : {u"tblworkorder"_s, u"tblwoserviceused"_s, u"tblwopartused"_s}) {
        ok = ok && run(s, u"INSERT INTO tblUpdates VALUES ('%1', 0)"_s.arg(table)) &&
             run(s, (pg ? u"CREATE TRIGGER c_%1 AFTER UPDATE ON %1 FOR EACH ROW EXECUTE "
                          "FUNCTION count_update()"_s
                        : u"CREATE TRIGGER c_%1 AFTER UPDATE ON %1 BEGIN UPDATE tblUpdates "
                          "SET n = n + 1 WHERE tbl = '%1'; END"_s)
                        .arg(table));
    }
    return ok;
}

/** The first column of each row of sql, joined by '|'. */
QString firstColumn(Session& s, const QString& sql)
{
    QSqlQuery q(s.db());
    QStringList values;
    for (Sql::exec(q, sql); q.next();) {
        values.append(q.value(0).toString());
    }
    return values.join(u'|');
}

QString checks(const QTableWidget* grid, int column)
{
    QString marks;
    for (int r = 0; r < grid->rowCount(); ++r) {
        marks += grid->item(r, column)->checkState() == Qt::Checked ? u'1' : u'0';
    }
    return marks;
}

/** An edit as the grid's check box or cell editor hands it over. */
void edit(QTableWidgetItem* item, const QVariant& value)
{
    if (value.typeId() == QMetaType::Bool) {
        item->setCheckState(value.toBool() ? Qt::Checked : Qt::Unchecked);
    } else {
        item->setData(Qt::UserRole, value);
    }
}

enum { Complete = 0, CompletedDate = 1, Completed = 0, Skip = 1, Count = 8, StartTime = 9 };

} // namespace

/** An installation t with the orders, and tab showing order 1. */
#define OPEN_TAB(t, tab)                                                                           \
    TANDRILL_INSTALLATION(t);                                                                      \
    QVERIFY(addOrders(t.session()));                                                               \
    WorkOrderRecordTab tab(t.session());                                                           \
    tab.refreshRecordWorkorder();                                                                  \
    QVERIFY(tab.findAndSelect(1))

class TestWorkOrderRecordTab : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void checksWriteTheHeaderOnceAndShowTheOutcome_data()
    {
        QTest::addColumn<QString>("grid");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<std::optional<QString>>("reason");
        QTest::addColumn<int>("headerWrites");
        QTest::addColumn<QString>("shown"); ///< Complete of order 1|Completed of lines|Skip
        const std::optional<QString> none;
        QTest::newRow("line completed")
            << u"grdRecordService"_s << 0 << int(Completed) << none << 1 << u"1|100|001"_s;
        QTest::newRow("order complete")
            << u"grdRecordWo"_s << 1 << int(Complete) << none << 1 << u"1|110|001"_s;
        QTest::newRow("line skipped") << u"grdRecordService"_s << 0 << int(Skip)
                                      << std::optional(u"worn"_s) << 1 << u"1|000|101"_s;
        QTest::newRow("skip cancelled")
            << u"grdRecordService"_s << 0 << int(Skip) << none << 0 << u"0|000|001"_s;
    }
    void checksWriteTheHeaderOnceAndShowTheOutcome()
    {
        QFETCH(QString, grid);
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(std::optional<QString>, reason);
        QFETCH(int, headerWrites);
        QFETCH(QString, shown);
        OPEN_TAB(t, tab);
        QVERIFY(!tab.findAndSelect(5));
        t.prompter().queueInput(reason);
        edit(tab.findChild<QTableWidget*>(grid)->item(row, column), true);

        QCOMPARE(firstColumn(t.session(), u"SELECT n FROM tblUpdates WHERE tbl = 'tblworkorder'"_s)
                     .toInt(),
                 headerWrites);
        QCOMPARE(t.prompter().texts().count(RecordingMessages::SkipReason), int(column == Skip));
        auto* orders = child<QTableWidget>(tab, "grdRecordWo");
        auto* lines = child<QTableWidget>(tab, "grdRecordService");
        QCOMPARE(checks(orders, Complete).mid(1) + u'|' + checks(lines, Completed) + u'|' +
                     checks(lines, Skip),
                 shown);
        QCOMPARE(child<QPushButton>(tab, "cmdSkipAll")->isEnabled(), shown.startsWith(u'1'));
        QCOMPARE(child<QPlainTextEdit>(tab, "txtRecordNote")->toPlainText(),
                 reason.value_or(QString()));
    }

    void refusedEditsWriteNothingAndKeepTheCell_data()
    {
        QTest::addColumn<QString>("grid");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("question");
        QTest::newRow("used on an undone line")
            << u"grdRecordPart"_s << 0 << 1 << QVariant(true) << QString();
        QTest::newRow("completed date too old")
            << u"grdRecordWo"_s << 1 << int(CompletedDate) << QVariant(QDate(1970, 1, 1))
            << RecordingMessages::DateTooOld;
        QTest::newRow("count below the reading, not kept")
            << u"grdRecordService"_s << 0 << int(Count) << QVariant(u"50"_s)
            << RecordingMessages::countBelowReading(100);
    }
    void refusedEditsWriteNothingAndKeepTheCell()
    {
        QFETCH(QString, grid);
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(QVariant, value);
        QFETCH(QString, question);
        OPEN_TAB(t, tab);
        t.prompter().queueAnswer(Prompter::Answer::No);
        QTableWidgetItem* item = tab.findChild<QTableWidget*>(grid)->item(row, column);
        const QString before = item->text() + QString::number(item->checkState());
        edit(item, value);

        QCOMPARE(item->text() + QString::number(item->checkState()), before);
        QCOMPARE(t.prompter().texts(), question.isEmpty() ? QStringList() : QStringList{question});
        QCOMPARE(firstColumn(t.session(), u"SELECT n FROM tblUpdates"_s), u"0|0|0"_s);
    }

    void noteIsStoredOnLeavingUnlessRefused_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored"); ///< notes of lines 1 to 3 afterwards
        QTest::addColumn<int>("rowAfter");   ///< the line selected after clicking the first
        QTest::newRow("kept") << 1 << u"new"_s << u"|new|rain"_s << 0;
        QTest::newRow("blank on a skipped line refused") << 2 << u"  "_s << u"||rain"_s << 2;
    }
    void noteIsStoredOnLeavingUnlessRefused()
    {
        QFETCH(int, row);
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        QFETCH(int, rowAfter);
        OPEN_TAB(t, tab);
        auto* lines = child<QTableWidget>(tab, "grdRecordService");
        lines->setCurrentCell(row, 3);
        auto* note = child<QPlainTextEdit>(tab, "txtRecordNote");
        note->selectAll();
        QTest::keyClicks(note, typed);
        QFocusEvent left(QEvent::FocusOut);
        QApplication::sendEvent(note, &left);
        lines->setCurrentCell(0, 3);
        QCOMPARE(lines->currentRow(), rowAfter);
        QCOMPARE(note->toPlainText(), rowAfter ? typed : QString());
        QCOMPARE(firstColumn(t.session(),
                             u"SELECT Note FROM tblWoServiceUsed WHERE WorkOrderNo = 1 "
                             "ORDER BY NserviceUsedID"_s),
                 stored);
        QCOMPARE(t.prompter().texts().count(RecordingMessages::NoteBlank), int(row == 2));
    }

    void timeCellOpensTheTimeDialog()
    {
        OPEN_TAB(t, tab);
        tab.show();
        auto* lines = child<QTableWidget>(tab, "grdRecordService");
        onModal<ServiceTimeScreen>("frmServiceTime", [](ServiceTimeScreen* dialog) {
            QCOMPARE(text(*dialog, "timeStart"), u"12:00A"_s);
            child(*dialog, "timeStart")->selectAll();
            QTest::keyClicks(child(*dialog, "timeStart"), u"9:30"_s);
            click(*dialog, "cmdUpdate");
        });
        QTest::mouseClick(lines->viewport(), Qt::LeftButton, {},
                          lines->visualItemRect(lines->item(1, StartTime)).center());
        QCOMPARE(lines->item(1, StartTime)->text(), u"09:30 AM"_s);
    }

    void postPostsTheCompleteOrdersAndRefreshes()
    {
        OPEN_TAB(t, tab);
        edit(child<QTableWidget>(tab, "grdRecordWo")->item(0, Complete), true);
        click(tab, "cmdPost");
        QCOMPARE(child<QTableWidget>(tab, "grdRecordWo")->rowCount(), 1);
        QVERIFY(!tab.findAndSelect(2));
        QCOMPARE(firstColumn(t.session(), u"SELECT ServiceName FROM tblWOServiceUsedHistory"_s),
                 u"Tyre"_s);
    }
};

QTEST_MAIN(TestWorkOrderRecordTab)
#include "tst_workorderrecordtab.moc"
