#include "ErrorHandler.h"
#include "LayoutFiles.h"
#include "Options.h"
#include "ReportRunner.h"
#include "Sql.h"
#include "TestInstallation.h"

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

/** Writes a custom layout, or deletes it when there is no text. */
void writeCustom(const TestInstallation& t, const QString& layout, const QByteArray& text = {})
{
    QFile file(t.installation().path(LayoutFiles::CustomFolder + u'/' + layout + u".rpt"_s));
    QVERIFY(text.isEmpty() ? file.remove()
                           : file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
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

    void statementJoinsQueryFilterAndEnding_data()
    {
        QTest::addColumn<QString>("report");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("statement"); ///< what follows the report's query
        const QString list = u"ShowEquipmentListDetail"_s;
        QTest::addRow("empty") << list << QString()
                               << u" ORder by tblEquipment.EquipmentName ASC"_s;
        QTest::addRow("blank") << list << u"   "_s << u" ORder by tblEquipment.EquipmentName ASC"_s;
        QTest::addRow("filter inside the ending")
            << u"ShowInventoryReport"_s << u"WHERE Bin = ?"_s
            << u" WHERE Bin = ? and TrackInventory=0 Order by tblPart.PartID"_s;
        QTest::addRow("ending without blank") << u"ShowSupplierReport"_s << u"WHERE Name = ?"_s
                                              << u" WHERE Name = ? order by tblSupplier.Name"_s;
    }

    void statementJoinsQueryFilterAndEnding()
    {
        QFETCH(QString, report);
        QFETCH(QString, filter);
        QFETCH(QString, statement);
        const ReportDefinition& definition = *ReportCatalogue::find(report);
        QCOMPARE(ReportRunner::statement(definition, filter).mid(definition.baseQuery.size()),
                 statement);
    }

    void customLayoutWinsUntilDeleted()
    {
        TANDRILL_INSTALLATION(t);
        prepare(t);
        RecordingRunner r(t.session());
        writeCustom(t, u"rptEquipmentList"_s, R"({"columns": [{"field": "Colour", "width": 5}]})");
        QVERIFY(!r.runner.showEquipmentListDetail({}));
        const Failure failure = t.failures().failures().value(0);
        QCOMPARE(failure.module + u'.' + failure.procedure,
                 u"frmReportPreview.ShowEquipmentListDetail"_s);
        QCOMPARE(failure.description, u"The report layout rptEquipmentList shows the field Colour, "
                                      "which its query does not give."_s);

        writeCustom(t, u"rptEquipmentList"_s, MineWithoutCompany);
        QVERIFY(r.runner.showEquipmentListDetail({}));
        writeCustom(t, u"rptEquipmentList"_s);
        QVERIFY(r.runner.showEquipmentListDetail({}));
        QCOMPARE(r.shown.size(), 2);
        QCOMPARE(r.shown[0].layout().title, u"Mine"_s); // printed, without a company line
        QCOMPARE(r.shown[0].rowCount(), 3);
        QCOMPARE(r.shown[1].layout().title, u"Equipment List"_s);
        QCOMPARE(headerText(r.shown[1], u"lblCompanyName"_s), u"Greenway Grounds"_s);
    }

    void misspeltFilterAsksForTheWholeList_data()
    {
        QTest::addColumn<bool>("yes");
        QTest::addRow("yes shows every row") << true;
        QTest::addRow("no shows nothing") << false;
    }

    void misspeltFilterAsksForTheWholeList()
    {
        QFETCH(bool, yes);
        TANDRILL_INSTALLATION(t);
        prepare(t);
        RecordingRunner r(t.session());
        t.prompter().queueAnswer(yes ? Prompter::Answer::Yes : Prompter::Answer::No);
        QCOMPARE(r.runner.showEquipmentListDetail({u"WHERE tblEquipment.EquipmentNam = ?"_s, {1}}),
                 yes);
        QCOMPARE(t.prompter().texts(),
                 QStringList{u"Incorrect filter. Show all Equipment Details?"_s});
        QCOMPARE(t.prompter().shown()[0].buttons, Prompter::Buttons::YesNo);
        QCOMPARE(r.shown.size() == 1 && r.shown[0].rowCount() == 3, yes);
        QVERIFY(t.failures().isEmpty());
    }

    void filterMatchingNothingShowsNoViewer()
    {
        TANDRILL_INSTALLATION(t);
        prepare(t);
        RecordingRunner r(t.session());
        QVERIFY(
            !r.runner.showEquipmentListDetail({u"WHERE tblEquipment.UnitNo = ?"_s, {u"Z-9"_s}}));
        QVERIFY(r.shown.isEmpty());
        QCOMPARE(t.prompter().texts(),
                 QStringList{u"No records met the conditions that were specified."_s});
    }

    void errorListTakesOnlyTheStandardLayout()
    {
        TANDRILL_INSTALLATION(t);
        RecordingRunner r(t.session());
        QVERIFY(!r.runner.showErrorList());
        prepare(t);
        writeCustom(t, u"rptErrorReport"_s, MineWithoutCompany);
        QVERIFY(!r.runner.showErrorList());
        QCOMPARE(t.prompter().texts(),
                 (QStringList{u"Report not found."_s, u"No records found."_s}));
        QVERIFY(saveErrorList(t.session(), Failure{u"modX"_s, u"DoIt"_s, 5, u"Broke"_s, 7}));
        Options::setOption(t.session(), u"DBversion"_s, u"42"_s);
        QVERIFY(r.runner.showErrorList());
        const ReportDocument& shown = r.shown.at(0);
        QCOMPARE(shown.layout().title, u"Error Report"_s);
        QCOMPARE(headerText(shown, u"lblCompanyName"_s), u"Greenway Grounds"_s);
        QCOMPARE(headerText(shown, u"lblDBversion"_s), u"42"_s);
    }

    void detailReportsTypeAndCaptionTheirValues()
    {
        TANDRILL_INSTALLATION(t);
        prepare(t);
        Options::setOption(t.session(), u"UserDefinedField2"_s, u"Fuel card"_s);
        RecordingRunner r(t.session());
        QVERIFY(r.runner.show(*ReportCatalogue::find(u"ShowEquipmentInspectionReport"_s),
                              {u"WHERE EquipmentID = ?"_s, {2}}));
        QVERIFY(r.runner.show(*ReportCatalogue::find(u"ShowEquipmentDetailReport"_s)));
        const ReportDocument &inspection = r.shown.at(0), &detail = r.shown.at(1);
        // UnitNo, EquipmentName, InspectionDate, typed alike on both engines
        QCOMPARE(
            (QVariantList{inspection.value(0, 0), inspection.value(0, 1), inspection.value(0, 2)}),
            (QVariantList{u"T-1"_s, u"Truck"_s, QDate(2025, 6, 30)}));
        QCOMPARE(detail.caption(detail.layout().columnOf(u"UserDefined2"_s)), u"Fuel card"_s);
    }

private:
    /** An installation with its standard layouts and three machines. */
    static void prepare(TestInstallation& t)
    {
        QString error;
        QVERIFY2(LayoutFiles::installStandard(t.installation(), &error), qPrintable(error));
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                             "InspectionDate, Inactive) VALUES (1, 'Mower', 'M-1', NULL, '0'), "
                             "(2, 'Truck', 'T-1', '2025-06-30', '0'), "
                             "(3, 'Blower', 'B-1', NULL, '0')"_s));
        Options::setOption(t.session(), u"GEN_COMPANY_NAME"_s, u"Greenway Grounds"_s);
    }
};

QTEST_MAIN(TestReportRunner)
#include "tst_reportrunner.moc"
