#pragma once

#include "filters/filter_state.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <random>

namespace velcoran::tests {

/// One of the window's statements.
struct WindowStatement {
    QString name;
    std::function<QString(const filters::FilterState&)> build;
};

/// The nine lookups and the three shapes of the report.
[[nodiscard]] const QList<WindowStatement>& windowStatements();

/// A place of the filter state whose value is spliced into statements.
struct SplicePoint {
    QString name;
    std::function<void(filters::FilterState&, const QString&)> put;
    bool isQuoted;  ///< between apostrophes; else bare
};

[[nodiscard]] const QList<SplicePoint>& splicePoints();

/// Every field filled with harmless values, so that every condition stands in the statements.
[[nodiscard]] filters::FilterState filledState(const QString& kind);

/// A value that tries to do something of its own: behind its apostrophe, or at once where it stands bare.
[[nodiscard]] QString hostileValue(bool isQuoted, std::mt19937& random);

/// Values that only disturb the balance of the apostrophes.
[[nodiscard]] const QStringList& oddQuotes();

}  // namespace velcoran::tests
