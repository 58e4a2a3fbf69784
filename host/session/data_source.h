#pragma once

#include <velcoran/connection.h>

#include <QString>

#include <functional>
#include <memory>

namespace velcoran::host {

class Trace;

/// Where a host's data is: exactly one of the two is set.
struct DataSource {
    QString file;  ///< an embedded database
    QString odbc;  ///< a connection text, "@FILE" that holds one, or "env:NAME" of a variable that does
};

/// A connection of the host and how to close it while others still hold it.
struct OpenedConnection {
    com::Ref<IConnection> connection;
    std::function<void()> close;
};

/// Opens it behind the fence that lets the window's statements through and nothing else.
/// @param trace  hears what happens on it, also what the fence refuses and each record of a driver; may be null
/// @throws Error of the provider, without secrets of a connection text
[[nodiscard]] OpenedConnection openSource(const DataSource& source, const std::shared_ptr<Trace>& trace = {});

}  // namespace velcoran::host
