#pragma once

#include <QStringView>

namespace velcoran::lookup {

/// The picker's only message; its style is kStilError, its title the frame's caption.
inline constexpr QStringView kNoRowsText = u"Nu s-au gasit Inregistrari !!";

}  // namespace velcoran::lookup
