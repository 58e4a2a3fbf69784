#include "platform/com/registry.h"

#include "base/error.h"
#include "platform/com/guid_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStringList>

#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::com {

namespace {

const QString kFileName = u"velcoran/registry.ini"_s;

/// The lines of a file by section; what stands before the first section has an empty name. Lines that are neither
/// entries nor comments are what a broken writer has left: they are not kept.
struct Section {
    QString name;
    QStringList lines;
};

QList<Section> readSections(const QString& path) {
    QList<Section> sections{{QString(), {}}};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return sections;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QString text = line.trimmed();
        if (text.startsWith(u'[') && text.endsWith(u']'))
            sections.append({text.sliced(1, text.size() - 2), {}});
        else if (text.contains(u'=') || text.startsWith(u'#') || text.startsWith(u';'))
            sections.last().lines.append(text);
    }
    return sections;
}

void writeSections(const QString& path, const QList<Section>& sections) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) throw base::Error(base::kPathAccess, path + u": "_s + file.errorString());
    for (const Section& section : sections) {
        if (!section.name.isEmpty()) file.write(u"[%1]\n"_s.arg(section.name).toUtf8());
        for (const QString& line : section.lines) file.write((line + u'\n').toUtf8());
    }
    if (!file.commit()) throw base::Error(base::kPathAccess, path + u": "_s + file.errorString());
}

/// Reads, lets a change happen and writes, while no other process does the same.
template <class Change>
void changeSections(const QString& path, Change change) {
    if (!QDir().mkpath(QFileInfo(path).path()))
        throw base::Error(base::kPathAccess, QFileInfo(path).path() + u": cannot be created"_s);
    QLockFile lock(path + u".lock"_s);
    if (!lock.tryLock(5000)) throw base::Error(base::kPathAccess, path + u": is locked"_s);
    QList<Section> sections = readSections(path);
    change(sections);
    const bool isEmpty = sections.size() == 1 && sections.first().lines.isEmpty();
    if (!isEmpty) return writeSections(path, sections);
    if (QFile::exists(path) && !QFile::remove(path))
        throw base::Error(base::kPathAccess, path + u": cannot be removed"_s);
}

QString valueOf(const Section& section, const QString& key) {
    for (const QString& line : section.lines)
        if (line.startsWith(key + u'=')) return line.sliced(key.size() + 1);
    return {};
}

/// Nothing when the section lacks its class or library.
std::optional<RegistryEntry> entryOf(const Section& section) {
    const auto classId = guidFromText(valueOf(section, u"ClassId"_s));
    const QString library = valueOf(section, u"Library"_s);
    if (!classId || library.isEmpty()) return std::nullopt;
    const auto typeLibrary = guidFromText(valueOf(section, u"TypeLibrary"_s));
    return RegistryEntry{section.name, *classId, library, typeLibrary.value_or(Guid{}),
                         valueOf(section, u"TypeLibraryVersion"_s)};
}

template <class Condition>
std::optional<RegistryEntry> firstEntry(const QString& path, Condition isWanted) {
    for (const Section& section : readSections(path))
        if (auto entry = entryOf(section); entry && isWanted(*entry)) return entry;
    return std::nullopt;
}

QString dataHome() {
    const QString home = qEnvironmentVariable("XDG_DATA_HOME");
    return QDir::isAbsolutePath(home) ? home : QDir::homePath() + u"/.local/share"_s;
}

}  // namespace

QString userRegistryPath() { return dataHome() + u'/' + kFileName; }

QStringList registryPaths() {
    QStringList paths{userRegistryPath()};
    QString folders = qEnvironmentVariable("XDG_DATA_DIRS");
    if (folders.isEmpty()) folders = u"/usr/local/share:/usr/share"_s;
    for (const QString& folder : folders.split(u':', Qt::SkipEmptyParts))
        if (QDir::isAbsolutePath(folder)) paths.append(folder + u'/' + kFileName);
    return paths;
}

std::optional<RegistryEntry> readEntry(const QString& path, const QString& progId) {
    return firstEntry(
        path, [&progId](const RegistryEntry& entry) { return entry.progId.compare(progId, Qt::CaseInsensitive) == 0; });
}

std::optional<RegistryEntry> findEntry(const QString& progId) {
    for (const QString& path : registryPaths())
        if (auto entry = readEntry(path, progId)) return entry;
    return std::nullopt;
}

std::optional<RegistryEntry> findEntry(const Guid& classId) {
    const auto isWanted = [&classId](const RegistryEntry& entry) { return entry.classId == classId; };
    for (const QString& path : registryPaths())
        if (auto entry = firstEntry(path, isWanted)) return entry;
    return std::nullopt;
}

void writeEntry(const QString& path, const RegistryEntry& entry) {
    changeSections(path, [&entry](QList<Section>& sections) {
        sections.removeIf([&entry](const Section& each) { return each.name == entry.progId; });
        sections.append(
            {entry.progId,
             {u"ClassId="_s + guidText(entry.classId), u"Library="_s + entry.library, u"ThreadingModel=Apartment"_s,
              u"TypeLibrary="_s + guidText(entry.typeLibrary), u"TypeLibraryVersion="_s + entry.typeLibraryVersion}});
    });
}

void removeEntry(const QString& path, const QString& progId) {
    if (!QFile::exists(path)) return;
    changeSections(path, [&progId](QList<Section>& sections) {
        sections.removeIf([&progId](const Section& each) { return each.name == progId; });
    });
}

}  // namespace velcoran::com
