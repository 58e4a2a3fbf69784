#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class QIODevice;
struct libdeflate_compressor;

namespace velcoran::report {

/// The objects of a PDF file, written one after the other into a device.
class PdfFile {
public:
    /// @throws Error kPathAccess, as every function that writes
    explicit PdfFile(QIODevice& device);

    /// Reserves numbers of objects that follow each other. @return the first
    int reserve(int count);
    /// Writes an object of a reserved number.
    void writeObject(int number, std::string_view body);
    /// Writes a stream that is compressed already. @param entries  further entries of its dictionary
    void writeStream(int number, std::string_view compressed, std::string_view entries = {});
    /// Table of objects and end of the file. @param trailer  entries of the trailer's dictionary
    void finish(std::string_view trailer);

private:
    void beginObject(int number);
    void flush();

    QIODevice& m_device;
    std::string m_buffer;
    std::uint64_t m_flushed = 0;
    std::vector<std::uint64_t> m_offsets{0};
};

/// "12 0 R".
[[nodiscard]] std::string reference(int number);
/// A text in UTF-16 with its mark, as hexadecimal digits.
[[nodiscard]] std::string pdfText(const QString& text);

/// Packs bytes into the zlib form. One for each thread.
class Compressor {
public:
    /// @throws std::bad_alloc
    Compressor();
    ~Compressor();
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;
    [[nodiscard]] std::string pack(std::string_view bytes) const;

private:
    libdeflate_compressor* m_compressor;
};

}  // namespace velcoran::report
