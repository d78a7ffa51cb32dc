// Build step: renders the quick start text (Markdown) to QuickStart.pdf.
// Usage: tandrill-quickstart-pdf INPUT.md OUTPUT.pdf (run with QT_QPA_PLATFORM=offscreen).

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QTextDocument>
#include <QTextStream>

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    QTextStream errors(stderr);
    if (arguments.size() != 3) {
        errors << "Usage: tandrill-quickstart-pdf INPUT.md OUTPUT.pdf\n";
        return 2;
    }
    QFile input(arguments.at(1));
    if (!input.open(QIODevice::ReadOnly | QIODevice::Text)) {
        errors << "Cannot read " << input.fileName() << ": " << input.errorString() << '\n';
        return 1;
    }

    QTextDocument document;
    // Named explicitly, so that the PDF looks the same on every build machine.
    document.setDefaultFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    document.setMarkdown(QString::fromUtf8(input.readAll()));

    QPdfWriter writer(arguments.at(2));
    writer.setTitle(QStringLiteral("Korvelle Quick Start"));
    writer.setCreator(QStringLiteral("Korvelle"));
    // print() lays the text out with margins of 2 cm of its own, so the page itself has none.
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(),
                                     QPageLayout::Millimeter));
    document.print(&writer);
    if (!QFile::exists(arguments.at(2))) {
        errors << "Cannot write " << arguments.at(2) << '\n';
        return 1;
    }
    return 0;
}
