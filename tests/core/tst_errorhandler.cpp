#include "ErrorHandler.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"
#include "Transaction.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool addCrew(Session& session, qint64 number)
{
    QSqlQuery q(session.db());
    return Sql::exec(q, u"INSERT INTO tblCrew (CrewNumber) VALUES (?)"_s, {number});
}

struct ErrorRow
{
    qint64 number = 0;
    QString description;
    qint64 line = 0;
    QString userMsg;
    QString module;
    QString procedure;
    QDateTime at;
    QString email;
};

QList<ErrorRow> errorRows(Session& session)
{
    QList<ErrorRow> rows;
    QSqlQuery q(session.db2());
    if (!Sql::exec(q, u"SELECT ErrNumber, ErrDescription, LineNumber, UserMsg, ModuleName, "
                      "ProcedureName, ErrDateTime, UserEmail FROM tblErrorList"_s)) {
        return rows;
    }
    while (q.next()) {
        rows.append({q.value(0).toLongLong(), q.value(1).toString(), q.value(2).toLongLong(),
                     q.value(3).toString(), q.value(4).toString(), q.value(5).toString(),
                     SqlValue::toDateTime(q.value(6)), q.value(7).toString()});
    }
    return rows;
}

} // namespace

class TestErrorHandler : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void errorNumberZeroIsNoFailure()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(!errorHandler(t.session(), u"General Function"_s, u"GetOption"_s, 0, u"x"_s));
        QVERIFY(t.failures().isEmpty());
        t.session().setFailureSink(nullptr);
        QVERIFY(!errorHandler(t.session(), u"General Function"_s, u"GetOption"_s, 0, u"x"_s));
        QVERIFY(errorRows(t.session()).isEmpty());
    }

    void failureGoesToTheSink()
    {
        TANDRILL_INSTALLATION(t);
        QVERIFY(errorHandler(t.session(), u"frmCrew"_s, u"cmdSave_Click"_s, 3021,
                             u"No current record."_s, 12));
        QCOMPARE(t.failures().failures().size(), 1);
        const Failure& f = t.failures().failures().first();
        QCOMPARE(f.module, u"frmCrew"_s);
        QCOMPARE(f.procedure, u"cmdSave_Click"_s);
        QCOMPARE(f.number, 3021);
        QCOMPARE(f.description, u"No current record."_s);
        QCOMPARE(f.line, 12);
        // The sink decides what becomes of it; nothing is saved behind its back.
        QVERIFY(errorRows(t.session()).isEmpty());
    }

    void withoutSinkTheFailureIsSaved()
    {
        TANDRILL_INSTALLATION(t);
        t.session().setFailureSink(nullptr);
        QVERIFY(errorHandler(t.session(), u"Crew"_s, u"SaveRecord"_s, -2147217900,
                             u"Syntax error"_s, 4));
        const QList<ErrorRow> rows = errorRows(t.session());
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0].number, -2147217900);
        QCOMPARE(rows[0].module, u"Crew"_s);
        QCOMPARE(rows[0].procedure, u"SaveRecord"_s);
        QCOMPARE(rows[0].line, 4);
    }

    void errorListKeepsTheTextWhole_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addRow("apostrophe") << u"Can't find 'tblCrew'"_s;
        QTest::addRow("quotes") << u"Column \"Skip\" is \"\" or ''"_s;
        QTest::addRow("non-ASCII") << u"Größe – Zürich ✓ 日本"_s;
        QTest::addRow("statement text") << u"'); DELETE FROM tblErrorList; --"_s;
        QTest::addRow("line breaks") << u"first line\nsecond line"_s;
    }
    void errorListKeepsTheTextWhole()
    {
        QFETCH(QString, description);
        TANDRILL_INSTALLATION(t, QDate(2001, 2, 3));
        Session& s = t.session();
        const Failure failure{u"General Function"_s, u"GetTableInfo"_s, 13, description, 7};
        QVERIFY(saveErrorList(s, failure, u"It's broken"_s, u"o'neil@example.com"_s));
        const QList<ErrorRow> rows = errorRows(s);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0].number, 13);
        QCOMPARE(rows[0].description, description);
        QCOMPARE(rows[0].line, 7);
        QCOMPARE(rows[0].userMsg, u"It's broken"_s);
        QCOMPARE(rows[0].module, u"General Function"_s);
        QCOMPARE(rows[0].procedure, u"GetTableInfo"_s);
        QCOMPARE(rows[0].email, u"o'neil@example.com"_s);
        QCOMPARE(rows[0].at.date(), QDate(2001, 2, 3));
    }

    void errorListIsWrittenWhileATransactionIsOpen()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        Transaction tx(s);
        QVERIFY(addCrew(s, 1));
        QSqlQuery q(s.db());
        // On PostgreSQL this aborts the transaction; the report must still be kept.
        QVERIFY(!Sql::exec(q, u"SELECT Nope FROM tblCrew"_s));
        QVERIFY(saveErrorList(s, Sql::failure(u"Crew"_s, u"SaveRecord"_s, q.lastError())));
        if (s.dialect().isSqlite()) {
            QVERIFY(tx.commit());
        } else {
            tx.rollback();
        }
        QCOMPARE(errorRows(s).size(), 1);
    }

    void errorListNeedsAnOpenSession()
    {
        TANDRILL_INSTALLATION(t);
        t.session().closeDatabase();
        QVERIFY(!saveErrorList(t.session(), Failure{u"M"_s, u"P"_s, 1, u"D"_s, 0}));
    }
};

QTEST_GUILESS_MAIN(TestErrorHandler)
#include "tst_errorhandler.moc"
