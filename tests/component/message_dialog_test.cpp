#include "component/message_dialog.h"

#include "com/object.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace velcoran::component {

using namespace Qt::StringLiterals;

namespace {

/// What the user sees of a message; it is closed at once.
QImage pictureOfMessage(const char16_t* text, std::int16_t style) {
    QImage picture;
    QTimer camera;
    QObject::connect(&camera, &QTimer::timeout, [&picture] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) return;
        picture = box->grab().toImage();
        box->accept();
    });
    camera.start(5);
    const com::Text shown(text);
    const com::Text title(u"");
    EXPECT_EQ(com::makeObject<MessageDialog>()->Afiseaza(shown.get(), style, 0, title.get(), 0, 0, nullptr), com::kOk);
    return picture;
}

}  // namespace

// The window in front, which a message belongs to, is the host's as often as ours.
TEST(MessageDialog, hasNothingOfAHostsLook) {
    const QFont font = QApplication::font();
    for (const std::int16_t style : {kStilError, kStilInformation}) {
        QWidget hostWindow;
        hostWindow.show();
        hostWindow.activateWindow();
        QCoreApplication::processEvents();
        const QImage expected = pictureOfMessage(u"Data de inceput este mai mare !", style);
        EXPECT_FALSE(expected.isNull());
        hostWindow.setStyleSheet(u"*{background:yellow}"_s);
        QApplication::setPalette(QPalette(Qt::red, Qt::red));
        QApplication::setFont(QFont(u"DejaVu Serif"_s, 30, QFont::Bold, true));
        qApp->setStyleSheet(u"*{padding:6px;border:2px solid red;color:red}"_s);
        EXPECT_TRUE(pictureOfMessage(u"Data de inceput este mai mare !", style) == expected) << style;
        qApp->setStyleSheet({});
        QApplication::setPalette(QPalette());
        QApplication::setFont(font);
    }
}

}  // namespace velcoran::component
