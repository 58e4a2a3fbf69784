#include "variant.h"

#include "error_information.h"

#include <cmath>

namespace velcoran::com {

namespace {

const QDate kFirstDay(1899, 12, 30);

/// The variant that an argument refers to, or the argument itself. One step: a variant that refers to another one may
/// only be referred to by an argument.
const Variant& referredVariant(const Variant& variant) {
    const bool isReference = variant.type == (kVariant | kByReference) && variant.value.reference != nullptr;
    return isReference ? *static_cast<const Variant*>(variant.value.reference) : variant;
}

/// What an argument holds once references are followed; a reference to nothing is empty.
Variant dereferenced(const Variant& argument) {
    const Variant& variant = referredVariant(argument);
    if ((variant.type & kByReference) == 0) return variant;
    Variant value;
    const void* target = variant.value.reference;
    if (target == nullptr) return value;
    value.type = static_cast<VariantType>(variant.type & ~kByReference);
    switch (value.type) {
        case kInt16:
        case kBool:
            std::memcpy(&value.value.int16, target, sizeof value.value.int16);
            break;
        case kInt32:
        case kError:
            std::memcpy(&value.value.int32, target, sizeof value.value.int32);
            break;
        case kDouble:
        case kDate:
            std::memcpy(&value.value.real, target, sizeof value.value.real);
            break;
        case kText:
        case kUnknown:
        case kDispatch:
            std::memcpy(&value.value.reference, target, sizeof value.value.reference);
            break;
        default:
            break;
    }
    return value;
}

}  // namespace

HResult readText(const Variant& variant, QString& text) {
    const Variant value = dereferenced(variant);
    switch (value.type) {
        case kEmpty:
            text.clear();
            return kOk;
        case kText:
            text = toQString(value.value.text);
            return kOk;
        case kInt16:
            text = QString::number(value.value.int16);
            return kOk;
        case kInt32:
            text = QString::number(value.value.int32);
            return kOk;
        case kDouble:
            text = QString::number(value.value.real, 'g', 15);
            return kOk;
        case kBool:
            text = value.value.boolean != 0 ? QStringLiteral("True") : QStringLiteral("False");
            return kOk;
        default:
            return kTypeMismatch;
    }
}

HResult readDate(const Variant& variant, Date& date) {
    const Variant value = dereferenced(variant);
    switch (value.type) {
        case kEmpty:
            date = 0;
            return kOk;
        case kDate:
        case kDouble:
            date = value.value.real;
            return kOk;
        case kInt16:
            date = value.value.int16;
            return kOk;
        case kInt32:
            date = value.value.int32;
            return kOk;
        case kText: {
            const QDate day = QDate::fromString(toQString(value.value.text), Qt::ISODate);
            if (!day.isValid()) return kTypeMismatch;
            date = dateOf(day);
            return kOk;
        }
        default:
            return kTypeMismatch;
    }
}

HResult readObject(const Variant& variant, const Guid& id, void** object) {
    *object = nullptr;
    const Variant value = dereferenced(variant);
    if (value.type != kUnknown && value.type != kDispatch) return kTypeMismatch;
    if (value.value.unknown == nullptr) return kOk;
    return failed(value.value.unknown->QueryInterface(id, object)) ? kTypeMismatch : kOk;
}

QDate dayOf(Date date) {
    constexpr double kFirst = -657434.0;  // 1 January 100
    constexpr double kLast = 2958466.0;   // the day after 31 December 9999
    if (!(date > kFirst - 1 && date < kLast)) return {};
    return kFirstDay.addDays(static_cast<qint64>(std::trunc(date)));
}

Date dateOf(const QDate& day) { return static_cast<Date>(kFirstDay.daysTo(day)); }

}  // namespace velcoran::com
