#include "zip.h"

#include "base/error.h"
#include "system/durable_file.h"

#include <zlib.h>

#include <array>
#include <limits>
#include <new>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

// Values of the archive's published format.
constexpr quint32 kLocalHeader = 0x04034B50;
constexpr quint32 kDescriptor = 0x08074B50;
constexpr quint32 kCentralHeader = 0x02014B50;
constexpr quint32 kEndOfDirectory = 0x06054B50;
constexpr quint16 kVersion = 20;
constexpr quint16 kStored = 0;
constexpr quint16 kDeflated = 8;
constexpr quint16 kSizesFollow = 1U << 3U;
constexpr quint16 kNamesAreUtf8 = 1U << 11U;
constexpr qint64 kLimit = std::numeric_limits<quint32>::max();

constexpr int kLevel = 3;  ///< tables shrink to a twentieth at any level; the time grows
constexpr std::size_t kPieceBytes = 64 * 1024;

template <typename... Fields>
QByteArray record(Fields... fields) {
    QByteArray bytes;
    const auto append = [&bytes](auto field) {
        for (std::size_t i = 0; i < sizeof(field); ++i) bytes.append(static_cast<char>((field >> (8 * i)) & 0xFFU));
    };
    (append(fields), ...);
    return bytes;
}

quint32 within4GB(qint64 size) {
    if (size > kLimit) {
        throw base::Error(base::kFormatNotAvailable, u"Raportul este prea mare pentru acest format."_s);
    }
    return static_cast<quint32>(size);
}

quint32 checksum(quint32 before, QByteArrayView bytes) {
    return static_cast<quint32>(
        crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<z_size_t>(bytes.size())));
}

}  // namespace

struct ZipWriter::Entry {
    QByteArray name;
    quint16 method = kStored;
    quint16 flags = kNamesAreUtf8;
    quint32 check = 0;
    qint64 size = 0;
    qint64 packedSize = 0;
    qint64 offset = 0;
};

struct ZipWriter::Deflater {
    Deflater() {
        if (deflateInit2(&stream, kLevel, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Deflater() { deflateEnd(&stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    z_stream stream{};
    std::array<char, kPieceBytes> packed{};
};

ZipWriter::ZipWriter(system::DurableFile& output, const QDateTime& time) : m_output(output) {
    const QDate day = time.date();
    const QTime clock = time.time();
    m_time = static_cast<quint16>(clock.hour() << 11 | clock.minute() << 5 | clock.second() / 2);
    m_date = static_cast<quint16>(std::max(0, day.year() - 1980) << 9 | day.month() << 5 | day.day());
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::beginEntry(Entry entry) {
    entry.offset = m_output.size();
    m_output.write(record(kLocalHeader, kVersion, entry.flags, entry.method, m_time, m_date, entry.check,
                          static_cast<quint32>(entry.packedSize), static_cast<quint32>(entry.size),
                          static_cast<quint16>(entry.name.size()), quint16(0)));
    m_output.write(entry.name);
    m_entries.push_back(std::move(entry));
}

void ZipWriter::addStored(const QByteArray& name, const QByteArray& content) {
    Entry entry{name};
    entry.check = checksum(0, content);
    entry.size = entry.packedSize = content.size();
    beginEntry(std::move(entry));
    m_output.write(content);
}

void ZipWriter::beginDeflated(const QByteArray& name) {
    m_deflater = std::make_unique<Deflater>();
    Entry entry{name};
    entry.method = kDeflated;
    entry.flags |= kSizesFollow;
    beginEntry(std::move(entry));
}

void ZipWriter::write(QByteArrayView piece) {
    Entry& entry = m_entries.back();
    entry.check = checksum(entry.check, piece);
    entry.size += piece.size();
    within4GB(entry.size);
    deflatePiece(piece, false);
}

void ZipWriter::deflatePiece(QByteArrayView piece, bool isLast) {
    z_stream& stream = m_deflater->stream;
    auto& packed = m_deflater->packed;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));  // the library only reads it
    stream.avail_in = static_cast<uInt>(piece.size());
    do {
        stream.next_out = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_out = static_cast<uInt>(packed.size());
        deflate(&stream, isLast ? Z_FINISH : Z_NO_FLUSH);
        const auto count = static_cast<qsizetype>(packed.size() - stream.avail_out);
        m_output.write(QByteArrayView(packed.data(), count));
        m_entries.back().packedSize += count;
    } while (stream.avail_out == 0);
}

void ZipWriter::endDeflated() {
    deflatePiece({}, true);
    m_deflater.reset();
    const Entry& entry = m_entries.back();
    m_output.write(record(kDescriptor, entry.check, within4GB(entry.packedSize), within4GB(entry.size)));
}

void ZipWriter::finish() {
    const quint32 start = within4GB(m_output.size());
    for (const Entry& entry : m_entries) {
        m_output.write(record(kCentralHeader, kVersion, kVersion, entry.flags, entry.method, m_time, m_date,
                              entry.check, within4GB(entry.packedSize), within4GB(entry.size),
                              static_cast<quint16>(entry.name.size()), quint16(0), quint16(0), quint16(0), quint16(0),
                              quint32(0), within4GB(entry.offset)));
        m_output.write(entry.name);
    }
    const quint32 size = within4GB(m_output.size()) - start;
    const auto count = static_cast<quint16>(m_entries.size());
    m_output.write(record(kEndOfDirectory, quint16(0), quint16(0), count, count, size, start, quint16(0)));
}

}  // namespace velcoran::report
