#include "activation.h"

#include "base/error.h"
#include "guid_text.h"
#include "registry.h"
#include "system/file_name.h"

#include <velcoran/velcoran.h>

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace velcoran::com {

namespace {

using Attempts = std::vector<activation::Attempt>;

[[noreturn]] void fail(const QString& words) { throw base::Error(base::kClassNotRegistered, words, u"activation"_s); }

QString lookedAt(const Attempts& attempts) {
    return system::nameText(QByteArray::fromStdString(activation::wordsOf(attempts)).replace("\n", "; "));
}

/// The class of an identifier in a library that is given. Our own is known without a registration.
Guid classOf(const QString& progId) {
    if (progId.compare(QString::fromUtf16(kProgIdVelcoran), Qt::CaseInsensitive) == 0) return kClassVelcoran;
    const auto entry = findEntry(progId);
    if (!entry) fail(progId + u" is not registered"_s);
    return entry->classId;
}

ActivatedClass activated(activation::Class found) {
    Ref<IClassFactory> factory = found.takeFactory();
    return {std::make_shared<const Library>(std::move(found)), std::move(factory)};
}

template <class Name>
ActivatedClass findRegistered(const Name& name, const QString& words) {
    Attempts attempts;
    activation::Class found = activation::find(name, attempts);
    if (!found) fail(u"%1 is not registered, or not where it should be: %2"_s.arg(words, lookedAt(attempts)));
    return activated(std::move(found));
}

ActivatedObject create(const ActivatedClass& found, const QString& name) {
    ActivatedObject made{found.library, {}};
    if (failed(found.factory->CreateInstance(nullptr, IUnknown::kId, made.object.receiveVoid())))
        fail(name + u" cannot be created"_s);
    return made;
}

}  // namespace

Library::Library(activation::Class loaded)
    : m_loaded(std::move(loaded)), m_path(system::nameText(QByteArray::fromStdString(m_loaded.library()))) {}

Ref<IClassFactory> Library::classFactory(const Guid& classId) const {
    const auto getClassObject = m_loaded.function<HResult(const Guid&, const Guid&, void**)>("DllGetClassObject");
    Ref<IClassFactory> factory;
    if (getClassObject == nullptr || failed(getClassObject(classId, IClassFactory::kId, factory.receiveVoid())))
        fail(u"%1 has no class %2"_s.arg(m_path, guidText(classId)));
    return factory;
}

HResult Library::call(const char* entryPoint) const {
    const auto function = m_loaded.function<HResult()>(entryPoint);
    if (function == nullptr) fail(u"%1 lacks the entry point %2"_s.arg(m_path, QString::fromLatin1(entryPoint)));
    return function();
}

ActivatedClass findClass(const QString& progId, const QString& libraryPath) {
    if (libraryPath.isEmpty()) return findRegistered(progId.toUtf8().toStdString(), progId);
    Attempts attempts;
    activation::Class found =
        activation::Class::load(system::nameBytes(libraryPath).toStdString(), classOf(progId), attempts);
    if (!found) fail(lookedAt(attempts));
    return activated(std::move(found));
}

ActivatedClass findClass(const Guid& classId) { return findRegistered(classId, guidText(classId)); }

ActivatedObject createObject(const QString& progId, const QString& libraryPath) {
    return create(findClass(progId, libraryPath), progId);
}

ActivatedObject createObject(const Guid& classId) { return create(findClass(classId), guidText(classId)); }

}  // namespace velcoran::com
