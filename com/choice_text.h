#pragma once

#include "error_information.h"

namespace velcoran::com {

/// Puts a text into a dialog's choice; what stood there is freed by whoever replaces it.
inline void replaceText(Bstr& place, const QString& text) {
    freeText(place);
    place = toText(text).release();
}

}  // namespace velcoran::com
