#include "desktop/desktop.h"
#include "dialogs/export_dialog.h"
#include "dialogs/print_dialog.h"
#include "dialogs/printer_setup_dialog.h"
#include "dialogs/progress.h"
#include "form/busy/activity.h"
#include "form_fixture.h"
#include "viewer/report_viewer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMenu>
#include <QProgressBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QSpinBox>
#include <QStyleFactory>
#include <QTimer>
#include <QToolTip>

#include <map>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

using Pictures = std::map<std::string, QImage>;

/// A style of a host that leaves nothing where it was.
class WideStyle final : public QProxyStyle {
public:
    WideStyle() : QProxyStyle(QStyleFactory::create(u"Windows"_s)) {}
    int pixelMetric(PixelMetric, const QStyleOption*, const QWidget*) const override { return 40; }
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        return QProxyStyle::sizeFromContents(type, option, size, widget) + QSize(40, 40);
    }
    void polish(QPalette& palette) override { palette = QPalette(Qt::darkGreen, Qt::darkYellow); }
    void polish(QWidget* widget) override {
        QProxyStyle::polish(widget);
        widget->setAutoFillBackground(true);
    }
    using QProxyStyle::polish;
};

QPalette onlyRed() {
    QPalette palette;
    for (int role = 0; role < QPalette::NColorRoles; ++role)
        palette.setColor(QPalette::All, static_cast<QPalette::ColorRole>(role), Qt::red);
    return palette;
}

QFont largeFont() {
    QFont font(u"DejaVu Serif"_s, 30, QFont::Bold, true);
    font.setUnderline(true);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 5);
    return font;
}

/// What a host gives to its whole application; a sheet stands for itself.
struct HostRow {
    const char* sheet;
    bool hasStyle = false, hasPalette = false, hasFont = false;
};
constexpr HostRow kHosts[] = {
    {"QLineEdit{color:black}"},
    {"QWidget{color:black;font-size:11pt}"},
    {"QWidget{background:#f0f0f0}"},
    {"*{padding:6px;border:2px solid red}"},
    {"*{color:yellow !important;background:blue !important;min-width:90px;max-height:12px}"},
    {"QScrollBar::handle{background:red} QComboBox::drop-down{width:40px} QToolButton:hover{border:9px solid red} "
     "QHeaderView::section{background:red} QMenu::item{padding:20px} QToolTip{color:red} "
     "QProgressBar::chunk{background:red} QAbstractItemView{alternate-background-color:red;selection-color:red}"},
    {"#RptStoc, #RptStoc *{color:red;font:bold 20pt;qproperty-toolTip:\"of the host\"}"},
    {"", true},
    {"", false, true},
    {"", false, false, true},
    {"*{padding:6px;border:2px solid red}", true, true, true},
};

void PrintTo(const HostRow& host, std::ostream* stream) {
    *stream << '"' << host.sheet << '"' << (host.hasStyle ? " style" : "") << (host.hasPalette ? " palette" : "")
            << (host.hasFont ? " font" : "");
}

const QFont& startFont() {
    static const QFont font = QApplication::font();
    return font;
}

void plainHost() {
    if (!qApp->styleSheet().isEmpty()) qApp->setStyleSheet({});
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    QApplication::setPalette(QPalette());
    QApplication::setFont(startFont());
}

void become(const HostRow& host) {
    plainHost();
    if (host.hasStyle) QApplication::setStyle(new WideStyle);
    if (host.hasPalette) {
        QApplication::setPalette(onlyRed());
        QApplication::setPalette(onlyRed(), "QToolButton");
        QToolTip::setPalette(onlyRed());
    }
    if (host.hasFont) {
        QApplication::setFont(largeFont());
        QApplication::setFont(largeFont(), "QLineEdit");
    }
    qApp->setStyleSheet(QString::fromLatin1(host.sheet));
    QCoreApplication::processEvents();
}

QImage pictureOf(QWidget& widget) {
    QCoreApplication::processEvents();
    QImage picture = widget.grab().toImage();
    picture.setDevicePixelRatio(1);
    return picture;
}

/// Takes a picture of the next modal dialog that shows, and closes it; a button pressed first opens another one.
class DialogCamera {
public:
    explicit DialogCamera(QImage& picture, const char* pressed = nullptr) : m_picture(picture), m_pressed(pressed) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { look(); });
        m_timer.start(20);
    }

private:
    void look() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) return;
        if (const char* pressed = std::exchange(m_pressed, nullptr)) {
            auto* button = dialog->findChild<QPushButton*>(QString::fromLatin1(pressed));
            QMetaObject::invokeMethod(button, &QPushButton::click, Qt::QueuedConnection);
            return;
        }
        if (m_picture.isNull()) m_picture = pictureOf(*dialog);
        dialog->reject();
    }

    QImage& m_picture;
    const char* m_pressed;
    QTimer m_timer;
};

/// A window of its own, made under the host of the moment.
class Opened final : public FormTest {
public:
    Opened();
    void TestBody() override {}

    void showFilters();
    void showReport();
    Pictures views();
    Pictures everything();
    void addPopups(Pictures& pictures);
    void addViewerPopups(Pictures& pictures);
    void addDialogs(Pictures& pictures);
    form::RptStoc& report() { return window; }
    QWidget* findChild(const char* name) { return find<QWidget>(name); }

private:
    QImage popup(const std::function<void()>& open);
    viewer::ReportViewer& viewer() { return *find<viewer::ReportViewer>("CRW"); }
};

FakeAnswer invoices() {
    FakeAnswer answer;
    for (const QString& name : {u"TipRaport"_s, u"CodClient"_s, u"NumeClient"_s, u"DataDoc"_s, u"NumarFactura"_s})
        answer.columns.append({name});
    for (const QString& name : {u"ValoareNeta"_s, u"ValoareTVA"_s, u"ValoareBruta"_s})
        answer.columns.append({name, ColumnType::Decimal64, 2});
    answer.columns.append({u"Moneda"_s});
    for (const QString& name : {u"CursValutar"_s, u"ValoareTaxe"_s})
        answer.columns.append({name, ColumnType::Decimal64, 2});
    for (int firm = 10; firm < 70; ++firm)
        answer.rows.push_back({u"Furnizor"_s, u"F%1"_s.arg(firm), u"FIRMA %1"_s.arg(firm), u"05/07/2003"_s, u"100"_s,
                               u"10.00"_s, u"1.90"_s, u"11.90"_s, u"EUR"_s, u"4.97"_s, u"0.00"_s});
    return answer;
}

Opened::Opened() {
    connection->answer(u"AS TipRaport"_s, invoices());
    setUpFor(u"Import"_s);
    window.showNormal();
    // At full size the foot of a page, with its time, is out of sight.
    window.resize(1180, 600);
    QCoreApplication::processEvents();
}

void Opened::showFilters() {
    frame("frmEnable")->show();
    box("txtProducator")->setText(u"ALFA"_s);
    giveFocus("txtProducator");
    QCoreApplication::processEvents();
}

void Opened::showReport() {
    if (!viewer().hasReport()) {
        QTest::mouseClick(find<QWidget>("Raport"), Qt::LeftButton);
        ASSERT_TRUE(waitFor([this] { return viewer().hasReport() && !isShown("frmEnable"); }));
        QTest::keyClick(find<QWidget>("crwPages"), Qt::Key_0, Qt::ControlModifier);
    }
    frame("frmEnable")->hide();
    viewer().setFocus();
    QCoreApplication::processEvents();
}

Pictures Opened::views() {
    Pictures pictures;
    showReport();
    pictures["report"] = pictureOf(window);
    showFilters();
    pictures["filters"] = pictureOf(window);
    return pictures;
}

QImage Opened::popup(const std::function<void()>& open) {
    open();
    QCoreApplication::processEvents();
    QWidget* shown = QApplication::activePopupWidget();
    if (shown == nullptr) return {};
    const QImage picture = pictureOf(*shown);
    shown->close();
    QCoreApplication::processEvents();
    return picture;
}

void Opened::addPopups(Pictures& pictures) {
    showFilters();
    giveFocus("cmbCategorie");
    pictures["open list"] = popup([this] { list("cmbCategorie")->showPopup(); });
    giveFocus("Deladata");
    pictures["calendar"] = popup([this] { press(Qt::Key_F4); });
    giveFocus("txtProducator");
    pictures["menu of a field"] = popup([this] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, box("txtProducator")->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(box("txtProducator"), &event);
    });
    press(Qt::Key_Return);
    pictures["picker"] = pictureOf(window);
    press(Qt::Key_Escape);
}

void Opened::addViewerPopups(Pictures& pictures) {
    auto* pages = find<QWidget>("crwPagesViewport");
    pictures["menu of the viewer"] = popup([&] {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {50, 50}, pages->mapToGlobal(QPoint(50, 50)));
        QApplication::sendEvent(pages, &event);
    });
    pictures["list of sizes"] = popup([this] { find<QComboBox>("crwZoom")->showPopup(); });
    QToolTip::showText(window.mapToGlobal(QPoint(40, 40)), u"Exportă"_s, find<QWidget>("crwExport"));
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->inherits("QTipLabel") && widget->isVisible()) pictures["tip"] = pictureOf(*widget);
    QToolTip::hideText();
    window.resize(620, 500);
    pictures["narrow report"] = pictureOf(window);
    pictures["more commands"] = popup([this] {
        QTimer::singleShot(50, [this] {});
        auto* menu = find<QWidget>("crwMore")->findChild<QMenu*>();
        menu->popup(window.mapToGlobal(QPoint(20, 40)));
    });
    window.resize(1180, 600);
}

void Opened::addDialogs(Pictures& pictures) {
    const QString folder = QFileInfo(QString::fromLatin1(VELCORAN_TEST_DATABASE)).absolutePath();
    const QList<dialogs::OfferedFormat> formats{{31, u"PDF"_s, u"pdf"_s}, {36, u"Excel"_s, u"xlsx"_s}};
    for (const char* pressed : {static_cast<const char*>(nullptr), "browse"}) {
        dialogs::ExportDialog dialog(&window, formats, folder + u"/raport.pdf"_s);
        const DialogCamera camera(pictures[pressed == nullptr ? "export" : "choice of a file"], pressed);
        dialog.exec();
    }
    {
        dialogs::PrinterSetupDialog dialog(&window, {u"Birou"_s}, u"Birou"_s, u"Birou"_s, viewer().pageSetup());
        const DialogCamera camera(pictures["printer set-up"]);
        dialog.exec();
    }
    {
        dialogs::PrintRequest request{{}, u"raport.pdf"_s, 1, 0, 1, true};
        const DialogCamera camera(pictures["print"]);
        EXPECT_FALSE(dialogs::choosePrint(&window, 3, request));
    }
    {
        const DialogCamera camera(pictures["plain message"]);
        surroundings.showPlainMessage(window, u"75 - Fișierul nu poate fi scris."_s);
    }
    system::WorkProgress progress;
    progress.tell(4, 10);
    const DialogCamera camera(pictures["progress"]);
    form::Activity activity(window);
    const form::Activity::Work work(activity, [&progress] { progress.stop(); });
    dialogs::runWithProgress(window, activity, u"Se exportă…"_s, progress, [&] {
        while (!progress.isStopped()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
}

Pictures Opened::everything() {
    Pictures pictures = views();
    showReport();
    addViewerPopups(pictures);
    addPopups(pictures);
    addDialogs(pictures);
    return pictures;
}

void save(const std::string& name, const QImage& picture) {
    if (const QString folder = qEnvironmentVariable("VELCORAN_LOOK_PICTURES"); !folder.isEmpty())
        picture.save(folder + u'/' + QString::fromStdString(name) + u".png"_s);
}

/// Names of the pictures that are not the same, with the share of the pixels that differ.
std::vector<std::string> differences(const Pictures& expected, const Pictures& actual) {
    std::vector<std::string> names;
    for (const auto& [name, picture] : expected) {
        const auto place = actual.find(name);
        if (place != actual.end() && place->second == picture && !picture.isNull()) continue;
        names.push_back(name);
        save(name + " expected", picture);
        if (place != actual.end()) save(name + " actual", place->second);
    }
    return names;
}

class HostLook : public testing::Test {
protected:
    HostLook() {
        startFont();
        QApplication::setCursorFlashTime(0);
        // Qt makes a message at least as wide as its title in the application's font.
        QGuiApplication::setApplicationDisplayName(u"V"_s);
    }
    ~HostLook() override {
        plainHost();
        QToolTip::setPalette(m_tips);
        QApplication::setCursorFlashTime(m_flashTime);
        QGuiApplication::setApplicationDisplayName({});
    }

    QPalette m_tips = QToolTip::palette();
    int m_flashTime = QApplication::cursorFlashTime();
};

}  // namespace

TEST_F(HostLook, isNoneOfTheWindowsThatOpenUnderIt) {
    (void)Opened().everything();  // Qt's choice of a file remembers that it was open
    const Pictures expected = Opened().everything();
    EXPECT_GT(expected.size(), 15U);
    for (const auto& [name, picture] : expected) {
        EXPECT_FALSE(picture.isNull()) << name;
        save(name, picture);
    }
    for (const HostRow& host : kHosts) {
        become(host);
        EXPECT_EQ(differences(expected, Opened().everything()), std::vector<std::string>())
            << testing::PrintToString(host);
    }
}

TEST_F(HostLook, canChangeUnderAnOpenWindow) {
    Opened opened;
    const Pictures expected = opened.views();
    for (const HostRow& host : kHosts) {
        become(host);
        EXPECT_EQ(differences(expected, opened.views()), std::vector<std::string>()) << testing::PrintToString(host);
    }
    plainHost();
    EXPECT_EQ(differences(expected, opened.views()), std::vector<std::string>());
}

/// Widgets of the host beside the window, with everything that a host may have given to a widget.
class HostWindow final : public QWidget {
public:
    HostWindow() {
        auto* row = new QHBoxLayout(this);
        row->addWidget(new QLineEdit(u"cont"_s));
        row->addWidget(new QPushButton(u"Salvează"_s));
        row->addWidget(new QSpinBox);
        auto* box = new QComboBox;
        box->addItems({u"lei"_s, u"euro"_s});
        box->setStyleSheet(u"QComboBox{color:green}"_s);
        row->addWidget(box);
        auto* styled = new QCheckBox(u"plătit"_s);
        m_style.reset(QStyleFactory::create(u"Windows"_s));
        styled->setStyle(m_style.get());
        row->addWidget(styled);
        show();
    }

    /// What can be asked about them without looking.
    [[nodiscard]] QStringList facts() const {
        QStringList facts{qApp->styleSheet(), QString::number(quintptr(QApplication::style()), 16),
                          QApplication::font().toString(), QString::number(QApplication::palette().cacheKey()),
                          QApplication::font("QLineEdit").toString()};
        for (const QWidget* widget : findChildren<QWidget*>())
            facts << widget->styleSheet() << widget->font().toString() << QString::number(quintptr(widget->style()), 16)
                  << QString::number(widget->palette().cacheKey())
                  << QString::number(widget->testAttribute(Qt::WA_StyleSheet))
                  << QString::number(widget->testAttribute(Qt::WA_SetStyle));
        return facts;
    }

private:
    std::unique_ptr<QStyle> m_style;
};

TEST_F(HostLook, staysAsItIs) {
    HostWindow hostWindow;
    for (const HostRow& host : kHosts) {
        become(host);
        hostWindow.activateWindow();
        const QImage before = pictureOf(hostWindow);
        const QStringList facts = hostWindow.facts();
        {
            Opened opened;
            (void)opened.everything();
            EXPECT_EQ(hostWindow.facts(), facts) << testing::PrintToString(host);
            opened.report().close();
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(hostWindow.facts(), facts) << testing::PrintToString(host);
        hostWindow.activateWindow();
        EXPECT_TRUE(pictureOf(hostWindow) == before) << testing::PrintToString(host);
    }
}

desktop::Desktop darkDesktop() {
    desktop::Desktop desktop = desktop::userDesktop();
    desktop.palette = QPalette(QColor(49, 54, 59), QColor(42, 46, 50));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText, QPalette::HighlightedText})
        desktop.palette.setColor(role, QColor(252, 252, 252));
    desktop.palette.setColor(QPalette::Base, QColor(27, 30, 32));
    desktop.palette.setColor(QPalette::ToolTipBase, QColor(49, 54, 59));
    desktop.palette.setColor(QPalette::Highlight, QColor(61, 174, 233));
    return desktop;
}

/// A part of a window in the points of its picture.
QRect scaled(const QRect& part) {
    const int ratio = qRound(qApp->devicePixelRatio());
    return {part.topLeft() * ratio, part.size() * ratio};
}

/// The colour that most of a picture's part has.
QColor groundOf(const QImage& picture, const QRect& part) {
    std::map<QRgb, int> counts;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x) ++counts[picture.pixel(x, y)];
    const auto most = std::ranges::max_element(counts, {}, [](const auto& count) { return count.second; });
    return QColor(most->first);
}

TEST_F(HostLook, isTheUsersDesktop) {
    (void)Opened().everything();
    const Pictures light = Opened().everything();
    Opened opened;
    (void)opened.views();
    const desktop::StandInDesktop stand(darkDesktop());
    QEvent change(QEvent::ThemeChange);
    QApplication::sendEvent(&opened.report(), &change);
    const Pictures changed = opened.everything();
    const Pictures dark = Opened().everything();
    EXPECT_EQ(differences(dark, changed), std::vector<std::string>());
    for (const auto& [name, picture] : dark) save("dark " + name, picture);

    // The panel and what opens over it, and the paper, are the same; everything else is dark.
    const QRect panel = scaled(opened.findChild("frmEnable")->geometry());
    for (const char* name : {"filters", "picker"}) EXPECT_EQ(dark.at(name).copy(panel), light.at(name).copy(panel));
    for (const char* name : {"open list", "calendar", "menu of a field"}) EXPECT_EQ(dark.at(name), light.at(name));
    const QRect paper = scaled({500, 200, 400, 300});
    EXPECT_EQ(dark.at("report").copy(paper), light.at("report").copy(paper));
    const QRect toolbar = scaled({0, 0, 900, 30});
    const QRect tree = scaled({2, 100, 180, 400});
    for (const QRect& part : {toolbar, tree}) EXPECT_LT(groundOf(dark.at("report"), part).lightness(), 90);
    Opened empty;
    EXPECT_LT(groundOf(pictureOf(empty.report()), scaled({800, 100, 300, 400})).lightness(), 90);
    for (const char* name : {"export", "choice of a file", "printer set-up", "print", "plain message", "progress",
                             "menu of the viewer", "list of sizes", "tip", "more commands"})
        EXPECT_LT(groundOf(dark.at(name), dark.at(name).rect()).lightness(), 90) << name;
    for (const HostRow& host : kHosts) {
        become(host);
        EXPECT_EQ(differences(dark, Opened().everything()), std::vector<std::string>()) << testing::PrintToString(host);
    }
}

}  // namespace velcoran::tests
