#include "nk/desktop/nk_keyboard_layout.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "nk/desktop/nk_xcb_xkb.h"
#include "support/SystemLayout.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

namespace {

TEST(KeySymbol, TellsTheCharacterThatItTypes) {
    EXPECT_EQ(NK::GetCharacterOfKeySymbol(0x2E), U'.');
    EXPECT_EQ(NK::GetCharacterOfKeySymbol(0x06C0), U'ю') << "Cyrillic_yu";
    EXPECT_EQ(NK::GetCharacterOfKeySymbol(0x01002116), U'№') << "a symbol made of a code point";
    EXPECT_EQ(NK::GetCharacterOfKeySymbol(0xFF51), 0U) << "Left";
    EXPECT_EQ(NK::GetCharacterOfKeySymbol(0), 0U);
}

TEST(LanguageOfLayout, KnowsTheLayoutsByTheirNames) {
    EXPECT_EQ(NK::GetLanguageOfLayout("us", ""), 0x0409);
    EXPECT_EQ(NK::GetLanguageOfLayout("gb", ""), 0x0809);
    EXPECT_EQ(NK::GetLanguageOfLayout("ru", ""), 0x0419);
    EXPECT_EQ(NK::GetLanguageOfLayout("de", ""), 0x0407);
    EXPECT_EQ(NK::GetLanguageOfLayout("fr", ""), 0x040C);
    EXPECT_EQ(NK::GetLanguageOfLayout("af", ""), 0x048C) << "the first of the table";
    EXPECT_EQ(NK::GetLanguageOfLayout("za", ""), 0x1C09) << "the last of the table";
}

TEST(LanguageOfLayout, AVariantKeepsTheLanguageUnlessItIsOfAnother) {
    EXPECT_EQ(NK::GetLanguageOfLayout("us", "dvorak-intl"), 0x0409);
    EXPECT_EQ(NK::GetLanguageOfLayout("us", "rus"), 0x0419);
    EXPECT_EQ(NK::GetLanguageOfLayout("ru", "phonetic_winkeys"), 0x0419);
    EXPECT_EQ(NK::GetLanguageOfLayout("ru", "tt"), 0x0444);
    EXPECT_EQ(NK::GetLanguageOfLayout("ua", "rstu_ru"), 0x0419);
    EXPECT_EQ(NK::GetLanguageOfLayout("ua", "rstu"), 0x0422);
    EXPECT_EQ(NK::GetLanguageOfLayout("kz", "ruskaz"), 0x0419);
    EXPECT_EQ(NK::GetLanguageOfLayout("ch", "fr_nodeadkeys"), 0x100C);
}

TEST(LanguageOfLayout, TakesTheVariantInBrackets) {
    EXPECT_EQ(NK::GetLanguageOfLayout("ru(winkeys)", ""), 0x0419);
    EXPECT_EQ(NK::GetLanguageOfLayout("us(rus)", ""), 0x0419);
    EXPECT_EQ(NK::GetLanguageOfLayout("us(", ""), 0x0409);
}

TEST(LanguageOfLayout, IsZeroForWhatItDoesNotKnow) {
    EXPECT_EQ(NK::GetLanguageOfLayout("", ""), 0x0000);
    EXPECT_EQ(NK::GetLanguageOfLayout("zz", "rus"), 0x0000);
    EXPECT_EQ(NK::GetLanguageOfLayout("US", ""), 0x0000);
    EXPECT_EQ(NK::GetLanguageOfLayout("ru", "udm"), 0x0000);
}

TEST(KeyboardLanguage, IsUnknownWithoutADisplay) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(NK::GetKeyboardLanguage(), NK::kLanguageUnknown);
}

TEST(KeyboardLanguage, IsUnknownWhereNoServerAnswers) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            unsetenv("WAYLAND_DISPLAY");
            setenv("DISPLAY", ":64999", 1);
            std::exit(NK::GetKeyboardLanguage() == 0 && NK::GetKeyboardLanguage() == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

/// A virtual X server on a free display, which DISPLAY names while this lives.
class KeyboardDisplay : public testing::Test {
protected:
    void SetUp() override {
        int ends[2] = {-1, -1};
        ASSERT_EQ(pipe(ends), 0);
        const std::string number = std::to_string(ends[1]);
        server_ = Spawn({"Xvfb", "-displayfd", number, "-screen", "0", "64x64x24", "-nolisten", "tcp"});
        close(ends[1]);
        ASSERT_GT(server_, 0);
        std::string display = ":";
        char character = '\0';
        while (read(ends[0], &character, 1) == 1 && character != '\n') {
            display += character;
        }
        close(ends[0]);
        ASSERT_GT(display.size(), 1U) << "the server did not start";
        setenv("DISPLAY", display.c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
    }
    void TearDown() override {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
        StopServer();
    }
    void StopServer() {
        if (server_ > 0) {
            kill(server_, SIGTERM);
            waitpid(server_, nullptr, 0);
            server_ = 0;
        }
    }

    static pid_t Spawn(std::vector<std::string> words) {
        std::vector<char*> arguments;
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        pid_t child = 0;
        const int result = posix_spawnp(&child, arguments[0], &files, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&files);
        return result == 0 ? child : 0;
    }
    static void UseLayout(const std::string& layout, const std::string& variant) {
        const pid_t child = Spawn({"setxkbmap", "-layout", layout, "-variant", variant});
        ASSERT_GT(child, 0);
        int status = -1;
        waitpid(child, &status, 0);
        ASSERT_EQ(status, 0);
    }
    /// Gives the server a keymap without names of layouts.
    static void UseMap(const std::string& text) {
        const KivoraTest::CTemporaryFolder folder;
        const std::string path = (folder / "map.xkb").native();
        std::ofstream(path) << text;
        const pid_t child = Spawn({"xkbcomp", "-w", "0", path, getenv("DISPLAY")});
        ASSERT_GT(child, 0);
        int status = -1;
        waitpid(child, &status, 0);
        ASSERT_EQ(status, 0);
    }
    /// Makes the layout of that number the active one, as a desktop's switch does.
    static void LockGroup(std::uint8_t group) {
        xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
        xcb_xkb_use_extension_cookie_t cookie = xcb_xkb_use_extension(server, 1, 0);
        std::free(xcb_xkb_use_extension_reply(server, cookie, nullptr));
        xcb_xkb_latch_lock_state(server, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
        std::free(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
        xcb_disconnect(server);
    }

private:
    pid_t server_ = 0;
};

/// What the key types that has Z on a US keyboard; 0 while the layout is not known.
char32_t KeyOfZ() {
    const std::shared_ptr<const NK::TKeyboardLayout> layout = NK::GetKeyboardLayout();
    return layout ? (*layout)[52].character : 0;
}

/// Waits until the server has told of a change.
bool BecomesLanguage(NK::LanguageNumber language) {
    return KivoraTest::WaitUntil([language] { return NK::GetKeyboardLanguage() == language; });
}

TEST_F(KeyboardDisplay, TellsTheLanguageOfTheActiveLayoutAndFollowsAChange) {
    EXPECT_EQ(NK::GetKeyboardLanguage(), 0x0409);
    UseLayout("ru,us", ",");
    EXPECT_TRUE(BecomesLanguage(0x0419));
    UseLayout("de", "");
    EXPECT_TRUE(BecomesLanguage(0x0407));
    UseLayout("us,de", "rus,");
    EXPECT_TRUE(BecomesLanguage(0x0419));
    LockGroup(1);
    EXPECT_TRUE(BecomesLanguage(0x0407)) << "the same layouts, another one of them active";
    LockGroup(0);
    NK::SyncKeyboardLayout();
    EXPECT_EQ(NK::GetKeyboardLanguage(), 0x0419) << "what was told before a call of Sync is known after it";
    const std::shared_ptr<const NK::TKeyboardLayout> before = NK::GetKeyboardLayout();
    EXPECT_EQ(NK::GetKeyboardLayout(), before) << "the same object while nothing changes";
    UseLayout("us,gr", ",");
    EXPECT_TRUE(KivoraTest::WaitUntil([] { return KeyOfZ() == U'z'; }));
    LockGroup(1);
    EXPECT_TRUE(KivoraTest::WaitUntil([] { return KeyOfZ() == U'\u03B6'; })) << "zeta";
    EXPECT_EQ(NK::GetKeyboardLanguage(), 0x0408);
    LockGroup(3);
    EXPECT_TRUE(KivoraTest::WaitUntil([] { return KeyOfZ() == U'\u03B6'; })) << "there are two: it goes round";
    LockGroup(0);
    EXPECT_TRUE(KivoraTest::WaitUntil([] { return KeyOfZ() == U'z'; }));
    UseMap(KivoraTest::SystemKeymap("de"));
    EXPECT_TRUE(KivoraTest::WaitUntil([] { return KeyOfZ() == U'y'; })) << "a map of one's own, under the same names";
    setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_EQ(NK::GetKeyboardLayout(), nullptr);
    EXPECT_EQ(NK::GetKeyboardLanguage(), 0x0000) << "the X server of a Wayland session does not know";
    unsetenv("WAYLAND_DISPLAY");
    StopServer();
    EXPECT_TRUE(BecomesLanguage(0x0000)) << "the server is gone";
    EXPECT_EQ(NK::GetKeyboardLayout(), nullptr);
}

}  // namespace
