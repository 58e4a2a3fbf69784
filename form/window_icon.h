#pragma once

#include <QIcon>

namespace velcoran::form {

/// The window's icon: an invoice with an arrow across a border, drawn on a grid of 32 by 32 in sixteen colours, crisp
/// in larger sizes.
[[nodiscard]] QIcon makeWindowIcon();

}  // namespace velcoran::form
