#include "dispatch.h"

#include "error_information.h"

#include <algorithm>

namespace velcoran::com {

namespace {

bool isSameName(const char16_t* one, const char16_t* other) {
    // Names come from the caller terminated, not as length-prefixed strings.
    return QString::fromUtf16(one).compare(QString::fromUtf16(other), Qt::CaseInsensitive) == 0;
}

std::int32_t positionOf(const MethodRow& method, const char16_t* parameter) {
    const auto found = std::find_if(method.parameters.begin(), method.parameters.end(),
                                    [parameter](const char16_t* name) { return isSameName(name, parameter); });
    return found == method.parameters.end() ? -1 : static_cast<std::int32_t>(found - method.parameters.begin());
}

HResult refuse(HResult result, std::uint32_t argument, std::uint32_t* argumentError) {
    if (argumentError != nullptr) *argumentError = argument;
    return result;
}

bool isLeftOut(const Variant& variant) { return variant.type == kError && variant.value.code == kParameterNotFound; }

}  // namespace

HResult identifiersOfNames(std::span<const MethodRow> methods, const Guid& reserved, char16_t** names,
                           std::uint32_t count, std::int32_t* identifiers) {
    if (reserved != kReservedId) return kUnknownInterface;
    if (names == nullptr || identifiers == nullptr || count == 0) return kNullPointer;
    std::fill_n(identifiers, count, -1);
    const auto method = std::find_if(methods.begin(), methods.end(),
                                     [names](const MethodRow& row) { return isSameName(row.name, names[0]); });
    if (method == methods.end()) return kUnknownName;
    identifiers[0] = method->member;
    HResult result = kOk;
    for (std::uint32_t index = 1; index < count; ++index) {
        identifiers[index] = positionOf(*method, names[index]);
        if (identifiers[index] < 0) result = kUnknownName;
    }
    return result;
}

HResult orderArguments(const MethodRow& method, const CallArguments* arguments, std::vector<const Variant*>& ordered,
                       std::uint32_t* argumentError) {
    const std::size_t wanted = method.parameters.size();
    if (arguments == nullptr) return wanted == 0 ? kOk : kNullPointer;
    const std::uint32_t count = arguments->argumentCount;
    const std::uint32_t named = arguments->namedArgumentCount;
    if (count > wanted || named > count || (named == 0 && count < wanted)) return kBadParameterCount;
    if (count != 0 && arguments->arguments == nullptr) return kNullPointer;
    if (named != 0 && arguments->namedArguments == nullptr) return kNullPointer;

    ordered.assign(wanted, nullptr);
    for (std::uint32_t index = named; index < count; ++index) ordered[count - 1 - index] = &arguments->arguments[index];
    for (std::uint32_t index = 0; index < named; ++index) {
        const std::int32_t position = arguments->namedArguments[index];
        if (position < 0 || static_cast<std::size_t>(position) >= wanted || ordered[position] != nullptr)
            return refuse(kParameterNotFound, index, argumentError);
        ordered[position] = &arguments->arguments[index];
    }
    for (std::size_t position = 0; position < wanted; ++position)
        if (ordered[position] == nullptr || isLeftOut(*ordered[position])) return kParameterNotOptional;
    return kOk;
}

HResult fillException(HResult failure, ExceptionInformation* exception) {
    if (exception == nullptr) return failure;
    *exception = ExceptionInformation();
    exception->result = failure;
    if (const base::Error* error = threadError()) {
        exception->source = toText(error->source()).release();
        exception->description = toText(error->description()).release();
    }
    return kException;
}

}  // namespace velcoran::com
