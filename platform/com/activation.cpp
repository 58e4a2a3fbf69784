#include "platform/com/activation.h"

#include "base/error.h"
#include "platform/com/guid_text.h"
#include "platform/com/registry.h"

#include <velcoran/velcoran.h>

#include <QFile>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace velcoran::com {

namespace {

[[noreturn]] void fail(const QString& words) { throw base::Error(kCannotCreateObject, words, u"activation"_s); }

/// Class and library of an identifier. With a library given, the class of our own identifier is known without a
/// registration.
RegistryEntry resolve(const QString& progId, const QString& libraryPath) {
    if (libraryPath.isEmpty()) {
        auto entry = findEntry(progId);
        if (!entry) fail(progId + u" is not registered"_s);
        return *entry;
    }
    if (progId.compare(QString::fromUtf16(kProgIdVelcoran), Qt::CaseInsensitive) == 0)
        return {progId, kClassVelcoran, libraryPath, kTypeLibraryVelcoran, {}};
    auto entry = findEntry(progId);
    if (!entry) fail(progId + u" is not registered"_s);
    entry->library = libraryPath;
    return *entry;
}

/// The part of a program file's head that says what machine it is for: width of addresses, order of bytes, processor.
/// Empty for what is no program file.
QByteArray architectureOf(const QString& path) {
    constexpr qsizetype kHeadSize = 20, kWidthAt = 4, kProcessorAt = 18;
    QFile file(path);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(kHeadSize) : QByteArray();
    if (head.size() < kHeadSize || !head.startsWith("\177ELF")) return {};
    return head.sliced(kWidthAt, 2) + head.sliced(kProcessorAt, 2);
}

/// Why a library did not load. The loader calls a library for another machine missing.
QString loadFailure(const QString& path, const QString& loaderWords) {
    const QByteArray architecture = architectureOf(path);
    if (!architecture.isEmpty() && architecture != architectureOf(u"/proc/self/exe"_s))
        return path + u" is built for another architecture"_s;
    return loaderWords;
}

ActivatedClass load(const RegistryEntry& entry) {
    auto library = std::make_shared<const Library>(entry.library);
    Ref<IClassFactory> factory = library->classFactory(entry.classId);
    return {std::move(library), std::move(factory)};
}

ActivatedObject create(const ActivatedClass& found, const QString& name) {
    ActivatedObject activated{found.library, {}};
    if (failed(found.factory->CreateInstance(nullptr, IUnknown::kId, activated.object.receiveVoid())))
        fail(name + u" cannot be created"_s);
    return activated;
}

}  // namespace

Library::Library(const QString& path) : m_path(path) {
    m_handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (m_handle == nullptr) fail(loadFailure(path, QString::fromLocal8Bit(dlerror())));
}

Library::~Library() {
    using CanUnload = HResult (*)();
    const auto canUnload = reinterpret_cast<CanUnload>(dlsym(m_handle, "DllCanUnloadNow"));
    if (canUnload == nullptr || canUnload() == kOk) dlclose(m_handle);
}

void* Library::symbol(const char* name) const {
    void* address = dlsym(m_handle, name);
    if (address == nullptr) fail(u"%1 lacks the entry point %2"_s.arg(m_path, QString::fromLatin1(name)));
    return address;
}

Ref<IClassFactory> Library::classFactory(const Guid& classId) const {
    using GetClassObject = HResult (*)(const Guid&, const Guid&, void**);
    const auto getClassObject = reinterpret_cast<GetClassObject>(symbol("DllGetClassObject"));
    Ref<IClassFactory> factory;
    const HResult result = getClassObject(classId, IClassFactory::kId, factory.receiveVoid());
    if (failed(result))
        fail(u"%1: no class factory (0x%2)"_s.arg(m_path, QString::number(static_cast<std::uint32_t>(result), 16)));
    return factory;
}

HResult Library::call(const char* entryPoint) const {
    using EntryPoint = HResult (*)();
    return reinterpret_cast<EntryPoint>(symbol(entryPoint))();
}

ActivatedClass findClass(const QString& progId, const QString& libraryPath) {
    return load(resolve(progId, libraryPath));
}

ActivatedClass findClass(const Guid& classId) {
    const auto entry = findEntry(classId);
    if (!entry) fail(guidText(classId) + u" is not registered"_s);
    return load(*entry);
}

ActivatedObject createObject(const QString& progId, const QString& libraryPath) {
    return create(findClass(progId, libraryPath), progId);
}

ActivatedObject createObject(const Guid& classId) { return create(findClass(classId), guidText(classId)); }

}  // namespace velcoran::com
