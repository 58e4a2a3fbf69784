#pragma once

namespace velcoran::report {

/// Texts around the table.
inline constexpr char16_t kGrandTotal[] = u"TOTAL GENERAL";
inline constexpr char16_t kTotalInLei[] = u"TOTAL IN LEI";
inline constexpr char16_t kNoDocuments[] = u"Niciun document nu corespunde filtrelor alese.";

}  // namespace velcoran::report
