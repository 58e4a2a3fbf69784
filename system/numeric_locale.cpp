#include "numeric_locale.h"

#include <new>

namespace velcoran::system {

namespace {

/// The thread's present locale with the numbers of the C locale.
locale_t withPlainNumbers() {
    const locale_t copy = duplocale(uselocale(nullptr));
    if (copy == nullptr) throw std::bad_alloc();
    const locale_t plain = newlocale(LC_NUMERIC_MASK, "C", copy);
    if (plain != nullptr) return plain;
    freelocale(copy);
    throw std::bad_alloc();
}

}  // namespace

NumericLocale::NumericLocale() : m_locale(withPlainNumbers()), m_before(uselocale(m_locale)) {
    if (m_before != nullptr) return;
    freelocale(m_locale);
    throw std::bad_alloc();
}

NumericLocale::~NumericLocale() {
    uselocale(m_before);
    freelocale(m_locale);
}

}  // namespace velcoran::system
