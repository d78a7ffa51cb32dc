#include "CommandLine.h"

#include <QGuiApplication>
#include <QTextStream>

#include <cstdio>
#include <memory>

int main(int argc, char* argv[])
{
    // Reports lay out text with fonts, which need a GUI application though never a screen;
    // the other commands do without one.
    bool drawsReports = false;
    for (int i = 1; i < argc; ++i) {
        drawsReports = drawsReports || qstrcmp(argv[i], "report") == 0;
    }
    if (drawsReports && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const std::unique_ptr<QCoreApplication> app =
        drawsReports ? std::make_unique<QGuiApplication>(argc, argv)
                     : std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tandrill-cli"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TANDRILL_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    return CommandLine::run(QCoreApplication::arguments().mid(1), out, err);
}
