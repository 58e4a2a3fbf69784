#include "desktop/own_look.h"
#include "desktop/own_style.h"
#include "desktop/qt_inside.h"

#include <QApplication>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QStyleFactory>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace velcoran::desktop {

using namespace Qt::StringLiterals;

namespace {

class RedHost {
public:
    RedHost() {
        QPalette palette;
        for (int role = 0; role < QPalette::NColorRoles; ++role)
            palette.setColor(QPalette::All, static_cast<QPalette::ColorRole>(role), Qt::red);
        QApplication::setPalette(palette);
        QFont font = m_font;
        font.setPointSize(30);
        QApplication::setFont(font);
        qApp->setStyleSheet(u"*{padding:6px;border:2px solid red;color:red}"_s);
    }
    ~RedHost() {
        qApp->setStyleSheet({});
        QApplication::setPalette(QPalette());
        QApplication::setFont(m_font);
    }
    RedHost(const RedHost&) = delete;
    RedHost& operator=(const RedHost&) = delete;

private:
    QFont m_font = QApplication::font();
};

QImage shown(QWidget& widget) {
    widget.show();
    QCoreApplication::processEvents();
    return widget.grab().toImage();
}

QIcon spot() {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::darkCyan);
    return pixmap;
}

/// Makes something in a window and takes a picture of it.
using Scene = std::function<QImage(QWidget& window)>;
struct SceneRow {
    const char* name;
    Scene scene;
};

QImage insertedLater(QWidget& window) {
    auto* row = new QHBoxLayout(&window);
    auto* box = new QSpinBox;  // asks its style while it is made, and has no parent then
    row->addWidget(box);
    auto* inner = new QWidget;
    auto* innerRow = new QHBoxLayout(inner);
    innerRow->addWidget(new QLineEdit(u"text"_s));
    innerRow->addWidget(new QPushButton(u"Salvează"_s));
    row->addWidget(inner);
    return shown(window);
}

QImage passedOnStyle(QWidget& window) {
    auto* row = new QHBoxLayout(&window);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    row->addWidget(buttons);
    buttons->addButton(u"încă"_s, QDialogButtonBox::ActionRole)->setStyle(buttons->style());
    return shown(window);
}

QImage ownStyleTakenAway(QWidget& window) {
    QPushButton button(u"Salvează"_s, &window);
    const std::unique_ptr<QStyle> other(QStyleFactory::create(u"Windows"_s));
    button.setStyle(other.get());
    return shown(window);
}

QImage completions(QWidget& window) {
    auto* edit = new QLineEdit(&window);
    edit->setCompleter(new QCompleter(QStringList{u"alfa"_s, u"altul"_s}, edit));
    shown(window);
    edit->setFocus();
    QTest::keyClicks(edit, u"al"_s);
    QWidget* list = edit->completer()->popup();
    return list->isVisible() ? shown(*list) : QImage();
}

QImage menuWithGreyIcon(QWidget& window) {
    QMenu menu(&window);
    menu.addAction(spot(), u"primul"_s);
    menu.addAction(spot(), u"al doilea"_s)->setEnabled(false);
    return shown(menu);
}

QImage message(QWidget& window) {
    QMessageBox box(QMessageBox::Critical, {}, u"Nu merge."_s, QMessageBox::Ok, &window);
    return shown(box);
}

const SceneRow kScenes[] = {{"widgets made without a parent", insertedLater},
                            {"a style that is passed on", passedOnStyle},
                            {"a style set by others", ownStyleTakenAway},
                            {"completions", completions},
                            {"a menu with an icon that is disabled", menuWithGreyIcon},
                            {"a message", message}};

QImage pictureOf(const SceneRow& row) {
    QWidget window;
    window.resize(400, 80);
    const OwnLook look(window);
    return row.scene(window);
}

}  // namespace

TEST(OwnLook, holdsForWhateverIsMadeInItsWindow) {
    for (const SceneRow& row : kScenes) {
        const QImage expected = pictureOf(row);
        EXPECT_FALSE(expected.isNull()) << row.name;
        const RedHost host;
        EXPECT_TRUE(pictureOf(row) == expected) << row.name;
    }
}

TEST(OwnLook, takesADialogOutOfAWindowOfTheHost) {
    const auto picture = [](QWidget& parent) {
        QMessageBox box(&parent);
        const OwnLook look(box);
        box.setIcon(QMessageBox::Information);
        box.setText(u"Nu merge."_s);
        return shown(box);
    };
    QWidget plain;
    const QImage expected = picture(plain);
    QWidget styled;
    styled.setStyleSheet(u"*{background:yellow;font-size:20pt}"_s);
    EXPECT_TRUE(picture(styled) == expected);
    const RedHost host;
    EXPECT_TRUE(picture(styled) == expected);
}

TEST(Desktop, isWhatAnApplicationHasThatSetsNothing) {
    const QPalette palette = userDesktop().palette;
    for (int role = 0; role < QPalette::NColorRoles; ++role)
        EXPECT_EQ(palette.color(static_cast<QPalette::ColorRole>(role)),
                  QApplication::palette().color(static_cast<QPalette::ColorRole>(role)))
            << role;
    EXPECT_EQ(userDesktop().font.family(), QApplication::font().family());
    EXPECT_EQ(userDesktop().font.pointSize(), QApplication::font().pointSize());
    const RedHost host;
    EXPECT_EQ(userDesktop().palette, palette);
    EXPECT_NE(userDesktop().font.pointSize(), 30);
}

// Both are looked up by name: this tells when a new Qt has them no more.
TEST(QtInside, hasWhatTheLookNeeds) {
    EXPECT_TRUE(inside::themePalette().has_value());
    QWidget widget;
    const RedHost host;
    const std::shared_ptr<QStyle> style = ownStyle();
    EXPECT_TRUE(inside::setStyle(widget, *style));
    EXPECT_EQ(widget.style(), style.get());
}

}  // namespace velcoran::desktop
