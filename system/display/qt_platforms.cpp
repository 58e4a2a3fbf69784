#include "qt_platforms.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QLibraryInfo>
#include <QPluginLoader>
#include <QSettings>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velcoran::system {

namespace {

// Qt's qplatformintegrationplugin.h: QPlatformIntegrationFactoryInterface_iid, the same in every Qt 6
constexpr QLatin1StringView kPlatformInterface("org.qt-project.Qt.QPA.QPlatformIntegrationFactoryInterface.5.3");

/// The folder of the program that runs, where an installation of its own may keep plugins. The application object would
/// tell, and there is none yet.
QString programFolder() { return QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_s)).path(); }

/// The folder of plugins that a qt.conf beside the program names; empty without one. Qt reads it with the application
/// object.
QString configuredFolder() {
    const QDir program(programFolder());
    for (const QString& name : {u"qt6.conf"_s, u"qt.conf"_s}) {
        if (!program.exists(name)) continue;
        const QSettings settings(program.absoluteFilePath(name), QSettings::IniFormat);
        const QDir prefix(program.absoluteFilePath(settings.value("Paths/Prefix"_L1, u"."_s).toString()));
        return prefix.absoluteFilePath(settings.value("Paths/Plugins"_L1, u"plugins"_s).toString());
    }
    return {};
}

QStringList pluginFolders() {
    QStringList paths = QCoreApplication::libraryPaths();
    const QString configured = configuredFolder();
    if (!configured.isEmpty()) {
        paths.removeAll(QDir(QLibraryInfo::path(QLibraryInfo::PluginsPath)).canonicalPath());
        paths.append(configured);
    }
    paths.append(programFolder());
    for (QString& path : paths) path += u"/platforms"_s;
    const QString extra = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
    if (!extra.isEmpty()) paths.append(extra);
    return paths;
}

bool isPluginFor(const QString& file, const QString& name) {
    if (!QLibrary::isLibrary(file)) return false;
    const QJsonObject description = QPluginLoader(file).metaData();
    if (description.value("IID"_L1).toString() != kPlatformInterface) return false;
    const QJsonArray keys = description.value("MetaData"_L1).toObject().value("Keys"_L1).toArray();
    return std::any_of(keys.begin(), keys.end(), [&name](const QJsonValue& key) {
        return key.toString().compare(name, Qt::CaseInsensitive) == 0;
    });
}

}  // namespace

QByteArray qtPlatformList() {
    QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    if (!chosen.isEmpty()) return chosen;
    const bool isWayland = qEnvironmentVariableIsSet("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland";
    return isWayland ? "wayland;xcb" : "xcb";
}

QList<QtPlatform> readPlatforms(const QByteArray& list) {
    QList<QtPlatform> platforms;
    for (const QByteArray& entry : list.split(';')) {
        QStringList words = QString::fromLatin1(entry).split(u':', Qt::SkipEmptyParts);
        if (words.isEmpty()) continue;
        const QString name = words.takeFirst().toLower();
        platforms.append({entry, name, words});
    }
    return platforms;
}

QString platformPlugin(const QString& name) {
    for (const QString& folder : pluginFolders()) {
        const QDir place(folder);
        for (const QString& file : place.entryList(QDir::Files))
            if (isPluginFor(place.absoluteFilePath(file), name)) return place.absoluteFilePath(file);
    }
    return {};
}

bool loadPlugin(const QString& file) { return QPluginLoader(file).load(); }

}  // namespace velcoran::system
