#pragma once

#include "form/panel/context.h"
#include "output.h"

#include "controls/input/second_press.h"

namespace velcoran::form {

class WaitState;

/// The two views of the window, its output commands, and its answers to the viewer's notifications.
class ViewerEvents {
public:
    ViewerEvents(const Context& context, WaitState& waitState);
    ~ViewerEvents();

private:
    void connectButtons();
    void connectViewer();
    void hideFilters();
    void showFilters();
    void setUpPrinter();
    void print();
    void showPlainMessage(const QString& text);
    void exportReport();
    void exportChosen();
    void showFieldValue(const QStringList& fields);
    void openDocument(const QString& number, const QString& partner);
    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] OutputSubject subject() const;
    [[nodiscard]] bool isPickerOpen() const;

    const Context& m_context;
    WaitState& m_waitState;
    std::unique_ptr<IOutput> m_output;
    controls::SecondPressGuard m_secondPress;
};

}  // namespace velcoran::form
