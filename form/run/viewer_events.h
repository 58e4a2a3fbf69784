#pragma once

#include <QStringList>

namespace velcoran::form {

class Activity;
class ControlTree;
class HandlerGuard;
class Messenger;
class OutputCommands;
class Surroundings;
class WaitState;

/// The window's answers to what the report viewer tells.
class ViewerEvents {
public:
    /// All of them outlive this.
    ViewerEvents(const ControlTree& controls, Activity& activity, HandlerGuard& handlers, Surroundings& surroundings,
                 const Messenger& messenger, OutputCommands& output, WaitState& waitState);

private:
    void showFieldValue(const QStringList& fields);
    void openDocument(const QString& number, const QString& partner);

    const ControlTree& m_controls;
    Activity& m_activity;
    Surroundings& m_surroundings;
    const Messenger& m_messenger;
};

}  // namespace velcoran::form
