#include "com/activation.h"

#include "support/test_data.h"

#include <velcoran/velcoran.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran {
namespace {

TEST(Incarca, failsInAProcessThatCannotHaveWindows) {
    const auto activated = com::createObject(u"Velcoran.clsVelcoran"_s, QStringLiteral(VELCORAN_LIBRARY));
    const auto object = activated.object.as<_clsVelcoran>();
    ASSERT_TRUE(object);
    const com::HResult result = object->Incarca(nullptr, nullptr, 46096, nullptr);
    EXPECT_EQ(com::numberOfResult(result), 5);
}

}  // namespace
}  // namespace velcoran
