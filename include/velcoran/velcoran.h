/// The component's one creatable class and its interface.
#pragma once

#include <velcoran/com.h>
#include <velcoran/connection.h>

namespace velcoran {

/// "Velcoran.clsVelcoran". Fixed for ever, as are the two below.
constexpr com::Guid kClassVelcoran{0x7B2C9D40, 0x61E5, 0x4F3A, {0x8C, 0x52, 0x0D, 0x9A, 0x6E, 0x17, 0x33, 0xF4}};
constexpr com::Guid kTypeLibraryVelcoran{0x7B2C9D41, 0x61E5, 0x4F3A, {0x8C, 0x52, 0x0D, 0x9A, 0x6E, 0x17, 0x33, 0xF4}};
constexpr char16_t kProgIdVelcoran[] = u"Velcoran.clsVelcoran";

/// Default interface of clsVelcoran; dual: the table call and the call by name do the same.
struct _clsVelcoran : com::IDispatch {
    static constexpr com::Guid kId{0x7B2C9D42, 0x61E5, 0x4F3A, {0x8C, 0x52, 0x0D, 0x9A, 0x6E, 0x17, 0x33, 0xF4}};

    /// Opens the report window of the calling thread on a connection, or sets the open one up again, and returns. The
    /// window then lives on the thread's event loop until the user closes it.
    /// @param argTipRaport  "Import" or "Export", case-sensitive; any other value gives a mixed window
    /// @param bConn         open connection; shared for as long as the window is open; null fails with 91 once the
    /// window shows
    /// @param DataProgram   working date of the host
    /// @param Soc           prefix of three table names in two lookups; may be empty
    /// @return kOk, or the failure of the set-up: its number and description are in com::IErrorSource of this object
    virtual com::HResult Incarca(com::Bstr argTipRaport, IConnection* bConn, com::Date DataProgram, com::Bstr Soc) = 0;

protected:
    ~_clsVelcoran() = default;
};

}  // namespace velcoran

/// The four entry points of the library.
extern "C" {
velcoran::com::HResult DllGetClassObject(const velcoran::com::Guid& classId, const velcoran::com::Guid& id,
                                         void** object);
velcoran::com::HResult DllCanUnloadNow();
velcoran::com::HResult DllRegisterServer();
velcoran::com::HResult DllUnregisterServer();
}
