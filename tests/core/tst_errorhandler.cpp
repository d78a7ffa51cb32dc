#include "ErrorHandler.h"
#include "Sql.h"
#include "SqlValue.h"
#include "TestInstallation.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/** The error list as "number|description|line|note|module|procedure|day|address" rows. */
QStringList errorRows(Session& session)
{
    QStringList rows;
    QSqlQuery q(session.db2());
    if (!Sql::exec(q, u"SELECT ErrNumber, ErrDescription, LineNumber, UserMsg, ModuleName, "
                      "ProcedureName, ErrDateTime, UserEmail FROM tblErrorList"_s)) {
        return {q.lastError().text()};
    }
    while (q.next()) {
        QStringList fields;
        for (int i = 0; i < 8; ++i) {
            fields.append(i == 6 ? SqlValue::toDateTime(q.value(i)).date().toString(Qt::ISODate)
                                 : q.value(i).toString());
        }
        rows.append(fields.join(u'|'));
    }
    return rows;
}

} // namespace

class TestErrorHandler : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { TANDRILL_REQUIRE_ENGINE(); }

    void failureGoesToTheSinkOrElseToTheList()
    {
        TANDRILL_INSTALLATION(t);
        Session& s = t.session();
        QVERIFY(!errorHandler(s, u"General Function"_s, u"GetOption"_s, 0, u"x"_s)); // none
        QVERIFY(
            errorHandler(s, u"frmCrew"_s, u"cmdSave_Click"_s, 3021, u"No current record."_s, 12));
        QCOMPARE(t.failures().failures().size(), 1);
        QCOMPARE(t.failures().failures()[0].line, 12);
        // The sink decides what becomes of it; nothing is saved behind its back.
        QVERIFY(errorRows(s).isEmpty());

        s.setFailureSink(nullptr);
        QVERIFY(!errorHandler(s, u"General Function"_s, u"GetOption"_s, 0, u"x"_s));
        QVERIFY(errorRows(s).isEmpty());
        QVERIFY(errorHandler(s, u"Crew"_s, u"SaveRecord"_s, -2147217900, u"Can't \"x\""_s, 4));
        QCOMPARE(errorRows(s),
                 QStringList{u"-2147217900|Can't \"x\"|4||Crew|SaveRecord|2025-03-01|"_s});
    }
};

QTEST_GUILESS_MAIN(TestErrorHandler)
#include "tst_errorhandler.moc"
