// A host that knows nothing but the public headers and the loader: it has no application object and no event loop.
#include <velcoran/mesaje.h>
#include <velcoran/velcoran.h>

#include <cstdio>
#include <cstdlib>

#include <dlfcn.h>

namespace com = velcoran::com;

namespace {

void expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::exit(1);
}

template <class Function>
Function* entryPoint(void* library, const char* name) {
    auto* function = reinterpret_cast<Function*>(dlsym(library, name));
    expect(function != nullptr, name);
    return function;
}

/// A window without a connection: the call fails, with "object not set" once the window shows.
void openAndFail(void* library, std::int32_t expected) {
    const auto getClassObject = entryPoint<decltype(DllGetClassObject)>(library, "DllGetClassObject");
    com::Ref<com::IClassFactory> factory;
    expect(getClassObject(velcoran::kClassMesaje, com::IClassFactory::kId, factory.receiveVoid()) ==
               com::kClassNotAvailable,
           "no other class");
    expect(getClassObject(velcoran::kClassVelcoran, com::IClassFactory::kId, factory.receiveVoid()) == com::kOk,
           "a class factory");
    const auto canUnload = entryPoint<decltype(DllCanUnloadNow)>(library, "DllCanUnloadNow");
    expect(canUnload() == com::kFalse, "the factory keeps the library");
    factory->LockServer(1);
    com::Ref<velcoran::_clsVelcoran> object;
    expect(factory->CreateInstance(nullptr, velcoran::_clsVelcoran::kId, object.receiveVoid()) == com::kOk,
           "an object");
    factory = nullptr;
    const com::HResult result = object->Incarca(com::Text(u"Import").get(), nullptr, 46096, com::Text(u"").get());
    expect(com::numberOfResult(result) == expected, "the error's number");
    std::int32_t number = 0;
    com::Text description, source;
    const auto errors = object.as<com::IErrorSource>();
    expect(errors->LastError(&number, description.receive(), source.receive()) == com::kOk, "error information");
    expect(number == expected && !description.view().empty(), "its number and words");
}

}  // namespace

int main(int argc, char** argv) {
    expect(argc == 3, "two arguments, the library and the number of the error to expect");
    const std::int32_t expected = std::atoi(argv[2]);
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    expect(library != nullptr, "the library loads");
    const auto canUnload = entryPoint<decltype(DllCanUnloadNow)>(library, "DllCanUnloadNow");
    expect(canUnload() == com::kOk, "idle at first");
    openAndFail(library, expected);
    expect(canUnload() == com::kFalse, "the factory's lock stays although every object was released");
    com::Ref<com::IClassFactory> factory;
    entryPoint<decltype(DllGetClassObject)>(library, "DllGetClassObject")(
        velcoran::kClassVelcoran, com::IClassFactory::kId, factory.receiveVoid());
    factory->LockServer(0);
    factory = nullptr;
    const bool isOpen = expected == 91;
    expect(canUnload() == (isOpen ? com::kFalse : com::kOk), "an open window keeps the library, and nothing else");
    return 0;
}
