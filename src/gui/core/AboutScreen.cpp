#include "AboutScreen.h"

#include "Options.h"
#include "Session.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

AboutScreen::AboutScreen(Session& session, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Korvelle"));

    auto* name = new QLabel(QStringLiteral("Korvelle"));
    name->setObjectName(QStringLiteral("lblProductName"));
    QFont big = name->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    name->setFont(big);

    auto* version = new QLabel(QStringLiteral("Version ") + Options::versionNo(session));
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* purpose =
        new QLabel(QStringLiteral("Maintenance manager for fleets of grounds-care equipment."));
    auto* data = new QLabel(QStringLiteral("Data: ") + session.connectionSettings().describe());
    data->setObjectName(QStringLiteral("lblData"));
    data->setTextInteractionFlags(Qt::TextSelectableByMouse);
    data->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(purpose);
    layout->addWidget(data);
    layout->addSpacing(8);
    layout->addWidget(buttons);
}

void AboutScreen::showAbout(Session& session, QWidget* parent)
{
    AboutScreen screen(session, parent);
    screen.exec();
}
