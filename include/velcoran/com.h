/// The binary contract between a host and the component: COM interfaces, identifiers, strings, variants, error
/// information. Header only, no library to link, no toolkit needed.
///
/// The layout is the published one of in-process automation servers: an interface is a pure virtual class whose first
/// three functions are those of IUnknown; results are signed 32-bit codes, negative for a failure; strings are UTF-16
/// with a 32-bit byte count in front of the first character, allocated with malloc so that either side may free them.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace velcoran::com {

/// Identifier of a class or of an interface, in the published memory layout.
struct Guid {
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    std::uint8_t data4[8];

    friend bool operator==(const Guid& one, const Guid& other) { return std::memcmp(&one, &other, sizeof(Guid)) == 0; }
    friend bool operator!=(const Guid& one, const Guid& other) { return !(one == other); }
};

/// Result of a call: kOk or kFalse for success, negative for a failure. The values are the published ones.
using HResult = std::int32_t;

constexpr HResult kOk = 0;
constexpr HResult kFalse = 1;
constexpr HResult kNotImplemented = static_cast<HResult>(0x80004001U);
constexpr HResult kNoInterface = static_cast<HResult>(0x80004002U);
constexpr HResult kNullPointer = static_cast<HResult>(0x80004003U);
constexpr HResult kAborted = static_cast<HResult>(0x80004004U);  ///< the user stopped it
constexpr HResult kUnspecifiedFailure = static_cast<HResult>(0x80004005U);
constexpr HResult kUnexpected = static_cast<HResult>(0x8000FFFFU);
constexpr HResult kOutOfMemory = static_cast<HResult>(0x8007000EU);
constexpr HResult kInvalidArgument = static_cast<HResult>(0x80070057U);
constexpr HResult kNoAggregation = static_cast<HResult>(0x80040110U);
constexpr HResult kClassNotAvailable = static_cast<HResult>(0x80040111U);
constexpr HResult kClassNotRegistered = static_cast<HResult>(0x80040154U);
constexpr HResult kUnknownInterface = static_cast<HResult>(0x80020001U);
constexpr HResult kMemberNotFound = static_cast<HResult>(0x80020003U);
constexpr HResult kParameterNotFound = static_cast<HResult>(0x80020004U);
constexpr HResult kTypeMismatch = static_cast<HResult>(0x80020005U);
constexpr HResult kUnknownName = static_cast<HResult>(0x80020006U);
constexpr HResult kNoNamedArguments = static_cast<HResult>(0x80020007U);
constexpr HResult kException = static_cast<HResult>(0x80020009U);
constexpr HResult kUnknownLanguage = static_cast<HResult>(0x8002000CU);
constexpr HResult kBadIndex = static_cast<HResult>(0x8002000BU);
constexpr HResult kBadParameterCount = static_cast<HResult>(0x8002000EU);
constexpr HResult kParameterNotOptional = static_cast<HResult>(0x8002000FU);

constexpr bool failed(HResult result) { return result < 0; }
constexpr bool succeeded(HResult result) { return result >= 0; }

/// Code of a run-time error with a number of 1 to 65535 (published: severity error, facility control). Numbers that are
/// negative already are codes and stay as they are; 0 becomes kUnspecifiedFailure.
constexpr HResult resultOfNumber(std::int32_t number) {
    if (number < 0) return number;
    return number == 0 ? kUnspecifiedFailure
                       : static_cast<HResult>(0x800A0000U | static_cast<std::uint32_t>(number & 0xFFFF));
}

/// The inverse of resultOfNumber: 5 for 0x800A0005, the code itself for every other failure.
constexpr std::int32_t numberOfResult(HResult result) {
    const auto code = static_cast<std::uint32_t>(result);
    return (code & 0xFFFF0000U) == 0x800A0000U ? static_cast<std::int32_t>(code & 0xFFFFU) : result;
}

// --- strings ---------------------------------------------------------------------------------------------------------

/// Length-prefixed UTF-16 string; null stands for the empty text.
using Bstr = char16_t*;

/// Copies a text. @return null when memory is out; free with freeText
inline Bstr allocateText(std::u16string_view text) {
    const std::size_t bytes = text.size() * sizeof(char16_t);
    auto* memory = static_cast<unsigned char*>(std::malloc(sizeof(std::uint32_t) + bytes + sizeof(char16_t)));
    if (memory == nullptr) return nullptr;
    const auto prefix = static_cast<std::uint32_t>(bytes);
    std::memcpy(memory, &prefix, sizeof prefix);
    auto* characters = reinterpret_cast<char16_t*>(memory + sizeof prefix);
    if (bytes != 0) std::memcpy(characters, text.data(), bytes);
    characters[text.size()] = u'\0';
    return characters;
}

inline void freeText(Bstr text) {
    if (text != nullptr) std::free(reinterpret_cast<unsigned char*>(text) - sizeof(std::uint32_t));
}

/// Length in UTF-16 units; 0 for null.
inline std::uint32_t textLength(const char16_t* text) {
    if (text == nullptr) return 0;
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<const unsigned char*>(text) - sizeof bytes, sizeof bytes);
    return bytes / static_cast<std::uint32_t>(sizeof(char16_t));
}

inline std::u16string_view viewOf(const char16_t* text) {
    return text == nullptr ? std::u16string_view() : std::u16string_view(text, textLength(text));
}

/// Owner of a length-prefixed string.
class Text {
public:
    Text() = default;
    explicit Text(std::u16string_view text) : m_text(allocateText(text)) {}
    Text(const Text& other) : m_text(other.m_text == nullptr ? nullptr : allocateText(other.view())) {}
    Text(Text&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
    Text& operator=(Text other) noexcept {
        std::swap(m_text, other.m_text);
        return *this;
    }
    ~Text() { freeText(m_text); }

    [[nodiscard]] Bstr get() const { return m_text; }
    [[nodiscard]] std::u16string_view view() const { return viewOf(m_text); }
    /// Address for a function that returns a string; what was held is freed first.
    [[nodiscard]] Bstr* receive() {
        freeText(std::exchange(m_text, nullptr));
        return &m_text;
    }
    /// Gives the string away to the caller, who frees it.
    [[nodiscard]] Bstr release() { return std::exchange(m_text, nullptr); }

private:
    Bstr m_text = nullptr;
};

// --- interfaces ------------------------------------------------------------------------------------------------------

/// Root of every interface. Counts are thread-safe.
struct IUnknown {
    static constexpr Guid kId{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

    /// @return kOk and a counted pointer in *object; kNoInterface and null; kNullPointer when object is null
    virtual HResult QueryInterface(const Guid& id, void** object) = 0;
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;

protected:
    ~IUnknown() = default;
};

/// Counted pointer to an interface.
template <class T>
class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    /// Shares an object: adds a count.
    explicit Ref(T* object) : m_object(object) {
        if (m_object != nullptr) m_object->AddRef();
    }
    Ref(const Ref& other) : Ref(other.m_object) {}
    Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    /// An exception that an object lets out of its Release ends here.
    ~Ref() {
        if (m_object == nullptr) return;
        try {
            m_object->Release();
        } catch (...) {
        }
    }
    /// Takes over a count that the caller owns.
    static Ref adopt(T* object) {
        Ref ref;
        ref.m_object = object;
        return ref;
    }

    [[nodiscard]] T* get() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

    /// Address for a function that returns a counted pointer; what was held is released first.
    [[nodiscard]] T** receive() {
        *this = Ref();
        return &m_object;
    }
    [[nodiscard]] void** receiveVoid() { return reinterpret_cast<void**>(receive()); }
    /// Gives the count away to the caller.
    [[nodiscard]] T* release() { return std::exchange(m_object, nullptr); }

    /// The same object under another interface; null when it has none.
    template <class Other>
    [[nodiscard]] Ref<Other> as() const {
        Ref<Other> other;
        if (m_object != nullptr && failed(m_object->QueryInterface(Other::kId, other.receiveVoid())))
            return Ref<Other>();
        return other;
    }

private:
    T* m_object = nullptr;
};

struct IClassFactory : IUnknown {
    static constexpr Guid kId{0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

    virtual HResult CreateInstance(IUnknown* outer, const Guid& id, void** object) = 0;
    virtual HResult LockServer(std::int32_t lock) = 0;

protected:
    ~IClassFactory() = default;
};

// --- variants and calls by name --------------------------------------------------------------------------------------

using VariantType = std::uint16_t;
constexpr VariantType kEmpty = 0;
constexpr VariantType kNull = 1;
constexpr VariantType kInt16 = 2;
constexpr VariantType kInt32 = 3;
constexpr VariantType kDouble = 5;
constexpr VariantType kDate = 7;
constexpr VariantType kText = 8;
constexpr VariantType kDispatch = 9;
constexpr VariantType kError = 10;
constexpr VariantType kBool = 11;
constexpr VariantType kVariant = 12;  ///< by reference alone
constexpr VariantType kUnknown = 13;
constexpr VariantType kByReference = 0x4000;

/// Date: days since 30 December 1899, the time of day as the fraction.
using Date = double;

struct IDispatch;

/// A value of one of the types above, in the published layout: the type, three reserved words, the value.
struct Variant {
    VariantType type = kEmpty;
    std::uint16_t reserved[3] = {0, 0, 0};
    union {
        std::int64_t int64;
        std::int32_t int32;
        std::int16_t int16;
        std::int16_t boolean;  ///< -1 true, 0 false
        double real;
        Date date;
        Bstr text;
        IUnknown* unknown;
        IDispatch* dispatch;
        HResult code;
        void* reference;
    } value{0};
    void* padding = nullptr;  ///< the published size is 24 bytes where pointers have 8
};

struct CallArguments {
    Variant* arguments;            ///< last argument first
    std::int32_t* namedArguments;  ///< member identifiers of the named ones, which stand first
    std::uint32_t argumentCount;
    std::uint32_t namedArgumentCount;
};

/// What a failed call by name says; the texts belong to the caller.
struct ExceptionInformation {
    std::uint16_t code;
    std::uint16_t reserved;
    Bstr source;
    Bstr description;
    Bstr helpFile;
    std::uint32_t helpContext;
    void* reservedPointer;
    HResult (*deferredFill)(ExceptionInformation*);
    HResult result;
};

struct IDispatch : IUnknown {
    static constexpr Guid kId{0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

    virtual HResult GetTypeInfoCount(std::uint32_t* count) = 0;
    virtual HResult GetTypeInfo(std::uint32_t index, std::uint32_t locale, void** information) = 0;
    virtual HResult GetIDsOfNames(const Guid& reserved, char16_t** names, std::uint32_t count, std::uint32_t locale,
                                  std::int32_t* identifiers) = 0;
    virtual HResult Invoke(std::int32_t member, const Guid& reserved, std::uint32_t locale, std::uint16_t flags,
                           CallArguments* arguments, Variant* result, ExceptionInformation* exception,
                           std::uint32_t* argumentError) = 0;

protected:
    ~IDispatch() = default;
};

// --- error information -----------------------------------------------------------------------------------------------

/// What the last failed call on an object said, for the thread that made the call. A caller that got a failure asks the
/// same object for this interface; an object without it has nothing to say beyond its code.
struct IErrorSource : IUnknown {
    static constexpr Guid kId{0x5E1D3B70, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// @param number       run-time error number (5, 91, ...) or a negative code; 0 when nothing failed on this thread
    /// @param description  the words of whoever failed; freed by the caller
    /// @param source       name of what failed; freed by the caller
    /// @return kOk, or kFalse when there is nothing to tell
    virtual HResult LastError(std::int32_t* number, Bstr* description, Bstr* source) = 0;

protected:
    ~IErrorSource() = default;
};

// --- objects of the host ---------------------------------------------------------------------------------------------

/// Objects that a host registers in the process, by class identifier: the message class and the dialogs. The
/// component's class factory answers to this interface; what is registered here is asked before any registration on
/// disk.
struct IHostObjects : IUnknown {
    static constexpr Guid kId{0x5E1D3B71, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// Registers a factory; a second one for the same class replaces the first.
    /// @return kOk; kInvalidArgument when factory is null
    virtual HResult Register(const Guid& classId, IClassFactory* factory) = 0;
    /// @return kOk; kFalse when nothing was registered for the class
    virtual HResult Revoke(const Guid& classId) = 0;

protected:
    ~IHostObjects() = default;
};

}  // namespace velcoran::com
