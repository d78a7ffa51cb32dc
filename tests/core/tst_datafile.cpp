#include "DataFile.h"
#include "Options.h"
#include "PasswordHash.h"
#include "Schema.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QFile>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

class TestDataFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void everyTableAndColumnExists()
    {
        TANDRILL_INSTALLATION(t);
        for (const Schema::Table& table : Schema::instance().tables()) {
            const QSqlRecord record = t.session().db().record(table.name.toLower());
            QVERIFY2(!record.isEmpty(), qPrintable(table.name));
            for (const Schema::Column& column : table.columns) {
                QVERIFY2(record.contains(column.name.toLower()),
                         qPrintable(table.name + u'.' + column.name));
            }
        }
    }

    void dataModelPageNamesEveryTableAndColumn()
    {
        QFile page(QStringLiteral(TANDRILL_DATA_MODEL_DOC));
        QVERIFY2(page.open(QIODevice::ReadOnly | QIODevice::Text), TANDRILL_DATA_MODEL_DOC);
        const QString text = QString::fromUtf8(page.readAll());
        for (const Schema::Table& table : Schema::instance().tables()) {
            const QString heading = QStringLiteral("\n### %1\n").arg(table.name);
            const qsizetype start = text.indexOf(heading);
            QVERIFY2(start >= 0, qPrintable(table.name));
            const qsizetype end = text.indexOf(QStringLiteral("\n### "), start + heading.size());
            const QString section = text.mid(start, end < 0 ? -1 : end - start);
            for (const Schema::Column& column : table.columns) {
                QVERIFY2(section.contains(QStringLiteral("| `%1` |").arg(column.name)),
                         qPrintable(table.name + u'.' + column.name));
            }
        }
    }

    void fixedListsAndNewItemsNumberAfterThem()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(
            q, QStringLiteral("SELECT COUNT(*) FROM tblIndicator WHERE ItemID BETWEEN 1 AND 17")));
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toInt(), 17);
        QVERIFY(
            Sql::exec(q,
                      QStringLiteral("INSERT INTO tblIndicator (ParentId, ItemName, Show, FSize) "
                                     "VALUES (1, ?, -1, 0) RETURNING ItemID"),
                      {QStringLiteral("Österreich")}));
        QVERIFY(q.next());
        QCOMPARE(q.value(0).toInt(), 18);
    }

    void chiefHasHashedPasswordAndEveryRight()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(q, QStringLiteral("SELECT * FROM tblUser WHERE UserName = ?"),
                          {QStringLiteral("Chief")}));
        QVERIFY(q.next());
        const QString stored = q.value(QStringLiteral("Password")).toString();
        QVERIFY(stored != QLatin1String("chief"));
        QVERIFY(PasswordHash::verify(stored, QStringLiteral("chief")));
        QVERIFY(!PasswordHash::verify(stored, QStringLiteral("Chief")));
        QCOMPARE(q.value(QStringLiteral("InvPartHistory")).toString(), QStringLiteral("1"));
    }

    void flagColumnsRefuseOtherValues()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(!Sql::exec(
            q, QStringLiteral("INSERT INTO tblPart (PartID, Inactive) VALUES ('P1', 1)")));
        QVERIFY(!Sql::exec(
            q,
            QStringLiteral("INSERT INTO tblEmployee (EmployeeID, Inactive) VALUES ('E1', 'Y')")));
        QVERIFY(Sql::exec(q, QStringLiteral("INSERT INTO tblPart (PartID, Inactive) VALUES (?, ?)"),
                          {QStringLiteral("P1"), SqlValue::yesNo(true)}));
    }

    void workOrderDateIsFilledAtInsert()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        QVERIFY(Sql::exec(
            q,
            QStringLiteral("INSERT INTO tblWorkorder (EquipmentID) VALUES (1) RETURNING WoDate")));
        QVERIFY(q.next());
        QVERIFY(SqlValue::toDate(q.value(0)).isValid());
    }

    void engineKeysAreNeverHandedOutTwice()
    {
        TANDRILL_INSTALLATION(t);
        QSqlQuery q(t.session().db());
        int checked = 0;
        for (const Schema::Table& table : Schema::instance().tables()) {
            const Schema::Column& key = table.columns.first();
            if (key.type != Schema::Type::AutoKey) {
                continue;
            }
            const QString insert =
                QStringLiteral("INSERT INTO %1 (%2) VALUES (%3) RETURNING %4")
                    .arg(table.name, table.columns[1].name,
                         table.columns[1].type == Schema::Type::Text ? QStringLiteral("'x'")
                                                                     : QStringLiteral("0"),
                         key.name);
            QVERIFY2(Sql::exec(q, insert) && q.next(), qPrintable(insert));
            const qint64 deleted = q.value(0).toLongLong();
            QVERIFY(Sql::exec(
                q, QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(table.name, key.name),
                {deleted}));
            QVERIFY2(Sql::exec(q, insert) && q.next(), qPrintable(insert));
            QVERIFY2(q.value(0).toLongLong() > deleted, qPrintable(table.name));
            ++checked;
        }
        QCOMPARE(checked, 8);
    }

    void secondCreateRefusesAndChangesNothing()
    {
        TANDRILL_INSTALLATION(t);
        DataFile::NewInstallation request;
        request.chiefPassword = QStringLiteral("x");
        request.version = QStringLiteral("9.9.9");
        request.connection = t.session().connectionSettings();
        QString error;
        QVERIFY(!DataFile::create(t.installation(), request, &error));
        QVERIFY(error.contains(QLatin1String("already exists")));
        QCOMPARE(Options::versionNo(t.session()), QStringLiteral(TANDRILL_VERSION));
    }
};

QTEST_GUILESS_MAIN(TestDataFile)
#include "tst_datafile.moc"
