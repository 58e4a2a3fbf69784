#pragma once

#include <QObject>

#include <functional>

class QKeyEvent;
class QWidget;

namespace velcoran::form {

/// What holds for keys wherever in the window, its lists and its dialogs the focus is. Enter and Esc act on the press
/// alone: held down they do nothing more, also where the press has moved the focus. With Alt alone held nothing is
/// typed. Esc while a report loads stops the load.
class HeldKeys final : public QObject {
public:
    /// @param isLoading  whether a report loads, which Esc then stops @param stopLoad  stops it
    HeldKeys(QWidget& window, std::function<bool()> isLoading, std::function<void()> stopLoad);
    ~HeldKeys() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    [[nodiscard]] bool isStop(const QKeyEvent& key, const QWidget& receiver) const;

    QWidget& m_window;
    std::function<bool()> m_isLoading;
    std::function<void()> m_stopLoad;
};

}  // namespace velcoran::form
