#include "platform/controls/text_box.h"

#include "support/test_data.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
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
        m_box.setRefusedCharacters([](QChar character) { return u"';%,\" "_s.contains(character); });
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
            for (const QChar character : given) {
                QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
                QApplication::sendEvent(&m_box, &key);
            }
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

TEST_F(TextBoxTest, stateHoldsTheFlagOnceItIsSet) {
    m_box.setText(u"ab"_s);
    m_box.setSel(1, 1);
    m_box.setBackColour({0x404040});
    const QVariantMap bare{
        {u"text"_s, u"ab"_s}, {u"selStart"_s, 1}, {u"selLength"_s, 1}, {u"backColor"_s, u"0x404040"_s}};
    EXPECT_EQ(m_box.property("controlState").toMap(), bare);
    m_box.setProperty("dataChanged", true);
    EXPECT_TRUE(m_box.controlState().value(u"dataChanged"_s).toBool());
}

}  // namespace velcoran::controls
