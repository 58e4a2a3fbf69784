#pragma once

#include "control.h"

#include <QPushButton>

namespace velcoran::controls {

enum class ButtonLook {
    flat,       ///< filled ground, thin frame in the text colour
    graphical,  ///< raised, with its ground colour
};

/// A command button. Enter and the blank both click when the key handler leaves them. clicked() is QAbstractButton's;
/// its slot may destroy the button.
class Button : public ControlOf<QPushButton> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit Button(ButtonLook look = ButtonLook::flat, QWidget* parent = nullptr);

    /// Centred with its blanks. "&" before a letter underlines it and makes it the accelerator, "&&" shows one "&".
    void setCaption(const QString& caption);
    [[nodiscard]] QString caption() const { return m_caption; }
    /// Letter that clicks with Alt while the button is enabled and visible, for a caption without "&"; its first
    /// occurrence in the caption is underlined.
    void setAccelerator(QChar letter);

    /// "caption", with its "&".
    [[nodiscard]] QVariantMap controlState() const override;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_caption;
    QChar m_accelerator;
    ButtonLook m_look;
};

}  // namespace velcoran::controls
