#pragma once

#include "viewer/pages/zoom.h"

#include <QComboBox>

namespace velcoran::viewer {

/// The toolbar's list of sizes; a percentage can be typed there too.
class ZoomBox : public QComboBox {
    Q_OBJECT

public:
    explicit ZoomBox(QWidget* parent);

    /// @param percent  what the zoom comes to just now
    void setZoom(const Zoom& zoom, double percent);

signals:
    void zoomChosen(const velcoran::viewer::Zoom& zoom);
    /// The entry is done or given up.
    void left();

protected:
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void choose(int index);
    void enter();

    QString m_percent;
};

}  // namespace velcoran::viewer
