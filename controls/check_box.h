#pragma once

#include "control.h"

#include <QCheckBox>

namespace velcoran::controls {

/// A tick box with a caption on a filled ground.
class CheckBox : public ControlOf<QCheckBox> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit CheckBox(QWidget* parent = nullptr);

    /// Shown as it stands, "&" included.
    void setCaption(const QString& caption);
    [[nodiscard]] QString caption() const { return m_caption; }
    /// Letter that toggles with Alt while the control is enabled and visible; its first occurrence in the caption is
    /// underlined. A null character removes it.
    void setAccelerator(QChar letter);

    [[nodiscard]] bool value() const { return isChecked(); }
    void setValue(bool isTicked) { setChecked(isTicked); }
    /// A locked box looks as usual but the user cannot change it; code can.
    void setLocked(bool isLocked) { m_isLocked = isLocked; }
    [[nodiscard]] bool isLocked() const { return m_isLocked; }

    /// "caption", "value", "locked".
    [[nodiscard]] QVariantMap controlState() const override;

signals:
    /// After every change of the value, by the user or by code, changed first, then ticked.
    void changed(bool isTicked);
    /// The same, after everybody has heard of the change.
    void ticked(bool isTicked);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void nextCheckState() override;
    bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_caption;
    QChar m_accelerator;
    bool m_isLocked = false;
};

}  // namespace velcoran::controls
