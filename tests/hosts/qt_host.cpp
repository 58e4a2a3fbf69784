// A host in Qt, with an application object of its own: it calls the component by name, works the window through the
// object tree and unloads the library.
#include "fixed_connection.h"
#include "loaded_component.h"
#include "rounds.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QImage>
#include <QLocale>
#include <QMetaType>
#include <QPalette>
#include <QStyle>
#include <QWidget>

namespace {

using hosts::expect;

/// The report window; it must be the only one of its name.
QWidget* reportWindow() {
    QWidget* found = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() != QStringLiteral("RptStoc")) continue;
        expect(found == nullptr, "one window");
        found = widget;
    }
    return found;
}

template <class Condition>
void waitFor(Condition condition, const char* what) {
    QElapsedTimer time;
    time.start();
    while (!condition() && time.elapsed() < 30'000) QApplication::processEvents(QEventLoop::AllEvents, 5);
    expect(condition(), what);
}

void makeReport() {
    QWidget* window = reportWindow();
    window->findChild<QAbstractButton*>(QStringLiteral("Raport"))->click();
    const auto* panel = window->findChild<QWidget*>(QStringLiteral("frmEnable"));
    waitFor([panel] { return panel->isHidden(); }, "the report shows");
    QApplication::processEvents();
    expect(!window->grab().isNull(), "the page is painted");
}

void close() {
    reportWindow()->close();
    QApplication::processEvents();
    expect(reportWindow() == nullptr || !reportWindow()->isVisible(), "the window is closed");
}

void callByName(velcoran::_clsVelcoran& object, velcoran::IConnection* connection) {
    namespace com = velcoran::com;
    char16_t name[] = u"incarca";
    char16_t* names[] = {name};
    const com::Guid none{};
    std::int32_t member = 0;
    expect(object.GetIDsOfNames(none, names, 1, 0, &member) == com::kOk, "the method has a number");
    const com::Text kind(u"Export");
    com::Variant arguments[4];  // the last one first
    arguments[0].type = com::kText;
    arguments[1].type = com::kDate;
    arguments[1].value.date = 46096;
    arguments[2].type = com::kUnknown;
    arguments[2].value.unknown = connection;
    arguments[3].type = com::kText;
    arguments[3].value.text = kind.get();
    com::CallArguments call{arguments, nullptr, 4, 0};
    constexpr std::uint16_t kMethod = 1;
    expect(object.Invoke(member, none, 0, kMethod, &call, nullptr, nullptr, nullptr) == com::kOk, "a call by name");
}

/// Goes through the caches in which Qt may have kept something of the component's.
void useWhatQtKeeps() {
    QApplication::processEvents();
    for (const double points : {8.25, 9.0, 12.0}) {
        QFont font(QStringLiteral("Arial"));
        font.setPointSizeF(points);
        expect(QFontMetricsF(font).height() > 0, "a font");
    }
    for (int type = QMetaType::User; type < QMetaType::User + 100; ++type)
        expect(!QMetaType::isRegistered(type) || QMetaType(type).name() != nullptr, "a registered type");
    QCheckBox box;
    box.setAccessibleName(QStringLiteral("a control of the host"));
    expect(QAccessible::queryAccessibleInterface(&box) != nullptr, "an accessible control");
}

void work(const char* library) {
    const auto connection = velcoran::com::Ref<hosts::FixedConnection>::adopt(new hosts::FixedConnection);
    hosts::LoadedComponent component(library);
    component.open(u"Import", connection.get());
    callByName(component.object(), connection.get());
    expect(reportWindow()->windowTitle() == QStringLiteral("Facturi Export Clienti"), "the second call's caption");
    makeReport();
    close();
    expect(connection->count() == 1, "the closed window has let go of the connection");
    component.open(u"Import", connection.get());
    expect(!component.canUnload(), "the open window keeps the library");
    close();
    component.unload(library);
    expect(reportWindow() == nullptr, "no window is left");
    useWhatQtKeeps();
}

QImage pictureOfWindow() {
    QApplication::processEvents();
    return reportWindow()->grab().toImage();
}

/// The window looks the same under a host that gives its application colours, fonts and measures: opened before that,
/// and opened after it.
void keepLook(const char* library) {
    const auto connection = velcoran::com::Ref<hosts::FixedConnection>::adopt(new hosts::FixedConnection);
    hosts::LoadedComponent component(library);
    component.open(u"Import", connection.get());
    const QImage expected = pictureOfWindow();
    const QFont font = QApplication::font();
    QApplication::setFont(QFont(QStringLiteral("DejaVu Serif"), 30, QFont::Bold, true));
    QApplication::setPalette(QPalette(Qt::red, Qt::red));
    qApp->setStyleSheet(QStringLiteral("*{padding:6px;border:2px solid red;color:black;background:#f0f0f0}"));
    expect(pictureOfWindow() == expected, "the open window keeps its look");
    close();
    component.open(u"Import", connection.get());
    expect(pictureOfWindow() == expected, "a new window has the same look");
    qApp->setStyleSheet({});
    QApplication::setPalette(QPalette());
    QApplication::setFont(font);
    expect(pictureOfWindow() == expected, "and keeps it when the host is plain again");
    close();
    component.unload(library);
}

/// What Qt shares between its users in one process.
QString qtFacts() {
    return QStringList{QApplication::style()->name(),
                       QString::number(QApplication::palette().cacheKey()),
                       QApplication::font().toString(),
                       QLocale().name(),
                       qApp->styleSheet(),
                       QApplication::applicationName(),
                       QString::number(QApplication::quitOnLastWindowClosed()),
                       QApplication::translate("QPlatformTheme", "Cancel")}
        .join(u'|');
}

/// The component gives Qt nothing to warn of, apart from what a platform without a display cannot do.
void refuseWarnings(QtMsgType, const QMessageLogContext&, const QString& text) {
    if (text.startsWith(QStringLiteral("This plugin does not support"))) return;
    std::fprintf(stderr, "%s\n", qPrintable(text));
    std::exit(1);
}

/// Starts the threads that Qt shares between all large pictures of a process.
void startPictureThreads() {
    QImage image(2000, 2000, QImage::Format_ARGB32);
    image.fill(Qt::white);
    expect(!image.convertToFormat(QImage::Format_ARGB32_Premultiplied).isNull(), "a large picture");
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler(refuseWarnings);
    expect(argc == 3, "two arguments, the library and the number of rounds");
    startPictureThreads();
    keepLook(argv[1]);
    const QString before = qtFacts();
    hosts::runRounds(std::atoi(argv[2]), [&] { work(argv[1]); });
    expect(qtFacts() == before, "Qt is as it was");
    expect(qInstallMessageHandler(nullptr) == refuseWarnings, "so is its message handler");
    return 0;
}
