#include "qt_inside.h"

#include <QApplication>
#include <QStyle>
#include <QWidget>

#include <dlfcn.h>

namespace velcoran::desktop::inside {

namespace {

// The object's private part is the first argument of both, as of every member function.
using SetStyle = void (*)(QObjectData* widget, QStyle* style, bool isForChildren);  // QWidgetPrivate::setStyle_helper
using BasePalette = QPalette (*)(const QObjectData* application);  // QGuiApplicationPrivate::basePalette
constexpr char kSetStyle[] = "_ZN14QWidgetPrivate15setStyle_helperEP6QStyleb";
constexpr char kBasePalette[] = "_ZNK22QGuiApplicationPrivate11basePaletteEv";

/// Opens the private part of any object.
class Opened final : public QObject {
public:
    static QObjectData* of(QObject& object) { return (object.*(&Opened::d_ptr)).get(); }
};

template <class Function>
Function find(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}

}  // namespace

bool setStyle(QWidget& widget, QStyle& style) {
    const auto set = find<SetStyle>(kSetStyle);
    if (set == nullptr) return false;
    set(Opened::of(widget), &style, false);
    return true;
}

std::optional<QPalette> themePalette() {
    const auto basePalette = find<BasePalette>(kBasePalette);
    if (basePalette == nullptr) return std::nullopt;
    return basePalette(Opened::of(*QCoreApplication::instance()));
}

}  // namespace velcoran::desktop::inside
