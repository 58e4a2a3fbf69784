// A host's message class in a library of the host's: it writes what it shows into the file that HOST_MESSAGES_FILE
// names, or fails, or throws, as HOST_MESSAGES_MODE says.
#include "hosts/counted.h"

#include <velcoran/mesaje.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace com = velcoran::com;

namespace {

struct Messages final : hosts::Counted<velcoran::IMesaje> {
    Messages() : Counted({velcoran::IMesaje::kId}) {}
    com::HResult Afiseaza(com::Bstr text, std::int16_t style, std::int16_t, com::Bstr, std::int32_t, std::int32_t,
                          std::int32_t*) override {
        const std::string_view mode = std::getenv("HOST_MESSAGES_MODE");
        if (mode == "throws") throw std::runtime_error("the host's dialog is broken");
        if (mode == "fails") return com::kUnspecifiedFailure;
        std::ofstream(std::getenv("HOST_MESSAGES_FILE")) << com::textLength(text) << ' ' << style;
        return com::kOk;
    }
};

struct Factory final : hosts::Counted<com::IClassFactory> {
    Factory() : Counted({com::IClassFactory::kId}) {}
    com::HResult CreateInstance(com::IUnknown*, const com::Guid& id, void** object) override {
        auto* messages = new Messages;
        const com::HResult result = messages->QueryInterface(id, object);
        messages->Release();
        return result;
    }
    com::HResult LockServer(std::int32_t) override { return com::kOk; }
};

}  // namespace

extern "C" {
__attribute__((visibility("default"))) com::HResult DllGetClassObject(const com::Guid& classId, const com::Guid& id,
                                                                      void** object) {
    if (classId != velcoran::kClassMesaje) return com::kClassNotAvailable;
    auto* factory = new Factory;
    const com::HResult result = factory->QueryInterface(id, object);
    factory->Release();
    return result;
}
__attribute__((visibility("default"))) com::HResult DllCanUnloadNow() {
    return Messages::living() == 0 && Factory::living() == 0 ? com::kOk : com::kFalse;
}
}
