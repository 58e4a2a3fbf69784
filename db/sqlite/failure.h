#pragma once

#include "base/error.h"

#include <QString>

namespace velcoran::sqlite {

/// The error of a call on the database. What is wrong with a file is said with its path, and with what to do where
/// somebody can do something; the database's own words follow.
/// @param result  the extended code of the call
/// @param words   the database's own words, which are the description where nothing better is known
/// @param path    of the database file
[[nodiscard]] base::Error failureOf(int result, const QString& words, const QString& path);

}  // namespace velcoran::sqlite
