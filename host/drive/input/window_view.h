#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

class QObject;
class QWidget;

namespace velcoran::host {

/// What a host can see of the report window without knowing its classes: objects by name, properties by name.
///
/// The window is the top-level object "RptStoc"; its controls are the descendants that carry the property "twips",
/// their place in the design's units.

/// The window object, which outlives its controls; null before the first Incarca.
[[nodiscard]] QObject* windowObject();
/// The window while it is loaded, otherwise null.
[[nodiscard]] QWidget* loadedWindow();

/// Every control of the loaded window, containers before their contents.
[[nodiscard]] QList<QWidget*> controls();
/// The control with a name; null for none.
[[nodiscard]] QWidget* findControl(const QString& name);
/// The report viewer, null while the window is not loaded.
[[nodiscard]] QWidget* viewer();
/// True while the viewer loads a report.
[[nodiscard]] bool isViewerBusy();

/// Name of the control that has the keyboard focus, empty for none.
[[nodiscard]] QString focusedControl();

/// The whole window: "window", "controls" and "members".
[[nodiscard]] QJsonObject windowState();

}  // namespace velcoran::host
