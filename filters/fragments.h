#pragma once

#include <QString>
#include <QStringView>

#include <initializer_list>

namespace velcoran::filters {

/// The pieces of a statement one after the other, with nothing between them.
[[nodiscard]] QString joinFragments(std::initializer_list<QStringView> pieces);

/// True unless a text is empty or ordinary blanks (U+0020) alone. Other white space counts as text.
[[nodiscard]] bool isPresent(QStringView text);

}  // namespace velcoran::filters
