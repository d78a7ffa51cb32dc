#include "EquipmentAttachments.h"

#include "ErrorHandler.h"
#include "MessageTexts.h"
#include "Prompter.h"
#include "Session.h"
#include "Sql.h"
#include "Transaction.h"
#include "WriteScope.h"

#include <QByteArrayView>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSqlError>
#include <QSqlQuery>
#include <optional>

namespace {

const QString Module = QStringLiteral("Equipment");
const QString SavePictureProcedure = QStringLiteral("SaveImageInEquipment");
const QString LoadPictureProcedure = QStringLiteral("LoadEquipmentPicture");
const QString AddDocumentProcedure = QStringLiteral("cmdAddDocument_Click");
const QString PictureListProcedure = QStringLiteral("FillImageGrid");
const QString DocumentListProcedure = QStringLiteral("FillDocumentGrid");
// The number the error report shows for a file that could not be read or written.
constexpr qint64 FileAccessNumber = 75;
constexpr qint64 CopyChunk = 1 << 20;

const QString InvalidPicture = QStringLiteral("Invalid Picture File!");
const QString InvalidPictureTitle = QStringLiteral("Oops!");
const QString InvalidPicturePath = QStringLiteral("Invalid path of picture.");
const QString PictureNameTaken =
    QStringLiteral("File Name already exists. Please Enter Different Name");
const QString InvalidDocumentPath = QStringLiteral("Invalid File or Incorrect Path.");
const QString ReplaceQuestion = QStringLiteral(" already exists. Would you like to replace it.");
const QString DocFolderMissing =
    QStringLiteral("Folder(Doc) has been deleted by user. Please create a folder named'Doc' at "
                   "following path ");

} // namespace

bool EquipmentAttachments::looksLikePicture(const QByteArray& head)
{
    // Judged by the file's leading bytes, so that the logic needs no image library.
    static constexpr QByteArrayView Signatures[] = {"BM", "\xFF\xD8\xFF", "GIF87a", "GIF89a",
                                                    "\x89PNG\r\n\x1A\n"};
    for (const QByteArrayView signature : Signatures) {
        if (head.startsWith(signature)) {
            return true;
        }
    }
    return false;
}

bool EquipmentAttachments::addPicture(qint64 equipmentId, const QString& path, const QString& name)
{
    if (DataHelpers::isBlank(path)) {
        refuse(MessageTexts::notBlank(QStringLiteral("File Path")));
        return false;
    }
    if (DataHelpers::isBlank(name)) {
        refuse(MessageTexts::notBlank(QStringLiteral("File Name")));
        return false;
    }
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        refuse(InvalidPicturePath);
        return false;
    }
    const QByteArray bytes = file.readAll();
    if (!looksLikePicture(bytes)) {
        refuse(InvalidPicture, InvalidPictureTitle);
        return false;
    }
    WriteScope write(m_session, Module, SavePictureProcedure);
    const Rows same = write.select(QStringLiteral("SELECT ImageName FROM tblEquipmentImage "
                                                  "WHERE EquipmentID = ? AND "
                                                  "LOWER(ImageName) = LOWER(?)"),
                                   {equipmentId, name.trimmed()});
    if (!write.ok()) {
        return false;
    }
    if (!same.isEmpty()) {
        refuse(PictureNameTaken);
        return false;
    }
    write.exec(QStringLiteral("INSERT INTO tblEquipmentImage (EquipmentID, ImageName, ImageData) "
                              "VALUES (?, ?, ?)"),
               {equipmentId, name.trimmed(), bytes});
    return write.commit();
}

QByteArray EquipmentAttachments::pictureData(qint64 equipmentId, const QString& name)
{
    QSqlQuery q(m_session.db());
    q.setForwardOnly(true);
    if (!Sql::exec(q,
                   QStringLiteral("SELECT ImageData FROM tblEquipmentImage WHERE ImageName = ? "
                                  "AND EquipmentID = ?"),
                   {name, equipmentId})) {
        errorHandler(m_session, Sql::failure(Module, LoadPictureProcedure, q.lastError()));
        return QByteArray();
    }
    return q.next() ? q.value(0).toByteArray() : QByteArray();
}

bool EquipmentAttachments::removePicture(qint64 equipmentId, const QString& name)
{
    return removeAfterQuestion(
        QStringLiteral("DELETE FROM tblEquipmentImage WHERE EquipmentID = ? AND ImageName = ?"),
        {equipmentId, name}, {});
}

Rows EquipmentAttachments::pictures(qint64 equipmentId)
{
    return names(QStringLiteral("SELECT ImageName AS \"Picture Name\" FROM tblEquipmentImage "
                                "WHERE EquipmentID = ? ORDER BY ImageName"),
                 equipmentId, PictureListProcedure);
}

bool EquipmentAttachments::addDocument(qint64 equipmentId, const QString& path)
{
    if (path.isEmpty()) {
        return false;
    }
    const QFileInfo source(path);
    if (!source.isFile()) {
        refuse(InvalidDocumentPath);
        return false;
    }
    const QString name = source.fileName();
    const QString target = documentPath(equipmentId, name);
    // A listed name keeps its one row, whether or not its file is still there.
    const bool replacing = hasDocumentRow(equipmentId, name);
    if (replacing && QFileInfo::exists(target) &&
        !m_session.prompter().askYesNo(name + ReplaceQuestion)) {
        return false;
    }
    if (!QFileInfo(m_session.installation().path(QStringLiteral("doc"))).isDir()) {
        refuse(DocFolderMissing + QDir::toNativeSeparators(m_session.installation().home()));
        return false;
    }
    if (!QDir().mkpath(documentFolder(equipmentId))) {
        errorHandler(
            m_session, Module, AddDocumentProcedure, FileAccessNumber,
            QStringLiteral("Cannot create the folder %1").arg(documentFolder(equipmentId)));
        return false;
    }
    if (!copyDocument(path, target)) {
        return false;
    }
    if (replacing || insertDocumentRow(equipmentId, name)) {
        return true;
    }
    QFile::remove(target);
    return false;
}

QString EquipmentAttachments::documentPath(qint64 equipmentId, const QString& name) const
{
    return documentFolder(equipmentId) + u'/' + name;
}

bool EquipmentAttachments::removeDocument(qint64 equipmentId, const QString& name)
{
    const QString file = documentPath(equipmentId, name);
    return removeAfterQuestion(
        QStringLiteral(
            "DELETE FROM tblEquipmentDocument WHERE EquipmentID = ? AND DocumentName = ?"),
        {equipmentId, name}, [file] { return !QFileInfo::exists(file) || QFile::remove(file); });
}

Rows EquipmentAttachments::documents(qint64 equipmentId)
{
    return names(QStringLiteral("SELECT DocumentName AS \"Document Name\" FROM "
                                "tblEquipmentDocument WHERE EquipmentID = ? ORDER BY DocumentName"),
                 equipmentId, DocumentListProcedure);
}

QString EquipmentAttachments::documentFolder(qint64 equipmentId) const
{
    return m_session.installation().path(QStringLiteral("doc/") + QString::number(equipmentId));
}

bool EquipmentAttachments::hasDocumentRow(qint64 equipmentId, const QString& name)
{
    // Compared as the host's file names are: with their case.
    return DataHelpers::recordCount(
               m_session, QStringLiteral("tblEquipmentDocument"),
               {QStringLiteral("EquipmentID = ? AND DocumentName = ?"), {equipmentId, name}}) > 0;
}

bool EquipmentAttachments::copyDocument(const QString& from, const QString& to)
{
    if (QFileInfo(from).canonicalFilePath() == QFileInfo(to).canonicalFilePath()) {
        return true; // the chosen file is the listed one itself
    }
    // Written whole under a temporary name, so a failed replacement keeps the old file.
    QFile source(from);
    QSaveFile target(to);
    bool copied = source.open(QIODevice::ReadOnly) && target.open(QIODevice::WriteOnly);
    while (copied && !source.atEnd()) {
        const QByteArray chunk = source.read(CopyChunk);
        copied = !chunk.isEmpty() && target.write(chunk) == chunk.size();
    }
    if (copied && target.commit()) {
        return true;
    }
    const QString why =
        source.error() != QFileDevice::NoError ? source.errorString() : target.errorString();
    errorHandler(m_session, Module, AddDocumentProcedure, FileAccessNumber,
                 QStringLiteral("Cannot copy %1 to %2: %3").arg(from, to, why));
    return false;
}

bool EquipmentAttachments::insertDocumentRow(qint64 equipmentId, const QString& name)
{
    WriteScope write(m_session, Module, AddDocumentProcedure);
    write.exec(QStringLiteral(
                   "INSERT INTO tblEquipmentDocument (EquipmentID, DocumentName) VALUES (?, ?)"),
               {equipmentId, name});
    return write.commit();
}

void EquipmentAttachments::refuse(const QString& text, const QString& title)
{
    m_session.prompter().message(text, Prompter::Buttons::Ok, Prompter::Icon::Exclamation, title);
}

bool EquipmentAttachments::removeAfterQuestion(const QString& sql, const QVariantList& values,
                                               const std::function<bool()>& alsoRemove)
{
    if (!m_session.prompter().askYesNo(MessageTexts::DeleteQuestion)) {
        return false;
    }
    // A failed removal is told as a refusal, not reported, and undone alone inside an edit.
    Transaction transaction(m_session);
    std::optional<Savepoint> savepoint;
    if (transaction.isActive() && !transaction.ownsTransaction()) {
        savepoint.emplace(m_session, QStringLiteral("attachment_removal"));
    }
    QSqlQuery q(m_session.db());
    const bool removed = transaction.isActive() && (!savepoint || savepoint->isActive()) &&
                         Sql::exec(q, sql, values) && (!alsoRemove || alsoRemove()) &&
                         transaction.commit();
    if (!removed) {
        refuse(MessageTexts::DeletionNotAllowed);
        return false;
    }
    if (savepoint) {
        savepoint->release();
    }
    return true;
}

Rows EquipmentAttachments::names(const QString& sql, qint64 equipmentId, const QString& procedure)
{
    return DataHelpers::read(m_session, Module, procedure, sql, {equipmentId});
}
