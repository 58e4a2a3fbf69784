#pragma once

#include <velcoran/com.h>

#include <span>
#include <vector>

namespace velcoran::com {

/// The identifier that calls by name pass where an interface identifier is reserved.
constexpr Guid kReservedId{0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

/// Flag of IDispatch::Invoke that asks for a method call.
constexpr std::uint16_t kCallMethod = 1;

/// A method of a dual interface. Names are compared without regard to letter case; the identifier of a parameter is its
/// position from 0.
struct MethodRow {
    std::int32_t member;
    const char16_t* name;
    std::span<const char16_t* const> parameters;
};

/// Implements IDispatch::GetIDsOfNames: the first name is a method, the others are its parameters.
/// @return kOk; kUnknownName with -1 in the place of each unknown name; kUnknownInterface unless reserved is
///         kReservedId; kNullPointer
HResult identifiersOfNames(std::span<const MethodRow> methods, const Guid& reserved, char16_t** names,
                           std::uint32_t count, std::int32_t* identifiers);

/// Puts the arguments of a call into the order of the parameters, all of which are wanted.
/// @param ordered        one entry a parameter, pointing into arguments
/// @param argumentError  position in arguments->arguments of the one that is wrong; may be null
/// @return kOk; kBadParameterCount for too many, or for too few without names; kParameterNotOptional for one left out;
///         kParameterNotFound for an unknown or doubled name; kNullPointer
HResult orderArguments(const MethodRow& method, const CallArguments* arguments, std::vector<const Variant*>& ordered,
                       std::uint32_t* argumentError);

/// Tells the caller of IDispatch::Invoke about a failed method: number, words and source from the thread's error
/// information. @return kException; the failure itself when exception is null
HResult fillException(HResult failure, ExceptionInformation* exception);

}  // namespace velcoran::com
