#include "Sql.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool addCrew(Session& session, qint64 number)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber) VALUES (?)"_s, {number});
}

/** Crews as a connection sees them: db2, a reader beside the main one, sees only what is committed.
 */
qint64 crews(QSqlDatabase db)
{
    QSqlQuery q(db);
    if (!Sql::exec(q, u"SELECT COUNT(*) FROM tblCrew"_s) || !q.next()) {
        return -1;
    }
    return q.value(0).toLongLong();
}

} // namespace

class TestTransaction : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void savepointUndoesAFailureAndKeepsTheTransaction()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Transaction tx(s);
        QVERIFY(addCrew(s, 1));
        {
            Savepoint failing(s, u"attempt"_s);
            QVERIFY2(failing.isActive(), qPrintable(failing.error()));
            QVERIFY(addCrew(s, 2));
            QSqlQuery q(s.db());
            QVERIFY(!Sql::exec(q, u"INSERT INTO tblNope (x) VALUES (1)"_s));
        }
        {
            Savepoint kept(s, u"attempt"_s);
            QVERIFY(addCrew(s, 3));
            kept.release();
        }
        QVERIFY(tx.commit());
        QCOMPARE(crews(s.db2()), 2);
    }

    void outerGuardKeepsOnlyCommittedWork_data()
    {
        QTest::addColumn<QString>("end");
        QTest::addRow("commit") << u"commit"_s;
        QTest::addRow("rollback") << u"rollback"_s;
        QTest::addRow("destroyed without commit") << u"destroyed"_s;
    }
    void outerGuardKeepsOnlyCommittedWork()
    {
        QFETCH(QString, end);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        {
            Transaction tx(s);
            QVERIFY2(tx.isActive(), qPrintable(tx.error()));
            QVERIFY(tx.ownsTransaction());
            QVERIFY(s.transactionOpen());
            QVERIFY(addCrew(s, 1));
            QCOMPARE(crews(s.db()), 1);
            QCOMPARE(crews(s.db2()), 0);
            if (end == u"commit"_s) {
                QVERIFY(tx.commit());
            } else if (end == u"rollback"_s) {
                tx.rollback();
                QVERIFY(!tx.commit());
            }
            QCOMPARE(tx.isActive(), end == u"destroyed"_s);
            QCOMPARE(s.transactionOpen(), end == u"destroyed"_s);
        }
        QVERIFY(!s.transactionOpen());
        const qint64 kept = end == u"commit"_s ? 1 : 0;
        QCOMPARE(crews(s.db()), kept);
        QCOMPARE(crews(s.db2()), kept);
    }

    void innerCommitLeavesTheDecisionToTheOuter_data()
    {
        QTest::addColumn<bool>("outerCommits");
        QTest::addColumn<qint64>("crewsAfter");
        QTest::addRow("outer commits") << true << qint64(2);
        QTest::addRow("outer rolls back") << false << qint64(0);
    }
    void innerCommitLeavesTheDecisionToTheOuter()
    {
        QFETCH(bool, outerCommits);
        QFETCH(qint64, crewsAfter);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        {
            Transaction outer(s);
            QVERIFY(addCrew(s, 1));
            {
                Transaction inner(s);
                QVERIFY(inner.isActive());
                QVERIFY(!inner.ownsTransaction());
                QVERIFY(addCrew(s, 2));
                QVERIFY(inner.commit());
                QVERIFY(s.transactionOpen());
                QCOMPARE(crews(s.db2()), 0);
            }
            {
                // A joined guard that ends without commit does not undo the outer work.
                Transaction abandoned(s);
                QVERIFY(abandoned.isActive());
            }
            QVERIFY(s.transactionOpen());
            QCOMPARE(crews(s.db()), 2);
            if (outerCommits) {
                QVERIFY(outer.commit());
            }
        }
        QVERIFY(!s.transactionOpen());
        QCOMPARE(crews(s.db2()), crewsAfter);
    }

    void commitAfterAFailedStatementIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Transaction tx(s);
        QVERIFY(addCrew(s, 1));
        QSqlQuery q(s.db());
        QVERIFY(!Sql::exec(q, u"INSERT INTO tblPart (PartID, Inactive) VALUES ('P', 5)"_s));
        if (s.dialect().isSqlite()) {
            // SQLite keeps the transaction alive after a failed statement.
            QVERIFY(tx.commit());
            QCOMPARE(crews(s.db2()), 1);
            return;
        }
        QVERIFY(!tx.commit());
        QVERIFY(!tx.error().isEmpty());
        QVERIFY(!s.transactionOpen());
        QCOMPARE(crews(s.db2()), 0);
    }
};

QTEST_GUILESS_MAIN(TestTransaction)
#include "tst_transaction.moc"
