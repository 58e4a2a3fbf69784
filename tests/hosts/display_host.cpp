// A host without Qt that calls the component on whatever display its surroundings name, and looks at what that changed
// in its process.
//   display_host LIBRARY NUMBER [handlers|begun]
// NUMBER is the error that the call is to fail with: 5 where no window can be shown, 91 where one was, since no
// connection is handed over. With "handlers" the host has handlers of X errors of its own; with "begun" Qt has got as
// far as to open things that stay.
#include "loaded_component.h"
#include "process_facts.h"

#include <chrono>
#include <string_view>
#include <thread>

namespace {

using hosts::expect;
namespace com = velcoran::com;

using XHandler = int (*)(void*, void*);

int hostHandler(void*, void*) { return 0; }

/// Sets a handler of the X library's, which the host opens itself, and returns the one that was there.
XHandler setHandler(const char* function) {
    static void* library = dlopen("libX11.so.6", RTLD_NOW | RTLD_GLOBAL);
    expect(library != nullptr, "libX11");
    return reinterpret_cast<XHandler (*)(XHandler)>(dlsym(library, function))(hostHandler);
}

void expectSame(std::map<std::string, std::string> before, std::map<std::string, std::string> after, bool hasQt) {
    // An open window has a connection and Qt's threads.
    for (const char* fact : {"descriptors", "threads"})
        if (hasQt) before.erase(fact), after.erase(fact);
    for (const auto& [name, value] : after)
        if (before[name] != value)
            std::fprintf(stderr, "%s\n  was %s\n  is  %s\n", name.c_str(), before[name].c_str(), value.c_str());
    expect(before == after, "the process is as it was");
}

}  // namespace

int main(int argc, char** argv) {
    expect(argc >= 3, "the library and the number of the error to expect");
    const std::int32_t expected = std::atoi(argv[2]);
    const std::string_view mode = argc > 3 ? argv[3] : "";
    const bool hasHandlers = mode == "handlers";
    const bool hasQt = expected != 5 || mode == "begun";
    constexpr const char* kSetters[] = {"XSetErrorHandler", "XSetIOErrorHandler"};
    if (hasHandlers)
        for (const char* setter : kSetters) setHandler(setter);
    setenv("DESKTOP_STARTUP_ID", "host_TIME1", 1);
    const hosts::LoadedComponent component(argv[1]);
    const auto before = hosts::processFacts();
    const com::HResult result =
        component.object().Incarca(com::Text(u"Import").get(), nullptr, 46096, com::Text(u"").get());
    auto after = hosts::processFacts();
    // The C library's resolver keeps its thread for a second.
    for (int waited = 0; waited < 30 && !hasQt && after["threads"] != before.at("threads"); ++waited) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        after = hosts::processFacts();
    }
    std::int32_t number = 0;
    com::Text description, source;
    const auto errors = com::Ref<velcoran::_clsVelcoran>(&component.object()).as<com::IErrorSource>();
    errors->LastError(&number, description.receive(), source.receive());
    if (number != expected) std::fprintf(stderr, "error %d in place of %d\n", number, expected);
    expect(number == expected && com::numberOfResult(result) == expected, "the error's number");
    expect(!description.view().empty(), "its words");
    expectSame(before, after, hasQt);
    if (hasHandlers)
        for (const char* setter : kSetters) expect(setHandler(setter) == hostHandler, setter);
    return 0;
}
