// A row filter is read or refused; what it turns away at first sight does not pass either.
#include "fuzzed_text.h"

#include "base/error.h"
#include "db/row_filter.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = velcoran::fuzz::textOf(data, size);
    try {
        const auto filter = velcoran::db::RowFilter::parse(text);
        for (const QString& value : {text, filter.text, QString()}) {
            const auto* units = reinterpret_cast<const char16_t*>(value.utf16());
            if (!filter.mayMatch(units, static_cast<std::size_t>(value.size())))
                velcoran::fuzz::expect(!filter.matches(value), "the first look turns nothing away that passes");
        }
    } catch (const velcoran::base::Error& error) {
        velcoran::fuzz::expect(error.number() == velcoran::base::kInvalidProcedureCall, "a refusal has its number");
    }
    return 0;
}
