#include "platform/controls/drop_down_list.h"
#include "platform/controls/grid.h"
#include "platform/controls/tick_list.h"
#include "platform/controls/typed_text.h"

#include "support/test_data.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QStringListModel>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

/// A window with the focus on a neighbour of the control under test.
class WindowTest : public testing::Test {
protected:
    void open(QWidget& control, QSize size) {
        control.setGeometry(QRect(QPoint(10, 10), size));
        m_other.setFocusPolicy(Qt::StrongFocus);
        m_other.setGeometry(300, 10, 20, 20);
        m_window.resize(400, 300);
        m_window.show();
        m_window.activateWindow();
        QApplication::processEvents();
        control.setFocus();
    }

    QWidget m_window;
    QWidget m_other{&m_window};
};

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

/// Two columns of any number of rows, computed.
class Rows : public QAbstractTableModel {
public:
    explicit Rows(int count) : m_count(count) {}
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_count; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : 2; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        ++m_reads;
        return u"%1/%2"_s.arg(index.row() + 1).arg(index.column() + 1);
    }
    QVariant headerData(int section, Qt::Orientation, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return section == 0 ? u"Cod"_s : u"Denumire"_s;
    }
    void setCount(int count) {
        beginResetModel();
        m_count = count;
        endResetModel();
    }
    [[nodiscard]] int reads() const { return m_reads; }

private:
    int m_count;
    mutable int m_reads = 0;
};

class GridTest : public WindowTest {
protected:
    GridTest() {
        m_grid.bind(&m_rows);
        m_grid.setKeyPressHandler([this](const QString& character) { m_keys += character; });
        QObject::connect(&m_grid, &Grid::cellClicked, [this](int row, int column) { m_clicks += QPoint(row, column); });
        open(m_grid, {250, 100});
    }

    Rows m_rows{40};
    Grid m_grid{&m_window};
    QString m_keys;
    QList<QPoint> m_clicks;
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
}

TEST_F(GridTest, keysNavigateOrReachTheHandler) {
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Tab, Qt::Key_Backtab})
        QTest::keyClick(&m_grid, key);
    EXPECT_EQ(QPoint(m_grid.row(), m_grid.column()), QPoint(2, 2));
    EXPECT_TRUE(m_grid.hasFocus());
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_F5, Qt::Key_Return})
        QTest::keyClick(&m_grid, key);
    QInputMethodEvent commit(QString(), {});
    commit.setCommitString(u"ță"_s);
    QApplication::sendEvent(&m_grid, &commit);
    QTest::keyClick(&m_grid, Qt::Key_Escape);
    EXPECT_EQ(m_keys, QString(u"a "_s + QChar(8) + QChar(13) + u"ță"_s + QChar(27)));
}

TEST_F(GridTest, homeAndEndChooseTheRowLeftAndRightTheColumn) {
    const struct {
        QPoint start;
        QList<int> keys;
        QPoint end;
    } cases[] = {
        {{7, 2}, {Qt::Key_Home}, {1, 2}},       {{7, 1}, {Qt::Key_End}, {40, 1}},   {{7, 1}, {Qt::Key_Right}, {7, 2}},
        {{7, 2}, {Qt::Key_Right}, {7, 2}},      {{7, 2}, {Qt::Key_Left}, {7, 1}},   {{7, 1}, {Qt::Key_Left}, {7, 1}},
        {{1, 1}, {Qt::Key_Up}, {1, 1}},         {{40, 2}, {Qt::Key_Down}, {40, 2}}, {{3, 2}, {Qt::Key_PageUp}, {1, 2}},
        {{39, 2}, {Qt::Key_PageDown}, {40, 2}},
    };
    for (const auto& one : cases) {
        m_grid.moveTo(one.start.x(), one.start.y());
        for (const int key : one.keys) QTest::keyClick(&m_grid, static_cast<Qt::Key>(key));
        EXPECT_EQ(QPoint(m_grid.row(), m_grid.column()), one.end) << one.start.x() << ' ' << one.keys.front();
    }
    EXPECT_TRUE(m_keys.isEmpty());
}

TEST_F(GridTest, typedCharactersComeWhole) {
    QStringList characters;
    m_grid.setKeyPressHandler([&](const QString& character) { characters += character; });
    const auto key = [this](const QString& text, Qt::KeyboardModifiers held) {
        QTest::sendKeyEvent(QTest::Click, &m_grid, Qt::Key_unknown, text, held);
    };
    key(u"a😀"_s, {});
    key(u"b"_s, Qt::AltModifier);
    key(u"c"_s, Qt::ControlModifier);
    key(u"d"_s, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(characters, (QStringList{u"a"_s, u"😀"_s, u"d"_s}));
}

TEST_F(GridTest, aClickIsPressedAndReleasedInOneRow) {
    QWidget* viewport = m_grid.viewport();
    const auto at = [&](int row, int column) {
        return viewport->mapFrom(&m_grid, m_grid.cellRect(row, column).center());
    };
    const QPoint header(20, -5);
    const struct {
        const char* name;
        Qt::MouseButton button;
        QPoint pressed, released;
        QList<QPoint> clicks;
    } cases[] = {
        {"one cell", Qt::LeftButton, at(2, 1), at(2, 1), {{2, 1}}},
        {"two cells of a row", Qt::LeftButton, at(2, 2), at(2, 1), {{2, 2}}},
        {"two rows", Qt::LeftButton, at(2, 1), at(3, 1), {}},
        {"from outside", Qt::LeftButton, header, at(2, 1), {}},
        {"to the outside", Qt::LeftButton, at(2, 1), header, {}},
        {"another button", Qt::RightButton, at(2, 1), at(2, 1), {}},
        {"and one more", Qt::MiddleButton, at(2, 1), at(2, 1), {}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        m_clicks.clear();
        QTest::mousePress(viewport, one.button, {}, one.pressed);
        QTest::mouseRelease(viewport, one.button, {}, one.released);
        EXPECT_EQ(m_clicks, one.clicks);
    }
}

TEST_F(GridTest, aHandlerThatHidesTheGridEndsTheText) {
    m_grid.setKeyPressHandler([this](const QString& character) {
        m_keys += character;
        m_grid.hide();
    });
    QInputMethodEvent commit(QString(), {});
    commit.setCommitString(u"abc"_s);
    QApplication::sendEvent(&m_grid, &commit);
    EXPECT_EQ(m_keys, u"a"_s);
}

TEST_F(GridTest, aClickMakesTheCellCurrentFirst) {
    const QRect cell = m_grid.cellRect(35, 2);
    ASSERT_FALSE(cell.isEmpty());
    QWidget* viewport = m_grid.viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, {}, viewport->mapFrom(&m_grid, cell.center()));
    EXPECT_EQ(m_clicks, QList<QPoint>{QPoint(35, 2)});
    EXPECT_EQ(QPoint(m_grid.row(), m_grid.column()), QPoint(35, 2));
    QTest::mouseClick(viewport, Qt::LeftButton, {}, QPoint(viewport->width() - 1, viewport->height() - 1));
    EXPECT_EQ(m_clicks.size(), 1);
}

TEST_F(GridTest, newRowsKeepTheColumn) {
    EXPECT_TRUE(m_grid.moveTo(7, 2));
    EXPECT_FALSE(m_grid.moveTo(41, 1));
    EXPECT_FALSE(m_grid.moveTo(1, 3));
    m_rows.setCount(3);
    EXPECT_EQ(QPoint(m_grid.row(), m_grid.column()), QPoint(1, 2));
    m_rows.setCount(0);
    EXPECT_EQ(m_grid.row(), 0);
    m_rows.setCount(3);
    EXPECT_EQ(QPoint(m_grid.row(), m_grid.column()), QPoint(1, 2));
    m_grid.bind(&m_rows);
    EXPECT_EQ(QPoint(m_grid.row(), m_grid.column()), QPoint(1, 1));
}

TEST_F(GridTest, stateShowsWidthsInTwips) {
    m_rows.setCount(1);
    EXPECT_TRUE(m_grid.setColumnWidth(0, {10}));
    EXPECT_TRUE(m_grid.setColumnWidth(1, {1700}));
    EXPECT_TRUE(m_grid.setColumnWidth(2, {4700}));
    EXPECT_FALSE(m_grid.setColumnWidth(3, {0}));
    const QVariantMap state = m_grid.controlState();
    EXPECT_EQ(state.value(u"columns"_s).toStringList(), (QStringList{u"Cod"_s, u"Denumire"_s}));
    EXPECT_EQ(state.value(u"rows"_s).toList(), QVariantList{QVariant(QStringList{u"1/1"_s, u"1/2"_s})});
    EXPECT_EQ(state.value(u"widths"_s).toList(), (QVariantList{10, 1700, 4700}));
    m_grid.bind(nullptr);
    EXPECT_TRUE(m_grid.controlState().value(u"rows"_s).toList().isEmpty());
    EXPECT_EQ(m_grid.controlState().value(u"row"_s), 0);
    EXPECT_EQ(m_grid.controlState().value(u"widths"_s), state.value(u"widths"_s));
}

TEST_F(GridTest, manyRowsAreReadOnlyWhereShown) {
    m_rows.setCount(200000);
    const int before = m_rows.reads();
    EXPECT_TRUE(m_grid.moveTo(199999, 2));
    m_grid.grab();
    EXPECT_LT(m_rows.reads() - before, 200);
}

}  // namespace velcoran::controls
