#pragma once

#include "report_output.h"

#include <QString>

namespace velcoran::form {

class Activity;
class ControlTree;
class Messenger;
class Surroundings;
struct Members;

/// Print, printer set-up and export of the report that is shown, as the window's user asks for them: what fails is said
/// in the window's words.
class OutputCommands {
public:
    /// All of them outlive this.
    OutputCommands(const ControlTree& controls, const Members& members, Activity& activity, Surroundings& surroundings,
                   const Messenger& messenger);

    void print();
    void exportReport();
    /// Nothing before a report has been loaded, while one loads and while the picker is open.
    void setUpPrinter();

private:
    void exportChosen();
    void showPlainMessage(const QString& text);
    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] OutputSubject subject() const;

    const ControlTree& m_controls;
    const Members& m_members;
    Activity& m_activity;
    Surroundings& m_surroundings;
    const Messenger& m_messenger;
    std::unique_ptr<IReportOutput> m_output;
};

}  // namespace velcoran::form
