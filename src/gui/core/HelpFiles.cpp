#include "HelpFiles.h"

#include "Installation.h"
#include "Options.h"
#include "Session.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace HelpFiles {

namespace {

bool copyIfMissing(const QString& from, const QString& to, QString* error)
{
    if (QFileInfo::exists(to)) {
        return true;
    }
    if (!QDir().mkpath(QFileInfo(to).absolutePath()) || !QFile::copy(from, to)) {
        *error = QStringLiteral("Cannot copy %1 to %2").arg(from, to);
        return false;
    }
    // A copy out of the program's resources is read-only; the installation's files are not.
    QFile::setPermissions(to, QFile::permissions(to) | QFile::WriteOwner);
    return true;
}

} // namespace

QString manualName()
{
    return QStringLiteral("Korvelle.html");
}

QString quickStartName()
{
    return QStringLiteral("QuickStart.pdf");
}

QString manualPath(const Session& session)
{
    QString folder = Options::registryValue(session, QStringLiteral("SYSFOLDER"));
    if (folder.isEmpty()) {
        folder = session.installation().path(QStringLiteral("doc"));
    }
    return QDir(folder).filePath(manualName());
}

QString quickStartPath(const Installation& installation)
{
    return installation.path(quickStartName());
}

bool installMissing(const Session& session, const QString& bundleFolder, QString* error)
{
    const QDir bundle(bundleFolder);
    return copyIfMissing(bundle.filePath(manualName()), manualPath(session), error) &&
           copyIfMissing(bundle.filePath(quickStartName()), quickStartPath(session.installation()),
                         error);
}

} // namespace HelpFiles
