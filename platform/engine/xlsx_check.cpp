#include "platform/engine/xlsx_check.h"

#include <QXmlStreamReader>

#include <minizip/unzip.h>

#include <algorithm>
#include <array>
#include <cstdlib>
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

/// Marks that are counted in a sheet.
constexpr std::string_view kMarks[] = {"<row ", "</row>", "<c ", "</c>"};
constexpr std::size_t kOverlap = 5;  // one less than the longest of them

/// What is asked of a sheet while it passes.
struct Sheet {
    std::array<std::int64_t, std::size(kMarks)> counts{};
    std::string end;  ///< its last bytes
};

/// Calls with the part's bytes, piece by piece. @return false when it cannot be read to its end, or has another
/// checksum
template <class Take>
bool readPart(void* archive, Take take) {
    if (unzOpenCurrentFile(archive) != UNZ_OK) return false;
    std::string piece(kPieceBytes, '\0');
    int count = 0;
    while ((count = unzReadCurrentFile(archive, piece.data(), kPieceBytes)) > 0)
        take(std::string_view(piece.data(), static_cast<std::size_t>(count)));
    return unzCloseCurrentFile(archive) == UNZ_OK && count == 0;
}

/// A mark that begins in one piece and ends in the next is counted with the next: a piece goes on as far as the longest
/// mark could have begun.
void countMarks(std::string_view text, std::size_t known, Sheet& sheet) {
    for (std::size_t mark = 0; mark < std::size(kMarks); ++mark) {
        const std::size_t from = known >= kMarks[mark].size() - 1 ? known - (kMarks[mark].size() - 1) : 0;
        for (std::size_t at = text.find(kMarks[mark], from); at != std::string_view::npos;
             at = text.find(kMarks[mark], at + 1))
            ++sheet.counts[mark];
    }
}

bool isWholeSheet(void* archive, const SheetSize& wanted) {
    Sheet sheet;
    std::string text;
    const bool isRead = readPart(archive, [&](std::string_view piece) {
        const std::size_t known = text.size();
        text.append(piece);
        countMarks(text, known, sheet);
        text.erase(0, text.size() - std::min(text.size(), kOverlap));
        sheet.end.append(piece);
        if (sheet.end.size() > kEndBytes) sheet.end.erase(0, sheet.end.size() - kEndBytes);
    });
    return isRead && sheet.counts == std::array{wanted.rows, wanted.rows, wanted.cells, wanted.cells} &&
           std::string_view(sheet.end).ends_with("</worksheet>");
}

/// The other parts are small: each is read as what it is.
bool isWholeMarkup(void* archive) {
    QXmlStreamReader reader;
    if (!readPart(archive, [&](std::string_view piece) { reader.addData(QByteArray(piece.data(), piece.size())); }))
        return false;
    while (!reader.atEnd()) reader.readNext();
    return !reader.hasError();
}

}  // namespace

bool isWholeWorkbook(const QByteArray& path, const std::vector<SheetSize>& sizes) {
    const Archive archive(unzOpen64(path.constData()));
    if (!archive) return false;
    std::size_t sheets = 0;
    int more = unzGoToFirstFile(archive.get());
    for (; more == UNZ_OK; more = unzGoToNextFile(archive.get())) {
        char name[256] = {};
        if (unzGetCurrentFileInfo64(archive.get(), nullptr, name, sizeof(name) - 1, nullptr, 0, nullptr, 0) != UNZ_OK)
            return false;
        constexpr std::string_view kSheet = "xl/worksheets/sheet";
        if (!std::string_view(name).starts_with(kSheet)) {
            if (!isWholeMarkup(archive.get())) return false;
            continue;
        }
        const auto number = static_cast<std::size_t>(std::atoi(name + kSheet.size()));
        if (number < 1 || number > sizes.size() || !isWholeSheet(archive.get(), sizes[number - 1])) return false;
        ++sheets;
    }
    return more == UNZ_END_OF_LIST_OF_FILE && sheets == sizes.size();
}

}  // namespace velcoran::engine
