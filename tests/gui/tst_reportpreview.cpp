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

class TestReportPreview : public QObject
{
    Q_OBJECT

private slots:
    void pagesThroughExportsAndFillsTheScreen();
};

void TestReportPreview::pagesThroughExportsAndFillsTheScreen()
{
    TANDRILL_INSTALLATION(t);
    QString error;
    QVERIFY2(LayoutFiles::installStandard(t.installation(), &error), qPrintable(error));
    QSqlQuery q(t.session().db());
    for (int i = 1; i <= 60; ++i) { // two pages of the equipment list
        QVERIFY(Sql::exec(q,
                          u"INSERT INTO tblEquipment (EquipmentID, EquipmentName, UnitNo, "
                          "Inactive) VALUES (?, ?, ?, '0')"_s,
                          {i, u"Mower %1"_s.arg(i), u"M-%1"_s.arg(i)}));
    }
    QTemporaryDir dir;
    bool checked = false;
    onModal<QDialog>("frmReportPreview", [&](QDialog* screen) {
        auto* viewer = child<QPrintPreviewWidget>(*screen, "CRViewerReport");
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
        for (const char* button : {"cmdExportPdf", "cmdExportXlsx"}) {
            ReportPreviewScreen::setNextExportFile(dir.filePath(QString::fromLatin1(button)));
            click(*screen, button);
        }
        checked = true;
        screen->reject();
    });
    QVERIFY(
        ReportPreviewScreen::showReport(t.session(), u"ShowEquipmentListDetail"_s, {}, nullptr));
    QVERIFY(checked);
    QVERIFY(readFile(dir.filePath(u"cmdExportPdf"_s)).startsWith("%PDF"));
    QVERIFY(readFile(dir.filePath(u"cmdExportXlsx"_s)).startsWith("PK"));
}

QTEST_MAIN(TestReportPreview)
#include "tst_reportpreview.moc"
