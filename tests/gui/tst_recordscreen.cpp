#include "DateBox.h"
#include "GridSettings.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "RecordScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"
#include "WriteScope.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QSqlQuery>
#include <QTableWidget>

using namespace Qt::StringLiterals;

namespace {

const char* const Seeded = "U10|U20|U30";
const QString Units = u"SELECT UnitNo FROM tblEquipment ORDER BY LOWER(UnitNo)"_s;
const QString TakenMessage = u"Unit No you specified already exists."_s;

/**
 * A record screen over tblEquipment with one field of every kind, the rights of
 * equipment, and a child grid of the machine's parts whose quantity is edited in
 * place: everything the framework gives a screen, on a screen no rule of its own.
 */
class MachineScreen : public RecordScreen
{
public:
    explicit MachineScreen(Session& session)
        : RecordScreen(session, u"frmTestMachine"_s, u"tblEquipment"_s, u"EquipmentID"_s)
    {
        auto* fields = new QFormLayout;
        const auto field = [fields](auto* widget, const char* name) {
            widget->setObjectName(QString::fromLatin1(name));
            fields->addRow(widget);
            return widget;
        };
        auto* unit = field(new QLineEdit(this), "txtUnitNo");
        auto* type = field(new QComboBox(this), "cboType");
        LookupCombo::loadItemWithId(type, DataHelpers::indicatorInfo(session, 1, true, true),
                                    u"ItemID"_s, u"ItemName"_s, true);
        auto* installed = field(new DateBox(this), "datInstalled");
        auto* payment = field(new QLineEdit(this), "txtPayment");
        auto* inactive = field(new QCheckBox(this), "chkInactive");
        auto* parts = field(new QTableWidget(1, 1, this), "grdPart");
        parts->setItem(0, 0, new QTableWidgetItem(u"2"_s)); // U10's one part
        auto* grid = new RecordGrid(this);
        grid->setObjectName(u"grdMachine"_s);
        const QString key = u"EquipmentID"_s;
        grid->setFields(
            {{key, u"Id"_s}, {u"UnitNo"_s, u"Unit No"_s}, {u"LeasePayment"_s, u"Pay"_s}}, key);
        setStandardLayout(fields, grid);
        bindField(unit, u"UnitNo"_s, &m_unitNo, u"Unit No"_s, FieldBindings::Required);
        bindField(type, u"EquipmentType"_s, &m_type);
        bindField(installed, u"InstalledDate"_s, &m_installed);
        bindField(payment, u"LeasePayment"_s, &m_payment, u"Lease Payment"_s, FieldBindings::Money);
        bindField(inactive, u"Inactive"_s, &m_inactive);
        setUniqueField(unit, u"UnitNo"_s, false, TakenMessage);
        setActionRights(UserRights::EqAdd, UserRights::EqMod, UserRights::EqDel);
        connect(parts, &QTableWidget::itemChanged, this, &MachineScreen::onPartChanged);
        // The type list's screen adds an item; the finder always chooses the third machine.
        const auto loadTypes = [this, type] {
            LookupCombo::loadItemWithId(type,
                                        DataHelpers::indicatorInfo(this->session(), 1, true, true),
                                        u"ItemID"_s, u"ItemName"_s, true);
        };
        setListButton(
            field(new QPushButton(this), "cmdType"), type,
            [this](qint64 chosen) {
                listOpenedWith = chosen;
                QSqlQuery(this->session().db())
                    .exec(u"INSERT INTO tblIndicator (ParentId, ItemName) VALUES (1, 'Tractor')"_s);
            },
            loadTypes);
        setQuickFind([] { return u"3"_s; });
    }

    qint64 listOpenedWith = -1;

protected:
    Rows loadRecords() override
    {
        return DataHelpers::tableInfo(session(), u"tblEquipment"_s, {}, u"UnitNo"_s);
    }
    bool saveRecord(QVariant* id) override
    {
        const bool adding = mode() == Mode::Add;
        *id = adding ? DataHelpers::generateId(session(), u"EquipmentID"_s, u"tblEquipment"_s)
                     : currentId();
        WriteScope write(session(), u"frmTestMachine"_s, u"SaveRecord"_s);
        write.exec(adding ? u"INSERT INTO tblEquipment (UnitNo, EquipmentType, InstalledDate, "
                            "LeasePayment, Inactive, EquipmentID) VALUES (?, ?, ?, ?, ?, ?)"_s
                          : u"UPDATE tblEquipment SET UnitNo = ?, EquipmentType = ?, "
                            "InstalledDate = ?, LeasePayment = ?, Inactive = ? "
                            "WHERE EquipmentID = ?"_s,
                   {m_unitNo, m_type, SqlValue::date(m_installed), m_payment,
                    SqlValue::flag(m_inactive), *id});
        return write.commit();
    }
    QString canDelete(const QVariant&) override { return {}; }
    bool deleteRecord(const QVariant& id) override
    {
        WriteScope write(session(), u"frmTestMachine"_s, u"DeleteRecord"_s);
        write.exec(u"DELETE FROM tblEquipment WHERE EquipmentID = ?"_s, {id});
        return write.commit();
    }

private:
    void onPartChanged(QTableWidgetItem* item)
    {
        // A cell is written at once, inside the record's edit; refused without one.
        if (beginModify()) {
            WriteScope write(session(), u"frmTestMachine"_s, u"grdPart_Change"_s);
            write.exec(u"UPDATE tblEquipmentPart SET QuantityRequired = ? WHERE EquipmentID = ?"_s,
                       {item->text().toDouble(), currentId()});
            write.commit();
        }
    }

    QString m_unitNo;
    qint64 m_type = 0;
    QDate m_installed;
    double m_payment = 0;
    bool m_inactive = false;
};

void run(Session& session, const QString& sql)
{
    QSqlQuery q(session.db());
    QVERIFY2(Sql::exec(q, sql), qPrintable(sql));
}

/**
 * The state a test starts from, in words: "empty" leaves tblEquipment empty, else
 * there are three machines; "-EqAdd", "-EqMod" and "-EqDel" take that right
 * away; "onePayment" has the engine refuse a second machine with U10's payment, 5.
 */
void setUp(TestInstallation& t, const QString& given)
{
    if (!given.contains(u"empty")) { // U10 has a part
        run(t.session(), u"INSERT INTO tblEquipment (EquipmentID, UnitNo) "
                         "VALUES (1, 'U10'), (2, 'U20'), (3, 'U30')"_s);
        run(t.session(), u"INSERT INTO tblEquipmentPart (EquipmentID, PartID, QuantityRequired) "
                         "VALUES (1, 'P1', 2)"_s);
    }
    if (given.contains(u"onePayment")) {
        run(t.session(), u"CREATE UNIQUE INDEX one_payment ON tblEquipment (LeasePayment)"_s);
        run(t.session(), u"UPDATE tblEquipment SET LeasePayment = 5 WHERE EquipmentID = 1"_s);
    }
    t.session().rights().set(UserRights::EqAdd, !given.contains(u"-EqAdd"));
    t.session().rights().set(UserRights::EqMod, !given.contains(u"-EqMod"));
    t.session().rights().set(UserRights::EqDel, !given.contains(u"-EqDel"));
}

/** What another connection sees: only what was committed. */
QString committed(Session& session, const QString& sql)
{
    QSqlQuery q(session.db2());
    QStringList values;
    for (Sql::exec(q, sql); q.next();) {
        values.append(q.value(0).toString());
    }
    return values.join(u'|');
}

} // namespace

class TestRecordScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void userSteps_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("state"); // mode and unit shown at the end
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("units"); // committed
        QTest::addColumn<QString>("given"); // see setUp()
        const auto row = [](const char* name, const char* steps, const char* state,
                            const QStringList& messages = {}, const char* units = Seeded,
                            const char* given = "") {
            QTest::newRow(name) << QString::fromUtf8(steps) << QString::fromUtf8(state) << messages
                                << QString::fromUtf8(units) << QString::fromUtf8(given);
        };
        row("add reverted, the only record deleted, on an empty table",
            "cmdAdd|txtUnitNo+U5|cmdCancel|cmdAdd|txtUnitNo+U1|cmdUpdate|Yes|cmdDelete", "B ",
            {MessageTexts::DeleteQuestion}, "", "empty");
        // Moves, a reverted add and deletes; then blank and taken keys, a bad number and the own
        // key in another case.
        row("moves, deletes and checks",
            "cmdLast|cmdNext|row:1|cmdPrevious|cmdPrevious|cmdFirst|cmdNext|cmdAdd|txtUnitNo+U40|"
            "cmdCancel|No|cmdDelete|Yes|cmdDelete|cmdAdd|txtPayment+5|cmdUpdate|txtUnitNo+u10|"
            "cmdUpdate|txtUnitNo= U40 |cmdUpdate|txtPayment+x|cmdUpdate|txtPayment=5|"
            "txtUnitNo=u40|cmdUpdate",
            "B u40",
            QStringList(2, MessageTexts::LastRecord) +
                QStringList(2, MessageTexts::DeleteQuestion) +
                QStringList{MessageTexts::notBlank(u"Unit No"_s), TakenMessage,
                            MessageTexts::numeric(u"Lease Payment"_s)},
            "U10|U30|u40");
        row("add without the modify right, refused by the engine, saved at the next try",
            "cmdAdd|txtUnitNo+U40|txtPayment+5|cmdUpdate|txtPayment=6|cmdUpdate", "B U40", {},
            "U10|U20|U30|U40", "onePayment-EqMod");
        row("add and delete refused with neither right", "cmdAdd|Yes|cmdDelete", "B U10",
            QStringList(2, MessageTexts::NoActionRights), Seeded, "-EqAdd-EqMod-EqDel");
    }
    void userSteps()
    {
        QFETCH(QString, steps);
        QFETCH(QString, state);
        QFETCH(QStringList, messages);
        QFETCH(QString, units);
        QFETCH(QString, given);
        TANDRILL_INSTALLATION(t);
        setUp(t, given);
        MachineScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), steps, "grdMachine");

        QCOMPARE(screen.modeText() + u' ' + text(screen, "txtUnitNo"), state);
        QCOMPARE(t.prompter().texts(), messages);
        QCOMPARE(committed(t.session(), Units), units);
        QCOMPARE(t.failures().failures().size(), given.contains(u"onePayment") ? 1 : 0);
        QVERIFY(!t.session().transactionOpen());
        // Fields are locked with nothing to show, or without the right to change them.
        QCOMPARE(child(screen, "txtUnitNo")->isReadOnly(),
                 units.isEmpty() || given.contains(u"-EqMod"));
    }

    void fieldsAndPartCellsReachTheRecord()
    {
        TANDRILL_INSTALLATION(t);
        setUp(t, {});
        run(t.session(), u"INSERT INTO tblIndicator (ParentId, ItemName) VALUES (1, 'Mower')"_s);
        // A type gone from its list is told once and left as it is.
        run(t.session(), u"UPDATE tblEquipment SET EquipmentType = 999, Inactive = '1' "
                         "WHERE EquipmentID = 1"_s);
        MachineScreen screen(t.session());
        screen.show();
        QCOMPARE(t.prompter().texts(), QStringList{MessageTexts::LookupItemDeleted});
        QCOMPARE(screen.modeText(), u"B"_s);
        QVERIFY(child<QCheckBox>(screen, "chkInactive")->isChecked());
        // A part's cell is written inside the record's edit, and reverted with it.
        QTableWidgetItem* quantity = child<QTableWidget>(screen, "grdPart")->item(0, 0);
        const QString parts = u"SELECT QuantityRequired FROM tblEquipmentPart"_s;
        quantity->setText(u"7"_s);
        QCOMPARE(screen.modeText(), u"M"_s);
        QVERIFY(child<QPushButton>(screen, "cmdUpdate")->isVisible() &&
                t.session().transactionOpen());
        QCOMPARE(committed(t.session(), parts), u"2"_s); // not yet for anyone else
        click(screen, "cmdCancel");
        perform(screen, t.prompter(), u"cmdAdd|txtUnitNo+U1|txtPayment+12.5"_s, "grdMachine");
        child<QComboBox>(screen, "cboType")->setCurrentIndex(1);
        child<DateBox>(screen, "datInstalled")->setValue(QDate(2024, 2, 29));
        click(screen, "cmdUpdate");
        const QString stored = u"SELECT CAST(InstalledDate AS TEXT) || ' ' || LeasePayment || ' ' "
                               "|| Inactive || ' ' || EquipmentType FROM tblEquipment "
                               "WHERE UnitNo = 'U1'"_s;
        QCOMPARE(committed(t.session(), stored), u"2024-02-29 12.5 0 18"_s);
        QCOMPARE(text(screen, "txtPayment"), u"12.50"_s);
        // Without the modify right a cell starts no edit and writes nothing.
        t.session().rights().set(UserRights::EqMod, false);
        quantity->setText(u"9"_s);
        QVERIFY(!screen.isEditing());
        QCOMPARE(committed(t.session(), parts), u"2"_s); // the revert took the 7 back too
    }

    void listButtonAndQuickFind()
    {
        TANDRILL_INSTALLATION(t);
        setUp(t, {});
        run(t.session(), u"INSERT INTO tblIndicator (ParentId, ItemName) VALUES (1, 'Mower')"_s);
        MachineScreen screen(t.session());
        screen.show();
        click(screen, "cmdQFind");
        QCOMPARE(text(screen, "txtUnitNo"), u"U30"_s);
        auto* type = child<QComboBox>(screen, "cboType");
        type->setCurrentIndex(1);
        click(screen, "cmdType");
        QCOMPARE(screen.listOpenedWith, 18);
        QCOMPARE(type->count(), 3); // reloaded with the new item, the choice kept
        QCOMPARE(type->currentText(), u"Mower"_s);
        QCOMPARE(screen.modeText(), u"M"_s);
    }

    void reopenedWhereItWasAndStartedAsAsked()
    {
        TANDRILL_INSTALLATION(t);
        setUp(t, {});
        QVERIFY(GridSettings::save(t.session(), u"frmTestMachine"_s, u"tblEquipment"_s,
                                   {{u"Retired"_s, 90, 0, GridSettings::SortType::Ascending},
                                    {u"UnitNo"_s, 80, 1, GridSettings::SortType::Descending}}));
        {
            MachineScreen screen(t.session());
            screen.show();
            QCOMPARE(text(screen, "txtUnitNo"), u"U30"_s); // units descending, unknown skipped
            child<RecordGrid>(screen, "grdMachine")->horizontalHeader()->resizeSection(1, 173);
            // The close box and Escape are refused during an edit; exit drops it.
            perform(screen, t.prompter(), u"txtUnitNo+X|close|escape"_s, "grdMachine");
            QVERIFY(screen.isVisible() && screen.isEditing());
            click(screen, "cmdExit");
        }
        MachineScreen again(t.session());
        QString shown; // mode and width of the unit column
        onModal("frmTestMachine", [&](QWidget*) {
            auto* header = child<RecordGrid>(again, "grdMachine")->horizontalHeader();
            shown = again.modeText() + QString::number(header->sectionSize(1));
            perform(again, t.prompter(), u"txtUnitNo+U40|cmdUpdate|cmdExit"_s, "grdMachine");
        });
        again.run(RecordScreen::Mode::Add);
        QCOMPARE(shown, u"A173"_s);
        QCOMPARE(committed(t.session(), Units), u"U10|U20|U30|U40"_s); // without U30X
        QCOMPARE(again.chosenId().toInt(), 4);
    }
};

QTEST_MAIN(TestRecordScreen)
#include "tst_recordscreen.moc"
