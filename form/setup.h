#pragma once

#include "form/panel/context.h"

#include <QDate>

namespace velcoran::form {

/// What the host gives to Incarca, unchanged.
struct SetupArguments {
    QString argTipRaport;
    QDate DataProgram;
    QString Soc;
};

/// Sets the loaded window up for a report kind, step by step; shows it first of all. A second set-up leaves every list
/// with its own entries alone and every caption as designed for the kind; typed values stay.
/// @throws what a step throws; the steps before it stand
void runSetup(const Context& context, const SetupArguments& arguments);

}  // namespace velcoran::form
