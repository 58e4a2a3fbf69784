#pragma once

#include "connection.h"

namespace velcoran::db {

/// Command type "text", the only one.
constexpr int kCommandText = 1;

/// A statement to be run by somebody else: the report engine.
struct Command {
    Connection activeConnection;
    int commandType = kCommandText;
    QString commandText;
};

}  // namespace velcoran::db
