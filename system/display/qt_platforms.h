#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace velcoran::system {

/// One entry of Qt's list of platforms, as it stands there: "xcb", "offscreen:size=800x600".
struct QtPlatform {
    QByteArray entry;
    QString name;           ///< lower case
    QStringList arguments;  ///< what follows it behind colons
};

/// The platforms that Qt tries, in its order, for an application object without arguments: QT_QPA_PLATFORM where it is
/// not empty, else Wayland and X by the display that the environment names.
[[nodiscard]] QByteArray qtPlatformList();
/// Entries without a name are left out, as Qt leaves them out.
[[nodiscard]] QList<QtPlatform> readPlatforms(const QByteArray& list);

/// Where Qt finds the plugin of a platform (QT_QPA_PLATFORM_PLUGIN_PATH, QT_PLUGIN_PATH, its own folder, the
/// program's); empty when it finds none.
[[nodiscard]] QString platformPlugin(const QString& name);
/// Loads a plugin, which stays in the process as it does with Qt.
/// @return false when it, or a library that it needs, cannot be loaded
[[nodiscard]] bool loadPlugin(const QString& file);

}  // namespace velcoran::system
