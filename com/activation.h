#pragma once

#include <velcoran/activation.h>
#include <velcoran/com.h>

#include <QString>

#include <memory>

namespace velcoran::com {

/// A loaded library with the standard entry points. It leaves the process with its last owner, provided that it has no
/// living object; otherwise it stays for the rest of the process.
class Library {
public:
    explicit Library(activation::Class loaded);

    [[nodiscard]] const QString& path() const { return m_path; }
    /// @throws Error kClassNotRegistered when the library has no such class
    [[nodiscard]] Ref<IClassFactory> classFactory(const Guid& classId) const;
    /// Calls an entry point without arguments: "DllRegisterServer", "DllUnregisterServer".
    /// @throws Error kClassNotRegistered when the library lacks it
    [[nodiscard]] HResult call(const char* entryPoint) const;

private:
    activation::Class m_loaded;
    QString m_path;
};

/// A class by its programmatic identifier: its library and its factory. The library outlives the factory.
struct ActivatedClass {
    std::shared_ptr<const Library> library;
    Ref<IClassFactory> factory;
};

/// An object and the library that it lives in.
struct ActivatedObject {
    std::shared_ptr<const Library> library;
    Ref<IUnknown> object;
};

/// Finds a class by its programmatic identifier: in the library at libraryPath when one is given, otherwise where a
/// registry file says (velcoran/activation.h).
/// @throws Error kClassNotRegistered, which says what was looked at
[[nodiscard]] ActivatedClass findClass(const QString& progId, const QString& libraryPath = {});
/// Finds a class by its own identifier, where a registry file says. @throws Error kClassNotRegistered
[[nodiscard]] ActivatedClass findClass(const Guid& classId);

/// Creates an object as findClass finds its class. @throws Error kClassNotRegistered
[[nodiscard]] ActivatedObject createObject(const QString& progId, const QString& libraryPath = {});
[[nodiscard]] ActivatedObject createObject(const Guid& classId);

}  // namespace velcoran::com
