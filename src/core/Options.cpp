#include "Options.h"

#include "ErrorHandler.h"
#include "Installation.h"
#include "Session.h"
#include "Sql.h"

#include <QSqlError>
#include <QUuid>

namespace Options {

namespace {

const QString Module = QStringLiteral("General Function");
const QString GuidName = QStringLiteral("GUID");

QString mainKey()
{
    return QString::fromLatin1(Installation::MainKey);
}

} // namespace

QString option(Session& session, const QString& name, bool perWorkstation)
{
    const QString guid = registryValue(session, GuidName);
    if (guid.isEmpty()) {
        return QString();
    }
    const QString key = perWorkstation ? guid + name : name;
    if (const std::optional<QString> held = session.heldOption(key)) {
        return *held;
    }
    if (!session.isOpen()) {
        return QString(); // nothing to read yet: the value a missing option has
    }
    QSqlQuery q(session.db2());
    q.setForwardOnly(true);
    if (!Sql::exec(q,
                   QStringLiteral("SELECT itemValue FROM tblSysOption "
                                  "WHERE LOWER(SysOption) = LOWER(?)"),
                   {key})) {
        errorHandler(session, Sql::failure(Module, QStringLiteral("GetOption"), q.lastError()));
        return QString();
    }
    return q.next() ? q.value(0).toString() : QString();
}

void setOption(Session& session, const QString& name, const QString& value, bool perWorkstation)
{
    const QString procedure = QStringLiteral("SetOption - ");
    QString guid = registryValue(session, GuidName);
    if (guid.size() < 30) {
        guid = newGuid();
        setRegistryValue(session, GuidName, guid);
    }
    const QString key = perWorkstation ? guid + name : name;
    const auto write = [key, value](QSqlQuery& q) {
        if (!Sql::exec(q,
                       QStringLiteral("UPDATE tblSysOption SET itemValue = ? "
                                      "WHERE LOWER(SysOption) = LOWER(?)"),
                       {value, key})) {
            return false;
        }
        return q.numRowsAffected() > 0 ||
               Sql::exec(
                   q,
                   QStringLiteral("INSERT INTO tblSysOption (itemValue, SysOption) VALUES (?, ?)"),
                   {value, key});
    };
    if (session.holdsSideWrites()) {
        session.holdOption(key, value);
    }
    QSqlError error;
    if (!session.writeAside({Module, procedure, write}, &error)) {
        errorHandler(session, Sql::failure(Module, procedure, error));
    }
}

QString registryValue(const Session& session, const QString& name)
{
    return session.store().value(mainKey(), name);
}

bool setRegistryValue(Session& session, const QString& name, const QString& value)
{
    return session.store().setValue(mainKey(), name, value) && session.store().save();
}

QString syncApplicationPath(const Session& session)
{
    return session.store().value(QString::fromLatin1(Installation::SyncKey),
                                 QStringLiteral("Path"));
}

QString versionNo(const Session& session)
{
    return registryValue(session, QStringLiteral("VERSION"));
}

QString newGuid()
{
    return QUuid::createUuid().toString(QUuid::Id128).toUpper();
}

} // namespace Options
