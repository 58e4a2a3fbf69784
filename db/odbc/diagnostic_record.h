#pragma once

#include <QString>

#include <cstdint>
#include <functional>

namespace velcoran::odbc {

/// What a driver says about a call.
struct DiagnosticRecord {
    QString state;  ///< SQLSTATE, five characters
    std::int32_t nativeNumber = 0;
    QString text;  ///< the words without the bracketed names of driver and component
};

/// Hears every record as it comes, warnings too, secrets hidden. Called by the connection's own thread: it must not
/// throw and not use the connection. A driver that hangs may speak after its connection was closed, so a sink owns what
/// it uses.
using DiagnosticSink = std::function<void(const DiagnosticRecord&)>;

}  // namespace velcoran::odbc
