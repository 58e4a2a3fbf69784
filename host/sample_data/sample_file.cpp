#include "host/sample_data/sample_file.h"

#include "base/error.h"

#include <QFile>

#include <filesystem>
#include <fstream>
#include <system_error>

#include <unistd.h>

namespace velcoran::host {

using namespace Qt::StringLiterals;

SampleFile::SampleFile(const QString& path)
    : m_path(QFile::encodeName(path).toStdString()),
      m_temporaryPath(m_path + ".part" + std::to_string(static_cast<long>(::getpid()))) {
    std::error_code error;
    if (std::filesystem::is_directory(m_path, error)) fail(u"is a folder"_s);
    if (!std::ofstream(m_temporaryPath, std::ios::trunc)) fail(u"cannot be written"_s);
}

SampleFile::~SampleFile() {
    std::error_code error;
    if (!m_temporaryPath.empty()) std::filesystem::remove(m_temporaryPath, error);
}

void SampleFile::commit() {
    std::error_code error;
    std::filesystem::rename(m_temporaryPath, m_path, error);
    if (error) fail(QString::fromStdString(error.message()));
    m_temporaryPath.clear();
}

void SampleFile::fail(const QString& words) const {
    throw base::Error(base::kPathAccess, u"%1: %2"_s.arg(QFile::decodeName(QByteArray::fromStdString(m_path)), words));
}

}  // namespace velcoran::host
