/// The dialogs that the window opens. A host may register factories for these classes (com::IHostObjects) before it
/// calls Incarca; without them the component shows its own.
///
/// Each has one operation, modal to the window: kOk when the user has chosen, kFalse when he cancelled, a failure code
/// otherwise. Texts that only come in belong to the caller, texts that only come out are freed by the caller. A text in
/// a choice comes in and goes out: a dialog that replaces it frees what stood there (com::freeText) and leaves one of
/// its own (com::allocateText), which the caller frees; one that it does not change it leaves as it is.
#pragma once

#include <velcoran/com.h>

namespace velcoran {

constexpr com::Guid kClassExportDialog{0x5E1D3B82, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
constexpr com::Guid kClassPrintDialog{0x5E1D3B83, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};
constexpr com::Guid kClassPrinterSetupDialog{
    0x5E1D3B84, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

/// One format of the export dialog. The types 1 and 33 are the report engine's own two.
struct ExportFormat {
    std::int32_t type;
    const char16_t* name;       ///< terminated, as the user reads it
    const char16_t* extension;  ///< terminated, without the point
};

struct IExportDialog : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B85, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// @param window         the report window's native handle, 0 when it has none
    /// @param suggestedFile  in: full path of the default choice; stays the caller's
    /// @param type           out: type of the chosen format
    /// @param file           out: full path of the chosen file; freed by the caller
    virtual com::HResult Choose(std::uintptr_t window, const ExportFormat* formats, std::uint32_t formatCount,
                                com::Bstr suggestedFile, std::int32_t* type, com::Bstr* file) = 0;

protected:
    ~IExportDialog() = default;
};

/// What is printed and where. Pages count from 1; lastPage 0 stands for the last page of the report.
struct PrintChoice {
    com::Bstr printer;  ///< in and out: name; empty for the system's default. Freed by whoever replaces it
    com::Bstr file;     ///< in and out: path of a file to print into; empty for paper. Freed by whoever replaces it
    std::int32_t firstPage;
    std::int32_t lastPage;
    std::int32_t copies;
    std::int32_t isCollated;
};

struct IPrintDialog : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B86, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// @param choice  in: what stands now; out: what the user chose
    virtual com::HResult Choose(std::uintptr_t window, std::int32_t pageCount, PrintChoice* choice) = 0;

protected:
    ~IPrintDialog() = default;
};

constexpr std::int32_t kPortrait = 1;
constexpr std::int32_t kLandscape = 2;

/// Printer and paper of the report. Margins in twips.
struct PrinterSetup {
    com::Bstr printer;  ///< in and out: name; empty for none. Freed by whoever replaces it
    com::Bstr paper;    ///< in and out: "A4", "A3", "A5", "Letter", "Legal". Freed by whoever replaces it
    std::int32_t orientation;
    std::int32_t left, top, right, bottom;
};

struct IPrinterSetupDialog : com::IUnknown {
    static constexpr com::Guid kId{0x5E1D3B87, 0x2A64, 0x4C0B, {0x9E, 0x11, 0x3C, 0x77, 0x42, 0xD0, 0xA8, 0x01}};

    /// @param setup  in: what stands now; out: what the user chose
    virtual com::HResult Choose(std::uintptr_t window, PrinterSetup* setup) = 0;

protected:
    ~IPrinterSetupDialog() = default;
};

}  // namespace velcoran
