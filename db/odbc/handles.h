#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <QString>

#include <utility>

namespace velcoran::odbc {

static_assert(sizeof(SQLWCHAR) == 2, "wide texts are UTF-16");

/// Pointers to wide texts are not const in the interface; drivers do not write through them.
inline SQLWCHAR* wideText(const QString& text) {
    return reinterpret_cast<SQLWCHAR*>(const_cast<ushort*>(text.utf16()));
}

/// Owner of a handle of the driver manager. Whoever owns one that takes part in a connection is used, and destroyed, on
/// the connection's own thread.
template <SQLSMALLINT kType>
class Handle {
public:
    Handle() = default;
    explicit Handle(SQLHANDLE handle) : m_handle(handle) {}
    Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~Handle() { reset(); }

    [[nodiscard]] SQLHANDLE get() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }
    void reset() {
        if (m_handle != nullptr) SQLFreeHandle(kType, std::exchange(m_handle, nullptr));
    }

private:
    SQLHANDLE m_handle = nullptr;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

}  // namespace velcoran::odbc
