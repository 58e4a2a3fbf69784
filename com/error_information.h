#pragma once

#include "base/error.h"

#include <velcoran/com.h>

#include <QString>

#include <type_traits>

namespace velcoran::com {

/// The error that the last failed call left on this thread, in this library; null without one. Cleared by the next
/// guarded call.
[[nodiscard]] const base::Error* threadError();
void setThreadError(const base::Error& error);
void clearThreadError();

/// Gives the thread's error a source where it has none.
void nameErrorSource(const QString& source);

/// Runs the body of an exported function: nothing gets out but a result code, and what was thrown is kept as the
/// thread's error information. Cancelled becomes the error kStopped.
/// @param body  returns an HResult, or nothing for kOk
template <class Body>
HResult guarded(Body body) noexcept;

/// The same for what hosts call: an error whose source nobody named has the given one.
template <class Body>
HResult guardedAs(const QString& source, Body body) noexcept {
    const HResult result = guarded(body);
    if (failed(result)) nameErrorSource(source);
    return result;
}

/// Turns the exception in flight into a code and the thread's error information.
HResult keepCurrentException() noexcept;

template <class Body>
HResult guarded(Body body) noexcept {
    try {
        clearThreadError();
        if constexpr (std::is_void_v<decltype(body())>) {
            body();
            return kOk;
        } else {
            return body();
        }
    } catch (...) {
        return keepCurrentException();
    }
}

[[nodiscard]] inline QString toQString(const char16_t* text) {
    return QString::fromUtf16(viewOf(text).data(), static_cast<qsizetype>(viewOf(text).size()));
}
[[nodiscard]] inline Text toText(const QString& text) {
    return Text(
        std::u16string_view(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())));
}

}  // namespace velcoran::com
