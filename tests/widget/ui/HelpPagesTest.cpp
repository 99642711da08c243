// The manual and the web site, with an opener of the test's in place of the desktop's.
#include "ui/HelpPages.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <string>

#include "locale/Locale.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr int kLimitMs = 60000;

class HelpPagesTest : public testing::Test {
protected:
    HelpPagesTest() : path_(std::getenv("PATH")) {
        setenv("PATH", folder_.GetPath().c_str(), 1);
        Kivora::SetLocale("en_US", false);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                auto* const box = qobject_cast<QMessageBox*>(widget);
                if (box != nullptr && box->isVisible()) {
                    title_ = box->windowTitle();
                    text_ = box->text();
                    modal_ = box->isModal();
                    box->accept();
                }
            }
        });
        timer_.start(1);
    }
    ~HelpPagesTest() override { setenv("PATH", path_.c_str(), 1); }
    void AddManual() const {
        std::filesystem::create_directories(help_ / "en");
        std::ofstream(help_ / "en" / "index.html") << "<html></html>";
    }
    void InstallOpener(const std::string& line) const {
        const std::string opener = folder_ / "xdg-open";
        std::ofstream(opener) << "#!/bin/sh\n" << line << "\n";
        chmod(opener.c_str(), 0700);
    }
    std::string Opened() const {
        std::ifstream file(folder_ / "opened");
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const KivoraTest::CTemporaryFolder folder_;
    const std::filesystem::path help_ = folder_ / "Help";
    const QString programDir_ = QString::fromStdString(folder_.GetPath().string());
    QWidget window_;
    QString title_;
    QString text_;
    bool modal_ = false;

private:
    QTimer timer_;
    const std::string path_;
};

TEST_F(HelpPagesTest, AMissingManualIsSaidWithItsPath) {
    HelpPages pages(&window_, programDir_);
    pages.showHelp();
    EXPECT_EQ(title_, "Help Not Found");
    EXPECT_EQ(text_.toStdString(),
              "Sorry, the help file is not available:\r\n" + (help_ / "en" / "index.html").string());
}

TEST_F(HelpPagesTest, AManualThatCannotBeOpenedIsSaidWithItsPath) {
    AddManual();
    InstallOpener("exit 3");
    HelpPages pages(&window_, programDir_);
    pages.showHelp();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !title_.isEmpty(); }, kLimitMs));
    EXPECT_EQ(title_, "Cannot Launch Help");
    EXPECT_EQ(text_.toStdString(), "Sorry, failed to open the help file:\r\n" + (help_ / "en" / "index.html").string());
    EXPECT_FALSE(modal_) << "somebody may be playing by now";
}

TEST_F(HelpPagesTest, TheManualIsOpenedWithoutAWord) {
    AddManual();
    InstallOpener("printf %s \"$1\" > '" + (folder_ / "opened").string() + "'");
    {
        HelpPages pages(&window_, programDir_);
        pages.showHelp();
    }
    EXPECT_EQ(Opened(), (help_ / "en" / "index.html").string());
    EXPECT_EQ(title_, "");
}

TEST_F(HelpPagesTest, TheWebSiteIsOpened) {
    InstallOpener("printf %s \"$1\" > '" + (folder_ / "opened").string() + "'");
    {
        HelpPages pages(&window_, programDir_);
        pages.showWebSite("https://brennholt.example/kivora/en/");
    }
    EXPECT_EQ(Opened(), "https://brennholt.example/kivora/en/");
}

}  // namespace
