// The component as any host loads it: through the loader and the four entry points.
#pragma once

#include <velcoran/velcoran.h>
#include <velcoran/window.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <dlfcn.h>

namespace hosts {

namespace com = velcoran::com;

inline void expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::exit(1);
}

/// True while any part of the file is mapped into the process.
inline bool isMapped(const std::string& file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(file) != std::string::npos) return true;
    return false;
}

/// One loading of the library with one object of its class.
class LoadedComponent {
public:
    explicit LoadedComponent(const char* path) : m_library(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
        if (m_library == nullptr) std::fprintf(stderr, "%s\n", dlerror());
        expect(m_library != nullptr, "the library loads");
        com::Ref<com::IClassFactory> factory;
        expect(entryPoint<decltype(DllGetClassObject)>("DllGetClassObject")(
                   velcoran::kClassVelcoran, com::IClassFactory::kId, factory.receiveVoid()) == com::kOk,
               "a class factory");
        expect(factory->CreateInstance(nullptr, velcoran::_clsVelcoran::kId, m_object.receiveVoid()) == com::kOk,
               "an object");
    }
    LoadedComponent(const LoadedComponent&) = delete;
    LoadedComponent& operator=(const LoadedComponent&) = delete;
    ~LoadedComponent() = default;

    [[nodiscard]] velcoran::_clsVelcoran& object() const { return *m_object; }
    [[nodiscard]] bool canUnload() const {
        return entryPoint<decltype(DllCanUnloadNow)>("DllCanUnloadNow")() == com::kOk;
    }
    /// The window's own interface; let go of it before the library.
    [[nodiscard]] com::Ref<velcoran::IReportWindow> window() const {
        com::Ref<velcoran::IReportWindow> window;
        expect(entryPoint<decltype(DllGetClassObject)>("DllGetClassObject")(
                   velcoran::kClassVelcoran, velcoran::IReportWindow::kId, window.receiveVoid()) == com::kOk,
               "the window's interface");
        return window;
    }
    /// Calls the component as a host does, and ends the host's program when the call fails.
    void open(const char16_t* kind, velcoran::IConnection* connection) const {
        constexpr com::Date kWorkingDate = 46096;  // 15 March 2026
        const com::HResult result =
            m_object->Incarca(com::Text(kind).get(), connection, kWorkingDate, com::Text(u"").get());
        if (com::failed(result)) std::fprintf(stderr, "error %d\n", com::numberOfResult(result));
        expect(com::succeeded(result), "the window opens");
    }
    void release() { m_object = nullptr; }
    /// Releases the object and takes the library out of the process.
    void unload(const std::string& file) {
        expect(!canUnload(), "the object keeps the library");
        release();
        leave(file);
    }
    /// Takes the library out of the process, its object released before.
    void leave(const std::string& file) {
        expect(canUnload(), "nothing keeps the library");
        expect(dlclose(m_library) == 0, "the library closes");
        expect(!isMapped(file), "the library is gone");
    }

private:
    template <class Function>
    [[nodiscard]] Function* entryPoint(const char* name) const {
        auto* function = reinterpret_cast<Function*>(dlsym(m_library, name));
        expect(function != nullptr, name);
        return function;
    }

    void* m_library;
    com::Ref<velcoran::_clsVelcoran> m_object;
};

}  // namespace hosts
