#include "blocked.h"

#include "belongs_to.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace velcoran::form {

// A dialog that is modal to its own window alone blocks no other one.
bool isBlocked(const QWidget& window) {
    const QWindowList all = QGuiApplication::topLevelWindows();
    return std::any_of(all.begin(), all.end(), [&window](const QWindow* each) {
        return each->isVisible() && each->modality() == Qt::ApplicationModal && !belongsTo(*each, window);
    });
}

}  // namespace velcoran::form
