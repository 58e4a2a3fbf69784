#include "icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QStringView>

#include <cmath>

namespace velcoran::viewer {

namespace {

constexpr double kGrid = 24.0;
constexpr double kStroke = 1.7;
constexpr double kDisabledOpacity = 0.35;

constexpr const char16_t* kLens =
    u"M16.5 10.5 C16.5 13.8 13.8 16.5 10.5 16.5 C7.2 16.5 4.5 13.8 4.5 10.5 C4.5 7.2 7.2 4.5 10.5 4.5 "
    u"C13.8 4.5 16.5 7.2 16.5 10.5 Z M15 15 L20 20 ";

// Lines on a square of 24 units, in the notation of vector paths: M move, L line, H and V straight, C curve, Z close.
QString shapeOf(Glyph glyph) {
    switch (glyph) {
        case Glyph::Export:
            return QStringLiteral("M12 15 V4 M8 8 L12 4 L16 8 M5 13 V20 H19 V13");
        case Glyph::Print:
            return QStringLiteral("M7 9 V4 H17 V9 M7 17 H4 V9 H20 V17 H17 M7 14 H17 V20 H7 Z");
        case Glyph::Refresh:
            return QStringLiteral(
                "M19 12 C19 15.9 15.9 19 12 19 C8.1 19 5 15.9 5 12 C5 8.1 8.1 5 12 5 C14.4 5 16.5 6.2 17.8 8 "
                "M18 4 V8 H14");
        case Glyph::Tree:
            return QStringLiteral("M5 4 V19 H9 M5 8 H9 M5 13.5 H9 M12 8 H20 M12 13.5 H20 M12 19 H20");
        case Glyph::First:
            return QStringLiteral("M7 6 V18 M17 6 L11 12 L17 18");
        case Glyph::Previous:
            return QStringLiteral("M15 6 L9 12 L15 18");
        case Glyph::Next:
            return QStringLiteral("M9 6 L15 12 L9 18");
        case Glyph::Last:
            return QStringLiteral("M17 6 V18 M7 6 L13 12 L7 18");
        case Glyph::ZoomOut:
            return QString::fromUtf16(kLens) + QStringLiteral("M8 10.5 H13");
        case Glyph::ZoomIn:
            return QString::fromUtf16(kLens) + QStringLiteral("M8 10.5 H13 M10.5 8 V13");
        case Glyph::Search:
            return QString::fromUtf16(kLens);
        case Glyph::Up:
            return QStringLiteral("M6 15 L12 9 L18 15");
        case Glyph::Down:
            return QStringLiteral("M6 9 L12 15 L18 9");
        case Glyph::Stop:
            return QStringLiteral("M7 7 H17 V17 H7 Z");
        case Glyph::Filter:
            return QStringLiteral("M5 6 H19 L14 12.5 V19 L10 17 V12.5 Z");
        case Glyph::Help:
            return QStringLiteral("M9 9 C9 7.3 10.3 6 12 6 C13.7 6 15 7.3 15 9 C15 11 12 11.5 12 14 M12 18 V18.2");
        case Glyph::Close:
            return QStringLiteral("M7 7 L17 17 M17 7 L7 17");
        case Glyph::More:
            return QStringLiteral("M6 7 L11 12 L6 17 M13 7 L18 12 L13 17");
        case Glyph::Copy:
            return QStringLiteral("M9 8 H19 V20 H9 Z M6 16 H5 V4 H15 V5");
    }
    return {};
}

QPainterPath pathOf(const QString& shape) {
    QPainterPath path;
    const QStringList words = shape.split(u' ', Qt::SkipEmptyParts);
    qsizetype next = 0;
    const auto number = [&] { return words.at(next++).toDouble(); };
    const auto point = [&] {
        const double x = number();
        return QPointF(x, number());
    };
    while (next < words.size()) {
        const QString& word = words.at(next++);
        if (word == u"Z") {
            path.closeSubpath();
            continue;
        }
        const double first = QStringView(word).mid(1).toDouble();
        const QPointF at = path.currentPosition();
        switch (word.at(0).unicode()) {
            case u'H':
                path.lineTo(first, at.y());
                break;
            case u'V':
                path.lineTo(at.x(), first);
                break;
            case u'M':
                path.moveTo(first, number());
                break;
            case u'L':
                path.lineTo(first, number());
                break;
            default: {
                const QPointF one(first, number());
                const QPointF other = point();
                path.cubicTo(one, other, point());
            }
        }
    }
    return path;
}

class GlyphEngine final : public QIconEngine {
public:
    GlyphEngine(Glyph glyph, const QColor& colour) : m_path(pathOf(shapeOf(glyph))), m_colour(colour) {}

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State) override {
        const double scale = std::min(rectangle.width(), rectangle.height()) / kGrid;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rectangle.x() + (rectangle.width() - kGrid * scale) / 2,
                           rectangle.y() + (rectangle.height() - kGrid * scale) / 2);
        painter->scale(scale, scale);
        QColor colour = m_colour;
        if (mode == QIcon::Disabled) colour.setAlphaF(static_cast<float>(kDisabledOpacity));
        painter->setPen(QPen(colour, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(m_path);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new GlyphEngine(*this); }

private:
    QPainterPath m_path;
    QColor m_colour;
};

}  // namespace

QIcon makeIcon(Glyph glyph, const QColor& colour) { return QIcon(new GlyphEngine(glyph, colour)); }

}  // namespace velcoran::viewer
