#pragma once

#include <QByteArray>
#include <QDateTime>

#include <memory>
#include <vector>

namespace velcoran::system {
class DurableFile;
}

namespace velcoran::system {
class DurableFile;
}

namespace velcoran::report {

/// Writes a zip archive as a stream: entries one after the other, the list of them at the end.
class ZipWriter {
public:
    /// @param time  of all entries
    ZipWriter(system::DurableFile& output, const QDateTime& time);
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    /// A whole entry, stored as it is.
    void addStored(const QByteArray& name, const QByteArray& content);
    /// A deflated entry whose content follows in pieces.
    void beginDeflated(const QByteArray& name);
    /// @throws Error kFormatNotAvailable beyond 4 GB, kPathAccess
    void write(QByteArrayView piece);
    void endDeflated();
    /// Writes the list of entries.
    void finish();

private:
    struct Entry;
    struct Deflater;
    void beginEntry(Entry entry);
    void deflatePiece(QByteArrayView piece, bool isLast);

    system::DurableFile& m_output;
    quint16 m_time = 0;
    quint16 m_date = 0;
    std::vector<Entry> m_entries;
    std::unique_ptr<Deflater> m_deflater;
};

}  // namespace velcoran::report
