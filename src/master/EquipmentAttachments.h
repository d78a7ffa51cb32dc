#pragma once

#include "DataHelpers.h"

#include <QByteArray>
#include <QString>
#include <functional>

class Session;

/**
 * The pictures and documents of a machine. A picture's bytes are kept in
 * tblEquipmentImage; a document is copied into doc/<EquipmentID>/ of the
 * installation and only its file name goes into tblEquipmentDocument, so a
 * data file moved without that folder keeps its pictures but not its documents.
 * Refusals and questions go through the session's prompter; unexpected
 * failures go to errorHandler under "Equipment".
 */
class EquipmentAttachments
{
public:
    explicit EquipmentAttachments(Session& session) : m_session(session) {}

    /** True when head starts like a BMP, JPEG, GIF or PNG file. */
    static bool looksLikePicture(const QByteArray& head);

    /**
     * Stores the picture file at path under name for the machine; false, with the
     * user told why, for a blank field, a missing or unreadable file, a file that is
     * no picture or a name the machine's pictures already hold (in any case).
     */
    bool addPicture(qint64 equipmentId, const QString& path, const QString& name);
    /** The stored bytes of the picture, empty when there is none. */
    QByteArray pictureData(qint64 equipmentId, const QString& name);
    /** Asks first; false when the user says No or the delete fails (the user is told). */
    bool removePicture(qint64 equipmentId, const QString& name);
    /** The machine's pictures as "Picture Name", by name. */
    Rows pictures(qint64 equipmentId);

    /**
     * Copies the file at path into the machine's document folder under its own
     * name and lists it. An existing document of that name is replaced only when
     * the user says Yes, and keeps its one row. False when nothing was added: an
     * empty path, a missing file, No, a missing doc folder (the user is told) or a
     * failure.
     */
    bool addDocument(qint64 equipmentId, const QString& path);
    /** Where the document's file lies, for opening it. */
    QString documentPath(qint64 equipmentId, const QString& name) const;
    /** Asks first, then deletes the row and the file; false when it did not. */
    bool removeDocument(qint64 equipmentId, const QString& name);
    /** The machine's documents as "Document Name", by name. */
    Rows documents(qint64 equipmentId);

private:
    QString documentFolder(qint64 equipmentId) const;
    bool hasDocumentRow(qint64 equipmentId, const QString& name);
    bool copyDocument(const QString& from, const QString& to);
    bool insertDocumentRow(qint64 equipmentId, const QString& name);
    void refuse(const QString& text, const QString& title = QString());
    bool removeAfterQuestion(const QString& sql, const QVariantList& values,
                             const std::function<bool()>& alsoRemove);
    Rows names(const QString& sql, qint64 equipmentId, const QString& procedure);

    Session& m_session;
};
