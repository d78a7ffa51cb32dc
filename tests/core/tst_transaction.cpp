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

/** Crews as a reader beside the main connection sees them: only what is committed. */
qint64 committedCrews(Session& session)
{
    QSqlQuery q(session.db2());
    if (!Sql::exec(q, u"SELECT COUNT(*) FROM tblCrew"_s) || !q.next()) {
        return -1;
    }
    return q.value(0).toLongLong();
}

qint64 crewsOnMain(Session& session)
{
    QSqlQuery q(session.db());
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

    void commitKeepsTheWorkAndClearsTheFlag()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        {
            Transaction tx(s);
            QVERIFY2(tx.isActive(), qPrintable(tx.error()));
            QVERIFY(tx.ownsTransaction());
            QVERIFY(s.transactionOpen());
            QVERIFY(addCrew(s, 1));
            QCOMPARE(committedCrews(s), 0);
            QVERIFY(tx.commit());
            QVERIFY(!s.transactionOpen());
            QVERIFY(!tx.isActive());
        }
        QCOMPARE(committedCrews(s), 1);
    }

    void destructionWithoutCommitRollsBack()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        {
            Transaction tx(s);
            QVERIFY(addCrew(s, 1));
            QCOMPARE(crewsOnMain(s), 1);
        }
        QVERIFY(!s.transactionOpen());
        QCOMPARE(crewsOnMain(s), 0);
        QCOMPARE(committedCrews(s), 0);
    }

    void explicitRollbackUndoesAndEnds()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Transaction tx(s);
        QVERIFY(addCrew(s, 1));
        tx.rollback();
        QVERIFY(!s.transactionOpen());
        QCOMPARE(crewsOnMain(s), 0);
        QVERIFY(!tx.commit());
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
                QCOMPARE(committedCrews(s), 0);
            }
            {
                // A joined guard that ends without commit does not undo the outer work.
                Transaction abandoned(s);
                QVERIFY(abandoned.isActive());
            }
            QVERIFY(s.transactionOpen());
            QCOMPARE(crewsOnMain(s), 2);
            if (outerCommits) {
                QVERIFY(outer.commit());
            }
        }
        QVERIFY(!s.transactionOpen());
        QCOMPARE(committedCrews(s), crewsAfter);
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
            QCOMPARE(committedCrews(s), 1);
            return;
        }
        QVERIFY(!tx.commit());
        QVERIFY(!tx.error().isEmpty());
        QVERIFY(!s.transactionOpen());
        QCOMPARE(committedCrews(s), 0);
    }
};

QTEST_GUILESS_MAIN(TestTransaction)
#include "tst_transaction.moc"
