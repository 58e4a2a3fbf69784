#include "base/error.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <system_error>

namespace velcoran::base {
namespace {

TEST(CurrentError, translatesWhateverIsInFlight) {
    const struct {
        const char* name;
        std::function<void()> raise;
        std::int32_t number;
        QString description;  ///< empty for any words but none
    } cases[] = {
        {"error", [] { throw Error(75, QStringLiteral("f")); }, kPathAccess, QStringLiteral("f")},
        {"stop", [] { throw Cancelled(); }, kStopped, {}},
        {"memory", [] { throw std::bad_alloc(); }, kOutOfMemory, {}},
        {"thread",
         [] { throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again)); },
         kOutOfMemory,
         {}},
        {"system", [] { throw std::system_error(std::make_error_code(std::errc::io_error)); }, kProviderFailure, {}},
        {"overflow", [] { throw std::overflow_error("o"); }, kOverflow, {}},
        {"range", [] { throw std::range_error("r"); }, kOverflow, {}},
        {"other", [] { throw std::runtime_error("ș"); }, kProviderFailure, QStringLiteral("ș")},
        {"no exception of the library", [] { throw 1; }, kProviderFailure, {}},
    };
    for (const auto& one : cases) {
        try {
            one.raise();
        } catch (...) {
            const Error error = currentError();
            EXPECT_EQ(error.number(), one.number) << one.name;
            EXPECT_FALSE(error.description().isEmpty()) << one.name;
            EXPECT_TRUE(one.description.isEmpty() || error.description() == one.description) << one.name;
        }
    }
}

}  // namespace
}  // namespace velcoran::base
