#include "platform/controls/drop_down_list.h"
#include "platform/controls/grid.h"
#include "platform/controls/tick_list.h"

#include "support/test_data.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QScrollBar>
#include <QStringListModel>
#include <QTest>
#include <QWheelEvent>

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
        m_grid.setKeyPressHandler([this](QChar character) { m_keys += character; });
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
        {"what no item continues is not taken", 0, {Qt::Key_S, Qt::Key_X, Qt::Key_E}, {3}},
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

TEST_F(GridTest, aHandlerThatHidesTheGridEndsTheText) {
    m_grid.setKeyPressHandler([this](QChar character) {
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
    EXPECT_TRUE(m_grid.controlState().isEmpty());
}

TEST_F(GridTest, manyRowsAreReadOnlyWhereShown) {
    m_rows.setCount(200000);
    const int before = m_rows.reads();
    EXPECT_TRUE(m_grid.moveTo(199999, 2));
    m_grid.grab();
    EXPECT_LT(m_rows.reads() - before, 200);
}

}  // namespace velcoran::controls
