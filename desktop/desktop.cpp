#include "desktop.h"

#include "own_style.h"
#include "qt_inside.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QStyle>

#include <utility>

namespace velcoran::desktop {

namespace {

std::optional<Desktop>& standIn() {
    static std::optional<Desktop> desktop;
    return desktop;
}

// Where Qt does not let its theme be asked, the application's palette is the desktop's until a host sets one.
QPalette themePalette() {
    if (const std::optional<QPalette> palette = inside::themePalette()) return *palette;
    if (!QCoreApplication::testAttribute(Qt::AA_SetPalette)) return QGuiApplication::palette();
    return ownStyle()->standardPalette();
}

// What a theme leaves open Qt fills from a light palette: black hints on a dark ground.
QPalette filled(QPalette palette) {
    QColor hint = palette.color(QPalette::Active, QPalette::Text);
    hint.setAlphaF(0.5F);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        if (!palette.isBrushSet(group, QPalette::PlaceholderText))
            palette.setBrush(group, QPalette::PlaceholderText, hint);
        if (!palette.isBrushSet(group, QPalette::AlternateBase))
            palette.setBrush(group, QPalette::AlternateBase, palette.brush(group, QPalette::Base));
    }
    return palette;
}

}  // namespace

QPalette completed(QPalette palette) {
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        for (int role = 0; role < QPalette::NColorRoles; ++role)
            palette.setBrush(group, static_cast<QPalette::ColorRole>(role),
                             palette.brush(group, static_cast<QPalette::ColorRole>(role)));
    return palette;
}

QFont completed(QFont font) {
    font.setResolveMask(QFont::AllPropertiesResolved);
    return font;
}

Desktop userDesktop() {
    if (standIn()) return *standIn();
    return {completed(filled(themePalette())), completed(QFontDatabase::systemFont(QFontDatabase::GeneralFont))};
}

StandInDesktop::StandInDesktop(const Desktop& desktop) {
    standIn() = {completed(desktop.palette), completed(desktop.font)};
}

StandInDesktop::~StandInDesktop() { standIn().reset(); }

}  // namespace velcoran::desktop
