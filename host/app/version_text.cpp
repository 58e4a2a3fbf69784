#include "version_text.h"

#include <QSysInfo>
#include <QtGlobal>

#include <sqlite3.h>

namespace velcoran::host {

std::string versionText() {
    std::string text = "velcoran-host " VELCORAN_VERSION "\n";
    text += "built: " VELCORAN_BUILD ", " + QSysInfo::buildAbi().toStdString() + "\n";
    text += std::string("running with: Qt ") + qVersion() + ", SQLite " + sqlite3_libversion() + "\n";
    text += "built with: Qt " QT_VERSION_STR ", SQLite " SQLITE_VERSION ", " VELCORAN_BUILT_WITH;
    return text;
}

}  // namespace velcoran::host
