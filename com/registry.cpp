#include "registry.h"

#include "base/error.h"
#include "guid_text.h"
#include "system/durable_file.h"
#include "system/file_name.h"

#include <velcoran/activation.h>

#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <filesystem>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::com {

namespace {

constexpr int kLockPatience = 5000;  // milliseconds

std::string bytesOf(const QString& name) { return system::nameBytes(name).toStdString(); }

std::string_view viewOf(const QByteArray& bytes) { return {bytes.constData(), static_cast<std::size_t>(bytes.size())}; }

QString textOf(const std::string& name) { return system::nameText(QByteArray::fromStdString(name)); }

RegistryEntry textsOf(const activation::Entry& entry) {
    return {textOf(entry.progId), entry.classId, textOf(entry.library),
            activation::guidOf(entry.typeLibrary).value_or(Guid{}), textOf(entry.typeLibraryVersion)};
}

template <class Condition>
std::optional<RegistryEntry> firstEntry(const QString& path, Condition isWanted) {
    for (const activation::Entry& each : activation::readEntries(bytesOf(path)))
        if (RegistryEntry entry = textsOf(each); isWanted(entry)) return entry;
    return std::nullopt;
}

/// The lines of a file, each with its end. A last line that was not finished and means nothing is none.
QList<QByteArray> linesOf(const QString& path) {
    QFile file(system::nameText(system::nameBytes(path)));
    if (!file.exists()) return {};
    if (!file.open(QIODevice::ReadOnly)) system::failToWrite(path, QFileInfo(path).isDir() ? EISDIR : EACCES);
    QList<QByteArray> lines;
    while (!file.atEnd()) lines.append(file.readLine());
    if (lines.isEmpty() || lines.last().endsWith('\n')) return lines;
    const std::string_view last = activation::trimmed(viewOf(lines.last()));
    const bool isWhole = activation::sectionName(last).has_value() || last.find('=') != std::string_view::npos ||
                         last.starts_with('#') || last.starts_with(';');
    if (isWhole)
        lines.last() += '\n';
    else
        lines.removeLast();
    return lines;
}

/// Takes the sections out that are named so and that a condition on their lines wants gone.
template <class Condition>
void removeSections(QList<QByteArray>& lines, const QString& name, Condition isUnwanted) {
    const std::string wanted = bytesOf(name);
    for (qsizetype start = 0; start < lines.size(); ++start) {
        const auto found = activation::sectionName(viewOf(lines[start]));
        if (!found || !activation::isSame(*found, wanted)) continue;
        qsizetype end = start + 1;
        while (end < lines.size() && !activation::sectionName(viewOf(lines[end]))) ++end;
        if (!isUnwanted(lines.mid(start, end - start))) continue;
        lines.remove(start, end - start);
        --start;
    }
}

void writeLines(const QString& path, const QList<QByteArray>& lines) {
    system::DurableFile file(path);
    for (const QByteArray& line : lines) file.write(line);
    file.commit();
}

void makeFolder(const QString& path) {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::path(bytesOf(path)).parent_path();
    std::filesystem::create_directories(folder, error);
    if (!error) return;
    throw base::Error(base::kPathAccess, u"Dosarul %1 nu poate fi creat: %2"_s.arg(textOf(folder.string()),
                                                                                   system::wordsOf(error.value())));
}

/// Reads, lets a change happen and writes, while no other process does the same.
template <class Change>
void changeLines(const QString& path, Change change) {
    makeFolder(path);
    QLockFile lock(path + u".lock"_s);
    if (!lock.tryLock(kLockPatience)) {
        const bool isTaken = lock.error() == QLockFile::LockFailedError;
        system::failToWrite(path, isTaken ? EBUSY : lock.error() == QLockFile::PermissionError ? EACCES : ENOSPC);
    }
    const QList<QByteArray> old = linesOf(path);
    QList<QByteArray> lines = old;
    change(lines);
    if (lines == old) return;
    const bool isEmpty = std::all_of(lines.begin(), lines.end(),
                                     [](const QByteArray& each) { return activation::trimmed(viewOf(each)).empty(); });
    if (!isEmpty) return writeLines(path, lines);
    std::error_code error;
    std::filesystem::remove(bytesOf(path), error);
    if (error) system::failToWrite(path, error.value());
}

}  // namespace

QString userRegistryPath() { return textOf(activation::userRegistryFile()); }

QStringList registryPaths() {
    QStringList paths;
    for (const std::string& file : activation::registryFiles()) paths.append(textOf(file));
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
    changeLines(path, [&entry](QList<QByteArray>& lines) {
        removeSections(lines, entry.progId, [](const QList<QByteArray>&) { return true; });
        const auto append = [&lines](const QString& line) { lines.append(system::nameBytes(line) + '\n'); };
        append(u"[%1]"_s.arg(entry.progId));
        append(u"ClassId="_s + guidText(entry.classId));
        append(u"Library="_s + system::fullName(entry.library));
        append(u"ThreadingModel=Apartment"_s);
        append(u"TypeLibrary="_s + guidText(entry.typeLibrary));
        append(u"TypeLibraryVersion="_s + entry.typeLibraryVersion);
    });
}

void removeEntry(const QString& path, const QString& progId, const QString& library) {
    if (!QFile::exists(path)) return;
    const std::string folder = std::filesystem::path(bytesOf(path)).parent_path().string();
    const std::string ours = bytesOf(library);
    changeLines(path, [&](QList<QByteArray>& lines) {
        removeSections(lines, progId, [&](const QList<QByteArray>& section) {
            for (const QByteArray& line : section) {
                const std::string_view text = viewOf(line);
                const std::size_t equals = text.find('=');
                if (equals == std::string_view::npos) continue;
                if (!activation::isSame(activation::trimmed(text.substr(0, equals)), "Library")) continue;
                const std::string_view value = activation::trimmed(text.substr(equals + 1));
                return activation::fullPath(std::string(activation::unquoted(value)), folder) == ours;
            }
            return false;
        });
    });
}

}  // namespace velcoran::com
