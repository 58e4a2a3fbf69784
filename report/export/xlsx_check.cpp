#include "xlsx_check.h"

#include <QXmlStreamReader>

#include <minizip/unzip.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace velcoran::report {

namespace {

constexpr std::size_t kPieceBytes = 64 * 1024;
constexpr std::size_t kEndBytes = 256;  // more than any closing element of a part

struct CloseArchive {
    void operator()(void* archive) const { unzClose(archive); }
};
using Archive = std::unique_ptr<void, CloseArchive>;

/// Marks that are counted in a sheet.
constexpr std::string_view kMarks[] = {"<row ", "</row>", "<c ", "</c>"};
constexpr std::size_t kLongestMark = 6;

/// What is asked of a sheet while it passes.
struct Sheet {
    std::array<std::int64_t, std::size(kMarks)> counts{};
    std::string end;  ///< its last bytes
};

/// Calls with the part's bytes, piece by piece. @return false when it cannot be read to its end, has another checksum,
/// or was stopped
template <class Take>
bool readPart(void* archive, const system::WorkProgress& progress, Take take) {
    if (unzOpenCurrentFile(archive) != UNZ_OK) return false;
    std::string piece(kPieceBytes, '\0');
    int count = 0;
    while (!progress.isStopped() && (count = unzReadCurrentFile(archive, piece.data(), kPieceBytes)) > 0)
        take(std::string_view(piece.data(), static_cast<std::size_t>(count)));
    return unzCloseCurrentFile(archive) == UNZ_OK && count == 0 && !progress.isStopped();
}

/// @return where the text begins that is too short to tell its mark: it goes before the next piece
std::size_t countMarks(std::string_view text, Sheet& sheet) {
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
        const std::string_view rest = text.substr(at);
        if (rest.size() < kLongestMark) return at;
        const auto* mark = std::find_if(std::begin(kMarks), std::end(kMarks),
                                        [rest](std::string_view one) { return rest.starts_with(one); });
        if (mark != std::end(kMarks)) ++sheet.counts[static_cast<std::size_t>(mark - kMarks)];
    }
    return text.size();
}

bool isWholeSheet(void* archive, const SheetSize& wanted, const system::WorkProgress& progress) {
    Sheet sheet;
    std::string text;
    const bool isRead = readPart(archive, progress, [&](std::string_view piece) {
        text.append(piece);
        text.erase(0, countMarks(text, sheet));
        const std::string_view last = piece.substr(piece.size() - std::min(piece.size(), kEndBytes));
        sheet.end.append(last);
        sheet.end.erase(0, sheet.end.size() - std::min(sheet.end.size(), kEndBytes));
    });
    return isRead && sheet.counts == std::array{wanted.rows, wanted.rows, wanted.cells, wanted.cells} &&
           std::string_view(sheet.end).ends_with("</worksheet>");
}

/// The other parts are small: each is read as what it is.
bool isWholeMarkup(void* archive, const system::WorkProgress& progress) {
    QXmlStreamReader reader;
    if (!readPart(archive, progress,
                  [&](std::string_view piece) { reader.addData(QByteArray(piece.data(), piece.size())); }))
        return false;
    while (!reader.atEnd()) reader.readNext();
    return !reader.hasError();
}

}  // namespace

bool isWholeWorkbook(const QByteArray& path, const std::vector<SheetSize>& sizes,
                     const system::WorkProgress& progress) {
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
            if (!isWholeMarkup(archive.get(), progress)) return false;
            continue;
        }
        const auto number = static_cast<std::size_t>(std::atoi(name + kSheet.size()));
        if (number < 1 || number > sizes.size() || !isWholeSheet(archive.get(), sizes[number - 1], progress))
            return false;
        ++sheets;
    }
    return more == UNZ_END_OF_LIST_OF_FILE && sheets == sizes.size();
}

}  // namespace velcoran::report
