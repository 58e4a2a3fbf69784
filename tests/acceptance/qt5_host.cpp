// A host in the Qt before the component's: both are in the process, each with its own application object.
#include "toolkit_host.h"

#include <QApplication>
#include <QEventLoop>
#include <QLineEdit>
#include <QTimer>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QLineEdit window;
    window.show();
    const auto runLoop = [](int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    };
    runLoop(100);
    const std::string before = hosts::xHandlers();
    const int status = hosts::runHost(argc, argv, runLoop, true);
    hosts::expect(hosts::xHandlers() == before, "the toolkit's handlers of X errors stand");
    hosts::expect(window.isVisible(), "the host's window is there");
    return status;
}
