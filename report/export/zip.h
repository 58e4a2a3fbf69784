#pragma once

#include "system/durable_file.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace velcoran::report {

/// Writes a zip archive into a file, its entries as streams, one after the other.
class ZipWriter {
public:
    enum class Packing { Stored, Deflated };

    /// @param time  of all entries
    /// @throws Error kPathAccess, as all that follows
    ZipWriter(const QString& file, const QDateTime& time);
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    /// The next entry; its content follows in pieces.
    void begin(const char* name, Packing packing);
    /// @throws Error kFormatNotAvailable beyond 4 GB in an entry
    void write(QByteArrayView piece);
    void end();
    /// Writes the list of entries and puts the file into its place.
    void commit();

private:
    void check(int result) const;

    QString m_file;
    QDateTime m_time;
    system::DurableFile m_place;
    void* m_archive;  ///< null when it is closed
    qint64 m_size = 0;
};

}  // namespace velcoran::report
