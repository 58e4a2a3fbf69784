#pragma once

#include "base/error.h"

#include <QString>

namespace velcoran::sqlite {

/// The error of a call on the database.
/// @param result  the extended code of the call
/// @param words   the database's own words, which are the description where nothing better is known
[[nodiscard]] base::Error failureOf(int result, const QString& words);

}  // namespace velcoran::sqlite
