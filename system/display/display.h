#pragma once

#include "display_answer.h"

#include "base/enum_table.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QString>

#include <optional>

namespace velcoran::system {

/// One reason why no window can be shown, with what it is about: a platform of Qt's and, where it has one, the address
/// of its server ("xcb :99").
struct DisplayFault {
    DisplayProblem problem;
    QString subject;
};

/// What a problem is in a language.
struct ProblemRow {
    DisplayProblem problem;
    const char16_t* words;
};
using ProblemWords = base::EnumTable<&ProblemRow::problem, 10>;
/// "xcb :99: the server is silent".
[[nodiscard]] QString wordsOf(const DisplayFault& fault, const ProblemWords& words);

/// A platform of Qt's that answered. Its connection is to be kept until the application object stands: an X server may
/// end its session with its last client.
struct Display {
    QString platform;
    /// What an application object is to be given besides its program's name, so that it opens this platform and no
    /// other. Qt ends the process where it can open none; what it could not open is a platform without windows, which
    /// isOpen() tells.
    QByteArrayList arguments;
    std::optional<StreamSocket> connection;
};

struct DisplaySearch {
    std::optional<Display> display;
    QList<DisplayFault> faults;  ///< in Qt's order, one for each platform that did not answer
};

/// Looks for the first platform in a list of Qt's (system/qt_platforms.h) with which an application object can be made:
/// its plugin can be loaded and its server answers within two seconds. Nothing of the process changes. Platforms that
/// cannot be looked at beforehand, those on bare graphics hardware among them, are refused.
[[nodiscard]] DisplaySearch findDisplay(const QByteArray& platforms);

/// True when the application object that was made with the display's arguments has its platform and a screen.
[[nodiscard]] bool isOpen(const Display& display);

}  // namespace velcoran::system
