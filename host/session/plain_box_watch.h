#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace velcoran::host {

/// Closes the dialogs that the window opens by itself, without asking an object of the host, so that a run never waits
/// for a person: plain message boxes are reported and taken as read, file and print dialogs are cancelled.
class PlainBoxWatch : public QObject {
public:
    using Report = std::function<void(const QString& text, const QString& title)>;
    explicit PlainBoxWatch(Report report);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    Report m_report;
};

}  // namespace velcoran::host
