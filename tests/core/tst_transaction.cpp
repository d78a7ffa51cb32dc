#include "ErrorHandler.h"
#include "Options.h"
#include "Sql.h"
#include "TestInstallation.h"
#include "Transaction.h"
#include "WriteScope.h"

#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool addCrew(Session& session, qint64 number)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber) VALUES (?)"_s, {number});
}

// db2, a reader beside the main connection, sees only what is committed.
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

    void outerGuardKeepsOnlyCommittedWork_data()
    {
        QTest::addColumn<bool>("commit");
        QTest::addRow("commit") << true;
        QTest::addRow("destroyed without commit") << false;
    }
    // Joined guards leave the decision to the one that opened the transaction.
    void outerGuardKeepsOnlyCommittedWork()
    {
        QFETCH(bool, commit);
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        {
            Transaction tx(s);
            QVERIFY2(tx.isActive() && tx.ownsTransaction(), qPrintable(tx.error()));
            QVERIFY(addCrew(s, 1));
            {
                Transaction inner(s);
                QVERIFY(inner.isActive() && !inner.ownsTransaction());
                QVERIFY(addCrew(s, 2));
                QVERIFY(inner.commit());
            }
            Transaction{s}; // joined and abandoned
            QCOMPARE(crews(s.db()), 2);
            QCOMPARE(crews(s.db2()), 0);
            QVERIFY(!commit || tx.commit());
            QCOMPARE(s.transactionOpen(), !commit);
        }
        QVERIFY(!s.transactionOpen());
        QCOMPARE(crews(s.db2()), commit ? 2 : 0);
    }

    // PostgreSQL aborts the transaction at a failed statement; SQLite keeps it.
    void commitAfterAFailedStatementIsRefused()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Transaction tx(s);
        QVERIFY(addCrew(s, 1));
        QSqlQuery q(s.db());
        QVERIFY(!Sql::exec(q, u"INSERT INTO tblPart (PartID, Inactive) VALUES ('P', 5)"_s));
        const bool sqlite = s.dialect().isSqlite();
        QCOMPARE(tx.commit(), sqlite);
        QCOMPARE(tx.error().isEmpty(), sqlite);
        QVERIFY(!s.transactionOpen());
        QCOMPARE(crews(s.db2()), sqlite ? 1 : 0);
    }

    // A scope that joins an open edit stands on a savepoint of its own.
    void writeScopeUndoesOnlyItsOwnWorkOnAFailure()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Transaction edit(s);
        QVERIFY(addCrew(s, 1));
        const auto write = [&s](const QString& values, bool fails) {
            WriteScope write(s, u"Crew"_s, u"SaveRecord"_s);
            QVERIFY(write.exec(u"INSERT INTO tblCrew (CrewNumber) VALUES "_s + values));
            QCOMPARE(write.exec(fails ? u"INSERT INTO tblNope (x) VALUES (1)"_s : u"SELECT 1"_s),
                     !fails);
            QVERIFY2(write.exec(u"INSERT INTO tblCrew (CrewNumber) VALUES (9)"_s) != fails,
                     "stopped");
            QCOMPARE(write.commit(), !fails);
        };
        write(u"(2)"_s, false);
        write(u"(3), (4)"_s, true);
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].procedure, u"SaveRecord"_s);
        QVERIFY(s.transactionOpen());
        QVERIFY(edit.commit());
        QCOMPARE(crews(s.db2()), 3); // the edit's own work stands
    }

    void aStatementRepeatedInAScopeTakesEachRunsValues()
    {
        TANDRILL_INSTALLATION(t);
        WriteScope write(t.session(), u"Crew"_s, u"SaveRecord"_s);
        const QString insert =
            u"INSERT INTO tblCrew (CrewNumber, Description) VALUES (?, ?) RETURNING CrewID"_s;
        QVariant five;
        QVariant six;
        QVERIFY(write.exec(insert, {5, u"five"_s}, &five));
        QVERIFY(write.exec(insert, {6, u"six"_s}, &six));
        QVERIFY(five.toLongLong() != six.toLongLong());
        const QString select = u"SELECT Description FROM tblCrew WHERE CrewNumber = ?"_s;
        QCOMPARE(write.select(select, {6}).value(0).value(0).toString(), u"six"_s);
        QCOMPARE(write.select(select, {5}).value(0).value(0).toString(), u"five"_s);
        QVERIFY(write.select(select, {7}).isEmpty());
        QVERIFY(write.commit());
    }

    void optionsAndKeptFailuresOutliveARevertedEdit()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        {
            Transaction edit(s);
            QVERIFY(addCrew(s, 1));
            Options::setOption(s, u"frmCrewLEFT"_s, u"4500"_s);
            QVERIFY(saveErrorList(s, Failure{u"frmCrew"_s, u"SaveRecord"_s, 5, u"it's gone"_s, 0}));
            QCOMPARE(Options::option(s, u"FRMCREWLEFT"_s), u"4500"_s);
            edit.rollback();
        }
        QCOMPARE(crews(s.db2()), 0);
        QCOMPARE(Options::option(s, u"frmCrewLEFT"_s), u"4500"_s);
        QSqlQuery q(s.db2());
        QVERIFY(Sql::exec(q, u"SELECT ErrDescription FROM tblErrorList"_s) && q.next());
        QCOMPARE(q.value(0).toString(), u"it's gone"_s);
        QVERIFY(t.failures().isEmpty());

        // Only SQLite, with its one writer, holds them; one that fails later is reported then.
        {
            Transaction edit(s);
            QVERIFY(saveErrorList(s, Failure{u"frmCrew"_s, u"SaveRecord"_s, 5, u"x"_s, 0}));
            QSqlQuery drop(s.db());
            QVERIFY(Sql::exec(drop, u"DROP TABLE tblErrorList"_s));
            QVERIFY(edit.commit());
        }
        QCOMPARE(t.failures().failures().size(), s.dialect().isSqlite() ? 1 : 0);
        QVERIFY(t.failures().isEmpty() ||
                t.failures().failures()[0].procedure == u"SaveErrorList"_s);
    }
};

QTEST_GUILESS_MAIN(TestTransaction)
#include "tst_transaction.moc"
