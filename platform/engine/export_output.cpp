#include "platform/engine/export_output.h"

#include "base/error.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace velcoran::engine {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kBufferBytes = 64 * 1024;

constexpr struct {
    int error;
    QStringView words;
} kSystemWords[] = {
    {ENOSPC, u"discul este plin"},           {EDQUOT, u"spațiul rezervat pe disc s-a terminat"},
    {EFBIG, u"fișierul ar fi prea mare"},    {ENOENT, u"dosarul nu există"},
    {ENOTDIR, u"dosarul nu există"},         {EISDIR, u"este un dosar"},
    {EACCES, u"accesul este interzis"},      {EPERM, u"accesul este interzis"},
    {EROFS, u"discul poate fi numai citit"}, {ENAMETOOLONG, u"numele este prea lung"},
    {EIO, u"discul nu mai primește date"},
};

/// The system's words as the window's users read them; what the table does not know stays as it is.
QString inRomanian(const QString& words) {
    for (const auto& one : kSystemWords) {
        if (words == qt_error_string(one.error)) return one.words.toString();
    }
    // What a device says that has not kept the system's error.
    return words.isEmpty() || words == QIODevice::tr("Unknown error") ? inRomanian(qt_error_string(EIO)) : words;
}

/// A device or a pipe: there is nothing to keep, and nothing may take its place.
bool isDevice(const QFileInfo& target) { return target.exists() && !target.isFile() && !target.isDir(); }

}  // namespace

void failToWrite(const QString& file, const QString& words) {
    throw base::Error(base::kPathAccess, u"Fișierul %1 nu poate fi scris: %2"_s.arg(file, inRomanian(words)));
}

ExportOutput::ExportOutput(const QString& file) : m_file(file) {
    QIODevice::OpenMode mode = QIODevice::WriteOnly;
    if (isDevice(QFileInfo(file))) {
        m_device = std::make_unique<QFile>(file);
        mode |= QIODevice::Unbuffered;
    } else {
        m_device = std::make_unique<QSaveFile>(file);
    }
    if (!m_device->open(mode)) fail();
    m_buffer.reserve(kBufferBytes);
}

ExportOutput::~ExportOutput() = default;

void ExportOutput::write(QByteArrayView bytes) {
    m_size += bytes.size();
    if (m_buffer.size() + bytes.size() > kBufferBytes) flush();
    m_buffer.append(bytes);
}

void ExportOutput::flush() {
    if (m_device->write(m_buffer) != m_buffer.size()) fail();
    m_buffer.resize(0);
}

void ExportOutput::commit() {
    flush();
    if (auto* whole = qobject_cast<QSaveFile*>(m_device.get())) {
        if (!whole->commit()) fail();
        return;
    }
    m_device->close();
    if (m_device->error() != QFileDevice::NoError) fail();
}

void ExportOutput::fail() const { failToWrite(m_file, m_device->errorString()); }

ExportFolder::ExportFolder(const QString& file) : m_file(file), m_target(file) {
    QFileInfo target(file);
    for (int links = 0; target.isSymLink() && links < 40; ++links) {
        m_target = target.symLinkTarget();
        target.setFile(m_target);
    }
    if (target.isDir()) failToWrite(file, qt_error_string(EISDIR));
    if (target.exists() && !target.isWritable()) failToWrite(file, qt_error_string(EACCES));
    const QString above = isDevice(target) ? QString() : target.absolutePath() + u"/.export-XXXXXX"_s;
    m_folder = above.isEmpty() ? std::make_unique<QTemporaryDir>() : std::make_unique<QTemporaryDir>(above);
    if (!m_folder->isValid()) failToWrite(file, m_folder->errorString());
}

void ExportFolder::commit() {
    const QFileInfo old(m_target);
    if (isDevice(old)) return copyToDevice();
    QFile whole(temporaryFile());
    if (!whole.open(QIODevice::ReadWrite)) failToWrite(m_file, whole.errorString());
    if (old.exists()) whole.setPermissions(old.permissions());
#ifdef Q_OS_UNIX
    // Whole on the disk before it takes the old file's place.
    if (::fsync(whole.handle()) != 0) failToWrite(m_file, qt_error_string(errno));
#endif
    whole.close();
    const QByteArray from = QFile::encodeName(whole.fileName());
    const QByteArray to = QFile::encodeName(m_target);
    if (std::rename(from.constData(), to.constData()) != 0) failToWrite(m_file, qt_error_string(errno));
}

void ExportFolder::copyToDevice() {
    QFile whole(temporaryFile());
    if (!whole.open(QIODevice::ReadOnly)) failToWrite(m_file, whole.errorString());
    ExportOutput device(m_target);
    while (!whole.atEnd()) device.write(whole.read(kBufferBytes));
    device.commit();
}

}  // namespace velcoran::engine
