#include "base/error.h"
#include "controls/button.h"
#include "controls/check_box.h"
#include "controls/date_picker.h"
#include "controls/drop_down_list.h"
#include "controls/frame.h"
#include "controls/grid.h"
#include "controls/label.h"
#include "controls/text_box.h"
#include "controls/tick_list.h"

#include "support/test_data.h"

#include <QAccessible>
#include <QApplication>
#include <QCalendarWidget>
#include <QStringListModel>
#include <QStyleFactory>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

/// One control of every kind that takes the focus, in a frame in a window.
class ControlsTest : public testing::Test {
protected:
    ControlsTest() {
        int top = 20;
        for (QWidget* control : controls()) {
            control->setGeometry(10, top, 120, 24);
            top += 30;
        }
        m_frame.setGeometry(0, 0, 200, 300);
        m_window.resize(220, 320);
        m_box.setCaption(u"Inclusiv importurile temporare"_s);
        m_box.setAccelerator(u't');
        m_button.setCaption(u"  Raporteaza"_s);
        m_button.setAccelerator(u'R');
        m_window.show();
        m_window.activateWindow();
        QApplication::processEvents();
    }

    [[nodiscard]] QList<QWidget*> controls() {
        return {&m_text, &m_list, &m_ticks, &m_box, &m_date, &m_button, &m_grid};
    }

    QWidget m_window;
    Frame m_frame{FrameLook::framed, &m_window};
    TextBox m_text{&m_frame};
    DropDownList m_list{&m_frame};
    TickList m_ticks{&m_frame};
    CheckBox m_box{&m_frame};
    DatePicker m_date{&m_frame};
    Button m_button{ButtonLook::flat, &m_frame};
    Grid m_grid{&m_frame};
};

}  // namespace

TEST_F(ControlsTest, theHandlerHasEveryKeyFirstAndTabStays) {
    m_list.fill({u"a"_s, u"b"_s}, 0);
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    int clicks = 0;
    QObject::connect(&m_button, &QAbstractButton::clicked, [&] { ++clicks; });
    const QList<Qt::Key> keys{Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Down, Qt::Key_B, Qt::Key_Space, Qt::Key_Return};
    for (QWidget* control : controls()) {
        SCOPED_TRACE(control->metaObject()->className());
        control->setFocus();
        QList<Qt::Key> heard;
        Control::of(control)->setKeyHandler([&](QKeyEvent& key) {
            heard += static_cast<Qt::Key>(key.key());
            return true;
        });
        const QVariantMap before = Control::of(control)->controlState();
        for (const Qt::Key key : keys) QTest::keyClick(control, key);
        EXPECT_EQ(heard, keys);
        EXPECT_EQ(Control::of(control)->controlState(), before);
        Control::of(control)->setKeyHandler([](QKeyEvent&) { return false; });
        QTest::keyClick(control, Qt::Key_Tab);
        EXPECT_TRUE(control->hasFocus());
    }
    EXPECT_EQ(clicks, 0);
}

TEST_F(ControlsTest, aHandlerMayDestroyItsControl) {
    for (int kind = 0; kind < 3; ++kind) {
        std::unique_ptr<QWidget> control;
        if (kind == 0)
            control = std::make_unique<TextBox>(&m_window);
        else if (kind == 1)
            control = std::make_unique<DropDownList>(&m_window);
        else
            control = std::make_unique<Button>(ButtonLook::flat, &m_window);
        control->show();
        control->setFocus();
        Control::of(control.get())->setKeyHandler([&](QKeyEvent&) {
            control.reset();
            return false;
        });
        QTest::sendKeyEvent(QTest::Press, control.get(), Qt::Key_Escape, QString(), Qt::NoModifier);
        EXPECT_EQ(control, nullptr);
    }
}

TEST_F(ControlsTest, focusIsToldOnceEachWay) {
    for (QWidget* control : controls()) {
        SCOPED_TRACE(control->metaObject()->className());
        QWidget* other = control == &m_button ? static_cast<QWidget*>(&m_text) : &m_button;
        other->setFocus();
        QList<bool> told;
        Control::of(control)->setFocusHandler([&](bool isGained) { told += isGained; });
        control->setFocus();
        other->setFocus();
        Control::of(control)->setFocusHandler({});
        EXPECT_EQ(told, (QList<bool>{true, false}));
    }
}

TEST_F(ControlsTest, acceleratorsActWhereEnabledAndVisible) {
    int clicks = 0;
    QObject::connect(&m_button, &QAbstractButton::clicked, [&] { ++clicks; });
    m_text.setFocus();
    QTest::keyClick(&m_text, Qt::Key_R, Qt::AltModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_T, Qt::AltModifier);
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(m_box.value());
    EXPECT_TRUE(m_box.hasFocus());
    m_button.setEnabled(false);
    QTest::keyClick(&m_box, Qt::Key_R, Qt::AltModifier);
    m_button.setEnabled(true);
    m_button.hide();
    QTest::keyClick(&m_box, Qt::Key_R, Qt::AltModifier);
    EXPECT_EQ(clicks, 1);
    Button marked(ButtonLook::graphical, &m_window);
    QObject::connect(&marked, &QAbstractButton::clicked, [&] { ++clicks; });
    marked.setCaption(u"&Seteaza Imprimanta"_s);
    marked.show();
    QTest::keyClick(&m_box, Qt::Key_S, Qt::AltModifier);
    EXPECT_EQ(clicks, 2);
}

TEST_F(ControlsTest, theButtonClicksByEnterAndBlank) {
    int clicks = 0;
    QObject::connect(&m_button, &QAbstractButton::clicked, [&] { ++clicks; });
    m_button.setFocus();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Down, Qt::Key_Right})
        QTest::keyClick(&m_button, key);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QApplication::sendEvent(&m_button, &held);
    EXPECT_EQ(clicks, 3);
    EXPECT_TRUE(m_button.hasFocus());
}

TEST_F(ControlsTest, theCheckBoxTellsBothNotificationsUnlessLocked) {
    QStringList told;
    QObject::connect(&m_box, &CheckBox::changed, [&](bool isTicked) { told += isTicked ? u"C"_s : u"c"_s; });
    QObject::connect(&m_box, &CheckBox::ticked, [&](bool isTicked) { told += isTicked ? u"T"_s : u"t"_s; });
    m_box.setFocus();
    m_box.resize(600, 24);
    QTest::mouseClick(&m_box, Qt::LeftButton, {}, QPoint(595, 20));
    m_box.setValue(false);
    m_box.setValue(false);
    m_box.setLocked(true);
    QTest::keyClick(&m_box, Qt::Key_Space);
    QTest::mouseClick(&m_box, Qt::LeftButton);
    m_box.setValue(true);
    EXPECT_EQ(told.join(QString()), u"CTctCT"_s);
    EXPECT_EQ(
        m_box.controlState(),
        (QVariantMap{{u"caption"_s, u"Inclusiv importurile temporare"_s}, {u"value"_s, true}, {u"locked"_s, true}}));
}

TEST_F(ControlsTest, theDatePickerTellsEveryChangeOnce) {
    QList<QDate> told;
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    QObject::connect(&m_date, &DatePicker::valueChanged, [&](QDate value) { told += value; });
    m_date.setValue({2026, 3, 15});
    m_date.setFocus();
    QTest::keyClick(&m_date, Qt::Key_Up);
    QTest::keyClick(&m_date, Qt::Key_Right);
    QTest::keyClicks(&m_date, u"7"_s);
    EXPECT_TRUE(m_date.enter({2026, 7, 31}));
    EXPECT_FALSE(m_date.enter({2027, 2, 1}));
    EXPECT_THROW(m_date.setValue({2025, 12, 31}), base::Error);
    EXPECT_EQ(told, (QList<QDate>{{2026, 3, 15}, {2026, 3, 16}, {2026, 7, 16}, {2026, 7, 31}}));
    EXPECT_EQ(m_date.controlState(), (QVariantMap{{u"value"_s, u"2026-07-31"_s},
                                                  {u"min"_s, u"2026-01-01"_s},
                                                  {u"max"_s, u"2027-01-31"_s},
                                                  {u"shown"_s, u"31/iul./26"_s}}));
}

TEST_F(ControlsTest, leavingTheDatePickerFinishesWhatWasTyped) {
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    m_date.setValue({2026, 3, 15});
    m_date.setFocus();
    QTest::keyClicks(&m_date, u"2"_s);
    EXPECT_EQ(m_date.shown(), u"2/mar./26"_s);
    m_button.setFocus();
    EXPECT_EQ(m_date.shown(), u"02/mar./26"_s);
    m_date.setFocus();
    QTest::keyClicks(&m_date, u"5"_s);
    EXPECT_EQ(m_date.value(), QDate(2026, 3, 5)) << "a new number, and no 25";
}

TEST_F(ControlsTest, aDateIsTypedWithAnySeparatorAndChangedWhereItIsPressed) {
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    m_date.resize(200, 24);
    for (const QString& typed : {u"5/7/26"_s, u"5.7.26"_s, u"5-7-26"_s}) {
        m_date.setValue({2026, 3, 15});
        m_button.setFocus();
        QTest::mouseClick(&m_date, Qt::LeftButton, {}, QPoint(4, 12));
        QTest::keyClicks(&m_date, typed);
        EXPECT_EQ(m_date.value(), QDate(2026, 7, 5)) << qPrintable(typed);
    }
    const auto behind = [this](const QString& text) { return m_date.fontMetrics().horizontalAdvance(text) + 6; };
    const std::pair<int, QDate> presses[] = {
        {4, {2026, 3, 16}}, {behind(u"15/"_s), {2026, 4, 15}}, {behind(u"15/mar./"_s), {2026, 3, 15}}};
    for (const auto& [place, value] : presses) {
        m_date.setValue({2026, 3, 15});
        QTest::mouseClick(&m_date, Qt::LeftButton, {}, QPoint(place, 12));
        QTest::keyClick(&m_date, Qt::Key_Up);
        EXPECT_EQ(m_date.value(), value) << "a year more would leave the bounds";
    }
}

TEST_F(ControlsTest, whatOpensAtTheFootOfTheScreenOpensUpwards) {
    const QRect screen = m_window.screen()->availableGeometry();
    m_list.fill({u"a"_s, u"b"_s, u"c"_s}, 0);
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    for (QWidget* control : {static_cast<QWidget*>(&m_list), static_cast<QWidget*>(&m_date)}) {
        m_window.move(screen.left(), screen.bottom() - control->mapTo(&m_window, QPoint(0, control->height())).y());
        control->setFocus();
        QTest::keyClick(control, Qt::Key_F4);
        const QWidget* open = QApplication::activePopupWidget();
        ASSERT_NE(open, nullptr);
        EXPECT_LT(open->geometry().bottom(), control->mapToGlobal(QPoint(0, 0)).y())
            << control->metaObject()->className();
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    }
}

TEST_F(ControlsTest, theCalendarPicksWithinTheBounds) {
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    m_date.setFocus();
    QTest::keyClick(&m_date, Qt::Key_F4);
    ASSERT_TRUE(m_date.isOpen());
    auto* calendar = m_date.findChild<QCalendarWidget*>();
    ASSERT_NE(calendar, nullptr);
    EXPECT_EQ(calendar->maximumDate(), QDate(2027, 1, 31));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(m_date.value(), QDate(2026, 1, 2));
    EXPECT_FALSE(m_date.isOpen());
    EXPECT_TRUE(m_date.hasFocus());
}

TEST_F(ControlsTest, theKeysOfTheOpenCalendarStayInIt) {
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    QList<int> handled;
    m_date.setKeyHandler([&](QKeyEvent& key) {
        handled += key.key();
        return false;
    });
    const struct {
        const char* name;
        QList<int> keys;
        bool isOpen;
        QDate value;
    } cases[] = {
        {"Enter takes the day", {Qt::Key_Right, Qt::Key_Return}, false, {2026, 3, 11}},
        {"the keypad's too", {Qt::Key_Right, Qt::Key_Enter}, false, {2026, 3, 11}},
        {"Esc closes the calendar only", {Qt::Key_Right, Qt::Key_Escape}, false, {2026, 3, 10}},
        {"F4 closes it", {Qt::Key_Down, Qt::Key_F4}, false, {2026, 3, 10}},
        {"Tab stays", {Qt::Key_Tab, Qt::Key_Backtab}, true, {2026, 3, 10}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        m_date.setFocus();
        m_date.setValue({2026, 3, 10});
        QTest::keyClick(&m_date, Qt::Key_F4);
        handled.clear();
        for (const int key : one.keys) {
            ASSERT_NE(QApplication::activePopupWidget(), nullptr);
            QTest::keyClick(QApplication::activePopupWidget()->focusWidget(), static_cast<Qt::Key>(key));
        }
        EXPECT_EQ(m_date.isOpen(), one.isOpen);
        EXPECT_EQ(m_date.value(), one.value);
        EXPECT_TRUE(handled.isEmpty());
        m_date.closeCalendar();
    }
    m_date.openCalendar();
    m_date.setBounds({2027, 1, 1}, {2028, 1, 31});
    EXPECT_FALSE(m_date.isOpen()) << "new bounds";
}

TEST_F(ControlsTest, aDisabledFrameKeepsTheLookOfItsControls) {
    m_window.setFocus();
    m_text.setText(u"text"_s);
    m_list.fill({u"a"_s}, 0);
    const QImage before = m_frame.grab().toImage();
    m_frame.setEnabled(false);
    EXPECT_EQ(m_frame.grab().toImage(), before);
    EXPECT_FALSE(m_text.isEnabled());
    m_frame.setEnabled(true);
    m_text.setEnabled(false);
    EXPECT_NE(m_frame.grab().toImage(), before);
}

TEST_F(ControlsTest, theStyleAndPaletteOfTheApplicationDoNotShow) {
    m_window.setFocus();
    m_text.setText(u"text"_s);
    m_list.fill({u"a"_s}, 0);
    m_ticks.fill({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}, 0);
    QStringListModel rows({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
    m_grid.bind(&rows);
    m_grid.resize(120, 80);
    m_date.setBounds({2026, 1, 1}, {2027, 1, 31});
    const QPalette palette = QApplication::palette();
    const QImage before = m_frame.grab().toImage();
    QApplication::setStyle(QStyleFactory::create(u"Windows"_s));
    QApplication::setPalette(QPalette(Qt::darkMagenta, Qt::darkYellow));
    EXPECT_EQ(m_frame.grab().toImage(), before);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setPalette(palette);
    m_grid.bind(nullptr);
}

TEST_F(ControlsTest, rolesAndNamesForAssistivePrograms) {
    const QList<QAccessible::Role> roles{QAccessible::EditableText, QAccessible::ComboBox, QAccessible::List,
                                         QAccessible::CheckBox,     QAccessible::ComboBox, QAccessible::Button,
                                         QAccessible::Table};
    for (int i = 0; i < roles.size(); ++i) {
        QWidget* control = controls().at(i);
        SCOPED_TRACE(control->metaObject()->className());
        control->setAccessibleName(u"Nume"_s);
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control);
        ASSERT_NE(accessible, nullptr);
        EXPECT_EQ(accessible->role(), roles.at(i));
        EXPECT_EQ(accessible->text(QAccessible::Name), u"Nume"_s);
    }
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&m_date)->text(QAccessible::Value), m_date.shown());
}

TEST_F(ControlsTest, framesKeepCaptionAndTag) {
    EXPECT_EQ(m_frame.controlState(), (QVariantMap{{u"caption"_s, QString()}}));
    m_frame.setCaption(u"Grupa Produs - a&b"_s);
    m_frame.setTag(u"Grupa Produs"_s);
    m_frame.setForeColour({0x0000FF});
    EXPECT_EQ(m_frame.controlState(), (QVariantMap{{u"caption"_s, u"Grupa Produs - a&b"_s},
                                                   {u"tag"_s, u"Grupa Produs"_s},
                                                   {u"foreColor"_s, u"0x0000FF"_s}}));
}

TEST(Placement, roundsEdgesAndKeepsTwips) {
    QWidget window;
    QWidget one(&window);
    QWidget other(&window);
    for (const double density : {96.0, 120.0, 144.0, 192.0}) {
        placeTwips(&one, {{5637}, {60}, {1771}, {345}}, density);
        placeTwips(&other, {{7408}, {60}, {1770}, {345}}, density);
        EXPECT_EQ(one.geometry().right() + 1, other.geometry().left()) << density;
        EXPECT_EQ(twipsOf(&one), (base::TwipsRect{{5637}, {60}, {1771}, {345}}));
    }
}

TEST(Placement, theFontFollowsTheDensity) {
    Label label;
    label.setFontSpec({u"Arial"_s, 9, true});
    placeTwips(&label, {{0}, {0}, {1455}, {315}}, 96);
    const int width = label.fontMetrics().horizontalAdvance(u"Producator:"_s);
    placeTwips(&label, {{0}, {0}, {1455}, {315}}, 192);
    EXPECT_NEAR(label.fontMetrics().horizontalAdvance(u"Producator:"_s), 2 * width, 3);
}

TEST(Label, wrapsAtBlanksAndKeepsTheirRuns) {
    const auto inkRows = [](const QString& caption) {
        Label label;
        label.setBackColour({0xFFFFFF});
        label.setFontSpec({u"Arial"_s, 9, false});
        label.setCaption(caption);
        placeTwips(&label, {{0}, {0}, {1650}, {540}}, 96);
        const QImage picture = label.grab().toImage();
        const int lineHeight = label.fontMetrics().height();
        QRect ink;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (qGray(picture.pixel(x, y)) < 128) ink |= QRect(x, y, 1, 1);
        return QPoint(ink.left(), ink.bottom() > lineHeight ? 2 : 1);
    };
    EXPECT_EQ(inkRows(u"    Depozitul:         (implicit toate)"_s).y(), 2);
    EXPECT_GT(inkRows(u"    Depozitul:"_s).x(), 8);
    EXPECT_EQ(inkRows(u"    Depozitul:"_s).y(), 1);
}

}  // namespace velcoran::controls
