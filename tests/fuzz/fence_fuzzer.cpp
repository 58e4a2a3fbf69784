// What passes the fence is one plain question for a scanner of another build too.
#include "fuzzed_text.h"

#include "db/fence.h"
#include "fence/oracle.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = velcoran::fuzz::textOf(data, size);
    if (!velcoran::db::fenceRefusal(text))
        velcoran::fuzz::expect(velcoran::tests::faultOfPassed(text).isEmpty(), "both scanners agree");
    return 0;
}
