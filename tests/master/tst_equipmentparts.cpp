#include "EquipmentParts.h"
#include "Sql.h"
#include "TestInstallation.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

// A picker's result text: records by "@@@@", fields by U+2020.
class TestEquipmentParts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void addsPicksListsAndRemovesByPart_data()
    {
        QTest::addColumn<QString>("picked");
        QTest::addColumn<QString>("removed");
        QTest::addColumn<QString>("listed");
        QTest::addColumn<QString>("exclude");
        const QChar f(0x2020);
        QTest::newRow("two picks, one without price or supplier")
            << u"O'B"_s + f + u"2"_s + f + u"3.5"_s + f + u"4@@@@P2"_s + f + u"1"_s + f + f
            << QString() << u"O'B|2|7|4;P2|1|0|0"_s << u"'O''B','P2'"_s;
        QTest::newRow("a removal leaves the other part")
            << u"P1"_s + f + u"1"_s + f + u"2"_s + f + u"@@@@P2"_s + f + u"3"_s + f + u"1"_s + f
            << u"P1"_s << u"P2|3|3|0"_s << u"'P2'"_s;
    }
    void addsPicksListsAndRemovesByPart()
    {
        QFETCH(QString, picked);
        QFETCH(QString, removed);
        QFETCH(QString, listed);
        QFETCH(QString, exclude);
        TANDRILL_INSTALLATION(t);
        EquipmentParts parts(t.session());
        QVERIFY(parts.addPicked(1, picked));
        QVERIFY(parts.addPicked(2, u"P1"_s + QChar(0x2020) + u"9"_s));
        if (!removed.isEmpty()) {
            QVERIFY(parts.removePart(1, removed));
        }
        QStringList rows;
        for (const QSqlRecord& row : parts.rows(1)) {
            QSqlQuery q(t.session().db());
            QVERIFY(Sql::exec(q,
                              u"SELECT SupplierID FROM tblEquipmentPart WHERE EquipmentID = 1 "
                              "AND PartID = ?"_s,
                              {row.value(0)}) &&
                    q.next());
            rows.append(QStringList{row.value(0).toString(), row.value(2).toString(),
                                    QString::number(row.value(3).toDouble()),
                                    QString::number(q.value(0).toLongLong())}
                            .join(u'|'));
        }
        QCOMPARE(rows.join(u';'), listed);
        QCOMPARE(parts.excludeText(1), exclude);
        QCOMPARE(parts.rows(2).size(), 1);
    }
};

QTEST_MAIN(TestEquipmentParts)
#include "tst_equipmentparts.moc"
