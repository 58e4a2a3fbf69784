#pragma once

#include <QString>

#include <velcoran/mesaje.h>

#include <cstdint>

namespace velcoran::form {

class Activity;

/// Shows a message through a message object, the host's or our own; nothing while there is none.
/// @param style  kStilError or kStilInformation
void showMessage(Activity& activity, const com::Ref<IMesaje>& mesaje, const QString& text, std::int16_t style,
                 const QString& title);

}  // namespace velcoran::form
