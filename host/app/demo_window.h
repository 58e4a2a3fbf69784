#pragma once

#include "host/session/component_client.h"

#include <QWidget>

class QDateEdit;
class QLineEdit;

namespace velcoran::host {

/// The main window of a small accounting program: its working date, its company prefix and the two commands that open
/// the report window. Errors of the component are shown in a message box.
class DemoWindow : public QWidget {
    Q_OBJECT

public:
    /// @param client  outlives the window
    DemoWindow(ComponentClient& client, com::Ref<IConnection> connection, QDate date, const QString& prefix);

    /// Opens the report window for a kind, as the commands do.
    void openReport(const QString& kind);

protected:
    /// Closing the program closes its report window first.
    void closeEvent(QCloseEvent* event) override;

private:
    ComponentClient& m_client;
    com::Ref<IConnection> m_connection;
    QDateEdit* m_date;
    QLineEdit* m_prefix;
};

}  // namespace velcoran::host
