#pragma once

#include <velcoran/com.h>

#include <QString>

#include <optional>

namespace velcoran::com {

/// "{7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}", the published text form, upper case.
[[nodiscard]] QString guidText(const Guid& id);
/// The inverse, in either case and with or without braces; nothing for any other text.
[[nodiscard]] std::optional<Guid> guidFromText(const QString& text);

}  // namespace velcoran::com
