#include "LayoutReader.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestLayoutReader : public QObject
{
    Q_OBJECT

private slots:
    void readsEveryPart();
    void damagedLayoutNamesTheProblem_data();
    void damagedLayoutNamesTheProblem();
};

void TestLayoutReader::readsEveryPart()
{
    const QByteArray text = R"({"title": "Services",
        "page": {"size": "A4", "orientation": "landscape", "margins": {"left": 20}},
        "pageHeader": [{"name": "lblCompanyName", "bold": true, "align": "center"},
                       {"name": "lblNote", "text": "fixed", "row": 0, "left": 100}],
        "columns": [{"field": "Name", "caption": "Service", "width": 60},
                    {"field": "Cost", "width": 20, "format": "money"}],
        "groups": [{"field": "Period", "header": "Period {value}", "totals": ["Cost"]}],
        "reportFooter": {"label": "Total", "totals": [{"field": "Name", "function": "count"}]}})";
    QString error;
    const std::optional<ReportLayout> layout = LayoutReader::parse(text, u"rptX"_s, &error);
    QVERIFY2(layout, qPrintable(error));
    QCOMPARE(layout->page.orientation(), QPageLayout::Landscape);
    QCOMPARE(layout->page.pageSize().id(), QPageSize::A4);
    QCOMPARE(layout->header[1].row, 0); // beside the first, not below it
    QCOMPARE(layout->columns[1].align, Qt::AlignRight);
    QCOMPARE(layout->columns[1].format.kind, ValueFormat::Kind::Money);
    QCOMPARE(layout->fields(), (QStringList{u"Name"_s, u"Cost"_s, u"Period"_s}));
    QCOMPARE(layout->footer.totals[0].function, ReportTotal::Function::Count);
}

void TestLayoutReader::damagedLayoutNamesTheProblem_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    const QByteArray column = R"("columns": [{"field": "Name", "width": 10}])";
    QTest::addRow("not JSON") << QByteArray("{\"title\": ") << u"it is no layout file"_s;
    QTest::addRow("unknown key") << "{" + column + R"(, "colour": 1})"
                                 << u"The layout has an unknown key \"colour\"."_s;
    QTest::addRow("no columns") << QByteArray("{}") << u"it has no columns."_s;
    QTest::addRow("column without width") << QByteArray(R"({"columns": [{"field": "Name"}]})")
                                          << u"the column Name needs a width above 0."_s;
    QTest::addRow("unknown format")
        << QByteArray(R"({"columns": [{"field": "Name", "width": 5, "format": "euro"}]})")
        << u"the format \"euro\" of the column Name is unknown."_s;
    QTest::addRow("page size") << "{" + column + R"(, "page": {"size": "B5"}})"
                               << u"the page size \"B5\" is none of Letter, Legal, A4."_s;
    QTest::addRow("alignment") << "{" + column + R"(, "pageFooter": {"align": "middle"}})"
                               << u"the alignment \"middle\" is none of left, center, right."_s;
    QTest::addRow("total on a hidden field")
        << "{" + column + R"(, "reportFooter": {"totals": ["Cost"]}})"
        << u"The report footer totals the field \"Cost\", which no column shows."_s;
    QTest::addRow("text object twice")
        << "{" + column + R"(, "pageHeader": [{"name": "lblA"}, {"name": "LBLA"}]})"
        << u"the text object LBLA stands twice."_s;
}

void TestLayoutReader::damagedLayoutNamesTheProblem()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    QString error;
    QVERIFY(!LayoutReader::parse(text, u"rptBroken"_s, &error));
    QVERIFY2(error.startsWith(u"The report layout rptBroken is damaged: "_s), qPrintable(error));
    QVERIFY2(error.contains(problem), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestLayoutReader)
#include "tst_layoutreader.moc"
