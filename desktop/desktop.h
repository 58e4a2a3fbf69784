#pragma once

#include <QFont>
#include <QPalette>

#include <optional>

namespace velcoran::desktop {

/// What the user's desktop gives to a program that sets nothing of its own: not what a host has made of it.
struct Desktop {
    QPalette palette;  ///< every role of every group is set
    QFont font;        ///< every property is set
};

/// The desktop of this moment. Asked again after a QEvent::ThemeChange.
[[nodiscard]] Desktop userDesktop();

/// The same colours, all of them set: nothing of a parent's or an application's palette shines through.
[[nodiscard]] QPalette completed(QPalette palette);
/// The same for every property of a font.
[[nodiscard]] QFont completed(QFont font);

/// Takes the place of the user's desktop while it lives, one at a time: a dark one without a dark machine. Open windows
/// take it over with the next QEvent::ThemeChange.
class StandInDesktop {
public:
    explicit StandInDesktop(const Desktop& desktop);
    ~StandInDesktop();
    StandInDesktop(const StandInDesktop&) = delete;
    StandInDesktop& operator=(const StandInDesktop&) = delete;
};

}  // namespace velcoran::desktop
