#include "platform/engine/xlsx_check.h"

#include <minizip/unzip.h>

#include <memory>
#include <string>
#include <string_view>

namespace velcoran::engine {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;
constexpr std::size_t kEndBytes = 256;  // more than any closing element of a part

struct CloseArchive {
    void operator()(void* archive) const { unzClose(archive); }
};
using Archive = std::unique_ptr<void, CloseArchive>;

/// What is asked of a part while it passes.
struct Part {
    std::string root;  ///< name of its first element
    std::string end;   ///< its last bytes
    std::int64_t rows = 0;
};

/// Name of the first element, behind the declaration.
std::string rootOf(std::string_view start) {
    for (std::size_t at = start.find('<'); at != std::string_view::npos; at = start.find('<', at + 1)) {
        if (at + 1 >= start.size() || start[at + 1] == '?' || start[at + 1] == '!') continue;
        return std::string(start.substr(at + 1, start.find_first_of(" />\r\n\t", at + 1) - at - 1));
    }
    return {};
}

/// A mark that begins in one piece and ends in the next is counted once.
std::int64_t countRows(std::string_view text) {
    constexpr std::string_view kRow = "<row ";
    std::int64_t count = 0;
    for (std::size_t at = text.find(kRow); at != std::string_view::npos; at = text.find(kRow, at + kRow.size()))
        ++count;
    return count;
}

/// @return false when the part cannot be read to its end, or has another checksum
bool readPart(void* archive, Part& part) {
    constexpr std::size_t kOverlap = 4;  // one less than the mark of a row
    if (unzOpenCurrentFile(archive) != UNZ_OK) return false;
    std::string piece(kPieceBytes + kOverlap, '\0');
    std::size_t kept = 0;
    int count = 0;
    while ((count = unzReadCurrentFile(archive, piece.data() + kept, kPieceBytes)) > 0) {
        const std::string_view text(piece.data(), kept + static_cast<std::size_t>(count));
        if (part.root.empty()) part.root = rootOf(text);
        part.rows += countRows(text);
        part.end.append(text.substr(kept));
        if (part.end.size() > kEndBytes) part.end.erase(0, part.end.size() - kEndBytes);
        const std::size_t next = std::min(kOverlap, text.size());
        piece.replace(0, next, text.substr(text.size() - next));
        kept = next;
    }
    return unzCloseCurrentFile(archive) == UNZ_OK && count == 0;
}

bool isClosed(const Part& part) {
    std::string_view end = part.end;
    while (!end.empty() && (end.back() == '\n' || end.back() == '\r' || end.back() == ' ')) end.remove_suffix(1);
    return !part.root.empty() && (end.ends_with("</" + part.root + ">") || end.ends_with("/>"));
}

}  // namespace

bool isWholeWorkbook(const QByteArray& path, const std::vector<std::int64_t>& rowCounts) {
    const Archive archive(unzOpen64(path.constData()));
    if (!archive) return false;
    std::size_t sheets = 0;
    int more = unzGoToFirstFile(archive.get());
    for (; more == UNZ_OK; more = unzGoToNextFile(archive.get())) {
        char name[256] = {};
        if (unzGetCurrentFileInfo64(archive.get(), nullptr, name, sizeof(name) - 1, nullptr, 0, nullptr, 0) != UNZ_OK)
            return false;
        Part part;
        if (!readPart(archive.get(), part) || !isClosed(part)) return false;
        const std::string_view sheet(name);
        constexpr std::string_view kSheet = "xl/worksheets/sheet";
        if (!sheet.starts_with(kSheet)) continue;
        const auto number = static_cast<std::size_t>(std::atoi(name + kSheet.size()));
        if (number < 1 || number > rowCounts.size() || part.rows != rowCounts[number - 1]) return false;
        ++sheets;
    }
    return more == UNZ_END_OF_LIST_OF_FILE && sheets == rowCounts.size();
}

}  // namespace velcoran::engine
