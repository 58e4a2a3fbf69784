#include "contract/postgres_server.h"

#include "contract/odbc_driver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <stdexcept>

#include <arpa/inet.h>
#include <grp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

constexpr auto kPrograms = "/usr/lib/postgresql/15/bin/";
constexpr auto kUser = "velcoran";
constexpr int kStartSeconds = 120;

/// The account that the server runs under when the test is root, which it refuses.
constexpr unsigned kNobody = 65534;

[[noreturn]] void fail(const QString& words) { throw std::runtime_error(words.toStdString()); }

QString program(const char* name) {
    const QString path = QString::fromLatin1(kPrograms) + QString::fromLatin1(name);
    if (!QFileInfo(path).isExecutable()) fail(u"%1 is missing: install postgresql-15"_s.arg(path));
    return path;
}

std::unique_ptr<QProcess> makeProcess() {
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::MergedChannels);
    process->setChildProcessModifier([] {
        if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(1);
        prctl(PR_SET_PDEATHSIG, SIGQUIT);
    });
    return process;
}

/// Whether the server's account can reach a folder.
bool isReachable(const QString& folder) {
    for (QDir at(folder);;) {
        if (!QFileInfo(at.path()).permission(QFileDevice::ExeOther)) return false;
        if (!at.cdUp()) return true;
    }
}

int findFreePort() {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    const bool isFound = bind(descriptor, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                         getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    close(descriptor);
    if (!isFound) fail(u"no free port"_s);
    return ntohs(address.sin_port);
}

}  // namespace

PostgresServer::PostgresServer() {
    m_driver = driverText(u"PostgreSQL Unicode"_s, u"odbc-postgresql"_s);
    const bool isHere = geteuid() != 0 || isReachable(QDir::currentPath());
    m_folder =
        std::make_unique<QTemporaryDir>((isHere ? QDir::currentPath() : QDir::tempPath()) + u"/postgres-XXXXXX"_s);
    if (!m_folder->isValid()) fail(u"no folder for the server: "_s + m_folder->errorString());
    initialise();
    start();
}

PostgresServer::~PostgresServer() {
    if (!m_process || m_process->state() == QProcess::NotRunning) return;
    kill(static_cast<pid_t>(m_process->processId()), SIGINT);  // ends its clients and stops
    if (!m_process->waitForFinished()) m_process->kill();
    m_process->waitForFinished();
}

void PostgresServer::initialise() {
    QFile password(m_folder->filePath(u"password"_s));
    if (!password.open(QIODevice::WriteOnly)) fail(password.errorString());
    password.write(PostgresServer::password().toUtf8());
    password.close();
    if (geteuid() == 0) {
        for (const QString& path : {m_folder->path(), password.fileName()})
            if (chown(path.toUtf8().constData(), kNobody, kNobody) != 0) fail(u"chown failed"_s);
    }
    const auto process = makeProcess();
    process->start(program("initdb"), {u"-D"_s, m_folder->filePath(u"data"_s), u"-U"_s, QString::fromLatin1(kUser),
                                       u"-A"_s, u"scram-sha-256"_s, u"--pwfile"_s, password.fileName(), u"--no-sync"_s,
                                       u"-E"_s, u"UTF8"_s, u"--locale=C"_s});
    if (!process->waitForFinished(kStartSeconds * 1000) || process->exitCode() != 0)
        fail(u"initdb failed: "_s + QString::fromLocal8Bit(process->readAll()));
}

void PostgresServer::start() {
    m_port = findFreePort();
    m_process = makeProcess();
    m_process->setStandardOutputFile(m_folder->filePath(u"log"_s));
    m_process->start(program("postgres"),
                     {u"-D"_s, m_folder->filePath(u"data"_s), u"-F"_s, u"-p"_s, QString::number(m_port), u"-c"_s,
                      u"listen_addresses=127.0.0.1"_s, u"-c"_s, u"unix_socket_directories="_s});
    awaitStart();
}

void PostgresServer::awaitStart() {
    for (int i = 0; i < kStartSeconds * 10 && m_process->state() != QProcess::NotRunning; ++i) {
        QProcess check;
        check.start(program("pg_isready"), {u"-q"_s, u"-h"_s, u"127.0.0.1"_s, u"-p"_s, QString::number(m_port)});
        if (check.waitForFinished() && check.exitCode() == 0) return;
        m_process->waitForFinished(100);
    }
    QFile log(m_folder->filePath(u"log"_s));
    const bool isReadable = log.open(QIODevice::ReadOnly);
    fail(u"the server did not start: "_s + (isReadable ? QString::fromLocal8Bit(log.readAll()) : QString()));
}

QString PostgresServer::connectionText(int port) const {
    return m_driver + u"Server=127.0.0.1;Port=%1;Database=postgres;UID=%2;PWD=%3;SSLmode=disable"_s.arg(
                          QString::number(port == 0 ? m_port : port), QString::fromLatin1(kUser), password());
}

PostgresServer& PostgresServer::instance() {
    static PostgresServer server;
    return server;
}

}  // namespace velcoran::tests
