#pragma once

#include <QString>

class Session;

/**
 * Options in tblSysOption and values of the store. A per-workstation option
 * is kept under the installation's GUID followed by its name; option names
 * compare without regard to case.
 */
namespace Options {

QString option(Session& session, const QString& name, bool perWorkstation = false);
void setOption(Session& session, const QString& name, const QString& value,
               bool perWorkstation = false);

/** A value under "Software\Korvelle" of the store, trimmed; empty when missing. */
QString registryValue(const Session& session, const QString& name);
/** Writes a value under "Software\Korvelle" and saves the store; false when it cannot. */
bool setRegistryValue(Session& session, const QString& name, const QString& value);
/** The "Path" the sync application recorded under "Software\Hesperon\Korvelle". */
QString syncApplicationPath(const Session& session);
/** The installed version, the "VERSION" value. */
QString versionNo(const Session& session);

/** A new identity: 32 hexadecimal digits, without braces and hyphens. */
QString newGuid();

} // namespace Options
