#pragma once

#include "base/units.h"

#include <QColor>
#include <QPalette>
#include <QRect>
#include <QString>

class QAbstractScrollArea;
class QPainter;

namespace velcoran::controls {

/// Colours of what the window's design leaves to the system, fixed so that a host's palette does not change them.
constexpr QRgb kBlack = 0xFF000000;
constexpr QRgb kWhite = 0xFFFFFFFF;
constexpr QRgb kFace = 0xFFF0F0F0;          ///< scroll bars, menus, headers
constexpr QRgb kLine = 0xFF808080;          ///< frames
constexpr QRgb kDisabledText = 0xFF808080;  ///< readable on black, silver and white
constexpr QRgb kHighlight = 0xFF0A4A8A;
constexpr QRgb kFocusGround = base::kFocusGrey.toRgb();
constexpr QRgb kDimGround = 0xFF202020;  ///< the same while the list has no focus

/// A palette of fixed colours in every role and group: light grey faces, black text on white.
[[nodiscard]] QPalette systemPalette();
/// The same with a ground and a text colour of a control, the selection in inverse colours.
[[nodiscard]] QPalette controlPalette(const QColor& back, const QColor& text, const QColor& line);

/// A line of one pixel inside the edges of a rectangle.
void drawEdge(QPainter& painter, const QRect& place, const QColor& colour);
/// Light from the top left: raised, or sunken.
void drawRelief(QPainter& painter, const QRect& place, bool isSunken);
/// The dotted frame of a control with the focus.
void drawFocusDots(QPainter& painter, const QRect& place, const QColor& colour);
/// A triangle that points down, in the middle of a rectangle.
void drawArrow(QPainter& painter, const QRect& place, const QColor& colour);
/// A tick box that fills a square; grey when disabled.
void drawTickBox(QPainter& painter, const QRect& box, bool isTicked, bool isEnabled);

/// A literal caption as mnemonic text: every "&" doubled, the first occurrence of the letter underlined.
[[nodiscard]] QString mnemonicText(const QString& caption, QChar letter);

/// Gives the bars and the corner of a scrolling control their fixed look.
void styleScrollBars(QAbstractScrollArea* area);

}  // namespace velcoran::controls
