#include "com/dispatch.h"
#include "com/error_information.h"

#include "support/test_data.h"

#include <gtest/gtest.h>

#include <array>

using namespace Qt::StringLiterals;

namespace velcoran::com {
namespace {

constexpr const char16_t* kParameters[] = {u"First", u"Second", u"Third"};
const std::array<MethodRow, 2> kMethods{{{4, u"Open", kParameters}, {5, u"Close", {}}}};

TEST(Dispatch, namesBecomeIdentifiers) {
    struct Case {
        std::vector<std::u16string> names;
        HResult result;
        std::vector<std::int32_t> identifiers;
    };
    const Case cases[] = {
        {{u"Open"}, kOk, {4}},
        {{u"oPEN", u"third", u"FIRST"}, kOk, {4, 2, 0}},
        {{u"Open", u"Fourth", u"Second"}, kUnknownName, {4, -1, 1}},
        {{u"Close"}, kOk, {5}},
        {{u"Close", u"First"}, kUnknownName, {5, -1}},
        {{u"Reopen", u"First"}, kUnknownName, {-1, -1}},
    };
    for (Case each : cases) {
        std::vector<char16_t*> names;
        for (std::u16string& name : each.names) names.push_back(name.data());
        std::vector<std::int32_t> identifiers(names.size(), 99);
        const auto count = static_cast<std::uint32_t>(names.size());
        EXPECT_EQ(identifiersOfNames(kMethods, kReservedId, names.data(), count, identifiers.data()), each.result);
        EXPECT_EQ(identifiers, each.identifiers);
    }
    std::int32_t identifier = 0;
    char16_t* name = nullptr;
    EXPECT_EQ(identifiersOfNames(kMethods, IUnknown::kId, &name, 1, &identifier), kUnknownInterface);
    EXPECT_EQ(identifiersOfNames(kMethods, kReservedId, nullptr, 1, &identifier), kNullPointer);
}

TEST(Dispatch, argumentsAreOrderedOrRefused) {
    // Arguments carry their own number, passed the last one first, the named ones before them.
    struct Case {
        std::vector<std::int32_t> arguments;
        std::vector<std::int32_t> named;
        HResult result;
        std::vector<std::int32_t> ordered;
        std::uint32_t wrong = 99;
    };
    const Case cases[] = {
        {{3, 2, 1}, {}, kOk, {1, 2, 3}},
        {{2, 3, 1}, {1, 2}, kOk, {1, 2, 3}},
        {{1, 3, 2}, {0, 2, 1}, kOk, {1, 2, 3}},
        {{2, 1}, {}, kBadParameterCount, {}},
        {{4, 3, 2, 1}, {}, kBadParameterCount, {}},
        {{3, 1}, {2}, kParameterNotOptional, {}},
        {{3, 2, 1}, {7}, kParameterNotFound, {}, 0},
        {{3, 9, 2, 1}, {}, kBadParameterCount, {}},
        {{2, 2, 1}, {1, 1}, kParameterNotFound, {}, 1},
        {{2, 2, 1}, {2, 0}, kParameterNotFound, {}, 1},
        {{3}, {-1}, kParameterNotFound, {}, 0},
    };
    for (Case each : cases) {
        std::vector<Variant> arguments(each.arguments.size());
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            arguments[index].type = kInt32;
            arguments[index].value.int32 = each.arguments[index];
        }
        const CallArguments call{arguments.data(), each.named.data(), static_cast<std::uint32_t>(arguments.size()),
                                 static_cast<std::uint32_t>(each.named.size())};
        std::vector<const Variant*> ordered;
        std::uint32_t wrong = 99;
        EXPECT_EQ(orderArguments(kMethods[0], &call, ordered, &wrong), each.result) << each.arguments.size();
        EXPECT_EQ(wrong, each.wrong);
        if (each.result != kOk) continue;
        ASSERT_EQ(ordered.size(), each.ordered.size());
        for (std::size_t index = 0; index < ordered.size(); ++index)
            EXPECT_EQ(ordered[index]->value.int32, each.ordered[index]);
    }
}

TEST(Dispatch, anArgumentMarkedAsLeftOutIsMissing) {
    std::array<Variant, 3> arguments{};
    for (Variant& argument : arguments) argument.type = kInt32;
    arguments[1].type = kError;
    arguments[1].value.code = kParameterNotFound;
    const CallArguments call{arguments.data(), nullptr, 3, 0};
    std::vector<const Variant*> ordered;
    EXPECT_EQ(orderArguments(kMethods[0], &call, ordered, nullptr), kParameterNotOptional);
    EXPECT_EQ(orderArguments(kMethods[1], nullptr, ordered, nullptr), kOk);
    EXPECT_EQ(orderArguments(kMethods[0], nullptr, ordered, nullptr), kNullPointer);
}

TEST(Dispatch, aFailureIsToldInTheCallersExceptionOrPlainly) {
    const HResult failure = guarded([] { throw base::Error(91, u"nothing set"_s, u"here"_s); });
    EXPECT_EQ(static_cast<std::uint32_t>(failure), 0x800A005BU);
    EXPECT_EQ(fillException(failure, nullptr), failure);
    ExceptionInformation exception{};
    EXPECT_EQ(fillException(failure, &exception), kException);
    EXPECT_EQ(exception.result, failure);
    EXPECT_EQ(toQString(exception.description), u"nothing set"_s);
    EXPECT_EQ(toQString(exception.source), u"here"_s);
    freeText(exception.description);
    freeText(exception.source);
}

}  // namespace
}  // namespace velcoran::com
