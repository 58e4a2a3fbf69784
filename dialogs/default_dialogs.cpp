#include "default_dialogs.h"

#include "com/choice_text.h"
#include "com/object.h"
#include "dialog_language.h"
#include "dialog_runner.h"
#include "export_dialog.h"
#include "print_dialog.h"
#include "printer_setup_dialog.h"

namespace velcoran::dialogs {

namespace {

class OwnExportDialog final : public com::Object<IExportDialog> {
public:
    com::HResult Choose(std::uintptr_t window, const velcoran::ExportFormat* formats, std::uint32_t formatCount,
                        com::Bstr suggestedFile, std::int32_t* type, com::Bstr* file) override {
        if (formats == nullptr || formatCount == 0 || type == nullptr || file == nullptr) return com::kInvalidArgument;
        return com::guarded([&]() -> com::HResult {
            const DialogLanguage language;
            QList<OfferedFormat> offered;
            for (const velcoran::ExportFormat* format = formats; format != formats + formatCount; ++format)
                offered.append({format->type, QString::fromUtf16(format->name), QString::fromUtf16(format->extension)});
            ExportDialog dialog(widgetOf(window), offered, com::toQString(suggestedFile));
            if (!runDialog(dialog)) return com::kFalse;
            *type = dialog.type();
            *file = com::toText(dialog.file()).release();
            return com::kOk;
        });
    }
};

class OwnPrintDialog final : public com::Object<IPrintDialog> {
public:
    com::HResult Choose(std::uintptr_t window, std::int32_t pageCount, PrintChoice* choice) override {
        if (choice == nullptr) return com::kNullPointer;
        return com::guarded([&]() -> com::HResult {
            PrintRequest request{com::toQString(choice->printer),
                                 com::toQString(choice->file),
                                 choice->firstPage,
                                 choice->lastPage,
                                 choice->copies,
                                 choice->isCollated != 0};
            if (!choosePrint(widgetOf(window), pageCount, request)) return com::kFalse;
            com::replaceText(choice->printer, request.printer);
            com::replaceText(choice->file, request.file);
            choice->firstPage = request.firstPage;
            choice->lastPage = request.lastPage;
            choice->copies = request.copies;
            choice->isCollated = request.isCollated ? 1 : 0;
            return com::kOk;
        });
    }
};

class OwnPrinterSetupDialog final : public com::Object<IPrinterSetupDialog> {
public:
    com::HResult Choose(std::uintptr_t window, PrinterSetup* setup) override {
        if (setup == nullptr) return com::kNullPointer;
        return com::guarded([&]() -> com::HResult {
            const DialogLanguage language;
            report::PageSetup start = report::pageSetup(com::toQString(setup->paper), setup->orientation == kLandscape);
            start.left = {setup->left};
            start.top = {setup->top};
            start.right = {setup->right};
            start.bottom = {setup->bottom};
            PrinterSetupDialog dialog(widgetOf(window), printerNames(), com::toQString(setup->printer),
                                      defaultPrinterName(), start);
            if (!runDialog(dialog)) return com::kFalse;
            const report::PageSetup chosen = dialog.setup();
            com::replaceText(setup->printer, dialog.printer());
            com::replaceText(setup->paper, chosen.paper);
            setup->orientation = chosen.isLandscape ? kLandscape : kPortrait;
            setup->left = chosen.left.value;
            setup->top = chosen.top.value;
            setup->right = chosen.right.value;
            setup->bottom = chosen.bottom.value;
            return com::kOk;
        });
    }
};

}  // namespace

com::Ref<IExportDialog> makeExportDialog() {
    return com::Ref<IExportDialog>::adopt(com::makeObject<OwnExportDialog>().release());
}

com::Ref<IPrintDialog> makePrintDialog() {
    return com::Ref<IPrintDialog>::adopt(com::makeObject<OwnPrintDialog>().release());
}

com::Ref<IPrinterSetupDialog> makePrinterSetupDialog() {
    return com::Ref<IPrinterSetupDialog>::adopt(com::makeObject<OwnPrinterSetupDialog>().release());
}

}  // namespace velcoran::dialogs
