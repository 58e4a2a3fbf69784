#pragma once

#include "base/units.h"
#include "page_setup.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QPainter;
class QRectF;

namespace velcoran::report {

class FontSet;

enum class Alignment : std::uint8_t { Left, Centre, Right, Decimal };

/// Something drawn on a page. Places are on the sheet, margins included.
struct PageItem {
    enum class Kind : std::uint8_t { Text, Line, Box };

    Kind kind = Kind::Text;
    Alignment alignment = Alignment::Left;
    bool isBold = false;
    bool isField = false;     ///< shows a value; false for designed texts, lines and boxes
    std::uint8_t places = 0;  ///< Decimal alone: decimal places whose room is kept to the right of the comma
    base::TwipsRect rect;     ///< of a text: its lines stand one under the other from the top
    base::Colour colour;
    base::Twips lineHeight;   ///< of a text: distance of its lines; of a line or box: thickness of the stroke
    float fontSize = 0;       ///< points
    std::int32_t record = 0;  ///< number of the record on its page, from 1; 0 for what belongs to no record
    qint64 row = -1;          ///< row of the data (its number in the statement's order); -1 for none
    QString text;             ///< as shown: elided where it does not fit, lines separated by a line feed
    QString fullText;         ///< the same, whole
    QString field;            ///< name of the object in the definition

    [[nodiscard]] bool isCopyable() const { return kind == Kind::Text && !text.isEmpty(); }
};

/// One page, in the order of drawing: from top to bottom, from left to right. Immutable once made.
struct Page {
    base::PageNumber number;
    base::Twips width, height;
    std::vector<PageItem> items;
    std::shared_ptr<const FontSet> fonts;  ///< what its texts were measured with
};

/// Draws a page as it is printed; the sheet's upper left corner at the painter's origin. Leaves the painter as it was.
/// @param pixelsPerTwip  device pixels for one twip; 96 dots an inch are 96.0 / 1440
void paintPage(QPainter& painter, const Page& page, double pixelsPerTwip);

/// Place of a piece of an item's shown text on the sheet, in twips, for marking what a search found. The rectangle of
/// the whole item where the piece lies in what was elided.
[[nodiscard]] QRectF textRect(const Page& page, const PageItem& item, qsizetype start, qsizetype length);

/// What a person reads on a page, line by line, cells separated by a tab.
[[nodiscard]] QStringList pageLines(const Page& page);

/// The shown texts of a record of the page, in reading order: what "copy row" puts on the clipboard.
[[nodiscard]] QStringList recordTexts(const Page& page, std::int32_t record);

}  // namespace velcoran::report
