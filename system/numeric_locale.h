#pragma once

#include <locale.h>

namespace velcoran::system {

/// While it lives, the calling thread reads and writes numbers with a point, whatever the process's locale is: for
/// libraries that print numbers. The process, and every other thread, keeps its locale.
class NumericLocale {
public:
    /// @throws std::bad_alloc when the system gives no locale
    NumericLocale();
    ~NumericLocale();
    NumericLocale(const NumericLocale&) = delete;
    NumericLocale& operator=(const NumericLocale&) = delete;

private:
    locale_t m_locale;
    locale_t m_before;
};

}  // namespace velcoran::system
