// What hosts in other toolkits do alike: open the window beside their own, work both, close it, unload the library.
#pragma once

#include "fixed_connection.h"
#include "loaded_component.h"
#include "rounds.h"

#include <velcoran/object.h>
#include <velcoran/window.h>

#include <functional>

namespace hosts {

class Listener final : public velcoran::com::HostObject<velcoran::IWindowEvents> {
public:
    com::HResult Closed() override {
        ++closed;
        return com::kOk;
    }
    com::HResult ConnectionReleased(velcoran::IConnection*) override {
        ++released;
        return com::kOk;
    }
    com::HResult OpenDocument(com::Bstr, com::Bstr, com::Bstr) override { return com::kOk; }
    int closed = 0;
    int released = 0;
};

/// Handlers of X errors belong to the host, whatever library set them.
inline std::string xHandlers() {
    void* library = dlopen("libX11.so.6", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) return "none";
    std::string text;
    for (const char* name : {"_XErrorFunction", "_XIOErrorFunction"})
        text += std::to_string(*static_cast<std::uintptr_t*>(dlsym(library, name))) + " ";
    dlclose(library);
    return text;
}

/// @param runLoop  lets the toolkit's own loop run for so many milliseconds
inline void work(const char* library, const std::function<void(int)>& runLoop, bool needsDispatch) {
    const auto listener = com::Ref<Listener>::adopt(new Listener);
    const auto connection = com::Ref<FixedConnection>::adopt(new FixedConnection);
    LoadedComponent component(library);
    const auto live = [&](int milliseconds) {
        for (int done = 0; done < milliseconds; done += 10) {
            runLoop(10);
            if (needsDispatch) (void)component.window()->Dispatch(1);
        }
    };
    expect(component.window()->Advise(listener.get()) == com::kOk, "the window can be listened to");
    component.open(u"Import", connection.get());
    live(60);
    component.open(u"Export", connection.get());
    live(20);
    expect(component.window()->Close() == com::kOk, "the window closes");
    live(60);
    expect(listener->closed == 1 && listener->released == 1, "the host has heard of the close");
    expect(component.window()->Advise(nullptr) == com::kOk, "nobody listens any more");
    component.unload(library);
    live(0);
    runLoop(10);
}

inline int runHost(int argc, char** argv, const std::function<void(int)>& runLoop, bool needsDispatch) {
    expect(argc == 3, "two arguments, the library and the number of rounds");
    work(argv[1], runLoop, needsDispatch);  // what Qt sets up once for the process is not a round's
    const std::string handlers = xHandlers();
    runRounds(std::atoi(argv[2]), [&] { work(argv[1], runLoop, needsDispatch); });
    expect(xHandlers() == handlers, "the handlers of X errors are as they were");
    return 0;
}

}  // namespace hosts
