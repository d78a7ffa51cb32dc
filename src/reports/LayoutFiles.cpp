#include "LayoutFiles.h"

#include "Installation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace LayoutFiles {

namespace {

const QString BuiltIn = QStringLiteral(":/layouts");

QString inFolder(const Installation& installation, const QString& folder, const QString& layout)
{
    return installation.path(folder + u'/' + layout + Extension);
}

} // namespace

QString standardPath(const Installation& installation, const QString& layout)
{
    return inFolder(installation, StandardFolder, layout);
}

QString lookup(const Installation& installation, const QString& layout)
{
    const QString custom = inFolder(installation, CustomFolder, layout);
    return QFileInfo::exists(custom) ? custom : standardPath(installation, layout);
}

bool installStandard(const Installation& installation, QString* error)
{
    const QDir target(installation.path(StandardFolder));
    if (!target.exists() && !QDir().mkpath(target.path())) {
        *error = QStringLiteral("Cannot create the folder %1").arg(target.path());
        return false;
    }
    for (const QString& name : QDir(BuiltIn).entryList(QDir::Files)) {
        const QString path = target.filePath(name);
        QFile::remove(path);
        if (!QFile::copy(BuiltIn + u'/' + name, path) ||
            !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                             QFile::ReadOther)) {
            *error = QStringLiteral("Cannot write the report layout %1").arg(path);
            return false;
        }
    }
    return true;
}

} // namespace LayoutFiles
