#include "controls/text_box.h"
#include "controls/input/typed_text.h"

#include "support/test_data.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

class TextBoxTest : public testing::Test {
protected:
    TextBoxTest() {
        m_other.setFocusPolicy(Qt::StrongFocus);
        m_box.setGeometry(0, 0, 200, 24);
        m_other.setGeometry(0, 40, 50, 24);
        m_box.setTypingLimit(5);
        m_box.setRefusedCharacters([](const QString& character) { return u"';%,\" "_s.contains(character); });
        QObject::connect(&m_box, &TextBox::changed, [this] { ++m_changes; });
        m_window.show();
        m_window.activateWindow();
        QApplication::processEvents();
        m_other.setFocus();
    }

    void commit(const QString& text) {
        QInputMethodEvent event(QString(), {});
        event.setCommitString(text);
        QApplication::sendEvent(&m_box, &event);
    }

    void paste(const QString& text) {
        QApplication::clipboard()->setText(text);
        QTest::keyClick(&m_box, Qt::Key_V, Qt::ControlModifier);
    }

    /// Presses a key that brings a text, as a keyboard layout makes it.
    void key(const QString& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent event(QEvent::KeyPress, 0, modifiers, text);
        QApplication::sendEvent(&m_box, &event);
    }

    /// Drags a text over the box and drops it at a caret position.
    void drop(const QString& text, int position) {
        QMimeData data;
        data.setText(text);
        m_box.setCursorPosition(position);
        const QPointF place = m_box.inputMethodQuery(Qt::ImCursorRectangle).toRectF().center();
        m_box.setSel(m_selected.x(), m_selected.y());
        const auto actions = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(place.toPoint(), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_box, &enter);
        QDragMoveEvent move(place.toPoint(), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_box, &move);
        QDropEvent event(place, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_box, &event);
    }

    QPoint m_selected;  ///< start and length before a drag
    QWidget m_window;
    TextBox m_box{&m_window};
    QWidget m_other{&m_window};
    int m_changes = 0;
};

}  // namespace

TEST_F(TextBoxTest, everyWayInHasItsRules) {
    const struct {
        const char* name;
        const char16_t *held, *given, *way, *text;
        int changes;
    } cases[] = {
        {"refused keys are dropped", u"", u"x';%,\" y", u"key", u"xy", 2},
        {"diacritics and slashes pass", u"", u"ș/ă", u"key", u"ș/ă", 3},
        {"the limit stops keys", u"abcd", u"ef", u"key", u"abcde", 1},
        {"refused characters of a commit are dropped", u"", u"a b'", u"commit", u"ab", 1},
        {"the limit cuts a commit", u"abcd", u"efg", u"commit", u"abcde", 1},
        {"a paste is not filtered", u"", u"a 'b", u"paste", u"a 'b", 1},
        {"the limit cuts a paste", u"abc", u"d e f", u"paste", u"abcd ", 1},
        {"an assigned text stands whole", u"", u"longer than five", u"assign", u"longer than five", 1},
        {"the same text is no change", u"abc", u"abc", u"assign", u"abc", 0},
        {"nothing goes into a text over the limit", u"longer than", u"x", u"key", u"longer than", 0},
        {"right Alt types", u"", u"aț", u"altGr", u"aț", 2},
        {"and is refused alike", u"", u"a;'", u"altGr", u"a", 1},
        {"Alt alone types nothing", u"", u"a;😀", u"alt", u"", 0},
        {"Control alone types nothing", u"", u"1", u"control", u"", 0},
        {"a pair is one character", u"abc", u"😀😀😀", u"key", u"abc😀😀", 2},
        {"no pair is split by a commit", u"abcd😀", u"😀", u"commit", u"abcd😀", 0},
        {"nor by a paste", u"ab", u"😀😀😀😀", u"paste", u"ab😀😀😀", 1},
        {"nor by a drop", u"ab", u"😀😀😀😀", u"drop", u"ab😀😀😀", 1},
        {"a private or joining character counts", u"abcde", u"\uE000\u200D", u"key", u"abcde", 0},
        {"and is typed", u"", u"\uE000\u200D", u"key", u"\uE000\u200D", 2},
        {"a refused one with marks behind it", u"", u"'\u0301", u"whole key", u"\u0301", 1},
        {"the same from an input method", u"", u"a \u0308b", u"commit", u"a\u0308b", 1},
        {"a drop is not filtered", u"", u"a 'b", u"drop", u"a 'b", 1},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        m_box.setText(QString::fromUtf16(row.held));
        m_box.setFocus();
        m_box.setSel(static_cast<int>(m_box.text().size()), 0);
        m_changes = 0;
        const QString given = QString::fromUtf16(row.given);
        const QString way = QString::fromUtf16(row.way);
        if (way == u"key"_s) {
            for (const QString& character : charactersOf(given)) key(character);
        } else if (way == u"whole key"_s) {
            key(given);
        } else if (way == u"alt"_s) {
            for (const QString& character : charactersOf(given)) key(character, Qt::AltModifier);
        } else if (way == u"altGr"_s) {
            for (const QString& character : charactersOf(given)) key(character, Qt::AltModifier | Qt::ControlModifier);
        } else if (way == u"control"_s) {
            key(given, Qt::ControlModifier | Qt::KeypadModifier);
        } else if (way == u"drop"_s) {
            m_selected = {};
            drop(given, static_cast<int>(m_box.text().size()));
        } else if (way == u"commit"_s) {
            commit(given);
        } else if (way == u"paste"_s) {
            paste(given);
        } else {
            m_box.setText(given);
        }
        EXPECT_EQ(m_box.text(), QString::fromUtf16(row.text));
        EXPECT_EQ(m_changes, row.changes);
    }
}

TEST_F(TextBoxTest, replacingASelectionIsOneChange) {
    m_box.setText(u"abcde"_s);
    for (const bool isPaste : {false, true}) {
        m_box.setText(u"abcde"_s);
        m_box.setFocus();
        m_box.setSel(0, 5);
        m_changes = 0;
        if (isPaste)
            paste(u"x y"_s);
        else
            QTest::keyClicks(&m_box, u"x"_s);
        EXPECT_EQ(m_changes, 1);
        EXPECT_EQ(m_box.text(), isPaste ? u"x y"_s : u"x"_s);
    }
    m_box.setSel(0, 3);
    QTest::keyClick(&m_box, Qt::Key_Space);
    commit(u"'"_s);
    EXPECT_EQ(m_box.text(), u"x y"_s);
    EXPECT_EQ(m_box.selLength(), 3);
}

TEST_F(TextBoxTest, theSameTextOverItselfIsNoChange) {
    const struct {
        const char* name;
        std::function<void()> act;
        int changes;
    } cases[] = {
        {"typed", [this] { key(u"abc"_s); }, 0},
        {"typed by an input method", [this] { commit(u"abc"_s); }, 0},
        {"pasted", [this] { paste(u"abc"_s); }, 0},
        {"dropped", [this] { drop(u"abc"_s, 1); }, 0},
        {"assigned", [this] { m_box.setText(u"abc"_s); }, 0},
        {"another one typed", [this] { key(u"abd"_s); }, 1},
        {"another one dropped", [this] { drop(u"x"_s, 3); }, 1},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        m_box.setText(u"abc"_s);
        m_box.setFocus();
        m_selected = {0, 3};
        m_box.setSel(0, 3);
        m_changes = 0;
        one.act();
        EXPECT_EQ(m_changes, one.changes);
        EXPECT_EQ(m_box.text() == u"abc"_s, one.changes == 0);
    }
    m_box.setText(u"x"_s);
    m_changes = 0;
    m_box.setText(u"abd"_s);
    m_box.setSel(2, 1);
    key(u"c"_s);
    EXPECT_EQ(m_changes, 2) << "a change back is one";
}

TEST_F(TextBoxTest, aLockedFieldTakesNoDropAndNoPaste) {
    m_box.setText(u"abc"_s);
    m_box.setReadOnly(true);
    drop(u"x"_s, 3);
    m_box.paste();
    EXPECT_EQ(m_box.text(), u"abc"_s);
}

TEST_F(TextBoxTest, whatAnInputMethodTakesBackMakesRoom) {
    m_box.setText(u"abcde"_s);
    m_box.setFocus();
    m_box.setSel(5, 0);
    QInputMethodEvent event(QString(), {});
    event.setCommitString(u"xyz"_s, -2, 2);
    QApplication::sendEvent(&m_box, &event);
    EXPECT_EQ(m_box.text(), u"abcxy"_s);
}

TEST_F(TextBoxTest, itsMenuPastesWithinTheLimit) {
    m_box.setText(u"abc"_s);
    m_box.setFocus();
    m_box.setSel(3, 0);
    QApplication::clipboard()->setText(u"d e f"_s);
    const std::unique_ptr<QMenu> menu(m_box.makeEditMenu());
    menu->setAttribute(Qt::WA_DeleteOnClose, false);
    for (QAction* action : menu->actions())
        if (action->text().startsWith(u"&Paste"_s)) action->trigger();
    EXPECT_EQ(m_box.text(), u"abcd "_s);
}

TEST_F(TextBoxTest, anAssignmentInsideAChangeRunsAtOnce) {
    TextBox dependent(&m_window);
    dependent.setText(u"abc"_s);
    QStringList order;
    QObject::connect(&dependent, &TextBox::changed, [&] { order += u"dependent"_s; });
    QObject::connect(&m_box, &TextBox::changed, [&] {
        dependent.setText({});
        order += u"box"_s;
    });
    m_box.setText(u"x"_s);
    m_box.setText(u"y"_s);
    EXPECT_EQ(order, (QStringList{u"dependent"_s, u"box"_s, u"box"_s}));
}

TEST_F(TextBoxTest, theFocusSelectsAllAndTheSelectionStays) {
    m_box.setText(u"abc"_s);
    EXPECT_EQ(m_box.selStart(), 0);
    EXPECT_EQ(m_box.selLength(), 0);
    m_box.setFocus();
    EXPECT_EQ(m_box.selLength(), 3);
    m_other.setFocus();
    EXPECT_EQ(m_box.selStart(), 0);
    EXPECT_EQ(m_box.selLength(), 3);
    m_box.setSel(1, 0);
    QTest::mouseClick(&m_box, Qt::LeftButton, {}, QPoint(10, 12));
    EXPECT_TRUE(m_box.hasFocus());
    EXPECT_EQ(m_box.selLength(), 3);
    QTest::qWait(0);
    QTest::mouseClick(&m_box, Qt::LeftButton, {}, QPoint(150, 12));
    EXPECT_EQ(m_box.selLength(), 0);
    EXPECT_EQ(m_box.selStart(), 3);
    for (const int way : {2, 100}) {
        m_other.setFocus();
        QTest::mousePress(&m_box, Qt::LeftButton, {}, QPoint(3, 12));
        QMouseEvent move(QEvent::MouseMove, QPointF(3 + way, 12), m_box.mapToGlobal(QPointF(3 + way, 12)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_box, &move);
        QTest::mouseRelease(&m_box, Qt::LeftButton, {}, QPoint(3 + way, 12));
        EXPECT_EQ(m_box.selLength(), 3) << way;
        EXPECT_EQ(m_box.cursorPosition(), 3) << way;
        QTest::qWait(0);
    }
}

TEST_F(TextBoxTest, sidewaysKeysCollapseTheSelectionToItsEdge) {
    m_box.setText(u"abcde"_s);
    m_box.setFocus();
    for (const auto& [key, caret] : {std::pair{Qt::Key_Left, 1}, std::pair{Qt::Key_Right, 3}}) {
        m_box.setSel(1, 2);
        QTest::keyClick(&m_box, key);
        EXPECT_EQ(m_box.selStart(), caret);
        EXPECT_EQ(m_box.selLength(), 0);
    }
}

TEST_F(TextBoxTest, undoBringsBackWhatWasTypedOver) {
    m_box.setText(u"abc"_s);
    m_box.setFocus();
    QTest::keyClicks(&m_box, u"x"_s);
    m_changes = 0;
    m_box.undo();
    EXPECT_EQ(m_box.text(), u"abc"_s);
    EXPECT_EQ(m_changes, 1);
}

TEST_F(TextBoxTest, stateHoldsTextSelectionAndFlag) {
    m_box.setText(u"ab"_s);
    m_box.setSel(1, 1);
    m_box.setBackColour({0x404040});
    m_box.setDataChanged(true);
    const QVariantMap state{{u"text"_s, u"ab"_s},
                            {u"selStart"_s, 1},
                            {u"selLength"_s, 1},
                            {u"dataChanged"_s, true},
                            {u"backColor"_s, u"0x404040"_s}};
    EXPECT_EQ(m_box.property("controlState").toMap(), state);
}

}  // namespace velcoran::controls
