#pragma once

class QObject;

namespace velcoran::system {

/// A window that waits for a call to end: what of the input is its own, and what its user wants meanwhile.
class IWaiting {
public:
    virtual ~IWaiting() = default;

    /// Whose a receiver of events is.
    enum class Part {
        others,  ///< none of the window's: the host's
        window,  ///< the window alone, or what the platform has for it
        inside,  ///< anything else of the window
        dialog,  ///< in a dialog over the window, which works meanwhile
    };
    [[nodiscard]] virtual Part partOf(const QObject& receiver) const = 0;
    /// The user wants the call to end.
    virtual void stop() = 0;
    /// The window is to close as soon as nothing of it runs.
    virtual void close() = 0;
    /// True once it was stopped or closed.
    [[nodiscard]] virtual bool isUnwanted() const = 0;
    /// Asks the call to end. Asked again and again: a cancel may reach only what runs at that moment.
    virtual void cancel() noexcept = 0;
};

}  // namespace velcoran::system
