#include "controls/grid.h"

#include "support/test_data.h"
#include "window_test.h"

#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QScrollBar>
#include <QStringListModel>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

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

TEST_F(GridTest, aCellThatIsCutShowsWholeUnderThePointer) {
    for (const bool isCut : {false, true}) {
        m_grid.setColumnWidth(1, {isCut ? 200 : 1700});
        const QPoint place = m_grid.viewport()->mapFrom(&m_grid, m_grid.cellRect(2, 1).center());
        QHelpEvent help(QEvent::ToolTip, place, m_grid.viewport()->mapToGlobal(place));
        QApplication::sendEvent(m_grid.viewport(), &help);
        EXPECT_EQ(QToolTip::text(), isCut ? u"2/1"_s : QString());
    }
    QToolTip::hideText();
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
