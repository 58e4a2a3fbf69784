#include "contract/odbc_driver.h"

#include <QProcess>

#include <stdexcept>

namespace velcoran::tests {

QString driverText(const QString& name, const QString& package) {
    QProcess query;
    query.start(QStringLiteral("odbcinst"), {QStringLiteral("-q"), QStringLiteral("-d"), QStringLiteral("-n"), name});
    if (!query.waitForFinished() || query.exitCode() != 0)
        throw std::runtime_error(
            QStringLiteral("the ODBC driver %1 is missing: install %2").arg(name, package).toStdString());
    return QStringLiteral("Driver={%1};").arg(name);
}

}  // namespace velcoran::tests
