#pragma once

#include "base/error.h"
#include "dialogs.h"

#include <QJsonValue>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace velcoran::host {

/// The report viewer through its invokable functions. Without a loaded window every answer is empty.

/// Presses a button of the toolbar, or makes a gesture.
QVariant actOnViewer(const QString& action, const QVariantMap& arguments = {});
/// The shown report, null while there is none.
[[nodiscard]] QJsonValue shownReport();
/// The text of one page, from 1; empty for no such page.
[[nodiscard]] QStringList pageLines(int page);
/// Why the last load failed; nothing when it did not.
[[nodiscard]] std::optional<base::Error> loadFailure();
/// The formats of the export dialog, in its order.
[[nodiscard]] QList<Format> exportFormats();

/// Lets the window live until something is done. @return false when that took longer
bool waitUntil(const std::function<bool()>& isDone, double seconds);
/// Lets the window live until the viewer has finished loading. @return false when that took longer
bool waitForViewer(double seconds);

}  // namespace velcoran::host
