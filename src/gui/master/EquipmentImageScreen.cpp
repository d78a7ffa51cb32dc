#include "EquipmentImageScreen.h"

#include "EquipmentAttachments.h"
#include "ScreenFields.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace {

const QSize PreviewSize(320, 240);

// The captions are kept as users know them; the pattern after each is what Qt matches.
const QString PictureFilters =
    QStringLiteral("Bitmap Files(*.bmp);;"
                   "JPEG(*.JPG,*.JPEG,*.JPE,*.JFIF) (*.JPG *.JPEG *.JPE *.JFIF);;"
                   "GIF(*.GIF) (*.gif);;"
                   "All Pictures Files (*.bmp *.JPG *.JPEG *.JPE *.JFIF *.gif)");

QString& nextBrowseFile()
{
    static QString path;
    return path;
}

} // namespace

EquipmentImageScreen::EquipmentImageScreen(Session& session, qint64 equipmentId, QWidget* parent)
    : QDialog(parent), m_session(session), m_equipmentId(equipmentId), m_path(new QLineEdit(this)),
      m_name(new QLineEdit(this)), m_image(new QLabel(this))
{
    setObjectName(QStringLiteral("frmEquipmentImage"));
    setWindowTitle(QStringLiteral("Equipment-Image"));
    m_path->setObjectName(QStringLiteral("txtPath"));
    m_name->setObjectName(QStringLiteral("txtFileName"));
    m_image->setObjectName(QStringLiteral("imgImage"));
    m_image->setFixedSize(PreviewSize);
    m_image->setAlignment(Qt::AlignCenter);
    m_image->setFrameShape(QFrame::StyledPanel);

    auto* browseButton = ScreenFields::button(this, "cmdBrowse", QStringLiteral("..."));
    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(m_path);
    pathRow->addWidget(browseButton);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("File Path"), pathRow);
    form->addRow(QStringLiteral("File Name"), m_name);

    auto* saveButton = ScreenFields::button(this, "cmdOK", QStringLiteral("&OK"));
    auto* exitButton = ScreenFields::button(this, "cmdExit", QStringLiteral("&Cancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(saveButton);
    buttons->addWidget(exitButton);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_image, 0, Qt::AlignCenter);
    layout->addLayout(buttons);

    connect(browseButton, &QPushButton::clicked, this, &EquipmentImageScreen::browse);
    connect(m_path, &QLineEdit::editingFinished, this, &EquipmentImageScreen::showPreview);
    connect(saveButton, &QPushButton::clicked, this, &EquipmentImageScreen::save);
    connect(exitButton, &QPushButton::clicked, this, &QDialog::reject);
}

bool EquipmentImageScreen::showEquipmentImageDetail(Session& session, qint64 equipmentId,
                                                    QWidget* parent)
{
    EquipmentImageScreen screen(session, equipmentId, parent);
    return screen.exec() == QDialog::Accepted;
}

void EquipmentImageScreen::setNextBrowseFile(const QString& path)
{
    nextBrowseFile() = path;
}

void EquipmentImageScreen::browse()
{
    QString path = std::exchange(nextBrowseFile(), QString());
    if (path.isEmpty()) {
        path = QFileDialog::getOpenFileName(this, windowTitle(), m_path->text(), PictureFilters);
    }
    if (path.isEmpty()) {
        return;
    }
    m_path->setText(QDir::toNativeSeparators(path));
    m_name->setText(QFileInfo(path).completeBaseName());
    showPreview();
}

void EquipmentImageScreen::showPreview()
{
    const QPixmap picture(QDir::fromNativeSeparators(m_path->text()));
    if (picture.isNull()) {
        m_image->clear();
        return;
    }
    m_image->setPixmap(picture.scaled(PreviewSize, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void EquipmentImageScreen::save()
{
    EquipmentAttachments attachments(m_session);
    if (attachments.addPicture(m_equipmentId, QDir::fromNativeSeparators(m_path->text().trimmed()),
                               m_name->text().trimmed())) {
        accept();
    }
}
