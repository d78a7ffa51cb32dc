#pragma once

#include <QString>

/** The operating system, as the error report tells it. */
struct PlatformInfo
{
    int platformId = 0;
    QString name;
    QString versionNumber; ///< major "." minor
    QString servicePack;
    QString build;

    static PlatformInfo read();
};
