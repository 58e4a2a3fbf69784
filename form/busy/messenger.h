#pragma once

#include "form/rules/messages.h"

#include <velcoran/mesaje.h>

namespace velcoran::form {

class Activity;

/// Shows messages through the window's message object, the host's or our own; nothing while there is none.
class Messenger {
public:
    /// Both outlive this.
    Messenger(Activity& activity, const com::Ref<IMesaje>& mesaje) : m_activity(activity), m_mesaje(mesaje) {}

    void show(const Message& message) const;

private:
    Activity& m_activity;
    const com::Ref<IMesaje>& m_mesaje;
};

}  // namespace velcoran::form
