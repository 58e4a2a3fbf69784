#pragma once

#include "desktop.h"

#include <QObject>

#include <memory>

class QIcon;
class QSize;
class QStyle;
class QWidget;

namespace velcoran::desktop {

/// Keeps a window, everything in it and every dialog, list, menu and tip that it opens in our style, in the colours and
/// the font of the user's desktop: whatever style sheet, style, palette or font a host has given to the application, or
/// gives to it later. A widget that sets colours or a font itself keeps them. Nothing outside the window is touched.
class OwnLook final : public QObject {
public:
    /// @param window  lives longer; best before it has children, which measure themselves when they are made
    explicit OwnLook(QWidget& window);
    ~OwnLook() override;

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    void adopt(QWidget& widget);
    bool takeOver(QWidget& widget);
    static void inheritAnew(QWidget& window);
    void dress(QWidget& window) const;
    void dressIfBare(QWidget& window) const;
    void prepare(QWidget& widget);
    [[nodiscard]] QIcon greyed(QIcon icon, const QWidget& widget, QSize size) const;
    void greyIcons(QWidget& widget) const;
    void keep(QWidget& widget);
    void followDesktop();

    QWidget& m_window;
    std::shared_ptr<QStyle> m_style;
    Desktop m_desktop;
};

}  // namespace velcoran::desktop
