#pragma once

#include "com/object.h"

#include <velcoran/mesaje.h>

#include <utility>

namespace velcoran::component {

/// The message class for hosts that register none: a modal dialog with title, icon, text and an OK button.
class MessageDialog final : public com::Object<IMesaje> {
public:
    com::HResult Afiseaza(com::Bstr Text, std::int16_t Stil, std::int16_t Implicit, com::Bstr Titlu,
                          std::int32_t rezervat1, std::int32_t rezervat2, std::int32_t* rezultat) override;
};

/// The host's message object, with the dialog above for what it does not get shown: its failure, also one that it
/// throws, neither hurts the window nor loses the message.
class HostMessages final : public com::Object<IMesaje> {
public:
    /// @param host  never null
    explicit HostMessages(com::Ref<IMesaje> host) : m_host(std::move(host)) {}

    com::HResult Afiseaza(com::Bstr Text, std::int16_t Stil, std::int16_t Implicit, com::Bstr Titlu,
                          std::int32_t rezervat1, std::int32_t rezervat2, std::int32_t* rezultat) override;

private:
    com::Ref<IMesaje> m_host;
};

}  // namespace velcoran::component
