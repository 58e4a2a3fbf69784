// A report definition is read or refused with a reason.
#include "fuzzed_text.h"

#include "base/error.h"
#include "report/layout/definition.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        (void)velcoran::report::readDefinition(velcoran::fuzz::bytesOf(data, size));
    } catch (const velcoran::base::Error& error) {
        velcoran::fuzz::expect(!error.description().isEmpty(), "a refusal has a reason");
    }
    return 0;
}
