#pragma once

#include "form/panel/context.h"

#include "db/command.h"

namespace velcoran::form {

class WaitState;

/// A report run: what a click on Raport does, from the check of the filters to the report in the viewer's hands.
class ReportRun {
public:
    ReportRun(const Context& context, WaitState& waitState);

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

    const Context& m_context;
    WaitState& m_waitState;
};

}  // namespace velcoran::form
