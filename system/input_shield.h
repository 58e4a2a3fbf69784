#pragma once

#include "waiting.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

namespace velcoran::system {

/// Drops the input of a window that waits; Esc in it stops what it waits for, closing it closes it. Painting and all
/// else passes. Lives on the window's thread.
class InputShield final : public QObject {
public:
    enum class Others {
        kept,  ///< input of the host's windows, and a quit, waits until the shield goes: delivered inside our call, it
               ///< would come back into the host
        passed,  ///< a host that dispatches events inside its own call keeps its windows alive
    };

    /// @param waiting  outlives this
    InputShield(IWaiting& waiting, Others others);
    /// Delivers what was kept, by the event loop.
    ~InputShield() override;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    struct Kept {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    void note(IWaiting::Part part, QEvent& event);
    void keep(QObject& receiver, const QEvent& event);

    IWaiting& m_waiting;
    Others m_others;
    std::vector<Kept> m_kept;
};

}  // namespace velcoran::system
