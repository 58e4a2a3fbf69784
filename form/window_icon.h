#pragma once

#include <QIcon>

namespace velcoran::form {

/// The window's icon: an invoice with an arrow across a border, 32 by 32 in the sixteen colours of its time, and crisp
/// in larger sizes.
[[nodiscard]] QIcon makeWindowIcon();

}  // namespace velcoran::form
