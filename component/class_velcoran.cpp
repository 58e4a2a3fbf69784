#include "class_velcoran.h"

#include "component.h"

#include "com/dispatch.h"
#include "com/variant.h"

#include <array>

using namespace Qt::StringLiterals;

namespace velcoran::component {

namespace {

const QString kSource = QString::fromUtf16(kProgIdVelcoran);

constexpr std::int32_t kIncarcaMember = 1;
constexpr const char16_t* kIncarcaParameters[] = {u"argTipRaport", u"bConn", u"DataProgram", u"Soc"};
const std::array<com::MethodRow, 1> kMethods{{{kIncarcaMember, u"Incarca", kIncarcaParameters}}};

/// What Invoke says about an argument of the wrong type, with its position among the passed ones.
com::HResult refuseType(const com::Variant* argument, const com::CallArguments& arguments,
                        std::uint32_t* argumentError) {
    if (argumentError != nullptr) *argumentError = static_cast<std::uint32_t>(argument - arguments.arguments);
    return com::kTypeMismatch;
}

}  // namespace

com::HResult ClassVelcoran::GetTypeInfoCount(std::uint32_t* count) {
    if (count == nullptr) return com::kNullPointer;
    *count = 0;
    return com::kOk;
}

com::HResult ClassVelcoran::GetTypeInfo(std::uint32_t, std::uint32_t, void** information) {
    if (information == nullptr) return com::kNullPointer;
    *information = nullptr;
    return com::kBadIndex;
}

com::HResult ClassVelcoran::GetIDsOfNames(const com::Guid& reserved, char16_t** names, std::uint32_t count,
                                          std::uint32_t, std::int32_t* identifiers) {
    return com::guarded([&] { return com::identifiersOfNames(kMethods, reserved, names, count, identifiers); });
}

com::HResult ClassVelcoran::Invoke(std::int32_t member, const com::Guid& reserved, std::uint32_t, std::uint16_t flags,
                                   com::CallArguments* arguments, com::Variant* result,
                                   com::ExceptionInformation* exception, std::uint32_t* argumentError) {
    if (reserved != com::kReservedId) return com::kUnknownInterface;
    if (member != kIncarcaMember || (flags & com::kCallMethod) == 0) return com::kMemberNotFound;
    if (result != nullptr) *result = com::Variant();
    return invokeIncarca(arguments, exception, argumentError);
}

com::HResult ClassVelcoran::invokeIncarca(const com::CallArguments* arguments, com::ExceptionInformation* exception,
                                          std::uint32_t* argumentError) {
    QString kind, prefix;
    com::Date date = 0;
    com::Ref<IConnection> connection;
    const com::HResult bound = com::guarded([&]() -> com::HResult {
        std::vector<const com::Variant*> ordered;
        const com::HResult order = com::orderArguments(kMethods[0], arguments, ordered, argumentError);
        if (com::failed(order)) return order;
        if (com::failed(com::readText(*ordered[0], kind))) return refuseType(ordered[0], *arguments, argumentError);
        if (com::failed(com::readObject(*ordered[1], IConnection::kId, connection.receiveVoid())))
            return refuseType(ordered[1], *arguments, argumentError);
        if (com::failed(com::readDate(*ordered[2], date))) return refuseType(ordered[2], *arguments, argumentError);
        if (com::failed(com::readText(*ordered[3], prefix))) return refuseType(ordered[3], *arguments, argumentError);
        return com::kOk;
    });
    if (com::failed(bound)) return bound;
    const com::HResult result = Incarca(com::toText(kind).get(), connection.get(), date, com::toText(prefix).get());
    return com::failed(result) ? com::fillException(result, exception) : result;
}

com::HResult ClassVelcoran::Incarca(com::Bstr argTipRaport, IConnection* bConn, com::Date DataProgram, com::Bstr Soc) {
    return com::guardedAs(kSource, [&] {
        const QDate date = com::dayOf(DataProgram);
        if (!date.isValid()) throw base::Error(base::kInvalidProcedureCall, u"Data programului nu este validă."_s);
        component().window.incarca(com::toQString(argTipRaport), com::Ref<IConnection>(bConn), date,
                                   com::toQString(Soc));
    });
}

}  // namespace velcoran::component
