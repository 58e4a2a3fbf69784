#include "rpt_stoc.h"

#include "controls/input/second_press.h"
#include "desktop/own_look.h"
#include "form/busy/blocked.h"
#include "form/busy/held_keys.h"
#include "form/rules/layout.h"
#include "lasting_parts.h"
#include "loaded_window.h"
#include "setup.h"
#include "window_icon.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QWindow>

#include <optional>
#include <vector>

namespace velcoran::form {

using namespace Qt::StringLiterals;

namespace {

/// Posted to the window by the window alone, so that no number has to be asked for: Qt gives none back.
constexpr auto kDestroyControls = static_cast<QEvent::Type>(QEvent::User + 1);

}  // namespace

class RptStoc::Private {
public:
    Private(RptStoc& owner, Surroundings& outside)
        : m_window(owner), m_look(owner), lasting(owner, outside, [this] { onIdle(); }) {}

    void requireIdle() const;
    void load();
    void setUp(const SetupArguments& arguments);
    void unload();
    void destroyRetired();
    void followScreen();
    /// Pixels an inch that the window's lengths are counted with.
    [[nodiscard]] double density() const {
        return loaded ? loaded->controls().density() : m_window.screen()->logicalDotsPerInchX();
    }

private:
    RptStoc& m_window;
    desktop::OwnLook m_look;

public:
    LastingParts lasting;
    std::unique_ptr<LoadedWindow> loaded;
    bool isSettingUp = false;
    bool isScreenFollowed = false;

private:
    void onIdle();

    controls::SecondPressGuard m_secondPress;
    std::optional<HeldKeys> m_heldKeys;  ///< while the window is loaded
    /// Controls of closed windows, kept until no handler of theirs can be running any more.
    std::vector<std::unique_ptr<LoadedWindow>> m_retired;
};

void RptStoc::Private::requireIdle() const {
    if (isSettingUp || lasting.activity.isRunning())
        throw base::Error(base::kInvalidProcedureCall, u"Fereastra raportului este ocupată."_s);
    if (isBlocked(m_window))
        throw base::Error(base::kInvalidProcedureCall,
                          u"Un dialog al programului gazdă este deschis: fereastra raportului nu s-ar putea folosi."_s);
}

void RptStoc::Private::load() {
    destroyRetired();
    m_window.setWindowTitle(kDesignedCaption.toString());
    m_window.setWindowState(Qt::WindowNoState);
    const double density = m_window.screen()->logicalDotsPerInchX();
    m_window.resize(kDesignedWidth.toPixels(density), kDesignedHeight.toPixels(density));
    loaded = std::make_unique<LoadedWindow>(m_window, density, lasting, [this] { m_window.CloseForm(); });
    loaded->controls().followSize(m_window.size());
    m_heldKeys.emplace(
        m_window, [this] { return loaded->isLoading(); }, [this] { loaded->stopReport(); });
}

void RptStoc::Private::setUp(const SetupArguments& arguments) {
    runSetup(loaded->controls(), lasting.members, lasting.activity, lasting.runner, lasting.surroundings, arguments);
}

void RptStoc::Private::unload() {
    if (!loaded) return;
    m_heldKeys.reset();
    m_secondPress.arm();  // a double click on a button that closes is not meant for the host's window behind
    std::unique_ptr<LoadedWindow> old = std::move(loaded);
    old->detach();
    lasting.hourglass.reset();
    m_window.hide();
    lasting.surroundings.windowClosed();
    lasting.members.release();
    m_retired.push_back(std::move(old));
    QCoreApplication::postEvent(&m_window, new QEvent(kDestroyControls));
}

/// Inside a handler nothing is destroyed: the control whose handler closed the window has still to return from it.
void RptStoc::Private::destroyRetired() {
    if (lasting.handlers.isIdle()) m_retired.clear();
}

void RptStoc::Private::onIdle() {
    if (!lasting.activity.isRunning() && lasting.activity.takeClosing()) unload();
    if (!m_retired.empty()) QCoreApplication::postEvent(&m_window, new QEvent(kDestroyControls));
}

void RptStoc::Private::followScreen() {
    if (!loaded) return;
    const double density = m_window.screen()->logicalDotsPerInchX();
    if (qFuzzyCompare(density, loaded->controls().density())) return;
    loaded->controls().setDensity(density);
    loaded->controls().followSize(m_window.size());
}

RptStoc::RptStoc(Surroundings& surroundings)
    : QWidget(nullptr, Qt::Window), m_private(std::make_unique<Private>(*this, surroundings)) {
    setObjectName(u"RptStoc"_s);
    // Whether the host's program ends with its last window is the host's business.
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(kDesignedCaption.toString());
    setWindowIcon(makeWindowIcon());
}

RptStoc::~RptStoc() {
    m_private->unload();
    m_private->destroyRetired();
}

void RptStoc::setPriza(db::Connection priza) {
    m_private->requireIdle();
    m_private->lasting.members.Priza = std::move(priza);
}

bool RptStoc::isLoaded() const { return m_private->loaded != nullptr; }

bool RptStoc::isInUse() const {
    return isLoaded() || !m_private->lasting.handlers.isIdle() || m_private->lasting.activity.isRunning();
}

void RptStoc::Incarca(const QString& argTipRaport, QDate DataProgram, const QString& Soc) {
    m_private->requireIdle();
    if (!isLoaded()) m_private->load();
    const HandlerGuard::Scope scope(m_private->lasting.handlers);
    const QScopedValueRollback settingUp(m_private->isSettingUp, true);
    m_private->loaded->endStanding();
    m_private->setUp({argTipRaport, DataProgram, Soc});
    if (m_private->lasting.activity.isClosing()) throw base::Cancelled();
}

void RptStoc::CloseForm() {
    if (m_private->isSettingUp || m_private->lasting.activity.isRunning()) {
        m_private->lasting.activity.close();
    } else {
        m_private->unload();
    }
}

bool RptStoc::event(QEvent* event) {
    if (event->type() == kDestroyControls) {
        m_private->destroyRetired();
        return true;
    }
    if (event->type() == QEvent::Show && !m_private->isScreenFollowed && windowHandle() != nullptr) {
        m_private->isScreenFollowed = true;
        connect(windowHandle(), &QWindow::screenChanged, this, [this] { m_private->followScreen(); });
    }
    return QWidget::event(event);
}

void RptStoc::closeEvent(QCloseEvent* event) {
    CloseForm();
    event->setAccepted(!isLoaded());
}

void RptStoc::resizeEvent(QResizeEvent*) {
    m_private->lasting.handlers.run([this] {
        if (isLoaded()) m_private->loaded->controls().followSize(size());
    });
}

void RptStoc::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), QColor::fromRgb(kWindowColour.toRgb())); }

int RptStoc::innerWidth() const { return base::Twips::fromPixels(width(), m_private->density()).value; }

int RptStoc::innerHeight() const { return base::Twips::fromPixels(height(), m_private->density()).value; }

QString RptStoc::pointer() const { return m_private->lasting.hourglass.isSet() ? u"hourglass"_s : u"default"_s; }

QString RptStoc::sTipRaport() const { return m_private->lasting.members.sTipRaport.text; }

int RptStoc::iAn() const { return m_private->lasting.members.iAn; }

QString RptStoc::sSoc() const { return m_private->lasting.members.sSoc; }

bool RptStoc::bRaportIncarcat() const { return m_private->lasting.members.bRaportIncarcat; }

QString RptStoc::sCodProdus() const { return m_private->lasting.members.codes[filters::CodeVariable::sCodProdus]; }

QString RptStoc::sCodProducator() const {
    return m_private->lasting.members.codes[filters::CodeVariable::sCodProducator];
}

QString RptStoc::sCodClient() const { return m_private->lasting.members.codes[filters::CodeVariable::sCodClient]; }

QString RptStoc::sCodAgent() const { return m_private->lasting.members.codes[filters::CodeVariable::sCodAgent]; }

QString RptStoc::sCautare() const { return m_private->lasting.members.sCautare; }

bool RptStoc::hasPriza() const { return !m_private->lasting.members.Priza.isNull(); }

QVariant RptStoc::rptFacturi() const {
    const auto& report = m_private->lasting.members.rptFacturi;
    return report ? QVariant(report->name()) : QVariant();
}

bool RptStoc::hasLookupRows() const { return m_private->lasting.members.rsLookup != nullptr; }

bool RptStoc::hasMesaje() const { return static_cast<bool>(m_private->lasting.members.objMesaje); }

}  // namespace velcoran::form
