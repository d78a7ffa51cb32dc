#include "DateBox.h"
#include "GridSettings.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "Options.h"
#include "RecordGrid.h"
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

using Mode = RecordScreen::Mode;

const char* const Seeded = "U10|U20|U30";
const QString TakenMessage = u"Unit No you specified already exists."_s;

struct Machine
{
    qint64 id = 0;
    QString unitNo;
    qint64 type = 0;
    QDate installed;
    double payment = 0;
    bool inactive = false;
};

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
        auto* unit = named(new QLineEdit(this), "txtUnitNo");
        auto* type = named(new QComboBox(this), "cboType");
        LookupCombo::loadItemWithId(type, DataHelpers::indicatorInfo(session, 1, true, true),
                                    u"ItemID"_s, u"ItemName"_s, true);
        auto* installed = named(new DateBox(this), "datInstalled");
        auto* payment = named(new QLineEdit(this), "txtPayment");
        auto* inactive = named(new QCheckBox(this), "chkInactive");
        m_parts = named(new QTableWidget(0, 2, this), "grdPart");
        auto* fields = new QFormLayout;
        for (QWidget* field : {static_cast<QWidget*>(unit), static_cast<QWidget*>(type),
                               static_cast<QWidget*>(installed), static_cast<QWidget*>(payment),
                               static_cast<QWidget*>(inactive), static_cast<QWidget*>(m_parts)}) {
            fields->addRow(field->objectName(), field);
        }
        auto* grid = named(new RecordGrid(this), "grdMachine");
        grid->setFields({{u"EquipmentID"_s, u"Id"_s},
                         {u"UnitNo"_s, u"Unit No"_s},
                         {u"LeasePayment"_s, u"Payment"_s}},
                        u"EquipmentID"_s);
        setStandardLayout(fields, grid);
        bindField(unit, u"UnitNo"_s, &m_machine.unitNo, u"Unit No"_s, FieldBindings::Required);
        bindField(type, u"EquipmentType"_s, &m_machine.type);
        bindField(installed, u"InstalledDate"_s, &m_machine.installed);
        bindField(payment, u"LeasePayment"_s, &m_machine.payment, u"Lease Payment"_s,
                  FieldBindings::Money);
        bindField(inactive, u"Inactive"_s, &m_machine.inactive);
        setUniqueField(unit, u"UnitNo"_s, false, TakenMessage);
        setActionRights(UserRights::EqAdd, UserRights::EqMod, UserRights::EqDel);
        connect(m_parts, &QTableWidget::itemChanged, this, &MachineScreen::onPartChanged);
    }

protected:
    Rows loadRecords() override
    {
        return DataHelpers::tableInfo(session(), u"tblEquipment"_s, {}, u"UnitNo"_s);
    }
    void clearData() override
    {
        RecordScreen::clearData();
        showParts(0);
    }
    void displayData(const QSqlRecord& record) override
    {
        RecordScreen::displayData(record);
        showParts(record.value(u"EquipmentID"_s).toLongLong());
    }
    bool saveRecord(QVariant* id) override
    {
        const bool adding = mode() == Mode::Add;
        m_machine.id = adding
                           ? DataHelpers::generateId(session(), u"EquipmentID"_s, u"tblEquipment"_s)
                           : currentId().toLongLong();
        WriteScope write(session(), u"frmTestMachine"_s, u"SaveRecord"_s);
        write.exec(adding ? u"INSERT INTO tblEquipment (UnitNo, EquipmentType, InstalledDate, "
                            "LeasePayment, Inactive, EquipmentID) VALUES (?, ?, ?, ?, ?, ?)"_s
                          : u"UPDATE tblEquipment SET UnitNo = ?, EquipmentType = ?, "
                            "InstalledDate = ?, LeasePayment = ?, Inactive = ? "
                            "WHERE EquipmentID = ?"_s,
                   {m_machine.unitNo, m_machine.type, SqlValue::date(m_machine.installed),
                    m_machine.payment, SqlValue::flag(m_machine.inactive), m_machine.id});
        *id = m_machine.id;
        return write.commit();
    }
    QString canDelete(const QVariant& id) override
    {
        static constexpr RecordUse Uses[] = {{"tblWorkorder", "EquipmentID", "Workorder"}};
        return DataHelpers::firstUse(session(), Uses, id, u"N"_s);
    }
    bool deleteRecord(const QVariant& id) override
    {
        WriteScope write(session(), u"frmTestMachine"_s, u"DeleteRecord"_s);
        write.exec(u"DELETE FROM tblEquipment WHERE EquipmentID = ?"_s, {id});
        return write.commit();
    }

private:
    template <class T> static T* named(T* widget, const char* name)
    {
        widget->setObjectName(QString::fromLatin1(name));
        return widget;
    }

    void showParts(qint64 machine)
    {
        const QSignalBlocker quiet(m_parts);
        const Rows parts = DataHelpers::tableInfo(session(), u"tblEquipmentPart"_s,
                                                  {u"EquipmentID = ?"_s, {machine}}, u"PartID"_s);
        m_parts->setRowCount(int(parts.size()));
        for (int row = 0; row < parts.size(); ++row) {
            m_parts->setItem(row, 0,
                             new QTableWidgetItem(parts[row].value(u"PartID"_s).toString()));
            m_parts->setItem(
                row, 1, new QTableWidgetItem(parts[row].value(u"QuantityRequired"_s).toString()));
        }
    }

    void onPartChanged(QTableWidgetItem* item)
    {
        // A cell written at once, inside the record's edit; refused without one.
        if (!beginModify()) {
            showParts(currentId().toLongLong());
            return;
        }
        WriteScope write(session(), u"frmTestMachine"_s, u"grdPart_Change"_s);
        write.exec(u"UPDATE tblEquipmentPart SET QuantityRequired = ? "
                   "WHERE EquipmentID = ? AND LOWER(PartID) = LOWER(?)"_s,
                   {item->text().toDouble(), currentId(), m_parts->item(item->row(), 0)->text()});
        write.commit();
    }

    Machine m_machine;
    QTableWidget* m_parts;
};

void run(Session& session, const QString& sql, const QVariantList& values = {})
{
    QSqlQuery q(session.db());
    if (!Sql::exec(q, sql, values)) {
        qFatal("%s", qPrintable(sql));
    }
}

/** Three machines; U30 stands on a work order, U10 has a part. */
void seedMachines(Session& session)
{
    for (int i = 1; i <= 3; ++i) {
        run(session, u"INSERT INTO tblEquipment (EquipmentID, UnitNo) VALUES (?, ?)"_s,
            {i, u"U%1"_s.arg(i * 10)});
    }
    run(session, u"INSERT INTO tblWorkorder (EquipmentID) VALUES (3)"_s);
    run(session, u"INSERT INTO tblEquipmentPart (EquipmentID, PartID, QuantityRequired) "
                 "VALUES (1, 'P1', 2)"_s);
}

/** What another connection sees: only what was committed. */
QString committed(Session& session, const QString& sql)
{
    QSqlQuery q(session.db2());
    QStringList values;
    if (!Sql::exec(q, sql)) {
        return u"unreadable"_s;
    }
    while (q.next()) {
        values.append(q.value(0).toString());
    }
    return values.join(u'|');
}

QString committedUnits(Session& session)
{
    return committed(session, u"SELECT UnitNo FROM tblEquipment ORDER BY LOWER(UnitNo)"_s);
}

/** The buttons a user can press: enabled and in sight. */
QStringList activeButtons(const QWidget& screen)
{
    QStringList active;
    for (const QString& name : split("cmdFirst|cmdPrevious|cmdNext|cmdLast|cmdAdd|cmdDelete|"
                                     "cmdUpdate|cmdCancel|cmdExit")) {
        const auto* button = child<QPushButton>(screen, qPrintable(name));
        if (button->isEnabled() && button->isVisible()) {
            active.append(name);
        }
    }
    return active;
}

} // namespace

class TestRecordScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void userSteps_data()
    {
        QTest::addColumn<bool>("seed");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("state"); // mode ("closed" once gone) and unit shown
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("units"); // committed
        const auto row = [](const char* name, const char* steps, const char* state,
                            const QStringList& messages = {}, const char* units = Seeded,
                            bool seed = true) {
            QTest::newRow(name) << seed << QString::fromUtf8(steps) << QString::fromUtf8(state)
                                << messages << QString::fromUtf8(units);
        };
        const QStringList last{MessageTexts::LastRecord};
        const QStringList question{MessageTexts::DeleteQuestion};
        row("empty table opens locked", "", "B ", {}, "", false);
        row("add reverted on an empty table", "cmdAdd|txtUnitNo+U5|cmdCancel", "B ", {}, "", false);
        row("delete of the only record empties the table",
            "cmdAdd|txtUnitNo+U1|cmdUpdate|Yes|cmdDelete", "B ", question, "", false);
        row("opens on the first record", "", "B U10");
        row("a change in browse modifies", "txtUnitNo+x", "M U10x");
        row("save a new record", "cmdAdd|txtUnitNo+ U40 |cmdUpdate", "B U40", {},
            "U10|U20|U30|U40");
        row("save with its own key in another case", "txtUnitNo=u10|cmdUpdate", "B u10", {},
            "u10|U20|U30");
        row("blank field refused, input kept", "cmdAdd|txtPayment+5|cmdUpdate", "A ",
            {u"Unit No should not be blank."_s});
        row("text in a number refused", "txtPayment+5x|cmdUpdate", "M U10",
            {u"Lease Payment should be numeric."_s});
        row("key taken in another case", "cmdAdd|txtUnitNo+u20|cmdUpdate", "A u20", {TakenMessage});
        row("revert an add shows the record before", "cmdNext|cmdAdd|txtUnitNo+U40|cmdCancel",
            "B U20");
        row("revert a change", "txtUnitNo+XX|cmdCancel", "B U10");
        row("next at the end", "cmdLast|cmdNext", "B U30", last);
        row("browsing never modifies", "cmdNext|row:0|cmdLast|cmdFirst|row:1", "B U20");
        row("delete answered No", "No|cmdDelete", "B U10", question);
        row("delete another shows the first", "cmdNext|Yes|cmdDelete", "B U10", question,
            "U10|U30");
        row("delete of a record in use", "cmdLast|Yes|cmdDelete", "B U30",
            question + QStringList{u"Deletion not allowed. Record is being used in Workorder."_s});
        row("close box refused while editing", "txtUnitNo+X|close", "M U10X");
        row("escape refused while editing", "cmdAdd|escape", "A ");
        row("exit drops the edit", "txtUnitNo+X|cmdExit", "closed U10X");
    }
    void userSteps()
    {
        QFETCH(bool, seed);
        QFETCH(QString, steps);
        QFETCH(QString, state);
        QFETCH(QStringList, messages);
        QFETCH(QString, units);
        TANDRILL_INSTALLATION(t);
        if (seed) {
            seedMachines(t.session());
        }
        MachineScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), steps, "grdMachine");

        const QString mode = screen.isVisible() ? screen.modeText() : u"closed"_s;
        QCOMPARE(mode + u' ' + text(screen, "txtUnitNo"), state);
        QCOMPARE(t.prompter().texts(), messages);
        QCOMPARE(committedUnits(t.session()), units);
        QVERIFY(t.failures().isEmpty());
        QCOMPARE(t.session().transactionOpen(), screen.isVisible() && screen.isEditing());
        if (!screen.isVisible()) {
            return;
        }
        const bool empty = mode == u"B"_s && units.isEmpty();
        const QStringList expected =
            mode != u"B"_s ? split("cmdUpdate|cmdCancel|cmdExit")
            : empty        ? split("cmdAdd|cmdExit")
                           : split("cmdFirst|cmdPrevious|cmdNext|cmdLast|cmdAdd|cmdDelete|cmdExit");
        QCOMPARE(activeButtons(screen), expected);
        QCOMPARE(child(screen, "txtUnitNo")->isReadOnly(), empty);
        QCOMPARE(child<QComboBox>(screen, "cboType")->isEnabled(), !empty);
    }

    void startsInAddModeAndSavesTheNewRecord()
    {
        TANDRILL_INSTALLATION(t);
        seedMachines(t.session());
        MachineScreen screen(t.session());
        QString modeAtStart;
        onModal("frmTestMachine", [&](QWidget*) {
            modeAtStart = screen.modeText();
            perform(screen, t.prompter(), u"txtUnitNo+U40|cmdUpdate|cmdExit"_s, "grdMachine");
        });
        screen.run(Mode::Add);
        QCOMPARE(modeAtStart, u"A"_s);
        QCOMPARE(committedUnits(t.session()), u"U10|U20|U30|U40"_s);
        QCOMPARE(screen.chosenId().toInt(), 4);
    }

    void childGridChangeStartsAnEditThatRevertUndoes()
    {
        TANDRILL_INSTALLATION(t);
        seedMachines(t.session());
        MachineScreen screen(t.session());
        screen.show();
        auto* parts = child<QTableWidget>(screen, "grdPart");
        parts->item(0, 1)->setText(u"7"_s);
        QCOMPARE(screen.modeText(), u"M"_s);
        QVERIFY(t.session().transactionOpen());
        const QString quantity = u"SELECT QuantityRequired FROM tblEquipmentPart"_s;
        QCOMPARE(committed(t.session(), quantity), u"2"_s); // not yet for anyone else
        click(screen, "cmdCancel");
        QVERIFY(!t.session().transactionOpen());
        QCOMPARE(parts->item(0, 1)->text(), u"2"_s);
        QCOMPARE(committed(t.session(), quantity), u"2"_s);
        QVERIFY(t.failures().isEmpty());
    }

    void rightsGuardTheActions_data()
    {
        QTest::addColumn<QString>("missing"); // rights taken away
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<QString>("units");
        QTest::newRow("add without modify saves")
            << u"EqMod"_s << u"cmdAdd|txtUnitNo+U40|cmdUpdate"_s << u"B U40"_s << false
            << u"U10|U20|U30|U40"_s;
        QTest::newRow("neither add nor modify")
            << u"EqAdd|EqMod"_s << u"cmdAdd"_s << u"B U10"_s << true << u"U10|U20|U30"_s;
        QTest::newRow("no delete")
            << u"EqDel"_s << u"cmdNext|Yes|cmdDelete"_s << u"B U20"_s << true << u"U10|U20|U30"_s;
    }
    void rightsGuardTheActions()
    {
        QFETCH(QString, missing);
        QFETCH(QString, steps);
        QFETCH(QString, state);
        QFETCH(bool, refused);
        QFETCH(QString, units);
        TANDRILL_INSTALLATION(t);
        seedMachines(t.session());
        for (const QString& right : missing.split(u'|')) {
            t.session().rights().set(right == u"EqAdd"_s   ? UserRights::EqAdd
                                     : right == u"EqMod"_s ? UserRights::EqMod
                                                           : UserRights::EqDel,
                                     false);
        }
        MachineScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), steps, "grdMachine");
        QCOMPARE(screen.modeText() + u' ' + text(screen, "txtUnitNo"), state);
        QCOMPARE(t.prompter().texts().contains(MessageTexts::NoActionRights), refused);
        QCOMPARE(committedUnits(t.session()), units);
        // Without the modify right a record's fields and child cells stay as they are.
        const bool mayModify = !missing.contains(u"EqMod"_s);
        QCOMPARE(child(screen, "txtUnitNo")->isReadOnly(), !mayModify);
        click(screen, "cmdFirst");
        child<QTableWidget>(screen, "grdPart")->item(0, 1)->setText(u"9"_s);
        QCOMPARE(screen.isEditing(), mayModify);
    }

    void missingLookupWarnsOnceAndChangesNothing()
    {
        TANDRILL_INSTALLATION(t);
        seedMachines(t.session());
        run(t.session(), u"UPDATE tblEquipment SET EquipmentType = 999, Inactive = '1'"_s);
        MachineScreen screen(t.session());
        screen.show();
        QCOMPARE(t.prompter().texts(), QStringList{MessageTexts::LookupItemDeleted});
        QCOMPARE(screen.modeText(), u"B"_s);
        QVERIFY(child<QCheckBox>(screen, "chkInactive")->isChecked());
        QCOMPARE(committed(t.session(), u"SELECT DISTINCT EquipmentType FROM tblEquipment"_s),
                 u"999"_s);
    }

    void fieldKindsRoundTrip()
    {
        TANDRILL_INSTALLATION(t);
        run(t.session(), u"INSERT INTO tblIndicator (ParentId, ItemName) VALUES (1, 'Mower')"_s);
        MachineScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), u"cmdAdd|txtUnitNo+U1|txtPayment+12.5"_s, "grdMachine");
        child<QComboBox>(screen, "cboType")->setCurrentIndex(1);
        child<DateBox>(screen, "datInstalled")->setValue(QDate(2024, 2, 29));
        click(screen, "cmdUpdate");
        const QString stored = u"SELECT CAST(InstalledDate AS TEXT) || ' ' || LeasePayment || ' ' "
                               "|| Inactive || ' ' || EquipmentType FROM tblEquipment"_s;
        QCOMPARE(committed(t.session(), stored), u"2024-02-29 12.5 0 18"_s);
        QCOMPARE(text(screen, "txtPayment"), u"12.50"_s);
        // An emptied date is stored as the empty date, NULL.
        child<DateBox>(screen, "datInstalled")->setValue(QDate());
        click(screen, "cmdUpdate");
        QCOMPARE(committed(t.session(), u"SELECT COUNT(*) FROM tblEquipment "
                                        "WHERE InstalledDate IS NULL"_s),
                 u"1"_s);
    }

    void failedSaveKeepsInputModeAndTransaction()
    {
        TANDRILL_INSTALLATION(t);
        seedMachines(t.session());
        // The engine, not the screen, refuses a second machine with the same payment.
        run(t.session(), u"CREATE UNIQUE INDEX one_payment ON tblEquipment (LeasePayment)"_s);
        run(t.session(), u"UPDATE tblEquipment SET LeasePayment = 5 WHERE EquipmentID = 1"_s);
        MachineScreen screen(t.session());
        screen.show();
        perform(screen, t.prompter(), u"cmdAdd|txtUnitNo+U40|txtPayment+5|cmdUpdate"_s,
                "grdMachine");
        QCOMPARE(screen.modeText() + u' ' + text(screen, "txtPayment"), u"A 5"_s);
        QCOMPARE(t.failures().failures().size(), 1);
        QVERIFY(t.session().transactionOpen());
        perform(screen, t.prompter(), u"txtPayment=6|cmdUpdate"_s, "grdMachine");
        QCOMPARE(screen.modeText(), u"B"_s);
        QCOMPARE(committedUnits(t.session()), u"U10|U20|U30|U40"_s);
    }

    void placeAndGridLayoutComeBackPerWorkstation()
    {
        TANDRILL_INSTALLATION(t);
        seedMachines(t.session());
        QVERIFY(GridSettings::save(t.session(), u"frmTestMachine"_s, u"tblEquipment"_s,
                                   {{u"Retired"_s, 90, 0, GridSettings::SortType::Ascending},
                                    {u"UnitNo"_s, 80, 1, GridSettings::SortType::Descending}}));
        const QString firstStation = Options::registryValue(t.session(), u"GUID"_s);
        {
            MachineScreen screen(t.session());
            screen.show();
            QCOMPARE(screen.pos(), QPoint(145, 97));       // beside the side bar, below the board
            QCOMPARE(text(screen, "txtUnitNo"), u"U30"_s); // units descending, unknown skipped
            screen.move(300, 200);
            child<RecordGrid>(screen, "grdMachine")->horizontalHeader()->resizeSection(1, 173);
            click(screen, "cmdExit");
        }
        {
            MachineScreen again(t.session());
            again.show();
            QCOMPARE(again.pos(), QPoint(300, 200));
            QCOMPARE(child<RecordGrid>(again, "grdMachine")->horizontalHeader()->sectionSize(1),
                     173);
        }
        Options::setRegistryValue(t.session(), u"GUID"_s, Options::newGuid());
        MachineScreen other(t.session());
        other.show();
        QCOMPARE(other.pos(), QPoint(145, 97));
        Options::setRegistryValue(t.session(), u"GUID"_s, firstStation);
    }
};

QTEST_MAIN(TestRecordScreen)
#include "tst_recordscreen.moc"
