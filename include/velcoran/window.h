/// What a host can ask of the report window beside Incarca, and what it can hear of it. The class factory of
/// clsVelcoran answers to IReportWindow.
///
/// There is one window at most, on one thread; every function is called on that thread, and so is every function of
/// IWindowEvents, from the event loop or from Dispatch, never inside another call of the component but OpenDocument.
#pragma once

#include <velcoran/com.h>
#include <velcoran/connection.h>

namespace velcoran {

/// Implemented by a host that wants to hear of the window. What a function returns changes nothing, and neither does an
/// exception.
struct IWindowEvents : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B88, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// The window was closed, by its user or by the host. It may be opened anew, also from here.
    virtual com::HResult Closed() = 0;
    /// The component has let go of a connection, after a close or a call with another one, and nothing of it runs there
    /// any more. Where a driver does not answer a cancel this comes when it has returned.
    /// @param connection  the one that was handed to Incarca, to be compared; the component holds no count of it
    virtual com::HResult ConnectionReleased(IConnection* connection) = 0;
    /// The user asks for the invoice behind a row: Enter on it, or "Deschide documentul" in its menu. Called inside the
    /// window's own handler; until it returns the window takes no input and Incarca is refused.
    /// @param document  number, NumarFactura of the row
    /// @param kind      "Import" or "Export", as the report was asked for
    /// @param partner   code, CodClient of the row; empty for none
    virtual com::HResult OpenDocument(com::Bstr document, com::Bstr kind, com::Bstr partner) = 0;

protected:
    ~IWindowEvents() = default;
};

/// The window of the thread. A failing call leaves its error with com::IErrorSource of the class factory; on another
/// thread than the window's each fails with 5.
struct IReportWindow : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B89, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// Sets who hears of the window, before or after it opens; kept until it is set anew, or until the library is
    /// unloaded.
    /// @param events  counted; null for nobody
    virtual com::HResult Advise(IWindowEvents* events) = 0;
    /// Closes the window as its user does.
    /// @return kOk when it is closed, or was; kFalse when the close follows, as soon as what runs has returned
    virtual com::HResult Close() = 0;
    /// For hosts without an event loop that Qt can use: does what waits for the window, and returns.
    /// @param milliseconds  how long to wait for something to do where nothing waits; 0 to 60,000
    /// @return kOk while the window is open, kFalse otherwise
    virtual com::HResult Dispatch(std::uint32_t milliseconds) = 0;
    /// Puts the fence around a host's connection: what is no plain question of the window's fails with -2147217900
    /// before it reaches it. Any thread.
    /// @param connection  not null  @param fenced  to be handed to Incarca; counted
    virtual com::HResult Fence(IConnection* connection, IConnection** fenced) = 0;

protected:
    ~IReportWindow() = default;
};

}  // namespace velcoran
