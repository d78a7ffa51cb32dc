#include "CommandLine.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tandrill-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TANDRILL_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    return CommandLine::run(QCoreApplication::arguments().mid(1), out, err);
}
