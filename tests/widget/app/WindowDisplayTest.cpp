#include "app/WindowDisplay.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <utility>
#include <vector>

#include "support/Files.h"
#include "support/TemporaryFolder.h"

using Kivora::FindWindowDisplay;

namespace {

/// Surroundings in which nothing names a display, and the former ones afterwards.
class WindowDisplay : public testing::Test {
protected:
    WindowDisplay() {
        for (const char* name :
             {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR", "WAYLAND_SOCKET"}) {
            former_.emplace_back(name, qgetenv(name));
            qunsetenv(name);
        }
    }
    ~WindowDisplay() override {
        for (const auto& [name, value] : former_) {
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        }
    }

private:
    std::vector<std::pair<const char*, QByteArray>> former_;
};

}  // namespace

TEST_F(WindowDisplay, IsThatOfTheEnvironment) {
    EXPECT_EQ(FindWindowDisplay({"kivora"}), "");
    qputenv("DISPLAY", ":7");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), ":7");
    qputenv("WAYLAND_DISPLAY", "wayland-1");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), "wayland-1+:7");
}

TEST_F(WindowDisplay, AnotherOneIsChosenByTheToolkitsOptions) {
    qputenv("DISPLAY", ":7");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-display", ":8", "a.kivoraLXPreset"}), ":8");
    EXPECT_EQ(FindWindowDisplay({"kivora", "--display", ":8", "-display", ":9"}), ":9");
    EXPECT_EQ(FindWindowDisplay({"kivora", "--", "-display", ":8"}), ":7");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-display"}), ":7");
    qputenv("WAYLAND_DISPLAY", "wayland-1");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-platform", "xcb"}), ":7");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-platform", "wayland"}), "wayland-1");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-platform", "wayland-egl;xcb:a"}), "wayland-1+:7");
}

TEST_F(WindowDisplay, AnotherOneIsChosenByTheToolkitsVariable) {
    qputenv("DISPLAY", ":7");
    qputenv("WAYLAND_DISPLAY", "wayland-1");
    qputenv("QT_QPA_PLATFORM", "xcb");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), ":7");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-platform", "wayland"}), "wayland-1");
    qputenv("QT_QPA_PLATFORM", "");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), "wayland-1+:7");
}

TEST_F(WindowDisplay, ADisplayInMemoryIsNobodyElses) {
    qputenv("DISPLAY", ":7");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-platform", "offscreen"}), "");
    qputenv("QT_QPA_PLATFORM", "minimal:enable_fonts");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), "");
}

TEST_F(WindowDisplay, OneDisplayHasOneName) {
    qputenv("DISPLAY", ":7.0");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), ":7");
    EXPECT_EQ(FindWindowDisplay({"kivora", "-display", "host.example:10.1"}), "host.example:10");
    qunsetenv("DISPLAY");
    qputenv("XDG_RUNTIME_DIR", "/run/user/1");
    qputenv("WAYLAND_DISPLAY", "/run/user/1/wayland-1");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), "wayland-1");
    qputenv("WAYLAND_DISPLAY", "/run/other/wayland-1");
    EXPECT_EQ(FindWindowDisplay({"kivora"}), "/run/other/wayland-1");
}

TEST_F(WindowDisplay, IsThereWhereOneIsNamedOrNoneIsLookedFor) {
    using Kivora::HasWindowDisplay;
    EXPECT_FALSE(HasWindowDisplay({"kivora"}));
    EXPECT_FALSE(HasWindowDisplay({"kivora", "-platform", "xcb"}));
    EXPECT_TRUE(HasWindowDisplay({"kivora", "-platform", "offscreen"}));
    EXPECT_TRUE(HasWindowDisplay({"kivora", "-display", ":8"}));
    qputenv("WAYLAND_SOCKET", "7");
    EXPECT_TRUE(HasWindowDisplay({"kivora"})) << "as compositors start programs";
    qunsetenv("WAYLAND_SOCKET");
    const KivoraTest::CTemporaryFolder folder;
    qputenv("XDG_RUNTIME_DIR", folder.GetPath().c_str());
    EXPECT_FALSE(HasWindowDisplay({"kivora"}));
    KivoraTest::WriteFileBytes(folder / "wayland-0", "");
    EXPECT_TRUE(HasWindowDisplay({"kivora"})) << "where the toolkit looks when nothing is named";
    EXPECT_FALSE(HasWindowDisplay({"kivora", "-platform", "xcb"}));
    qputenv("DISPLAY", ":7");
    EXPECT_TRUE(HasWindowDisplay({"kivora", "-platform", "xcb"}));
}
