#include "locale/HelpFile.h"

#include <sys/stat.h>
#include <QSignalSpy>
#include <QTest>

#include <thread>

#include "locale/Locale.h"
#include "unit/locale/LocaleFixture.h"

namespace {

using Kivora::FindHelpFile;

constexpr int kLimitMs = 60000;

class HelpFile : public LocaleFixture {
protected:
    QString Folder() const { return QString::fromStdString(folder_.GetPath().string()); }
    void Add(const std::string& language) const {
        std::filesystem::create_directories(folder_ / "Help" / language);
        std::ofstream(folder_ / "Help" / language / "index.html") << "<html></html>";
    }
};

TEST_F(HelpFile, IsTheOneOfTheLanguage) {
    Add("en");
    Add("ru");
    EXPECT_EQ(FindHelpFile(Folder(), "ru_RU").path, Folder() + "/Help/ru/index.html");
    EXPECT_EQ(FindHelpFile(Folder(), "en_US").path, Folder() + "/Help/en/index.html");
}

TEST_F(HelpFile, IsTheEnglishOneWhereTheLanguageHasNone) {
    Add("en");
    EXPECT_EQ(FindHelpFile(Folder(), "ru_RU").path, Folder() + "/Help/en/index.html");
    EXPECT_TRUE(FindHelpFile(Folder(), "ru_RU").exists);
}

TEST_F(HelpFile, MissingNamesTheEnglishPath) {
    EXPECT_EQ(FindHelpFile(Folder(), "ru_RU").path, Folder() + "/Help/en/index.html");
    EXPECT_FALSE(FindHelpFile(Folder(), "ru_RU").exists);
}

/// The manual beside the test program, and an opener of the test's in place of the desktop's.
class HelpOpener : public HelpFile {
protected:
    HelpOpener() : path_(std::getenv("PATH")) { setenv("PATH", folder_.GetPath().c_str(), 1); }
    ~HelpOpener() override { setenv("PATH", path_.c_str(), 1); }
    void InstallOpener(const std::string& line) const {
        const std::string opener = folder_ / "xdg-open";
        std::ofstream(opener) << "#!/bin/sh\n" << line << "\n";
        chmod(opener.c_str(), 0700);
    }

    const std::filesystem::path help_ = folder_ / "Help";

private:
    const std::string path_;
};

TEST(GetProgramDir, IsTheTestsFolder) {
    EXPECT_EQ(Kivora::GetProgramDir(), QCoreApplication::applicationDirPath());
}

TEST_F(HelpOpener, SaysWhichManualIsMissing) {
    Kivora::SetLocale("en_US", false);
    Kivora::HelpOpener opener(Folder());
    const QSignalSpy missing(&opener, &Kivora::HelpOpener::HelpNotFound);
    opener.Open();
    ASSERT_EQ(missing.count(), 1);
    EXPECT_EQ(missing[0][0].toString().toStdString(), (help_ / "en" / "index.html").string());
}

TEST_F(HelpOpener, HandsTheManualToTheDesktop) {
    Kivora::SetLocale("en_US", false);
    Add("en");
    InstallOpener("printf %s \"$1\" > '" + (folder_ / "opened").string() + "'");
    Kivora::HelpOpener opener(Folder());
    const QSignalSpy failed(&opener, &Kivora::HelpOpener::LaunchFailed);
    opener.Open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(folder_ / "opened"); }, kLimitMs));
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            std::ifstream file(folder_ / "opened");
            return std::string(std::istreambuf_iterator<char>(file), {}) == (help_ / "en" / "index.html").string();
        },
        kLimitMs));
    EXPECT_EQ(failed.count(), 0);
}

TEST_F(HelpOpener, SaysOnTheCallersThreadThatTheDesktopFailed) {
    Kivora::SetLocale("en_US", false);
    Add("en");
    InstallOpener("exit 3");
    Kivora::HelpOpener opener(Folder());
    QString path;
    std::thread::id thread;
    QObject::connect(&opener, &Kivora::HelpOpener::LaunchFailed, [&](const QString& text) {
        path = text;
        thread = std::this_thread::get_id();
    });
    opener.Open();
    EXPECT_EQ(path, "") << "never before Open() returns";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !path.isEmpty(); }, kLimitMs));
    EXPECT_EQ(path.toStdString(), (help_ / "en" / "index.html").string());
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(HelpOpener, MayGoWhileTheDesktopIsBusy) {
    Kivora::SetLocale("en_US", false);
    Add("en");
    InstallOpener("echo x > '" + (folder_ / "begun").string() + "'; read -r line < '" + (folder_ / "gate").string() +
                  "'; exit 1");
    ASSERT_EQ(mkfifo((folder_ / "gate").c_str(), 0600), 0);
    {
        Kivora::HelpOpener opener(Folder());
        opener.Open();
        ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(folder_ / "begun"); }, kLimitMs));
        std::ofstream(folder_ / "gate") << "go\n";
    }
    QCoreApplication::processEvents();
}

}  // namespace
