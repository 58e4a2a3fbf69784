// A host whose window lives on a thread that is not the process's first, in every order in which thread, window,
// library and process may end.
//   thread_host LIBRARY ENDING
#include "fixed_connection.h"
#include "loaded_component.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <string_view>
#include <thread>

#include <unistd.h>

namespace {

using hosts::expect;
using hosts::LoadedComponent;
namespace com = velcoran::com;

constexpr int kRefused = 5;

/// Functions of Qt's that a host without Qt borrows from the libraries that came with the component.
template <class Function>
Function* borrow(const char* library, const char* name) {
    void* opened = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
    expect(opened != nullptr, library);
    auto* function = reinterpret_cast<Function*>(dlsym(opened, name));
    expect(function != nullptr, name);
    dlclose(opened);
    return function;
}

void handleEvents() {
    constexpr int kAllEvents = 0, kMilliseconds = 20;
    borrow<void(int, int)>("libQt6Core.so.6",
                           "_ZN16QCoreApplication13processEventsE6QFlagsIN10QEventLoop17ProcessEventsFlagEEi")(
        kAllEvents, kMilliseconds);
}

void closeWindow() {
    borrow<void()>("libQt6Widgets.so.6", "_ZN12QApplication15closeAllWindowsEv")();
    handleEvents();
}

com::Ref<hosts::FixedConnection> newConnection() {
    return com::Ref<hosts::FixedConnection>::adopt(new hosts::FixedConnection);
}

void open(const LoadedComponent& component) {
    component.open(u"Import", newConnection().get());
    handleEvents();
}

/// A call that is refused, with a description that says why.
void expectRefused(const LoadedComponent& component, std::u16string_view why) {
    const com::HResult result =
        component.object().Incarca(com::Text(u"Import").get(), newConnection().get(), 46096, com::Text(u"").get());
    std::int32_t number = 0;
    com::Text description, source;
    com::Ref<velcoran::_clsVelcoran>(&component.object())
        .as<com::IErrorSource>()
        ->LastError(&number, description.receive(), source.receive());
    expect(com::failed(result) && number == kRefused, "the call is refused with 5");
    expect(description.view().find(why) != std::u16string_view::npos, "its description says why");
}

void onThread(const std::function<void()>& work) { std::thread(work).join(); }

// --- endings; each returns to the end of the process unless it ends it

void unloadAndEnd(const char* library) {
    onThread([library] {
        for (int round = 0; round < 2; ++round) {
            LoadedComponent component(library);
            open(component);
            closeWindow();
            component.unload(library);
        }
    });
}

void unloadAndComeBack(const char* library) {
    unloadAndEnd(library);
    const auto again = [library] {
        LoadedComponent component(library);
        expectRefused(component, u"alt fir de execuție");
        component.unload(library);
    };
    onThread(again);
    again();
}

void endWithWindow(const char* library) {
    LoadedComponent component(library);
    onThread([&component] { open(component); });
    expectRefused(component, u"s-a încheiat");
    onThread([&component] { expectRefused(component, u"s-a încheiat"); });
    component.release();
    expect(!component.canUnload(), "the window keeps the library");
}

void endWithoutUnload(const char* library) {
    LoadedComponent component(library);
    onThread([&component] {
        open(component);
        closeWindow();
    });
    expectRefused(component, u"s-a încheiat");
    component.release();
    expect(!component.canUnload(), "what only the ended thread could destroy keeps the library");
}

void callMeanwhile(const char* library) {
    onThread([library] {
        LoadedComponent component(library);
        open(component);
        onThread([&component] { expectRefused(component, u"alt fir de execuție"); });
        open(component);
        closeWindow();
        component.unload(library);
    });
}

void callFromSecondThread(const char* library) {
    LoadedComponent component(library);
    open(component);
    onThread([&component] { expectRefused(component, u"alt fir de execuție"); });
    closeWindow();
    component.unload(library);
}

/// The window's thread goes on while another one ends the process, at no moment in particular.
void exitBeside(const char* library, void (*work)(const LoadedComponent&)) {
    static LoadedComponent component(library);
    static std::atomic<bool> isOpen = false;
    std::thread([work] {
        open(component);
        isOpen = true;
        while (true) work(component);
    }).detach();
    while (!isOpen) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(getpid() % 97));
    std::exit(0);
}

void exitBesideLoop(const char* library) {
    exitBeside(library, [](const LoadedComponent&) { handleEvents(); });
}

void exitBesideWork(const char* library) {
    exitBeside(library, [](const LoadedComponent& component) {
        open(component);
        closeWindow();
    });
}

void exitInside(const char* library) {
    static LoadedComponent component(library);
    onThread([] {
        open(component);
        std::exit(0);
    });
}

struct EndingRow {
    std::string_view name;
    void (*run)(const char* library);
};

constexpr EndingRow kEndings[] = {
    {"unload-and-end", unloadAndEnd},     {"unload-and-come-back", unloadAndComeBack},
    {"end-with-window", endWithWindow},   {"end-without-unload", endWithoutUnload},
    {"call-meanwhile", callMeanwhile},    {"call-from-second-thread", callFromSecondThread},
    {"exit-beside-loop", exitBesideLoop}, {"exit-beside-work", exitBesideWork},
    {"exit-inside", exitInside},
};

}  // namespace

int main(int argc, char** argv) {
    expect(argc == 3, "two arguments, the library and the ending");
    for (const EndingRow& row : kEndings)
        if (row.name == argv[2]) {
            row.run(argv[1]);
            return 0;
        }
    for (const EndingRow& row : kEndings) std::fprintf(stderr, "%s\n", row.name.data());
    return 1;
}
