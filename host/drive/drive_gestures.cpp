#include "drive_gestures.h"

#include "host/drive/input/key_input.h"
#include "host/drive/input/window_input.h"
#include "host/drive/input/window_view.h"
#include "viewer_client.h"

#include <QWidget>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// In pixels: a picture of that side takes a gigabyte. One that finds no memory ends the process inside Qt.
constexpr int kMaxWindowSide = 16384;

QWidget& wantedControl(const QString& name) {
    if (loadedWindow() == nullptr) throw NothingToDo();
    QWidget* control = findControl(name);
    if (control == nullptr) refuse(u"no control "_s + name);
    return *control;
}

QWidget& wantedControl(const DriveCommand& command) { return wantedControl(command.text("control")); }

bool isOfKind(const QWidget& control, const char* function) {
    return control.metaObject()->indexOfMethod(function) >= 0;
}

void wantKind(const QWidget& control, const char* function) {
    if (!isOfKind(control, function)) refuse(u"%1 is the wrong kind of control"_s.arg(control.objectName()));
}

void press(const DriveCommand& command) {
    const KeyStroke stroke{.name = command.text("key"),
                           .isShifted = command.flag("shift"),
                           .hasAlt = command.flag("alt"),
                           .hasControl = command.flag("ctrl"),
                           .repeats = command.whole("repeat")};
    if (!pressKey(stroke)) refuse(u"no key "_s + stroke.name);
}

void typeIt(const DriveCommand& command) { typeText(command.text("text"), command.flag("alt")); }

void pasteIt(const DriveCommand& command) { pasteText(command.text("text")); }

void goToCell(const DriveCommand& command) {
    if (!moveToCell(wantedControl(u"Grid"_s), command.whole("row"), command.whole("column"))) throw NothingToDo();
}

void resizeIt(const DriveCommand& command) {
    QWidget* window = loadedWindow();
    if (window == nullptr) throw NothingToDo();
    const int width = command.whole("width");
    const int height = command.whole("height");
    if (width <= 0 || height <= 0) refuse(u"a window has a width and a height"_s);
    if (qMax(width, height) > kMaxWindowSide)
        refuse(u"a window is at most %1 pixels wide and high"_s.arg(kMaxWindowSide));
    resizeWindow(*window, width, height);
}

void focusIt(const DriveCommand& command) { giveFocus(wantedControl(command)); }

ClickKind clickKind(const DriveCommand& command) {
    const QString button = command.text("button");
    return {.button = button == u"right"    ? Qt::RightButton
                      : button == u"middle" ? Qt::MiddleButton
                                            : Qt::LeftButton,
            .isDouble = command.flag("double")};
}

void clickIt(const DriveCommand& command) {
    QWidget& control = wantedControl(command);
    const ClickKind kind = clickKind(command);
    if (!command.has("row") && !command.has("column")) return clickControl(control, kind);
    const bool isList = isOfKind(control, "openRowRect(int)");
    if (!isList) wantKind(control, "cellRect(int,int)");
    if (!command.has("row")) refuse(u"\"row\" is missing"_s);
    const int row = command.whole("row");
    const bool isThere =
        isList ? clickOpenRow(control, row, kind) : clickCell(control, row, command.whole("column", 1), kind);
    if (!isThere) throw NothingToDo();
}

void pickEntry(const DriveCommand& command) {
    QWidget& control = wantedControl(command);
    wantKind(control, "choose(int)");
    if (!chooseEntry(control, command.whole("index"))) throw NothingToDo();
}

void tickIt(const DriveCommand& command) {
    QWidget& control = wantedControl(command);
    if (!command.has("index")) {
        if (!control.inherits("QCheckBox")) refuse(u"\"index\" is missing"_s);
        return clickControl(control);
    }
    wantKind(control, "rowRect(int)");
    if (!clickRow(control, command.whole("index"))) throw NothingToDo();
}

void setDate(const DriveCommand& command) {
    QWidget& control = wantedControl(command);
    wantKind(control, "enter(QDate)");
    enterDate(control, QDate::fromString(command.text("value"), Qt::ISODate));
}

struct GestureRow {
    const char16_t* name;
    void (*make)(const DriveCommand&);
};
constexpr GestureRow kGestures[] = {
    {u"key", press},     {u"type", typeIt},   {u"paste", pasteIt},  {u"cell", goToCell}, {u"resize", resizeIt},
    {u"focus", focusIt}, {u"click", clickIt}, {u"pick", pickEntry}, {u"tick", tickIt},   {u"date", setDate},
};

const GestureRow* gestureOf(const DriveCommand& command) {
    const auto* row = std::find_if(std::begin(kGestures), std::end(kGestures),
                                   [&](const GestureRow& each) { return command.name == each.name; });
    return row == std::end(kGestures) ? nullptr : row;
}

struct ActionRow {
    const char* name;
    const char* wanted[3];
};
constexpr ActionRow kActions[] = {
    {"export", {}},
    {"print", {}},
    {"first", {}},
    {"previous", {}},
    {"next", {}},
    {"last", {}},
    {"zoomIn", {}},
    {"zoomOut", {}},
    {"stop", {}},
    {"tree", {}},
    {"goto", {"page"}},
    {"search", {"text"}},
    {"object", {"page", "field", "record"}},
};

QVariantMap actionArguments(const DriveCommand& command) {
    const QString action = command.text("action");
    const auto row = std::find_if(std::begin(kActions), std::end(kActions),
                                  [&](const ActionRow& each) { return action == QLatin1StringView(each.name); });
    if (row == std::end(kActions)) refuse(u"no action "_s + action);
    QVariantMap arguments;
    for (const char* wanted : row->wanted) {
        if (wanted == nullptr) continue;
        const QString name = QString::fromLatin1(wanted);
        if (!command.has(wanted)) refuse(u"\"%1\" is missing"_s.arg(name));
        // JSON has one kind of number; the viewer counts in whole ones.
        const QJsonValue value = command.members[name];
        arguments.insert(name, value.isDouble() ? QVariant(value.toInt()) : value.toVariant());
    }
    return arguments;
}

}  // namespace

bool isGesture(const DriveCommand& command) { return gestureOf(command) != nullptr; }

void makeGesture(const DriveCommand& command) {
    if (const GestureRow* row = gestureOf(command)) row->make(command);
}

QJsonObject workViewer(const DriveCommand& command) {
    const QVariantMap arguments = actionArguments(command);
    QWidget* shown = viewer();
    const bool isReached = shown != nullptr && hasMouse(*shown->window(), shown->mapToGlobal(shown->rect().center()));
    const QVariant answer = isReached ? actOnViewer(command.text("action"), arguments) : QVariant();
    if (command.text("action") != u"search") return {};
    return {{u"found"_s, answer.isValid() ? QJsonValue::fromVariant(answer) : QJsonValue()}};
}

}  // namespace velcoran::host
