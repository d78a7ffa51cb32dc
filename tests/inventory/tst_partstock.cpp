#include "InventoryCheckIn.h"
#include "PartPicker.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/**
 * A-1 2 on hand, reorder at 2; B'2 none on hand; C-3 5, reorder at 1, inactive;
 * D_4 a belt, 1 on hand, reorder at 3, from supplier Acme.
 */
void seedParts(Session& session)
{
    QSqlQuery q(session.db());
    Sql::exec(q, u"INSERT INTO tblSupplier (SupplierID, Name) VALUES (4, 'Acme')"_s);
    Sql::exec(q, u"INSERT INTO tblPart (PartID, Description, Quantity, QtyMin, Price, Inactive, "
                 "SupplierID) VALUES ('A-1', 'Blade', 2, 2, 12.5, 0, 0), "
                 "('B''2', 'Bolt', NULL, 1, 0.25, 0, 0), ('C-3', 'Cap', 5, 1, 3, -1, 0), "
                 "('D_4', 'Belt', 1, 3, NULL, NULL, 4)"_s);
}

QStringList partIds(const Rows& rows)
{
    QStringList ids;
    for (const QSqlRecord& row : rows) {
        ids.append(row.value(u"PartID"_s).toString());
    }
    return ids;
}

} // namespace

class TestPartStock : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void listsForCheckInAndPicking_data()
    {
        QTest::addColumn<bool>("picker");
        QTest::addColumn<bool>("reorderOnly");
        QTest::addColumn<QString>("exclude");
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("listed");
        QTest::addRow("check-in: every part")
            << false << false << u""_s << u""_s << u"A-1 B'2 C-3 D_4"_s;
        QTest::addRow("check-in: at or under reorder point")
            << false << true << u""_s << u""_s << u"A-1 D_4"_s;
        QTest::addRow("check-in: number prefix, any case")
            << false << false << u""_s << u"b'"_s << u"B'2"_s;
        QTest::addRow("check-in: description prefix")
            << false << true << u""_s << u"BE"_s << u"D_4"_s;
        QTest::addRow("check-in: wildcard typed is plain")
            << false << false << u""_s << u"_"_s << u""_s;
        QTest::addRow("picker: active parts")
            << true << false << u""_s << u""_s << u"A-1 B'2 D_4"_s;
        QTest::addRow("picker: apostrophe excluded")
            << true << false << u"'a-1', 'B''2'"_s << u""_s << u"D_4"_s;
        QTest::addRow("picker: exclusion and search")
            << true << false << u"'D_4'"_s << u"b"_s << u"A-1 B'2"_s;
    }
    void listsForCheckInAndPicking()
    {
        QFETCH(bool, picker);
        QFETCH(bool, reorderOnly);
        QFETCH(QString, exclude);
        QFETCH(QString, search);
        QFETCH(QString, listed);
        TANDRILL_INSTALLATION(t);
        seedParts(t.session());
        const Rows rows = picker ? PartPicker(t.session()).list(exclude, search)
                                 : InventoryCheckIn(t.session()).list(reorderOnly, search);
        QCOMPARE(partIds(rows).join(u' '), listed);
        QVERIFY(t.failures().isEmpty());
    }

    void checkInWritesOnlyTheGivenRows()
    {
        TANDRILL_INSTALLATION(t);
        seedParts(t.session());
        InventoryCheckIn checkIn(t.session());
        const Rows shown = checkIn.list(false, u"A"_s);
        // Written from what was listed, whatever the stock meanwhile.
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, u"UPDATE tblPart SET Quantity = 40 WHERE PartID = 'A-1'"_s));
        QVERIFY(checkIn.save({{u"A-1"_s, shown[0].value(u"Quantity"_s), 5},
                              {u"B'2"_s, QVariant(), 3},
                              {u"C-3"_s, 5.0, -1.5}}));
        QStringList stock;
        for (const QSqlRecord& row : checkIn.list(false, {})) {
            stock.append(row.value(u"Quantity"_s).toString());
        }
        QCOMPARE(stock, (QStringList{u"7"_s, u"3"_s, u"3.5"_s, u"1"_s}));
    }

    void resultTextAndDelete()
    {
        const QString text = PartPicker::resultText(
            {{u"A-1"_s, 2, 12.5, QVariant()}, {u"O'Brien"_s, 1, 3.0, qint64(4)}});
        QCOMPARE(text.toUtf8(), QByteArray("A-1\xE2\x80\xA0"
                                           "2\xE2\x80\xA0"
                                           "12.5\xE2\x80\xA0@@@@O'Brien\xE2\x80\xA0"
                                           "1\xE2\x80\xA0"
                                           "3\xE2\x80\xA0"
                                           "4"));
        QCOMPARE(PartPicker::resultText({}), QString());

        TANDRILL_INSTALLATION(t);
        seedParts(t.session());
        QSqlQuery q(t.session().db());
        QVERIFY(
            Sql::exec(q, u"INSERT INTO tblTempServicePart (PartID) VALUES ('B''2'), ('A-1')"_s));
        QVERIFY(PartPicker(t.session()).deletePart(u"B'2"_s));
        QVERIFY(Sql::exec(q, u"SELECT (SELECT COUNT(*) FROM tblPart) * 10 + "
                             "(SELECT COUNT(*) FROM tblTempServicePart)"_s) &&
                q.next());
        QCOMPARE(q.value(0).toInt(), 31);
    }
};

QTEST_GUILESS_MAIN(TestPartStock)
#include "tst_partstock.moc"
