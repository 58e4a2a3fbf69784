#pragma once

#include "platform/com/object.h"

#include <velcoran/mesaje.h>

namespace velcoran::component {

/// The message class for hosts that register none: a modal dialog with title, icon, text and an OK button.
class MessageDialog final : public com::Object<IMesaje> {
public:
    com::HResult Afiseaza(com::Bstr Text, std::int16_t Stil, std::int16_t Implicit, com::Bstr Titlu,
                          std::int32_t rezervat1, std::int32_t rezervat2, std::int32_t* rezultat) override;
};

}  // namespace velcoran::component
