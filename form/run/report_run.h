#pragma once

#include "db/command.h"
#include "filters/filter_state.h"

namespace velcoran::form {

class Activity;
class ControlTree;
class Messenger;
class WaitState;
struct Members;

/// A report run: what a click on Raport does, from the check of the filters to the report in the viewer's hands.
class ReportRun {
public:
    /// All of them outlive this.
    ReportRun(ControlTree& controls, Members& members, Activity& activity, db::ICallRunner& runner,
              const Messenger& messenger, WaitState& waitState);

    /// Every failure ends here, of whatever type: pointer restored, one message, the window stays as it is. A stop
    /// leaves the wait state without a word.
    void run();

private:
    void steps();
    [[nodiscard]] bool isRefused() const;
    void tidyCodes();
    [[nodiscard]] db::Command makeCommand() const;
    void handOver(const filters::FilterState& state, const db::Command& cmdRaport);
    void view();

    ControlTree& m_controls;
    Members& m_members;
    Activity& m_activity;
    db::ICallRunner& m_runner;
    const Messenger& m_messenger;
    WaitState& m_waitState;
};

}  // namespace velcoran::form
