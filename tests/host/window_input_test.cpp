#include "host/drive/input/window_input.h"
#include "host/drive/input/key_input.h"
#include "host/drive/input/window_view.h"

#include "support/test_data.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QJsonArray>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRect>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::host {
namespace {

/// A window with the object names and properties that the host looks for, and nothing of the real one.
class Window : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool loaded READ isLoaded)
    Q_PROPERTY(QString sSoc READ sSoc)

public:
    Window() {
        setObjectName(u"RptStoc"_s);
        panel = add(new QWidget(this), u"frmEnable"_s, {0, 0, 300, 200});
        first = add(new QLineEdit(panel), u"txtA"_s, {10, 10, 100, 24});
        second = add(new QLineEdit(panel), u"txtB"_s, {10, 50, 100, 24});
        button = add(new QPushButton(panel), u"cmdC"_s, {10, 90, 100, 24});
        picker = add(new QWidget(this), u"fraGrid"_s, {0, 40, 300, 100});
        picker->hide();
        resize(300, 200);
        show();
        activateWindow(*this);
        deliverEvents();
    }

    template <class Widget>
    static Widget* add(Widget* widget, const QString& name, QRect place) {
        widget->setObjectName(name);
        widget->setGeometry(place);
        widget->setProperty("twips", QRect(place.topLeft() * 15, place.size() * 15));
        return widget;
    }
    [[nodiscard]] bool isLoaded() const { return true; }
    [[nodiscard]] QString sSoc() const { return u"ALFA."_s; }
    static void activateWindow(QWidget& window) { host::activateWindow(window); }

    QWidget *panel, *picker;
    QLineEdit *first, *second;
    QPushButton* button;
};

TEST(WindowInput, aClickReachesOnlyWhatLiesOpen) {
    Window window;
    EXPECT_TRUE(giveFocus(*window.first));
    EXPECT_EQ(focusedControl(), u"txtA"_s);
    EXPECT_FALSE(giveFocus(*window.panel)) << "takes no focus, and passes the click to nobody";
    struct Case {
        const char* what;
        std::function<void(bool)> change;
    };
    const Case cases[] = {
        {"disabled", [&](bool isOn) { window.second->setEnabled(!isOn); }},
        {"disabled container", [&](bool isOn) { window.panel->setEnabled(!isOn); }},
        {"hidden", [&](bool isOn) { window.second->setVisible(!isOn); }},
        {"hidden container", [&](bool isOn) { window.panel->setVisible(!isOn); }},
        {"covered", [&](bool isOn) { window.picker->setVisible(isOn); }},
    };
    for (const Case& each : cases) {
        each.change(true);
        EXPECT_FALSE(giveFocus(*window.second)) << each.what;
        each.change(false);
        EXPECT_TRUE(giveFocus(*window.second)) << each.what;
        EXPECT_EQ(focusedControl(), u"txtB"_s) << each.what;
    }
    window.picker->show();
    EXPECT_TRUE(giveFocus(*window.first)) << "beside the picker";
    window.picker->hide();
    window.resize(300, 20);
    EXPECT_TRUE(giveFocus(*window.second)) << "outside the window's size";
}

TEST(WindowInput, aClickIsPressAndReleaseAfterTheFocus) {
    Window window;
    int clicks = 0;
    QString focusAtClick;
    QObject::connect(window.button, &QPushButton::clicked, [&] {
        ++clicks;
        focusAtClick = focusedControl();
    });
    clickControl(*window.button);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(focusAtClick, u"cmdC"_s);
    window.picker->show();
    clickControl(*window.button);
    EXPECT_EQ(clicks, 1);
}

/// Notes the keys and clicks that its widgets get, and keeps them.
struct InputLog : QObject {
    bool eventFilter(QObject* object, QEvent* event) override {
        switch (event->type()) {
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
                note(*static_cast<QKeyEvent*>(event));
                return true;
            case QEvent::MouseButtonPress:
                return note(*object, u"press"_s);
            case QEvent::MouseButtonRelease:
                return note(*object, u"release"_s);
            case QEvent::MouseButtonDblClick:
                return note(*object, u"double"_s);
            case QEvent::ContextMenu:
                return note(*object, u"menu"_s);
            default:
                return false;
        }
    }
    void note(const QKeyEvent& key) {
        const QString text = key.text().isEmpty() ? QString() : QString::number(key.text()[0].unicode());
        QString held;
        for (const auto& [modifier, letter] :
             {std::pair{Qt::ShiftModifier, u'S'}, {Qt::AltModifier, u'A'}, {Qt::ControlModifier, u'C'}})
            if (key.modifiers() & modifier) held += letter;
        const QChar way = key.type() == QEvent::KeyRelease ? u'-' : key.isAutoRepeat() ? u'*' : u'+';
        entries.append(u"%1%2%3:%4"_s.arg(way).arg(held).arg(key.key()).arg(text));
    }
    bool note(const QObject& object, const QString& what) {
        entries.append(object.objectName() + u' ' + what);
        return true;
    }
    QStringList entries;
};

TEST(WindowInput, keysComeAsAKeyboardSendsThem) {
    struct Case {
        KeyStroke stroke;
        const char* held;
        int key;
        const char* text;
    };
    const Case cases[] = {
        {{.name = u"Tab"_s}, "", Qt::Key_Tab, "9"},
        {{.name = u"Tab"_s, .isShifted = true}, "S", Qt::Key_Backtab, "9"},
        {{.name = u"Enter"_s}, "", Qt::Key_Return, "13"},
        {{.name = u"Esc"_s}, "", Qt::Key_Escape, "27"},
        {{.name = u"Space"_s}, "", Qt::Key_Space, "32"},
        {{.name = u"Backspace"_s}, "", Qt::Key_Backspace, "8"},
        {{.name = u"Delete"_s}, "", Qt::Key_Delete, "127"},
        {{.name = u"PageDown"_s}, "", Qt::Key_PageDown, ""},
        {{.name = u"Left"_s, .isShifted = true}, "S", Qt::Key_Left, ""},
        {{.name = u"Down"_s, .hasAlt = true}, "A", Qt::Key_Down, ""},
        {{.name = u"F4"_s}, "", Qt::Key_F4, ""},
        {{.name = u"F12"_s, .hasControl = true}, "C", Qt::Key_F12, ""},
        {{.name = u"Plus"_s, .hasControl = true}, "C", Qt::Key_Plus, "43"},
        {{.name = u"Minus"_s}, "", Qt::Key_Minus, "45"},
        {{.name = u"a"_s}, "", Qt::Key_A, "97"},
        {{.name = u"a"_s, .isShifted = true}, "S", Qt::Key_A, "65"},
        {{.name = u"R"_s, .hasAlt = true}, "A", Qt::Key_R, "82"},
        {{.name = u"c"_s, .hasControl = true}, "C", Qt::Key_C, "3"},
        {{.name = u"7"_s}, "", Qt::Key_7, "55"},
        {{.name = u"ș"_s}, "", 0x218, "537"},
    };
    Window window;
    giveFocus(*window.first);
    InputLog log;
    window.first->installEventFilter(&log);
    for (const Case& each : cases) {
        log.entries.clear();
        EXPECT_TRUE(pressKey(each.stroke));
        const QString key =
            u"%1%2:%3"_s.arg(QLatin1StringView(each.held)).arg(each.key).arg(QLatin1StringView(each.text));
        EXPECT_EQ(log.entries, (QStringList{u"+"_s + key, u"-"_s + key}));
    }
    for (const QString& name : {u"F13"_s, u"F0"_s, u"ab"_s, u""_s, u"%"_s, u"tab"_s})
        EXPECT_FALSE(pressKey({.name = name})) << qPrintable(name);
    log.entries.clear();
    typeText(u"aB'"_s);
    EXPECT_EQ(log.entries,
              (QStringList{u"+65:97"_s, u"-65:97"_s, u"+S66:66"_s, u"-S66:66"_s, u"+39:39"_s, u"-39:39"_s}));
    log.entries.clear();
    typeText(u"B"_s, true);
    EXPECT_EQ(log.entries, (QStringList{u"+A66:66"_s, u"-A66:66"_s})) << "Alt alone";
}

TEST(WindowInput, aHeldKeyRepeatsInWhateverHasTheFocusByThen) {
    Window window;
    giveFocus(*window.first);
    InputLog log;
    window.second->installEventFilter(&log);
    QObject::connect(window.first, &QLineEdit::textEdited, window.second, [&] { window.second->setFocus(); });
    pressKey({.name = u"x"_s, .repeats = 2});
    EXPECT_EQ(window.first->text(), u"x"_s);
    EXPECT_EQ(log.entries, (QStringList{u"*88:120"_s, u"*88:120"_s, u"-88:120"_s}));
}

TEST(WindowInput, shortcutsComeBeforeTheControlWithTheFocus) {
    Window window;
    int clicks = 0;
    QObject::connect(window.button, &QPushButton::clicked, [&] { ++clicks; });
    auto* action = new QAction(&window);
    action->setShortcut(Qt::ALT | Qt::Key_R);
    int runs = 0;
    QObject::connect(action, &QAction::triggered, [&] { ++runs; });
    window.addAction(action);
    giveFocus(*window.first);
    pressKey({.name = u"r"_s, .hasAlt = true});
    typeText(u"R"_s, true);
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(window.first->text(), QString());
    window.button->setFocus();
    pressKey({.name = u"Space"_s});
    EXPECT_EQ(clicks, 1) << "from press to release";
}

TEST(WindowInput, theMenuKeyAsksForTheMenuFirst) {
    Window window;
    giveFocus(*window.first);
    InputLog log;
    window.first->installEventFilter(&log);
    pressKey({.name = u"Menu"_s});
    ASSERT_EQ(log.entries.size(), 3);
    EXPECT_EQ(log.entries[0], u"txtA menu"_s);
    EXPECT_TRUE(log.entries[1].startsWith(u'+'));
}

TEST(WindowInput, theSecondPressGoesToWhatLiesThereByThen) {
    Window window;
    InputLog log;
    window.first->installEventFilter(&log);
    clickControl(*window.first, {.isDouble = true});
    EXPECT_EQ(log.entries, (QStringList{u"txtA press"_s, u"txtA release"_s, u"txtA double"_s, u"txtA release"_s}));
    log.entries.clear();
    window.second->installEventFilter(&log);
    QObject::connect(window.button, &QPushButton::clicked, [&] {
        window.button->hide();
        window.second->setGeometry(window.button->geometry());
    });
    clickControl(*window.button, {.isDouble = true});
    EXPECT_EQ(log.entries, (QStringList{u"txtB double"_s, u"txtB release"_s}));
    EXPECT_EQ(focusedControl(), u"txtB"_s);
}

TEST(WindowInput, theRightButtonAsksForAMenu) {
    Window window;
    InputLog log;
    int clicks = 0;
    QObject::connect(window.button, &QPushButton::clicked, [&] { ++clicks; });
    clickControl(*window.button, {.button = Qt::RightButton});
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(focusedControl(), u"cmdC"_s);
    window.first->installEventFilter(&log);
    clickControl(*window.first, {.button = Qt::RightButton});
    clickControl(*window.first, {.button = Qt::MiddleButton});
    EXPECT_EQ(log.entries,
              (QStringList{u"txtA press"_s, u"txtA menu"_s, u"txtA release"_s, u"txtA press"_s, u"txtA release"_s}));
}

/// Keeps the press that closes a list from what lies there. Qt forgets the wish with each press.
struct Keeper : QObject {
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress)
            static_cast<QWidget*>(object)->setAttribute(Qt::WA_NoMouseReplay);
        return false;
    }
};

TEST(WindowInput, anOpenListTakesKeysAndClicksFirst) {
    Window window;
    giveFocus(*window.first);
    QWidget popup(&window, Qt::Popup);
    popup.setObjectName(u"list"_s);
    InputLog log;
    popup.installEventFilter(&log);
    window.second->installEventFilter(&log);
    const QPoint below = window.mapToGlobal(QPoint(10, 120));
    const auto open = [&] {
        log.entries.clear();
        popup.setGeometry(QRect(below, QSize(100, 60)));
        popup.show();
    };
    open();
    pressKey({.name = u"Down"_s, .repeats = 1});
    EXPECT_EQ(log.entries.size(), 3);
    EXPECT_TRUE(popup.isVisible());

    open();
    clickScreen(window, below + QPoint(5, 5));
    EXPECT_EQ(log.entries, (QStringList{u"list press"_s, u"list release"_s}));

    // A real popup closes on a press outside, and the press goes on to what lies there.
    popup.removeEventFilter(&log);
    open();
    clickControl(*window.second);
    EXPECT_FALSE(popup.isVisible());
    EXPECT_EQ(log.entries, (QStringList{u"txtB press"_s, u"txtB release"_s}));
    open();
    Keeper keeper;
    popup.installEventFilter(&keeper);
    clickControl(*window.second);
    EXPECT_FALSE(popup.isVisible());
    EXPECT_EQ(log.entries, QStringList()) << "a list that keeps the press";
    open();
    window.first->setEnabled(false);
    clickControl(*window.first);
    EXPECT_FALSE(popup.isVisible()) << "a click that works nothing closes it too";
}

/// Drops the input of the whole application, as a window does while it waits for a statement.
struct Deaf : QObject {
    Deaf() { qApp->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override { return event->isInputEvent(); }
};

TEST(WindowInput, whatDropsInputIsNotPassedBy) {
    Window window;
    giveFocus(*window.first);
    int clicks = 0;
    QObject::connect(window.button, &QPushButton::clicked, [&] { ++clicks; });
    const Deaf deaf;
    EXPECT_FALSE(giveFocus(*window.second));
    clickControl(*window.button);
    typeText(u"a"_s);
    pressKey({.name = u"Tab"_s});
    EXPECT_EQ(focusedControl(), u"txtA"_s);
    EXPECT_EQ(window.first->text(), QString());
    EXPECT_EQ(clicks, 0);
}

TEST(WindowInput, typingAndPastingReachTheFocusedBox) {
    Window window;
    giveFocus(*window.second);
    typeText(u"Ștef 1"_s);
    EXPECT_EQ(window.second->text(), u"Ștef 1"_s);
    QApplication::clipboard()->setText(u"kept"_s);
    window.second->setSelection(0, 4);
    pasteText(u"a b"_s);
    EXPECT_EQ(window.second->text(), u"a b 1"_s);
    EXPECT_EQ(QApplication::clipboard()->text(), u"kept"_s);
    giveFocus(*window.button);
    pasteText(u"x"_s);
    EXPECT_EQ(window.second->text(), u"a b 1"_s);
}

TEST(WindowView, readsTheWindowByItsPropertiesAlone) {
    EXPECT_EQ(loadedWindow(), nullptr);
    EXPECT_TRUE(windowState()[u"controls"_s].toObject().isEmpty());
    EXPECT_EQ(windowState()[u"members"_s][u"iAn"_s], QJsonValue(0)) << "members read as unset before the first call";
    Window window;
    window.panel->setEnabled(false);
    const QJsonObject state = windowState();
    const QJsonObject controls = state[u"controls"_s].toObject();
    EXPECT_EQ(controls.keys(), (QStringList{u"cmdC"_s, u"fraGrid"_s, u"frmEnable"_s, u"txtA"_s, u"txtB"_s}));
    const QJsonObject box = controls[u"txtB"_s].toObject();
    EXPECT_EQ(box[u"left"_s], QJsonValue(150));
    EXPECT_EQ(box[u"height"_s], QJsonValue(360));
    EXPECT_EQ(box[u"enabled"_s], QJsonValue(true)) << "its own property, not its container's";
    EXPECT_EQ(controls[u"frmEnable"_s][u"enabled"_s], QJsonValue(false));
    EXPECT_EQ(controls[u"fraGrid"_s][u"visible"_s], QJsonValue(false));
    EXPECT_EQ(state[u"members"_s][u"sSoc"_s], QJsonValue(u"ALFA."_s));
    EXPECT_EQ(state[u"members"_s][u"rptFacturi"_s], QJsonValue());
}

}  // namespace
}  // namespace velcoran::host

#include "window_input_test.moc"
