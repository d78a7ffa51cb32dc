#include "PlatformInfo.h"

#include <QStringList>
#include <QSysInfo>

PlatformInfo PlatformInfo::read()
{
    PlatformInfo info;
    const QStringList kernel = QSysInfo::kernelVersion().split(u'.');
    info.platformId = 2; // a multi-user system of the NT line's kind
    info.name = QSysInfo::prettyProductName();
    info.versionNumber = kernel.value(0) + u'.' + kernel.value(1);
    info.build = kernel.value(2).section(u'-', 0, 0);
    info.servicePack = QSysInfo::productVersion();
    return info;
}
