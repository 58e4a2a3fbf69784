// A number that is read and written is the same number.
#include "fuzzed_text.h"

#include "base/short_decimal.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto number = velcoran::base::ShortDecimal::parse({reinterpret_cast<const char*>(data), size});
    if (!number) return 0;
    const std::string written = number->toText();
    const auto again = velcoran::base::ShortDecimal::parse(written);
    velcoran::fuzz::expect(again.has_value() && again->toText() == written, "it is read back");
    return 0;
}
