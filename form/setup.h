#pragma once

#include "db/connection.h"

#include <QDate>
#include <QString>

namespace velcoran::form {

class Activity;
class ControlTree;
class Surroundings;
struct Members;

/// What the host gives to Incarca, unchanged.
struct SetupArguments {
    QString argTipRaport;
    QDate DataProgram;
    QString Soc;
};

/// Sets the loaded window up for a report kind, step by step; shows it first of all. A second set-up leaves every list
/// with its own entries alone and every caption as designed for the kind; typed values stay.
/// @throws what a step throws; the steps before it stand
void runSetup(ControlTree& controls, Members& members, Activity& activity, db::ICallRunner& runner,
              Surroundings& surroundings, const SetupArguments& arguments);

}  // namespace velcoran::form
