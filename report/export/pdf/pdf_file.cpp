#include "pdf_file.h"

#include "base/error.h"

#include <QIODevice>

#include <libdeflate.h>
#include <cstdio>
#include <new>

namespace velcoran::report {

namespace {

constexpr std::size_t kBufferBytes = 1U << 18U;
constexpr int kCompression = 6;  // what zlib itself takes when it is not told

}  // namespace

PdfFile::PdfFile(QIODevice& device) : m_device(device) {
    // Bytes above 127 in the second line tell transfer programs that the file is binary.
    m_buffer = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
}

int PdfFile::reserve(int count) {
    const auto first = static_cast<int>(m_offsets.size());
    m_offsets.resize(m_offsets.size() + static_cast<std::size_t>(count), 0);
    return first;
}

void PdfFile::flush() {
    if (m_device.write(m_buffer.data(), static_cast<qint64>(m_buffer.size())) != static_cast<qint64>(m_buffer.size())) {
        throw base::Error(base::kPathAccess, m_device.errorString());
    }
    m_flushed += m_buffer.size();
    m_buffer.clear();
}

void PdfFile::beginObject(int number) {
    if (m_buffer.size() > kBufferBytes) flush();
    m_offsets[static_cast<std::size_t>(number)] = m_flushed + m_buffer.size();
    m_buffer += std::to_string(number);
    m_buffer += " 0 obj\n";
}

void PdfFile::writeObject(int number, std::string_view body) {
    beginObject(number);
    m_buffer += body;
    m_buffer += "\nendobj\n";
}

void PdfFile::writeStream(int number, std::string_view compressed, std::string_view entries) {
    beginObject(number);
    m_buffer += "<</Filter/FlateDecode/Length ";
    m_buffer += std::to_string(compressed.size());
    m_buffer += entries;
    m_buffer += ">>\nstream\n";
    m_buffer += compressed;
    m_buffer += "\nendstream\nendobj\n";
}

void PdfFile::finish(std::string_view trailer) {
    const std::uint64_t table = m_flushed + m_buffer.size();
    m_buffer += "xref\n0 " + std::to_string(m_offsets.size()) + "\n0000000000 65535 f \n";
    char line[24];
    for (std::size_t i = 1; i < m_offsets.size(); ++i) {
        std::snprintf(line, sizeof(line), "%010llu 00000 n \n", static_cast<unsigned long long>(m_offsets[i]));
        m_buffer += line;
    }
    m_buffer += "trailer\n<</Size " + std::to_string(m_offsets.size());
    m_buffer += trailer;
    m_buffer += ">>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    flush();
}

std::string reference(int number) { return std::to_string(number) + " 0 R"; }

std::string pdfText(const QString& text) {
    QByteArray bytes("\xFE\xFF", 2);
    for (const QChar c : text) {
        bytes.append(static_cast<char>(c.unicode() >> 8U));
        bytes.append(static_cast<char>(c.unicode() & 0xFFU));
    }
    return '<' + bytes.toHex().toStdString() + '>';
}

Compressor::Compressor() : m_compressor(libdeflate_alloc_compressor(kCompression)) {
    if (m_compressor == nullptr) throw std::bad_alloc();
}

Compressor::~Compressor() { libdeflate_free_compressor(m_compressor); }

std::string Compressor::pack(std::string_view bytes) const {
    std::string result(libdeflate_zlib_compress_bound(m_compressor, bytes.size()), '\0');
    result.resize(libdeflate_zlib_compress(m_compressor, bytes.data(), bytes.size(), result.data(), result.size()));
    return result;
}

}  // namespace velcoran::report
