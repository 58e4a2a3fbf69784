#include "system/display/qt_platforms.h"
#include "system/display/x_display.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace velcoran::system {
namespace {

TEST(ReadXAddress, followsTheRulesOfTheClientLibrary) {
    struct {
        const char* name;
        const char* path;  // null for a name that is none
        const char* host;
        int display, screen;
    } constexpr kCases[] = {
        {":0", "/tmp/.X11-unix/X0", "localhost", 0, 0},
        {":12.3", "/tmp/.X11-unix/X12", "localhost", 12, 3},
        {"unix:1", "/tmp/.X11-unix/X1", "", 1, 0},
        {"unix/:1", "/tmp/.X11-unix/X1", "", 1, 0},
        {"unix/here:1", "/tmp/.X11-unix/X1", "", 1, 0},
        {"localhost:10.0", "", "localhost", 10, 0},
        {"tcp/conta.example:2.1", "", "conta.example", 2, 1},
        {"::1:4", "", "::1", 4, 0},
        {"[::1]:4", "", "::1", 4, 0},
        {"", nullptr, nullptr, 0, 0},
        {"0", nullptr, nullptr, 0, 0},
        {":", nullptr, nullptr, 0, 0},
        {":x", nullptr, nullptr, 0, 0},
        {":1.", nullptr, nullptr, 0, 0},
        {":1.x", nullptr, nullptr, 0, 0},
        {":-1", nullptr, nullptr, 0, 0},
        {":59536", nullptr, nullptr, 0, 0},
        {":123456", nullptr, nullptr, 0, 0},
        {"/tmp/.X11-unix/X0", nullptr, nullptr, 0, 0},
    };
    for (const auto& row : kCases) {
        const auto address = readXAddress(row.name);
        ASSERT_EQ(address.has_value(), row.path != nullptr) << row.name;
        if (!address) continue;
        EXPECT_EQ(address->path, QByteArray(row.path)) << row.name;
        EXPECT_EQ(address->host, QByteArray(row.host)) << row.name;
        EXPECT_EQ(std::pair(address->display, address->screen), std::pair(row.display, row.screen)) << row.name;
    }
}

TEST(ReadPlatforms, takesNamesAndArgumentsAsQtDoes) {
    const auto platforms = readPlatforms(";XCB:a::b; ;wayland;:;offscreen:");
    std::vector<std::string> read;
    for (const QtPlatform& platform : platforms)
        read.push_back(
            (platform.entry + '|' + platform.name.toLatin1() + '|' + platform.arguments.join(u',').toLatin1())
                .toStdString());
    EXPECT_EQ(read,
              (std::vector<std::string>{"XCB:a::b|xcb|a,b", " | |", "wayland|wayland|", "offscreen:|offscreen|"}));
}

class Variables : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : kNames) m_kept.emplace_back(name, qgetenv(name)), qunsetenv(name);
    }
    void TearDown() override {
        for (const auto& [name, value] : m_kept) value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }

    static constexpr const char* kNames[] = {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE"};

private:
    std::vector<std::pair<const char*, QByteArray>> m_kept;
};

TEST_F(Variables, nameThePlatformsInQtsOrder) {
    struct {
        std::vector<std::pair<const char*, const char*>> set;
        const char* list;
    } const kCases[] = {
        {{}, "xcb"},
        {{{"DISPLAY", ":0"}}, "xcb"},
        {{{"WAYLAND_DISPLAY", ""}}, "wayland;xcb"},
        {{{"WAYLAND_DISPLAY", "w"}, {"DISPLAY", ":0"}}, "wayland;xcb"},
        {{{"XDG_SESSION_TYPE", "wayland"}}, "wayland;xcb"},
        {{{"XDG_SESSION_TYPE", "x11"}}, "xcb"},
        {{{"QT_QPA_PLATFORM", "a:b;c"}, {"WAYLAND_DISPLAY", "w"}}, "a:b;c"},
        {{{"QT_QPA_PLATFORM", ""}, {"WAYLAND_DISPLAY", "w"}}, "wayland;xcb"},
    };
    for (const auto& row : kCases) {
        for (const char* name : kNames) qunsetenv(name);
        for (const auto& [name, value] : row.set) qputenv(name, value);
        EXPECT_EQ(qtPlatformList(), QByteArray(row.list));
    }
}

}  // namespace
}  // namespace velcoran::system
