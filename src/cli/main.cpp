#include "CommandLine.h"

#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char* argv[])
{
    // Reports lay out text with fonts, which need a GUI application; it never needs a screen.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tandrill-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TANDRILL_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    return CommandLine::run(QCoreApplication::arguments().mid(1), out, err);
}
