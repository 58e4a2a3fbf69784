#include "zip.h"

#include "base/error.h"

#include <minizip/zip.h>

#include <cerrno>
#include <limits>
#include <utility>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLevel = 3;  ///< tables shrink to a twentieth at any level; the time grows
constexpr qint64 kLimit = std::numeric_limits<quint32>::max();

zip_fileinfo informationOf(const QDateTime& time) {
    zip_fileinfo information{};
    const auto field = [](int value) { return static_cast<uInt>(value); };
    const QDate day = time.date();
    const QTime clock = time.time();
    information.tmz_date = {field(clock.second()), field(clock.minute()),  field(clock.hour()),
                            field(day.day()),      field(day.month() - 1), field(std::max(1980, day.year()))};
    return information;
}

}  // namespace

ZipWriter::ZipWriter(const QString& file, const QDateTime& time)
    : m_file(file),
      m_time(time),
      m_place(file, system::DurableFile::Use::byPath),
      m_archive(zipOpen64(m_place.path().constData(), APPEND_STATUS_CREATE)) {
    if (m_archive == nullptr) system::failToWrite(m_file, errno);
}

ZipWriter::~ZipWriter() {
    if (m_archive != nullptr) zipClose(m_archive, nullptr);  // the file is given up
}

void ZipWriter::check(int result) const {
    if (result != ZIP_OK) system::failToWrite(m_file, errno != 0 ? errno : EIO);
}

void ZipWriter::begin(const char* name, Packing packing) {
    const zip_fileinfo information = informationOf(m_time);
    const int method = packing == Packing::Stored ? 0 : Z_DEFLATED;
    m_size = 0;
    errno = 0;
    check(zipOpenNewFileInZip(m_archive, name, &information, nullptr, 0, nullptr, 0, nullptr, method, kLevel));
}

void ZipWriter::write(QByteArrayView piece) {
    m_size += piece.size();
    if (m_size > kLimit)
        throw base::Error(base::kFormatNotAvailable, u"Raportul este prea mare pentru acest format."_s);
    errno = 0;
    check(zipWriteInFileInZip(m_archive, piece.data(), static_cast<unsigned>(piece.size())));
}

void ZipWriter::end() {
    errno = 0;
    check(zipCloseFileInZip(m_archive));
}

void ZipWriter::commit() {
    errno = 0;
    check(zipClose(std::exchange(m_archive, nullptr), nullptr));
    m_place.commit();
}

}  // namespace velcoran::report
