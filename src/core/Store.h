#pragma once

#include <QList>
#include <QString>

/**
 * The machine's own settings: an INI file in the installation folder that
 * stands in for the registry. Sections are key paths ("Software\Korvelle");
 * section and value names compare without regard to case; values are trimmed
 * when read. Saving goes through a temporary file, so a failed write leaves
 * the old file whole.
 */
class Store
{
public:
    explicit Store(QString filePath = QString());

    /** Reads the file; false with a reason when it exists but cannot be read. */
    bool load(QString* error = nullptr);
    /** Writes the file; false with a reason when it cannot be written. */
    bool save(QString* error = nullptr) const;

    QString filePath() const { return m_filePath; }

    /** The trimmed value, or empty text when the section or name is missing. */
    QString value(const QString& section, const QString& name) const;
    bool contains(const QString& section, const QString& name) const;
    /**
     * Sets a value in memory; save() writes it. False, with the store unchanged, for what
     * one line of the file cannot hold: a line break anywhere, or a name that is empty, has
     * surrounding blanks, holds "=" or starts like a section or a comment.
     */
    bool setValue(const QString& section, const QString& name, const QString& value);
    bool hasSection(const QString& section) const;

private:
    struct Entry
    {
        QString name;
        QString value;
    };
    struct Section
    {
        QString name;
        QList<Entry> entries;
    };

    const Section* findSection(const QString& name) const;
    Section& sectionFor(const QString& name);

    QString m_filePath;
    QList<Section> m_sections;
};
