#pragma once

#include "desktop/own_look.h"
#include "report/layout/page_setup.h"

#include <QDialog>
#include <QString>
#include <QStringList>

#include <array>

class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QRadioButton;

namespace velcoran::dialogs {

class SheetPreview;

/// Printer and sheet of the report: printer, paper, orientation, margins in millimetres, with a picture of the sheet.
/// A margin takes a quarter of its side of the sheet at most, so that half of it is left to the report.
class PrinterSetupDialog final : public QDialog {
public:
    /// @param printers  names of the printers; without one the list says "(niciuna)"
    /// @param printer   the one chosen so far; empty, or one that is gone: defaultPrinter is offered
    PrinterSetupDialog(QWidget* parent, const QStringList& printers, const QString& printer,
                       const QString& defaultPrinter, const report::PageSetup& setup);

    /// Name of the chosen printer; empty for none.
    [[nodiscard]] QString printer() const;
    [[nodiscard]] report::PageSetup setup() const;

private:
    [[nodiscard]] QComboBox* makePrinterList(const QStringList& printers, const QString& printer,
                                             const QString& defaultPrinter);
    void addSheet(QFormLayout& form);
    void addMargins(QFormLayout& form);
    void addButtons();
    void followSheet();

    desktop::OwnLook m_look{*this};
    report::PageSetup m_start;
    QComboBox* m_printer = nullptr;
    QComboBox* m_paper = nullptr;
    QRadioButton* m_portrait = nullptr;
    QRadioButton* m_landscape = nullptr;
    std::array<QDoubleSpinBox*, 4> m_margins{};  ///< left, top, right, bottom
    SheetPreview* m_preview = nullptr;
};

}  // namespace velcoran::dialogs
