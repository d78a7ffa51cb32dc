#include "ErrorHandler.h"
#include "LayoutFiles.h"
#include "Options.h"
#include "ReportRunner.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** A runner whose viewer keeps a copy of what it was given. */
struct RecordingRunner
{
    explicit RecordingRunner(Session& session)
        : runner(session, [this](ReportDocument& document) { shown.append(document); })
    {}
    ReportRunner runner;
    QList<ReportDocument> shown;
};

QString headerText(const ReportDocument& document, const QString& name)
{
    return document.text(*document.layout().textObject(name));
}

void addEquipment(Session& session, qint64 id, const QString& name, const QString& unit,
                  const QString& inspection = QString())
{
    QSqlQuery q(session.db());
    QVERIFY(Sql::exec(q,
                      u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                      "InspectionDate, Inactive) VALUES (?, ?, ?, ?, '0')"_s,
                      {id, name, unit, inspection.isEmpty() ? QVariant() : QVariant(inspection)}));
}

void writeCustom(const TestInstallation& t, const QString& layout, const QByteArray& text)
{
    QFile file(t.installation().path(LayoutFiles::CustomFolder + u'/' + layout + u".rpt"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

const QByteArray MineWithoutCompany =
    R"({"title": "Mine", "pageHeader": [{"name": "lblTitle", "text": "Mine"}],
        "columns": [{"field": "EquipmentName", "width": 50}]})";

} // namespace

class TestReportRunner : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }
    void statementJoinsQueryFilterAndEnding_data();
    void statementJoinsQueryFilterAndEnding();
    void customLayoutWinsUntilDeleted();
    void badFilterAsksForTheWholeList_data();
    void badFilterAsksForTheWholeList();
    void filterMatchingNothingShowsNoViewer();
    void unknownFieldFailsNamingLayoutAndField();
    void errorListTakesOnlyTheStandardLayout();
    void valuesAreTypedAlikeOnBothEngines();
    void detailCaptionsTheUserFields();

private:
    /** An installation with its standard layouts and three machines. */
    static void prepare(TestInstallation& t)
    {
        QString error;
        QVERIFY2(LayoutFiles::installStandard(t.installation(), &error), qPrintable(error));
        addEquipment(t.session(), 1, u"Mower"_s, u"M-1"_s);
        addEquipment(t.session(), 2, u"Truck"_s, u"T-1"_s, u"2025-06-30"_s);
        addEquipment(t.session(), 3, u"Blower"_s, u"B-1"_s);
        Options::setOption(t.session(), u"GEN_COMPANY_NAME"_s, u"Greenway Grounds"_s);
    }
};

void TestReportRunner::statementJoinsQueryFilterAndEnding_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("statement"); ///< what follows the report's query
    const QString list = u"ShowEquipmentListDetail"_s, reorder = u"ShowInventoryReOrderReport"_s;
    QTest::addRow("empty") << list << QString() << u" ORder by tblEquipment.EquipmentName ASC"_s;
    QTest::addRow("blank") << list << u"   "_s << u" ORder by tblEquipment.EquipmentName ASC"_s;
    QTest::addRow("with its WHERE")
        << list << u" Where a = ? "_s << u" Where a = ? ORder by tblEquipment.EquipmentName ASC"_s;
    QTest::addRow("inventory, empty") << u"ShowInventoryReport"_s << QString()
                                      << u" where TrackInventory=0 Order by tblPart.PartID"_s;
    QTest::addRow("inventory, filtered")
        << u"ShowInventoryReport"_s << u"WHERE Bin = ?"_s
        << u" WHERE Bin = ? and TrackInventory=0 Order by tblPart.PartID"_s;
    QTest::addRow("reorder, empty")
        << reorder << QString()
        << u" WHERE Inactive = 0 and TrackInventory=0 and (Quantity<QtyMin)"_s;
    QTest::addRow("reorder, condition")
        << reorder << u"Bin = ?"_s << u" Where Inactive = 0 and TrackInventory=0 and Bin = ?"_s;
    QTest::addRow("ending without blank") << u"ShowSupplierReport"_s << u"WHERE Name = ?"_s
                                          << u" WHERE Name = ? order by tblSupplier.Name"_s;
}

void TestReportRunner::statementJoinsQueryFilterAndEnding()
{
    QFETCH(QString, report);
    QFETCH(QString, filter);
    QFETCH(QString, statement);
    const ReportDefinition& definition = *ReportCatalogue::find(report);
    QCOMPARE(ReportRunner::statement(definition, filter).mid(definition.baseQuery.size()),
             statement);
}

void TestReportRunner::customLayoutWinsUntilDeleted()
{
    TANDRILL_INSTALLATION(t);
    prepare(t);
    RecordingRunner r(t.session());
    writeCustom(t, u"rptEquipmentList"_s, MineWithoutCompany);
    QVERIFY(r.runner.showEquipmentListDetail({}));
    QVERIFY(QFile::remove(t.installation().path(u"Custom Reports/rptEquipmentList.rpt"_s)));
    QVERIFY(r.runner.showEquipmentListDetail({}));
    QCOMPARE(r.shown.size(), 2);
    QCOMPARE(r.shown[0].layout().title, u"Mine"_s); // printed, without a company line
    QCOMPARE(r.shown[0].rowCount(), 3);
    QCOMPARE(r.shown[1].layout().title, u"Equipment List"_s);
    QCOMPARE(headerText(r.shown[1], u"lblCompanyName"_s), u"Greenway Grounds"_s);
}

void TestReportRunner::badFilterAsksForTheWholeList_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<bool>("onSQLite");
    const QString misspelt = u"WHERE tblEquipment.EquipmentNam = ?"_s;
    QTest::addRow("unknown name, yes") << misspelt << QVariantList{u"x"_s} << true << true;
    QTest::addRow("unknown name, no") << misspelt << QVariantList{u"x"_s} << false << true;
    QTest::addRow("syntax error, yes")
        << u"WHERE EquipmentName = = ?"_s << QVariantList{u"x"_s} << true << true;
    // SQLite compares values of any types without failing.
    QTest::addRow("type mismatch, yes")
        << u"WHERE tblEquipment.EquipmentID = ?"_s << QVariantList{u"abc"_s} << true << false;
}

void TestReportRunner::badFilterAsksForTheWholeList()
{
    QFETCH(QString, where);
    QFETCH(QVariantList, values);
    QFETCH(bool, yes);
    QFETCH(bool, onSQLite);
    if (!onSQLite && !TestInstallation::wantsPostgres()) {
        QSKIP("no such failure on SQLite");
    }
    TANDRILL_INSTALLATION(t);
    prepare(t);
    RecordingRunner r(t.session());
    t.prompter().queueAnswer(yes ? Prompter::Answer::Yes : Prompter::Answer::No);
    QCOMPARE(r.runner.showEquipmentListDetail({where, values}), yes);
    QCOMPARE(t.prompter().texts(), QStringList{u"Incorrect filter. Show all Equipment Details?"_s});
    QCOMPARE(t.prompter().shown()[0].buttons, Prompter::Buttons::YesNo);
    QCOMPARE(r.shown.size() == 1 && r.shown[0].rowCount() == 3, yes);
    QVERIFY(t.failures().isEmpty());
}

void TestReportRunner::filterMatchingNothingShowsNoViewer()
{
    TANDRILL_INSTALLATION(t);
    prepare(t);
    RecordingRunner r(t.session());
    QVERIFY(!r.runner.showEquipmentListDetail({u"WHERE tblEquipment.UnitNo = ?"_s, {u"Z-9"_s}}));
    QVERIFY(r.shown.isEmpty());
    QCOMPARE(t.prompter().texts(),
             QStringList{u"No records met the conditions that were specified."_s});
    QCOMPARE(t.prompter().shown()[0].icon, Prompter::Icon::Information);
}

void TestReportRunner::unknownFieldFailsNamingLayoutAndField()
{
    TANDRILL_INSTALLATION(t);
    prepare(t);
    RecordingRunner r(t.session());
    writeCustom(t, u"rptEquipmentList"_s, R"({"columns": [{"field": "Colour", "width": 5}]})");
    QVERIFY(!r.runner.showEquipmentListDetail({}));
    QVERIFY(r.shown.isEmpty());
    const Failure failure = t.failures().failures().value(0);
    QCOMPARE(failure.module + u'.' + failure.procedure,
             u"frmReportPreview.ShowEquipmentListDetail"_s);
    QCOMPARE(failure.description, u"The report layout rptEquipmentList shows the field Colour, "
                                  "which its query does not give."_s);
}

void TestReportRunner::errorListTakesOnlyTheStandardLayout()
{
    TANDRILL_INSTALLATION(t);
    RecordingRunner r(t.session());
    QVERIFY(!r.runner.showErrorList());
    QCOMPARE(t.prompter().texts(), QStringList{u"Report not found."_s});
    prepare(t);
    writeCustom(t, u"rptErrorReport"_s, MineWithoutCompany);
    t.prompter().clear();
    QVERIFY(!r.runner.showErrorList());
    QCOMPARE(t.prompter().texts(), QStringList{u"No records found."_s});
    QVERIFY(saveErrorList(t.session(), Failure{u"modX"_s, u"DoIt"_s, 5, u"Broke"_s, 7}));
    Options::setOption(t.session(), u"DBversion"_s, u"42"_s);
    QVERIFY(r.runner.showErrorList());
    const ReportDocument& shown = r.shown.at(0);
    QCOMPARE(shown.layout().title, u"Error Report"_s);
    QCOMPARE(headerText(shown, u"lblCompanyName"_s), u"Greenway Grounds"_s);
    QCOMPARE(headerText(shown, u"lblDBversion"_s), u"42"_s);
    QCOMPARE(headerText(shown, u"lblVersion"_s), Options::versionNo(t.session()));
}

void TestReportRunner::valuesAreTypedAlikeOnBothEngines()
{
    TANDRILL_INSTALLATION(t);
    prepare(t);
    RecordingRunner r(t.session());
    QVERIFY(r.runner.show(*ReportCatalogue::find(u"ShowEquipmentInspectionReport"_s),
                          {u"WHERE EquipmentID = ?"_s, {2}}));
    // UnitNo, EquipmentName, InspectionDate
    const ReportDocument& shown = r.shown.at(0);
    QCOMPARE((QVariantList{shown.value(0, 0), shown.value(0, 1), shown.value(0, 2)}),
             (QVariantList{u"T-1"_s, u"Truck"_s, QDate(2025, 6, 30)}));
}

void TestReportRunner::detailCaptionsTheUserFields()
{
    TANDRILL_INSTALLATION(t);
    prepare(t);
    Options::setOption(t.session(), u"UserDefinedField2"_s, u"Fuel card"_s);
    RecordingRunner r(t.session());
    QVERIFY(r.runner.show(*ReportCatalogue::find(u"ShowEquipmentDetailReport"_s)));
    const ReportDocument& shown = r.shown.at(0);
    const int column = shown.layout().columnOf(u"UserDefined2"_s);
    QCOMPARE(shown.caption(column), u"Fuel card"_s);
}

QTEST_MAIN(TestReportRunner)
#include "tst_reportrunner.moc"
