#include "own_application.h"

#include "base/error.h"
#include "system/display/display.h"
#include "system/display/qt_platforms.h"

#include <QApplication>
#include <QThread>

#include <array>
#include <clocale>
#include <string>
#include <utility>
#include <vector>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace velcoran::component {

namespace {

using system::DisplayProblem;

// The application object keeps references to both for its lifetime, which may be that of the process. Its own arguments
// it takes out while it is made.
int argumentCount = 0;
char programName[] = "velcoran";
std::array<char*, 8> arguments{};

/// An application object takes over the locale of the user's environment for the whole process, which is the host's to
/// decide: its numbers would change their decimal sign.
class KeptLocale {
public:
    KeptLocale() : m_locale(std::setlocale(LC_ALL, nullptr)) {}
    ~KeptLocale() { std::setlocale(LC_ALL, m_locale.c_str()); }
    KeptLocale(const KeptLocale&) = delete;
    KeptLocale& operator=(const KeptLocale&) = delete;

private:
    std::string m_locale;
};

/// Qt's platforms take what started the program for their first window, and out of the environment.
class KeptEnvironment {
public:
    KeptEnvironment() {
        for (const char* name : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"})
            if (qEnvironmentVariableIsSet(name)) m_values.emplace_back(name, qgetenv(name));
    }
    ~KeptEnvironment() {
        for (const auto& [name, value] : m_values)
            if (!qEnvironmentVariableIsSet(name)) qputenv(name, value);
    }
    KeptEnvironment(const KeptEnvironment&) = delete;
    KeptEnvironment& operator=(const KeptEnvironment&) = delete;

private:
    std::vector<std::pair<const char*, QByteArray>> m_values;
};

/// Qt's platform puts its own handlers of X errors in the place of a host's. A host that has not loaded the library of
/// the X protocol has none.
class KeptXHandlers {
public:
    KeptXHandlers() : m_library(dlopen("libX11.so.6", RTLD_LAZY | RTLD_NOLOAD)) {
        if (m_library == nullptr) return;
        m_error = handler("_XErrorFunction");
        m_inputOutput = handler("_XIOErrorFunction");
    }
    ~KeptXHandlers() {
        if (m_library == nullptr) return;
        setHandler("XSetErrorHandler", m_error);
        setHandler("XSetIOErrorHandler", m_inputOutput);
        dlclose(m_library);
    }
    KeptXHandlers(const KeptXHandlers&) = delete;
    KeptXHandlers& operator=(const KeptXHandlers&) = delete;

private:
    using Handler = int (*)(void*, void*);

    [[nodiscard]] Handler handler(const char* variable) const {
        const auto* place = static_cast<const Handler*>(dlsym(m_library, variable));
        return place == nullptr ? nullptr : *place;
    }
    void setHandler(const char* function, Handler value) const {
        if (const auto set = reinterpret_cast<Handler (*)(Handler)>(dlsym(m_library, function))) set(value);
    }

    void* m_library;
    Handler m_error = nullptr;  ///< null for the library's own
    Handler m_inputOutput = nullptr;
};

constexpr system::ProblemWords kProblems{{{
    {DisplayProblem::UnknownPlatform, u"platformă Qt necunoscută sau care nu se poate verifica"},
    {DisplayProblem::NoPlugin, u"modulul Qt al platformei lipsește sau nu se poate încărca"},
    {DisplayProblem::NoServer, u"niciun server grafic la această adresă"},
    {DisplayProblem::NoAnswer, u"serverul grafic nu răspunde"},
    {DisplayProblem::Refusal, u"serverul grafic refuză conexiunea"},
    {DisplayProblem::BrokenOff, u"serverul grafic întrerupe conexiunea"},
    {DisplayProblem::NoScreen, u"serverul grafic nu are unde arăta o fereastră"},
    {DisplayProblem::ForeignRights, u"procesul rulează cu drepturile altui utilizator"},
    {DisplayProblem::NoDescriptors, u"procesul are prea multe fișiere deschise"},
    {DisplayProblem::QtFailure, u"serverul grafic nu a mai răspuns"},
}}};

[[noreturn]] void refuse(const QString& words) {
    throw base::Error(base::kInvalidProcedureCall, words, u"Velcoran.clsVelcoran"_s);
}

[[noreturn]] void refuse(const QList<system::DisplayFault>& faults) {
    QStringList words;
    for (const system::DisplayFault& fault : faults) words.append(system::wordsOf(fault, kProblems));
    refuse(u"Nu există un ecran pe care să se deschidă fereastra raportului (%1)."_s.arg(words.join(u"; "_s)));
}

/// The thread that Qt is bound to for the process's life: the first that made an object of Qt's. Qt tells it to itself
/// alone; null where it does not, or is not bound yet.
QThread* threadOfQt() {
    Dl_info place{};
    if (dladdr(reinterpret_cast<const void*>(&qVersion), &place) == 0) return nullptr;
    void* library = dlopen(place.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) return nullptr;
    const auto ask = reinterpret_cast<QThread* (*)()>(dlsym(library, "_ZN23QCoreApplicationPrivate10mainThreadEv"));
    QThread* thread = ask == nullptr ? nullptr : ask();
    dlclose(library);
    return thread;
}

constexpr const char* kUsers = "velcoranUsers";

/// Copies of the library that have a window object.
int userCount() { return QCoreApplication::instance()->property(kUsers).toInt(); }

/// Qt frees what it binds to the thread of its application object once with the thread and once with the process. When
/// the thread ends first, objects of Qt's own are left with nothing. An object of the thread that is never destroyed
/// keeps it; Qt owns it, for it outlives this library.
void keepThreadOfQt() {
    QThread* thread = QThread::currentThread();
    const QString name = QString::fromLatin1("velcoran keeps the thread");  // no literal: it would go with the library
    if (thread->findChild<QObject*>(name, Qt::FindDirectChildrenOnly) != nullptr) return;
    auto* keeper = new QObject(thread);
    keeper->setObjectName(name);
}

}  // namespace

void OwnApplication::open() {
    QThread* bound = threadOfQt();
    if (bound != nullptr && bound != QThread::currentThread())
        refuse(
            u"Qt ține în acest proces de alt fir de execuție, iar ferestre poate avea numai acela: fereastra "
            "raportului nu se poate deschide pe firul care a apelat."_s);
    system::DisplaySearch search = system::findDisplay(system::qtPlatformList());
    if (!search.display) refuse(search.faults);
    {
        const KeptLocale locale;
        const KeptEnvironment environment;
        const KeptXHandlers handlers;
        arguments = {programName};
        argumentCount = 1;
        for (QByteArray& word : search.display->arguments) arguments.at(argumentCount++) = word.data();
        m_application = new QApplication(argumentCount, arguments.data());
    }
    keepThreadOfQt();
    if (!system::isOpen(*search.display)) {
        close();
        refuse({{DisplayProblem::QtFailure, search.display->platform}});
    }
    // The process belongs to the host: closing the report window does not end it.
    QApplication::setQuitOnLastWindowClosed(false);
    m_exitStop.watch(m_application);
}

bool OwnApplication::canClose() const {
    return m_application == nullptr || !QGuiApplication::platformName().startsWith("wayland"_L1);
}

void OwnApplication::join() { QCoreApplication::instance()->setProperty(kUsers, userCount() + 1); }

void OwnApplication::leave() {
    if (QCoreApplication* application = QCoreApplication::instance()) application->setProperty(kUsers, userCount() - 1);
}

bool OwnApplication::isShared() { return userCount() > 1; }

void OwnApplication::close() {
    m_exitStop.leave();
    delete std::exchange(m_application, nullptr);
}

}  // namespace velcoran::component
