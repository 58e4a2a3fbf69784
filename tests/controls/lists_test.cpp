#include "controls/drop_down_list.h"
#include "controls/input/typed_text.h"
#include "controls/tick_list.h"

#include "support/test_data.h"
#include "window_test.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QPushButton>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

class DropDownListTest : public WindowTest {
protected:
    DropDownListTest() {
        m_list.fill({u""_s, u"Produse Finite"_s, u"Produse in Lohn"_s, u"Servicii"_s}, 0);
        QObject::connect(&m_list, &DropDownList::changed, [this](int index) { m_told += index; });
        open(m_list, {150, 24});
    }

    DropDownList m_list{&m_window};
    QList<int> m_told;
};

class TickListTest : public WindowTest {
protected:
    TickListTest() {
        for (int i = 0; i < 30; ++i) m_items += u"%1 - Depozit"_s.arg(i);
        m_list.fill(m_items, 0);
        open(m_list, {150, 60});
    }

    QStringList m_items;
    TickList m_list{&m_window};
};

}  // namespace

TEST_F(DropDownListTest, keysChooseAndTellEveryChangeOnce) {
    const struct {
        const char* name;
        int start;
        QList<int> keys;
        QList<int> told;
    } cases[] = {
        {"down chooses the next", 0, {Qt::Key_Down, Qt::Key_Down}, {1, 2}},
        {"and stops at the end", 3, {Qt::Key_Down}, {}},
        {"up stops at the start", 1, {Qt::Key_Up, Qt::Key_Up}, {0}},
        {"down from none chooses the first", -1, {Qt::Key_Down}, {0}},
        {"up from none stays", -1, {Qt::Key_Up}, {}},
        {"home and end", 1, {Qt::Key_End, Qt::Key_Home}, {3, 0}},
        {"typing completes", 0, {Qt::Key_P, Qt::Key_R}, {1}},
        {"what no item continues starts anew", 0, {Qt::Key_S, Qt::Key_X, Qt::Key_P, Qt::Key_S}, {3, 1, 3}},
        {"a typed blank counts", 0, {Qt::Key_P, Qt::Key_R, Qt::Key_Space}, {1}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        m_list.setIndex(row.start);
        m_told.clear();
        for (const int key : row.keys) QTest::keyClick(&m_list, static_cast<Qt::Key>(key));
        EXPECT_EQ(m_told, row.told);
    }
}

TEST_F(DropDownListTest, theTypedStartIsForgottenWithTheFocus) {
    QTest::keyClicks(&m_list, u"produse i"_s);
    EXPECT_EQ(m_list.index(), 2);
    m_other.setFocus();
    m_list.setFocus();
    QTest::keyClicks(&m_list, u"p"_s);
    EXPECT_EQ(m_list.index(), 1);
    QTest::keyClicks(&m_list, u"roduse "_s);
    m_other.setFocus();
    m_list.setFocus();
    QTest::keyClicks(&m_list, u"i"_s);
    EXPECT_EQ(m_list.index(), 1) << "no item starts so";
    QTest::keyClicks(&m_list, u"p"_s);
    QInputMethodEvent commit(QString(), {});
    commit.setCommitString(u"RODUSE I"_s);
    QApplication::sendEvent(&m_list, &commit);
    EXPECT_EQ(m_list.index(), 2);
}

TEST_F(DropDownListTest, fillingTellsNothingAndChoosingDoes) {
    m_list.fill({u"Facturi"_s});
    EXPECT_EQ(m_list.index(), -1);
    EXPECT_TRUE(m_told.isEmpty());
    m_list.setIndex(0);
    m_list.setIndex(0);
    m_list.setIndex(7);
    EXPECT_EQ(m_told, QList<int>{0});
    EXPECT_FALSE(m_list.choose(1));
    m_list.setEnabled(false);
    EXPECT_FALSE(m_list.choose(0));
    EXPECT_EQ(m_list.controlState(), (QVariantMap{{u"items"_s, QStringList{u"Facturi"_s}},
                                                  {u"index"_s, 0},
                                                  {u"text"_s, u"Facturi"_s},
                                                  {u"open"_s, false},
                                                  {u"highlight"_s, -1}}));
}

TEST_F(DropDownListTest, theOpenListShowsItselfToScripts) {
    QStringList many;
    for (int i = 0; i < 30; ++i) many += QString::number(i);
    m_list.fill(many, 2);
    const auto state = [this](const QString& member) { return m_list.controlState()[member]; };
    EXPECT_EQ(state(u"open"_s), false);
    EXPECT_TRUE(m_list.openRowRect(0).isEmpty());
    QTest::mouseClick(&m_list, Qt::LeftButton);
    EXPECT_EQ(state(u"open"_s), true);
    EXPECT_EQ(state(u"highlight"_s), 2);
    EXPECT_TRUE(m_list.openRowRect(-1).isEmpty());
    EXPECT_TRUE(m_list.openRowRect(30).isEmpty());
    const QPoint place = m_list.openRowRect(25).center();
    QWidget* under = QApplication::widgetAt(place);
    ASSERT_NE(under, nullptr);
    EXPECT_EQ(under->window(), QApplication::activePopupWidget());
    QTest::mouseClick(under, Qt::LeftButton, {}, under->mapFromGlobal(place));
    EXPECT_EQ(state(u"open"_s), false);
    EXPECT_EQ(state(u"highlight"_s), -1);
    EXPECT_EQ(m_list.index(), 25);
}

// Up to the last column nothing of the open list is told: it keeps its choice until it is taken.
TEST_F(DropDownListTest, theOpenListMovesItsMarkUntilItIsTaken) {
    const struct {
        const char* name;
        QList<int> keys;
        int mark;
    } cases[] = {
        {"a letter", {Qt::Key_S}, 3},
        {"letters go on",
         {Qt::Key_P, Qt::Key_R, Qt::Key_O, Qt::Key_D, Qt::Key_U, Qt::Key_S, Qt::Key_E, Qt::Key_Space, Qt::Key_I},
         2},
        {"one that no entry continues starts anew", {Qt::Key_S, Qt::Key_P}, 1},
        {"one that starts none moves nothing", {Qt::Key_S, Qt::Key_X}, 3},
        {"and forgets what was typed",
         {Qt::Key_P, Qt::Key_R, Qt::Key_O, Qt::Key_D, Qt::Key_U, Qt::Key_S, Qt::Key_E, Qt::Key_Space, Qt::Key_X,
          Qt::Key_I},
         1},
        {"a movement forgets it too", {Qt::Key_P, Qt::Key_End, Qt::Key_R}, 3},
        {"backspace takes the last one back", {Qt::Key_P, Qt::Key_R, Qt::Key_Backspace, Qt::Key_R}, 1},
        {"delete goes to the first", {Qt::Key_End, Qt::Key_Delete}, 0},
        {"up and down stop at the ends", {Qt::Key_Down, Qt::Key_End, Qt::Key_Down, Qt::Key_Up}, 2},
        {"up at the first", {Qt::Key_Home, Qt::Key_Up}, 0},
        {"pages", {Qt::Key_Home, Qt::Key_PageDown}, 3},
        {"a page back", {Qt::Key_PageDown, Qt::Key_PageUp}, 0},
        {"left and right do nothing", {Qt::Key_Left, Qt::Key_Right, Qt::Key_Right}, 2},
    };
    QList<int> handled;
    m_list.setKeyHandler([&](QKeyEvent& key) {
        handled += key.key();
        return key.key() == Qt::Key_Tab;
    });
    for (const auto& row : cases) {
        for (const int end : {int(Qt::Key_Escape), int(Qt::Key_Return), int(Qt::Key_Enter), int(Qt::Key_Tab)}) {
            SCOPED_TRACE(testing::Message() << row.name << " end " << end);
            m_list.setIndex(2);
            QTest::keyClick(&m_list, Qt::Key_F4);
            ASSERT_EQ(m_list.highlight(), 2);
            m_told.clear();
            handled.clear();
            for (const int key : row.keys)
                QTest::keyClick(QApplication::activePopupWidget(), static_cast<Qt::Key>(key));
            EXPECT_EQ(m_list.highlight(), row.mark);
            EXPECT_EQ(m_list.index(), 2);
            EXPECT_TRUE(m_told.isEmpty());
            QTest::keyClick(QApplication::activePopupWidget(), static_cast<Qt::Key>(end));
            EXPECT_FALSE(m_list.isOpen());
            EXPECT_EQ(m_list.index(), end == Qt::Key_Escape ? 2 : row.mark);
            EXPECT_EQ(handled, end == Qt::Key_Tab ? QList<int>{Qt::Key_Tab} : QList<int>{}) << "Tab alone goes on";
        }
    }
}

TEST_F(DropDownListTest, anInputMethodMovesTheMarkOfTheOpenList) {
    QTest::keyClick(&m_list, Qt::Key_F4);
    QInputMethodEvent commit(QString(), {});
    commit.setCommitString(u"ser"_s);
    QApplication::sendEvent(&m_list, &commit);
    EXPECT_EQ(m_list.highlight(), 3);
    EXPECT_EQ(m_list.index(), 0);
}

TEST_F(DropDownListTest, typesWithRightAltAndNotWithAlt) {
    for (const bool isOpen : {false, true}) {
        m_list.setIndex(0);
        if (isOpen) m_list.showPopup();
        QTest::keyClick(&m_list, Qt::Key_S, Qt::AltModifier);
        EXPECT_EQ(isOpen ? m_list.highlight() : m_list.index(), 0);
        QTest::sendKeyEvent(QTest::Click, &m_list, Qt::Key_S, u"s"_s, Qt::AltModifier | Qt::ControlModifier);
        EXPECT_EQ(isOpen ? m_list.highlight() : m_list.index(), 3);
    }
}

TEST_F(DropDownListTest, otherButtonsPickNothing) {
    m_list.showPopup();
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        const QPoint place = m_list.openRowRect(3).center();
        QWidget* rows = QApplication::widgetAt(place);
        QTest::mouseClick(rows, button, {}, rows->mapFromGlobal(place));
        EXPECT_TRUE(m_list.isOpen());
        EXPECT_EQ(m_list.index(), 0);
    }
}

/// Counts the double clicks that get past the application's filters to a window of the window system: there the second
/// press would give the focus to what lies under it.
class DoubleClicks : public QObject {
public:
    [[nodiscard]] int count() const { return m_count; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonDblClick) ++m_count;
        return false;
    }

private:
    int m_count = 0;
};

/// A list whose entries lie over a button, a double click on one of them, and one that closes the list from outside.
TEST_F(DropDownListTest, theSecondPressOfADoubleClickThatClosedItIsSwallowed) {
    QPushButton below(&m_window);
    below.setGeometry(10, 34, 300, 200);
    below.show();
    int presses = 0;
    QObject::connect(&below, &QPushButton::pressed, [&] { ++presses; });
    const QPoint outside = below.mapToGlobal(QPoint(290, 190));
    for (const bool isOutside : {false, true}) {
        SCOPED_TRACE(isOutside);
        m_list.setFocus();
        m_list.showPopup();
        const QPoint place = isOutside ? outside : m_list.openRowRect(2).center();
        QWindow* window = m_window.windowHandle();
        presses = 0;
        DoubleClicks seen;
        window->installEventFilter(&seen);
        // As the window system brings it: into the open list first, then into what lies there.
        QTest::mouseClick(isOutside ? window : QApplication::activePopupWidget()->windowHandle(), Qt::LeftButton, {},
                          isOutside ? window->mapFromGlobal(place)
                                    : QApplication::activePopupWidget()->windowHandle()->mapFromGlobal(place));
        QApplication::processEvents();
        ASSERT_FALSE(m_list.isOpen());
        const int first = presses;
        QMouseEvent second(QEvent::MouseButtonDblClick, window->mapFromGlobal(place), place, Qt::LeftButton,
                           Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window, &second);
        QTest::mouseRelease(window, Qt::LeftButton, {}, window->mapFromGlobal(place));
        EXPECT_EQ(presses, first);
        EXPECT_EQ(seen.count(), 0);
        EXPECT_EQ(below.hasFocus(), isOutside && first > 0);
        QTest::mouseClick(&below, Qt::LeftButton);
        EXPECT_EQ(presses, first + 1) << "a new click works again";
        QApplication::sendEvent(window, &second);
        EXPECT_EQ(presses, first + 2) << "and a double click";
        QTest::mouseRelease(&below, Qt::LeftButton);
    }
}

TEST_F(DropDownListTest, theWheelDoesNothing) {
    QWheelEvent wheel(QPointF(5, 5), m_list.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_list, &wheel);
    EXPECT_EQ(m_list.index(), 0);
}

TEST_F(DropDownListTest, theOpenListPicksByKeyAndMouseAndKeepsTheFocusHandlerQuiet) {
    QList<bool> focus;
    m_list.setFocusHandler([&](bool isGained) { focus += isGained; });
    QTest::keyClick(&m_list, Qt::Key_F4);
    ASSERT_TRUE(m_list.isOpen());
    QTest::keyClick(&m_list, Qt::Key_Down);
    EXPECT_TRUE(m_told.isEmpty());
    QTest::keyClick(&m_list, Qt::Key_Return);
    EXPECT_FALSE(m_list.isOpen());
    QTest::keyClick(&m_list, Qt::Key_Down, Qt::AltModifier);
    ASSERT_TRUE(m_list.isOpen());
    QTest::keyClick(&m_list, Qt::Key_End);
    QTest::keyClick(&m_list, Qt::Key_Escape);
    EXPECT_EQ(m_told, QList<int>{1});
    QTest::mouseClick(&m_list, Qt::LeftButton, {}, QPoint(5, 5));
    ASSERT_TRUE(m_list.isOpen());
    auto* rows = m_list.findChild<QListWidget*>();
    ASSERT_NE(rows, nullptr);
    QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, rows->visualItemRect(rows->item(3)).center());
    EXPECT_EQ(m_told, (QList<int>{1, 3}));
    EXPECT_FALSE(m_list.isOpen());
    EXPECT_TRUE(focus.isEmpty());
}

TEST(DropDownList, goesWhileItsListIsOpen) {
    QWidget window;
    auto list = std::make_unique<DropDownList>(&window);
    list->fill({u"a"_s, u"b"_s}, 0);
    window.show();
    list->showPopup();
    ASSERT_TRUE(list->isOpen());
    list.reset();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(TickListTest, clicksAndTheBlankTickAndMovingDoesNot) {
    QList<int> told;
    QObject::connect(&m_list, &TickList::tickChanged, [&](int index) { told += index; });
    const QRect row = m_list.rowRect(25);
    ASSERT_FALSE(row.isEmpty());
    QWidget* viewport = m_list.viewport();
    const QPoint right = viewport->mapFrom(&m_list, QPoint(row.right() - 1, row.center().y()));
    QTest::mouseClick(viewport, Qt::LeftButton, {}, right);
    EXPECT_EQ(m_list.currentIndex(), 25);
    QTest::keyClick(&m_list, Qt::Key_Up);
    QTest::keyClick(&m_list, Qt::Key_Space);
    QTest::keyClick(&m_list, Qt::Key_2);
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, right);
    EXPECT_EQ(told, (QList<int>{25, 24, 25}));
    EXPECT_EQ(m_list.ticked(), QList<int>{24});
    m_list.setCurrentIndex(0);
    EXPECT_EQ(m_list.controlState(),
              (QVariantMap{{u"items"_s, m_items}, {u"index"_s, 0}, {u"ticked"_s, QVariantList{24}}}));
}

TEST_F(TickListTest, lettersAndDigitsGoToTheNextRowThatStartsSo) {
    m_list.fill(
        {u"1 - Depozit Central"_s, u"4 - Vamă"_s, u"12 - Sud"_s, u"120 - Port"_s, u"Șantier"_s, u"𝒜"_s, u"- liber"_s},
        0);
    const struct {
        const char* name;
        int start;
        const char16_t* typed;
        Qt::KeyboardModifiers held;
        int row;
    } cases[] = {
        {"the next one", 0, u"1", {}, 2},
        {"again", 0, u"11", {}, 3},
        {"round the end", 3, u"1", {}, 0},
        {"from none", -1, u"1", {}, 0},
        {"the only one stays", 1, u"4", {}, 1},
        {"none stays", 1, u"9", {}, 1},
        {"both cases", 0, u"ș", {}, 4},
        {"a pair is one letter", 0, u"𝒜", {}, 5},
        {"right Alt types", 0, u"4", Qt::AltModifier | Qt::ControlModifier, 1},
        {"Alt does not", 0, u"4", Qt::AltModifier, 0},
        {"nor Control", 0, u"4", Qt::ControlModifier, 0},
        {"other characters are no letters", 0, u"-", {}, 0},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        m_list.setCurrentIndex(one.start);
        for (const QString& character : charactersOf(QStringView(one.typed)))
            QTest::sendKeyEvent(QTest::Click, &m_list, Qt::Key_unknown, character, one.held);
        EXPECT_EQ(m_list.currentIndex(), one.row);
        EXPECT_TRUE(m_list.ticked().isEmpty());
    }
    m_list.setCurrentIndex(0);
    QInputMethodEvent commit(QString(), {});
    commit.setCommitString(u"Ș"_s);
    QApplication::sendEvent(&m_list, &commit);
    EXPECT_EQ(m_list.currentIndex(), 4);
}

TEST_F(TickListTest, noCurrentRowIsAState) {
    m_list.fill({u"a"_s, u"b"_s});
    m_other.setFocus();
    m_list.setFocus();
    EXPECT_EQ(m_list.currentIndex(), -1);
    QTest::keyClick(&m_list, Qt::Key_Space);
    QTest::keyClick(&m_list, Qt::Key_Up);
    EXPECT_EQ(m_list.currentIndex(), -1);
    EXPECT_TRUE(m_list.ticked().isEmpty());
    QTest::keyClick(&m_list, Qt::Key_Down);
    EXPECT_EQ(m_list.currentIndex(), 0);
    QTest::keyClick(&m_list, Qt::Key_Up);
    EXPECT_EQ(m_list.currentIndex(), 0) << "the first stays";
    QTest::keyClick(&m_list, Qt::Key_Space, Qt::AltModifier);
    EXPECT_TRUE(m_list.ticked().isEmpty());
}

}  // namespace velcoran::controls
