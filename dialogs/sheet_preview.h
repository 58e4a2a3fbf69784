#pragma once

#include "report/layout/page_setup.h"

#include <QWidget>

namespace velcoran::dialogs {

/// A small picture of a sheet in its proportions, with its margins.
class SheetPreview final : public QWidget {
public:
    explicit SheetPreview(QWidget* parent);
    void setSheet(const report::PageSetup& setup);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    report::PageSetup m_setup;
};

}  // namespace velcoran::dialogs
