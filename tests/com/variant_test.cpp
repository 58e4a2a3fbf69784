#include "com/variant.h"
#include "com/class_factory.h"

#include "support/test_data.h"
#include "support/variant_holder.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace velcoran::com {
namespace {

Variant variantOf(VariantType type, double real) {
    Variant variant;
    variant.type = type;
    variant.value.real = real;
    return variant;
}

Variant variantOf(VariantType type, std::int64_t number) {
    Variant variant;
    variant.type = type;
    variant.value.int64 = number;
    return variant;
}

TEST(Variant, textsAreReadFromWhatCallersPass) {
    const tests::VariantHolder text(u"Import"_s);
    double date = 46096.5;
    Variant reference;
    reference.type = kByReference | kDouble;
    reference.value.reference = &date;
    const auto referenceTo = [](Variant& target) {
        Variant made;
        made.type = kByReference | kVariant;
        made.value.reference = &target;
        return made;
    };
    Variant named = text.get();
    Variant toReference = referenceTo(reference);
    Variant toItself;
    toItself = referenceTo(toItself);
    struct Case {
        Variant variant;
        HResult result;
        QString text;
    };
    const Case cases[] = {
        {text.get(), kOk, u"Import"_s},
        {Variant(), kOk, QString()},
        {variantOf(kInt16, std::int64_t{-7}), kOk, u"-7"_s},
        {variantOf(kInt32, std::int64_t{70000}), kOk, u"70000"_s},
        {variantOf(kDouble, 1.5), kOk, u"1.5"_s},
        {variantOf(kBool, std::int64_t{-1}), kOk, u"True"_s},
        {reference, kOk, u"46096.5"_s},
        {referenceTo(named), kOk, u"Import"_s},
        {toReference, kOk, u"46096.5"_s},
        {toItself, kTypeMismatch, QString()},
        {variantOf(kNull, std::int64_t{0}), kTypeMismatch, QString()},
        {variantOf(kUnknown, std::int64_t{0}), kTypeMismatch, QString()},
        {variantOf(kDate, 1.0), kTypeMismatch, QString()},
    };
    for (const Case& each : cases) {
        QString read;
        EXPECT_EQ(readText(each.variant, read), each.result) << each.variant.type;
        EXPECT_EQ(read, each.text) << each.variant.type;
    }
}

TEST(Variant, datesAreReadFromWhatCallersPass) {
    const tests::VariantHolder iso(u"2026-03-15"_s), words(u"astazi"_s);
    Date date = 0;
    EXPECT_EQ(readDate(iso.get(), date), kOk);
    EXPECT_EQ(dayOf(date), QDate(2026, 3, 15));
    EXPECT_EQ(readDate(variantOf(kDate, 46096.75), date), kOk);
    EXPECT_EQ(dayOf(date), QDate(2026, 3, 15));
    EXPECT_EQ(readDate(words.get(), date), kTypeMismatch);
    EXPECT_EQ(readDate(variantOf(kNull, std::int64_t{0}), date), kTypeMismatch);
}

TEST(Variant, daysHaveThePublishedNumbers) {
    const std::pair<double, QDate> days[] = {
        {0, QDate(1899, 12, 30)},         {2, QDate(1900, 1, 1)},      {-1.75, QDate(1899, 12, 29)},
        {2958465.9, QDate(9999, 12, 31)}, {-657434, QDate(100, 1, 1)},
    };
    for (const auto& [number, day] : days) EXPECT_EQ(dayOf(number), day) << number;
    for (const double none :
         {2958466.0, -700000.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(dayOf(none).isValid()) << none;
    EXPECT_EQ(dateOf(QDate(1900, 1, 1)), 2);
}

TEST(Variant, objectsAreCountedAndAskedForTheirInterface) {
    const auto before = livingObjects().load();
    {
        const Ref<IClassFactory> factory = makeFactory<ClassFactory>(ClassFactory::Maker());
        const tests::VariantHolder held(factory.get());
        Ref<IClassFactory> read;
        EXPECT_EQ(readObject(held.get(), IClassFactory::kId, read.receiveVoid()), kOk);
        EXPECT_EQ(read.get(), factory.get());
        Ref<IDispatch> other;
        EXPECT_EQ(readObject(held.get(), IDispatch::kId, other.receiveVoid()), kTypeMismatch);
        const tests::VariantHolder nothing(static_cast<IUnknown*>(nullptr));
        EXPECT_EQ(readObject(nothing.get(), IClassFactory::kId, read.receiveVoid()), kOk);
        EXPECT_EQ(read.get(), nullptr);
        EXPECT_EQ(readObject(tests::VariantHolder(3).get(), IClassFactory::kId, read.receiveVoid()), kTypeMismatch);
    }
    EXPECT_EQ(livingObjects().load(), before);
}

TEST(ClassFactory, refusesWhatItCannotMake) {
    const Ref<IClassFactory> factory = makeFactory<ClassFactory>(ClassFactory::Maker());
    void* object = nullptr;
    EXPECT_EQ(factory->CreateInstance(factory.get(), IUnknown::kId, &object), kNoAggregation);
    EXPECT_EQ(factory->CreateInstance(nullptr, IDispatch::kId, &object), kNoInterface);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IUnknown::kId, nullptr), kNullPointer);
}

}  // namespace
}  // namespace velcoran::com
