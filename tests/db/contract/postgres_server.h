#pragma once

#include <QString>
#include <QTemporaryDir>

#include <memory>

class QProcess;

namespace velcoran::tests {

/// A PostgreSQL server with an empty data folder of its own, on a free port of the loopback address. It stops with the
/// object, and with the process should that be killed.
class PostgresServer {
public:
    /// @throws std::runtime_error that says what is missing or went wrong
    PostgresServer();
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    [[nodiscard]] int port() const { return m_port; }
    [[nodiscard]] static QString password() { return QStringLiteral("cheie-9f2c"); }
    /// For the Unicode driver. @param port  of a proxy in front of the server; 0 for the server's own
    [[nodiscard]] QString connectionText(int port = 0) const;

    /// The server of this test program, started when it is first asked for.
    [[nodiscard]] static PostgresServer& instance();

private:
    void initialise();
    void start();
    void awaitStart();

    QString m_driver;  ///< start of its connection texts
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_process;
    int m_port = 0;
};

}  // namespace velcoran::tests
