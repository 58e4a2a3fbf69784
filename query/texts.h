#pragma once

#include <QStringView>

namespace velcoran::query {

/// Title of the message about modified filters; its style is kStilInformation.
inline constexpr QStringView kModifiedFiltersTitle = u"ATENTIE!";

}  // namespace velcoran::query
