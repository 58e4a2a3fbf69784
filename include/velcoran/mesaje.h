/// The message class of the host: every message of the window goes through it. A host registers a factory for
/// kClassMesaje (com::IHostObjects) before it calls Incarca; without one the component shows a dialog of its own.
#pragma once

#include <velcoran/com.h>

namespace velcoran {

constexpr com::Guid kClassMesaje{0x5E1D3B80, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

/// Values of Stil: the published message-box styles, button bits 0 (OK alone).
constexpr std::int16_t kStilPlain = 0;
constexpr std::int16_t kStilError = 16;
constexpr std::int16_t kStilInformation = 64;

struct IMesaje : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B81, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// Shows Text in a modal dialog titled Titlu and returns when the user has closed it.
    /// @param Stil      kStilError or kStilInformation
    /// @param Implicit  always 0, as are the two trailing arguments
    /// @param rezultat  number of the button; the window does not read it; may be null
    virtual com::HResult Afiseaza(com::Bstr Text, std::int16_t Stil, std::int16_t Implicit, com::Bstr Titlu,
                                  std::int32_t rezervat1, std::int32_t rezervat2, std::int32_t* rezultat) = 0;

protected:
    ~IMesaje() = default;
};

}  // namespace velcoran
