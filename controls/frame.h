#pragma once

#include "control.h"

#include <QGroupBox>

namespace velcoran::controls {

enum class FrameLook {
    framed,  ///< a line around, broken by the caption at the top left
    bare,    ///< the ground alone, no line and no caption
};

/// A panel that holds controls. Disabled, it keeps its look and that of its controls, which the user can no longer
/// reach.
class Frame : public ControlOf<QGroupBox> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit Frame(FrameLook look = FrameLook::framed, QWidget* parent = nullptr);

    /// Shown exactly, "&" included.
    void setCaption(const QString& caption);
    [[nodiscard]] QString caption() const { return m_caption; }
    /// A text that the window keeps with the frame; not shown.
    void setTag(const QString& tag) { m_tag = tag; }
    [[nodiscard]] QString tag() const { return m_tag.value_or(QString()); }

    /// "caption"; "tag" once one was given.
    [[nodiscard]] QVariantMap controlState() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_caption;
    std::optional<QString> m_tag;
    FrameLook m_look;
};

}  // namespace velcoran::controls
