#pragma once

#include "control.h"

#include <QLabel>

namespace velcoran::controls {

/// A text without focus. Transparent until a back colour is set. The caption is shown exactly, runs of blanks and "&"
/// included; what is wider than the label wraps at blanks where the place has the lines, and runs on beyond it where
/// not.
class Label : public ControlOf<QLabel> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit Label(QWidget* parent = nullptr);

    void setCaption(const QString& caption);
    [[nodiscard]] QString caption() const { return text(); }

    /// "caption".
    [[nodiscard]] QVariantMap controlState() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// A designed place that is too short for a caption of another report kind must not cut its last word.
    void makeRoom();
};

}  // namespace velcoran::controls
