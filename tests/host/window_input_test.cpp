#include "host/window_input.h"
#include "host/window_view.h"

#include "support/test_data.h"

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

/// Notes every key that its widget gets.
struct KeyLog : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text().isEmpty() ? QString() : QString::number(key->text()[0].unicode());
        keys.append(u"%1%2%3:%4"_s.arg(event->type() == QEvent::KeyPress ? u"+"_s : u"-"_s)
                        .arg(key->modifiers() == Qt::ShiftModifier ? u"S"_s : QString())
                        .arg(key->key())
                        .arg(text));
        return true;
    }
    QStringList keys;
};

TEST(WindowInput, keysComeAsAKeyboardSendsThem) {
    struct Case {
        QString name;
        bool isShifted;
        int key;
        QString text;
    };
    const Case cases[] = {
        {u"Tab"_s, false, Qt::Key_Tab, u"9"_s},         {u"Tab"_s, true, Qt::Key_Backtab, u"9"_s},
        {u"Enter"_s, false, Qt::Key_Return, u"13"_s},   {u"Esc"_s, false, Qt::Key_Escape, u"27"_s},
        {u"Space"_s, false, Qt::Key_Space, u"32"_s},    {u"Backspace"_s, false, Qt::Key_Backspace, u"8"_s},
        {u"Delete"_s, false, Qt::Key_Delete, u"127"_s}, {u"PageDown"_s, false, Qt::Key_PageDown, QString()},
        {u"Left"_s, true, Qt::Key_Left, QString()},
    };
    Window window;
    giveFocus(*window.first);
    KeyLog log;
    window.first->installEventFilter(&log);
    for (const Case& each : cases) {
        log.keys.clear();
        EXPECT_TRUE(pressKey(each.name, each.isShifted));
        const QString key = u"%1%2:%3"_s.arg(each.isShifted ? u"S"_s : QString()).arg(each.key).arg(each.text);
        EXPECT_EQ(log.keys, (QStringList{u"+"_s + key, u"-"_s + key}));
    }
    EXPECT_FALSE(pressKey(u"F1"_s, false));
    log.keys.clear();
    typeText(u"aB'"_s);
    EXPECT_EQ(log.keys, (QStringList{u"+65:97"_s, u"-65:97"_s, u"+S66:66"_s, u"-S66:66"_s, u"+39:39"_s, u"-39:39"_s}));
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
