#pragma once

#include "platform/engine/page_setup.h"

#include <QWidget>

namespace velcoran::printing {

/// A small picture of a sheet in its proportions, with its margins.
class SheetPreview final : public QWidget {
public:
    explicit SheetPreview(QWidget* parent);
    void setSheet(const engine::PageSetup& setup);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    engine::PageSetup m_setup;
};

}  // namespace velcoran::printing
