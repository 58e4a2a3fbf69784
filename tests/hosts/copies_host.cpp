// A host whose parts have each brought a copy of the library: neither takes the application object away from the other.
#include "fixed_connection.h"
#include "loaded_component.h"

#include <velcoran/window.h>

#include <filesystem>

namespace {

using hosts::expect;

void closeWindow(velcoran::IReportWindow& window) {
    expect(window.Close() == velcoran::com::kOk, "the window closes");
    while (window.Dispatch(0) == velcoran::com::kOk) {
    }
}

/// @param isFirstToLeave  whether the copy that came first leaves first
void work(const std::string& one, const std::string& other, bool isFirstToLeave) {
    const auto connection = velcoran::com::Ref<hosts::FixedConnection>::adopt(new hosts::FixedConnection);
    hosts::LoadedComponent first(one.c_str());
    hosts::LoadedComponent second(other.c_str());
    first.open(u"Import", connection.get());
    second.open(u"Export", connection.get());
    closeWindow(*first.window());
    if (isFirstToLeave) {
        first.release();
        expect(!first.canUnload(), "the second copy's window needs the application object");
        expect(second.window()->Dispatch(10) == velcoran::com::kOk, "its window is alive");
    }
    closeWindow(*second.window());
    second.unload(other);
    first.release();
    first.leave(one);
    expect(connection->count() == 1, "both have let go of the connection");
}

}  // namespace

int main(int argc, char** argv) {
    expect(argc == 3, "two arguments, the library and a folder");
    const std::string copy = std::string(argv[2]) + "/libvelcoran-copy.so";
    std::filesystem::copy_file(argv[1], copy, std::filesystem::copy_options::overwrite_existing);
    for (const bool isFirstToLeave : {true, false, true}) work(argv[1], copy, isFirstToLeave);
    return 0;
}
