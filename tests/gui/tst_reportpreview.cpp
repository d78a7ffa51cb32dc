#include "LayoutFiles.h"
#include "ReportPreviewScreen.h"
#include "ScreenTest.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QLabel>
#include <QPrintPreviewWidget>
#include <QSqlQuery>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

/** An installation whose equipment list fills two pages. */
void prepare(TestInstallation& t)
{
    QString error;
    QVERIFY2(LayoutFiles::installStandard(t.installation(), &error), qPrintable(error));
    QSqlQuery q(t.session().db());
    for (int i = 1; i <= 60; ++i) {
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                          "Inactive) VALUES (?, ?, ?, '0')"_s,
                          {i, u"Mower %1"_s.arg(i), u"M-%1"_s.arg(i)}));
    }
}

/** Shows the equipment list and runs check on its preview before closing it. */
void showEquipmentList(TestInstallation& t, std::function<void(QDialog*)> check)
{
    bool checked = false;
    onModal<QDialog>("frmReportPreview", [&](QDialog* screen) {
        check(screen);
        checked = true;
        screen->reject();
    });
    QVERIFY(
        ReportPreviewScreen::showReport(t.session(), u"ShowEquipmentListDetail"_s, {}, nullptr));
    QVERIFY(checked);
}

} // namespace

class TestReportPreview : public QObject
{
    Q_OBJECT

private slots:
    void pagesThroughAndFillsTheScreen();
    void exportsTheShownReport_data();
    void exportsTheShownReport();
};

void TestReportPreview::pagesThroughAndFillsTheScreen()
{
    TANDRILL_INSTALLATION(t);
    prepare(t);
    showEquipmentList(t, [](QDialog* screen) {
        QCOMPARE(screen->windowTitle(), u"Report(s)"_s);
        auto* viewer = child<QPrintPreviewWidget>(*screen, "CRViewerReport");
        QCOMPARE(viewer->zoomFactor(), 1.0);
        QStringList seen{child<QLabel>(*screen, "lblPage")->text()};
        for (const char* button : {"cmdNextPage", "cmdNextPage", "cmdFirstPage", "cmdLastPage"}) {
            click(*screen, button);
            seen.append(child<QLabel>(*screen, "lblPage")->text());
        }
        QCOMPARE(seen, split("Page 1 of 2|Page 2 of 2|Page 2 of 2|Page 1 of 2|Page 2 of 2"));
        // The pages fill all below the button strip; too short a screen leaves them as they are.
        screen->resize(500, 400);
        QCOMPARE(viewer->geometry(), QRect(0, 60, 500, 340));
        screen->resize(300, 50);
        QCOMPARE(viewer->geometry(), QRect(0, 60, 500, 340));
    });
}

void TestReportPreview::exportsTheShownReport_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QByteArray>("start");
    QTest::addRow("pdf") << QByteArray("cmdExportPdf") << QByteArray("%PDF");
    QTest::addRow("xlsx") << QByteArray("cmdExportXlsx") << QByteArray("PK");
    QTest::addRow("csv") << QByteArray("cmdExportCsv") << QByteArray("Equipment Name,Unit No");
}

void TestReportPreview::exportsTheShownReport()
{
    QFETCH(QByteArray, button);
    QFETCH(QByteArray, start);
    TANDRILL_INSTALLATION(t);
    prepare(t);
    QTemporaryDir dir;
    const QString path = dir.filePath(u"out"_s);
    showEquipmentList(t, [&](QDialog* screen) {
        ReportPreviewScreen::setNextExportFile(path);
        click(*screen, button.constData());
    });
    QVERIFY(readFile(path).startsWith(start));
}

QTEST_MAIN(TestReportPreview)
#include "tst_reportpreview.moc"
