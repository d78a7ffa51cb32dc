#include "Store.h"

#include <QFile>
#include <QSaveFile>
#include <QTextStream>

namespace {

bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool hasLineBreak(const QString& text)
{
    return text.contains(u'\n') || text.contains(u'\r');
}

bool storableName(const QString& name)
{
    return !name.isEmpty() && name == name.trimmed() && !name.contains(u'=') &&
           !name.startsWith(u'[') && !name.startsWith(u';') && !name.startsWith(u'#') &&
           !hasLineBreak(name);
}

bool storableSection(const QString& section)
{
    return !section.trimmed().isEmpty() && section == section.trimmed() && !hasLineBreak(section);
}

} // namespace

Store::Store(QString filePath) : m_filePath(std::move(filePath)) {}

bool Store::load(QString* error)
{
    m_sections.clear();
    QFile file(m_filePath);
    if (!file.exists()) {
        return true;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (error) {
            *error = QStringLiteral("Cannot read %1: %2").arg(m_filePath, file.errorString());
        }
        return false;
    }
    QTextStream in(&file);
    Section* current = nullptr;
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#')) {
            continue;
        }
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            current = &sectionFor(line.mid(1, line.size() - 2).trimmed());
            continue;
        }
        const qsizetype eq = line.indexOf(u'=');
        if (eq <= 0 || !current) {
            if (error) {
                *error = QStringLiteral("%1 is damaged near: %2").arg(m_filePath, line);
            }
            m_sections.clear();
            return false;
        }
        current->entries.append({line.left(eq).trimmed(), line.mid(eq + 1)});
    }
    return true;
}

bool Store::save(QString* error) const
{
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        if (error) {
            *error = QStringLiteral("Cannot write %1: %2").arg(m_filePath, file.errorString());
        }
        return false;
    }
    QTextStream out(&file);
    for (const Section& section : m_sections) {
        out << u'[' << section.name << u']' << u'\n';
        for (const Entry& entry : section.entries) {
            out << entry.name << u'=' << entry.value << u'\n';
        }
        out << u'\n';
    }
    out.flush();
    // QSaveFile commits a file whose last buffered write failed (a full disk), so the
    // write is checked before the old file is replaced.
    if (!file.flush() || file.error() != QFileDevice::NoError) {
        if (error) {
            *error = QStringLiteral("Cannot write %1: %2").arg(m_filePath, file.errorString());
        }
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        if (error) {
            *error = QStringLiteral("Cannot write %1: %2").arg(m_filePath, file.errorString());
        }
        return false;
    }
    return true;
}

const Store::Section* Store::findSection(const QString& name) const
{
    for (const Section& section : m_sections) {
        if (sameName(section.name, name)) {
            return &section;
        }
    }
    return nullptr;
}

Store::Section& Store::sectionFor(const QString& name)
{
    for (Section& section : m_sections) {
        if (sameName(section.name, name)) {
            return section;
        }
    }
    m_sections.append({name, {}});
    return m_sections.last();
}

QString Store::value(const QString& section, const QString& name) const
{
    if (const Section* s = findSection(section)) {
        for (const Entry& entry : s->entries) {
            if (sameName(entry.name, name)) {
                return entry.value.trimmed();
            }
        }
    }
    return QString();
}

bool Store::contains(const QString& section, const QString& name) const
{
    if (const Section* s = findSection(section)) {
        for (const Entry& entry : s->entries) {
            if (sameName(entry.name, name)) {
                return true;
            }
        }
    }
    return false;
}

bool Store::hasSection(const QString& section) const
{
    return findSection(section) != nullptr;
}

bool Store::setValue(const QString& section, const QString& name, const QString& value)
{
    if (!storableSection(section) || !storableName(name) || hasLineBreak(value)) {
        return false;
    }
    Section& s = sectionFor(section);
    for (Entry& entry : s.entries) {
        if (sameName(entry.name, name)) {
            entry.value = value;
            return true;
        }
    }
    s.entries.append({name, value});
    return true;
}
