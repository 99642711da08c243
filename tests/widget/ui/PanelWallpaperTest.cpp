// The wallpaper, its cache on the disk, and the tint of the panel.
#include "widget/ui/PanelRig.h"

#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <QImage>
#include <thread>

#include "QtWidgets/skin/QBlinkingLed.h"
#include "support/Files.h"
#include "support/FileSizeLimit.h"
#include "ui/parts/SkinColors.h"
#include "ui/WallpaperCache.h"

using namespace KivoraTest;

namespace {

using Seen = std::vector<std::string>;
constexpr QPoint kBareBody(255, 100);  ///< between two plates, in their shadow
constexpr int kRed = 0;                ///< hues in degrees
constexpr int kGreen = 120;
constexpr int kBlue = 240;

class PanelWallpaper : public PanelTest {
protected:
    /// A picture of one colour.
    QString MakePicture(const std::string& name, const QColor& color, const QSize& size = QSize(590, 200)) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(color);
        const QString path = PathOf(name);
        EXPECT_TRUE(picture.save(path));
        return path;
    }
    /// The panel follows in its next turn of the event loop.
    void Set(const QString& path) {
        Engine().SetWallpaper(path);
        QApplication::processEvents();
    }
    QColor ColorAt(const QPoint& point) {
        QApplication::processEvents();
        return panel->grab(QRect(point, QSize(1, 1))).toImage().pixelColor(0, 0);
    }
    int HueAt(const QPoint& point) { return ColorAt(point).hsvHue(); }
    QString CachePicture() { return PathOf("user/Cache/wallpaper.bmp"); }
    QString CachePath() { return PathOf("user/Cache/wallpaper.txt"); }
    void ExpectFailure(const QString& wallpaper, const QString& text, const QString& path) {
        ModalAnswers answers;
        answers.Click(QMessageBox::Ok);
        Set(wallpaper);
        Wait([&] { return answers.AllGiven() && FindUnaskedBox() == nullptr; });
        EXPECT_EQ(answers.seen, Seen{"Error Loading Wallpaper: " + (text + "\n" + path).toStdString()});
        EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the cursor is restored";
    }
};

TEST_F(PanelWallpaper, IsScaledToThePanelsWidthAndKept) {
    const QString path = MakePicture("blue.png", Qt::blue);
    Set(path);
    EXPECT_EQ(HueAt(kBareBody), kBlue);
    const QImage kept(CachePicture(), "BMP");
    EXPECT_EQ(kept.size(), QSize(2 * 1180, 2 * 300)) << "what is shown, fine enough for a screen at 2x";
    EXPECT_EQ(QImage(path).size(), QSize(590, 200));
    EXPECT_NE(ReadFileBytes((rig.folder / "user/Cache/wallpaper.txt")).find("blue.png"), std::string::npos);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(PanelWallpaper, AKeptPictureIsNotDecodedAgain) {
    const QString path = MakePicture("blue.png", Qt::blue);
    Set(path);
    QImage kept(CachePicture());
    kept.fill(Qt::green);
    ASSERT_TRUE(kept.save(CachePicture(), "BMP"));
    ASSERT_TRUE(std::filesystem::remove(rig.folder / "blue.png"));
    panel->updateSkin();
    EXPECT_EQ(HueAt(kBareBody), kGreen);
}

TEST_F(PanelWallpaper, APictureKeptForAnotherPathIsNotUsed) {
    Set(MakePicture("blue.png", Qt::blue));
    Set(MakePicture("red.png", Qt::red));
    EXPECT_EQ(HueAt(kBareBody), kRed);
    Set(PathOf("blue.png"));
    EXPECT_EQ(HueAt(kBareBody), kBlue);
}

TEST_F(PanelWallpaper, ADamagedCacheIsBuiltAnew) {
    const QString path = MakePicture("blue.png", Qt::blue);
    Set(path);
    const std::string good = ReadFileBytes(rig.folder / "user/Cache/wallpaper.bmp");
    for (const std::string& damaged : {std::string(), std::string("BM"), good.substr(0, 40)}) {
        WriteFileBytes(rig.folder / "user/Cache/wallpaper.bmp", damaged);
        panel->updateSkin();
        EXPECT_EQ(HueAt(kBareBody), kBlue);
        EXPECT_EQ(ReadFileBytes(rig.folder / "user/Cache/wallpaper.bmp"), good);
    }
    for (const std::string& damaged : {std::string(), std::string("\xFF\xFE"), std::string(1000, 'x')}) {
        WriteFileBytes(rig.folder / "user/Cache/wallpaper.txt", damaged);
        panel->updateSkin();
        EXPECT_EQ(HueAt(kBareBody), kBlue);
    }
    ASSERT_TRUE(std::filesystem::remove(rig.folder / "user/Cache/wallpaper.bmp"));
    panel->updateSkin();
    EXPECT_EQ(ReadFileBytes(rig.folder / "user/Cache/wallpaper.bmp"), good);
}

TEST_F(PanelWallpaper, APathOfAnyLettersIsKept) {
    const QString path = MakePicture("обои \xE2\x99\xAB.png", Qt::blue);
    Set(path);
    ASSERT_TRUE(QFile::remove(path));
    panel->updateSkin();
    EXPECT_EQ(HueAt(kBareBody), kBlue);
}

TEST_F(PanelWallpaper, AFileThatChangedUnderItsNameIsTakenAnew) {
    const QString path = MakePicture("picture.png", Qt::blue);
    Set(path);
    ASSERT_EQ(HueAt(kBareBody), kBlue);
    MakePicture("picture.png", Qt::red, QSize(590, 210));
    Engine().SetUIColor(Qt::gray);
    EXPECT_EQ(HueAt(kBareBody), kRed) << "seen with the next change of the skin";
    Set({});
    MakePicture("picture.png", Qt::green, QSize(590, 220));
    Set(path);
    EXPECT_EQ(HueAt(kBareBody), kGreen) << "and when it is chosen again";
}

TEST_F(PanelWallpaper, AnOlderFileInItsPlaceIsAnotherOneToo) {
    const QString path = MakePicture("picture.png", Qt::blue);
    Set(path);
    MakePicture("picture.png", Qt::green);
    std::filesystem::last_write_time(rig.folder / "picture.png",
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(9));
    panel->updateSkin();
    EXPECT_EQ(HueAt(kBareBody), kGreen);
}

TEST_F(PanelWallpaper, ATransparentPictureKeepsTheBodysColourUnderIt) {
    QImage picture(QSize(590, 200), QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    ASSERT_TRUE(picture.save(PathOf("clear.png")));
    Engine().SetUIColor(QColor(20, 60, 120));
    for (int times = 0; times < 2; ++times) {  // decoded, and kept
        Set(PathOf("clear.png"));
        EXPECT_NEAR(HueAt(kBareBody), QColor(20, 60, 120).hsvHue(), 8);
        Set({});
    }
    Set(PathOf("clear.png"));
    Engine().SetUIColor(QColor(120, 40, 20));
    EXPECT_NEAR(HueAt(kBareBody), QColor(120, 40, 20).hsvHue(), 8);
    EXPECT_FALSE(QFile::exists(CachePicture())) << "what is kept has no transparency";
}

TEST_F(PanelWallpaper, OfAHighPictureOnlyTheTopIsScaledAndKept) {
    QImage picture(QSize(590, 5900), QImage::Format_RGB32);
    picture.fill(Qt::red);
    for (int y = 0; y < 150; ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixelColor(x, y, Qt::blue);
        }
    }
    ASSERT_TRUE(picture.save(PathOf("high.png")));
    Set(PathOf("high.png"));
    EXPECT_EQ(QImage(CachePicture()).size(), QSize(2 * 1180, 2 * 300));
    EXPECT_EQ(HueAt(kBareBody), kBlue);
    EXPECT_EQ(HueAt(QPoint(255, 296)), kBlue) << "half of 590 by 300 is what fills the panel's upper part";
}

TEST_F(PanelWallpaper, AShortPictureLeavesTheBodyBelow) {
    Set(MakePicture("flat.png", Qt::blue, QSize(1180, 100)));
    EXPECT_EQ(HueAt(QPoint(255, 99)), kBlue);
    EXPECT_NEAR(HueAt(QPoint(255, 110)), Kivora::CKivora::GetDefaultUIColor().hsvHue(), 5);
}

TEST_F(PanelWallpaper, WithoutAWallpaperThePanelHasItsBody) {
    Wait([&] { return !Find<QBlinkingLed>("midi-led").isLit(); });
    const QImage plain = panel->grab().toImage();
    Set(MakePicture("blue.png", Qt::blue));
    EXPECT_NE(panel->grab().toImage(), plain);
    Set({});
    EXPECT_EQ(panel->grab().toImage(), plain);
}

TEST_F(PanelWallpaper, AFileThatIsNoPictureIsTold) {
    WriteFileBytes(rig.folder / "text.png", "not a picture");
    ExpectFailure(PathOf("text.png"), "Failed to load wallpaper image from:", PathOf("text.png"));
    ExpectFailure(PathOf("missing.png"), "Failed to load wallpaper image from:", PathOf("missing.png"));
    EXPECT_FALSE(std::filesystem::exists(rig.folder / "user/Cache/wallpaper.bmp"));
}

TEST_F(PanelWallpaper, APictureWithoutASizeIsTold) {
    // A picture so flat that nothing is left of its height at the panel's width.
    MakePicture("line.png", Qt::blue, QSize(30000, 1));
    ExpectFailure(PathOf("line.png"), "Cannot determine image size:", PathOf("line.png"));
}

TEST_F(PanelWallpaper, ACacheThatCannotBeSavedIsToldAndThePictureShownAllTheSame) {
    std::filesystem::create_directories(rig.folder / "user/Cache/wallpaper.bmp/in the way");
    ExpectFailure(MakePicture("blue.png", Qt::blue), "Failed to save wallpaper cache to:", CachePicture());
    EXPECT_EQ(HueAt(kBareBody), kBlue);
}

TEST_F(PanelWallpaper, NobodyWaitsForTheEngineWhileAFailureIsTold) {
    std::atomic<bool> played = false;
    std::thread input;
    ModalAnswers answers;
    answers.Then([&](QDialog& box) {
        input = std::thread([&] {
            Engine().PlayNoteOn(60, 100);
            played = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return played.load(); }, kWaitMs));
        box.accept();
    });
    Set(PathOf("missing.png"));
    Wait([&] { return answers.AllGiven() && input.joinable() && FindUnaskedBox() == nullptr; });
    ASSERT_TRUE(input.joinable());
    input.join();
}

TEST_F(PanelWallpaper, AFailureIsToldOnceWhileColoursAreTriedOut) {
    ExpectFailure(PathOf("missing.png"), "Failed to load wallpaper image from:", PathOf("missing.png"));
    ModalAnswers answers;
    Engine().SetUIColor(Qt::blue);
    QApplication::processEvents();
    Engine().SetUIDisplayColor(Qt::blue);
    QApplication::processEvents();
    EXPECT_EQ(answers.seen, Seen{});
    Set({});
    answers.Click(QMessageBox::Ok);
    Set(PathOf("missing.png"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return answers.AllGiven(); }, kWaitMs))
        << "chosen once more it is told once more";
}

TEST_F(PanelWallpaper, AFailureAtTheStartIsToldOnceUntilItChangesAndWithTheWindowThere) {
    const auto startAgain = [this](bool expected) {
        CloseWindow();
        controls->Close();
        controls.reset();
        rig.engine.reset();
        CreateEngine();
        ModalAnswers answers;
        bool windowIsThere = true;
        answers.Then([&](QDialog& box) {
            windowIsThere = window && window->isVisible();
            box.accept();
        });
        ShowPanel();
        if (expected) {
            Wait([&] { return answers.AllGiven() && FindUnaskedBox() == nullptr; });
        }
        EXPECT_TRUE(windowIsThere);
        return answers.seen;
    };
    const Seen told{
        ("Error Loading Wallpaper: Failed to load wallpaper image from:\n" + PathOf("stick.png")).toStdString()};
    MakePicture("stick.png", Qt::blue);
    WriteFileBytes(rig.folder / "user/Kivora.ini", "[Kivora]\nWallpaper=" + PathOf("stick.png").toStdString() + "\n");
    const auto pull = [this] {
        std::filesystem::rename(rig.folder / "stick.png", rig.folder / "pulled.png");
        std::filesystem::remove_all(rig.folder / "user/Cache/wallpaper.bmp");
    };
    pull();
    EXPECT_EQ(startAgain(true), told);
    EXPECT_EQ(startAgain(false), Seen{});
    EXPECT_EQ(startAgain(false), Seen{});
    std::filesystem::rename(rig.folder / "pulled.png", rig.folder / "stick.png");
    EXPECT_EQ(startAgain(false), Seen{});
    EXPECT_EQ(HueAt(kBareBody), kBlue);
    pull();
    EXPECT_EQ(startAgain(true), told) << "it was there in between";
}

TEST_F(PanelWallpaper, TheReasonIsTold) {
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok).Click(QMessageBox::Ok).Click(QMessageBox::Ok);
    Set(PathOf("missing.png"));
    ASSERT_EQ(mkfifo((rig.folder / "fifo.png").c_str(), 0600), 0);
    Set(PathOf("fifo.png"));
    const QString path = MakePicture("blue.png", Qt::blue);
    const CFileSizeLimit full(1000);
    Set(path);
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(answers.details, (Seen{"No such file or directory", "It is no regular file", "File too large"}));
}

TEST_F(PanelWallpaper, NobodyWaitsForAFifoInPlaceOfTheCache) {
    std::filesystem::create_directories(rig.folder / "user/Cache");
    for (const char* const name : {"wallpaper.bmp", "wallpaper.txt", "wallpaper-told.txt"}) {
        ASSERT_EQ(mkfifo((rig.folder / "user/Cache" / name).c_str(), 0600), 0);
    }
    ModalAnswers answers;
    answers.Click(QMessageBox::Ok);
    Set(MakePicture("blue.png", Qt::blue));
    EXPECT_EQ(HueAt(kBareBody), kBlue);
    Wait([&] { return answers.AllGiven(); });
    EXPECT_EQ(answers.details, Seen{"It is no regular file"});
}

TEST_F(PanelWallpaper, AFullDiskIsTold) {
    const QString path = MakePicture("blue.png", Qt::blue);
    const CFileSizeLimit full(1000);
    ExpectFailure(path, "Failed to save wallpaper cache to:", CachePicture());
    EXPECT_EQ(HueAt(kBareBody), kBlue);
}

TEST_F(PanelWallpaper, ACacheWhosePathCannotBeSavedIsTold) {
    std::filesystem::create_directories(rig.folder / "user/Cache/wallpaper.txt/in the way");
    ExpectFailure(MakePicture("blue.png", Qt::blue), "Failed to save wallpaper cache information to:", CachePath());
    EXPECT_EQ(HueAt(kBareBody), kBlue);
}

TEST_F(PanelWallpaper, ACacheFolderThatCannotBeMadeIsTold) {
    WriteFileBytes(rig.folder / "user/Cache", "a file in the folder's place");
    ExpectFailure(MakePicture("blue.png", Qt::blue), "Failed to save wallpaper cache to:", CachePicture());
}

TEST_F(PanelWallpaper, TheBodyAndTheDisplaysTakeTheirColours) {
    Engine().SetUIColor(QColor(20, 60, 120));
    EXPECT_LT(ColorAt(QPoint(255, 100)).red(), ColorAt(QPoint(255, 100)).blue());
    const QPoint onMainDisplay(268 + 200, 56 + 22 + 6);
    Engine().SetUIDisplayColor(QColor(255, 120, 60));
    EXPECT_GT(ColorAt(onMainDisplay).red(), ColorAt(onMainDisplay).blue());
    const QPoint onTheCheckedKey(330 + 12, 220 + 10);
    Engine().SetUIDisplay2Color(QColor(255, 200, 60));
    EXPECT_GT(ColorAt(onTheCheckedKey).red(), ColorAt(onTheCheckedKey).blue());
}

TEST_F(PanelWallpaper, ColoursThatWouldHideTheTextsAreCorrected) {
    Wait([&] { return !Find<QBlinkingLed>("midi-led").isLit(); });
    const auto looks = [&] {
        QApplication::processEvents();
        return panel->grab().toImage();
    };
    const auto expectAlike = [&](void (Kivora::CKivora::*set)(const QColor&), const QColor& chosen,
                                 const QColor& corrected) {
        ASSERT_NE(chosen, corrected);
        (Engine().*set)(Qt::gray);
        const QImage gray = looks();
        (Engine().*set)(chosen);
        const QImage shown = looks();
        EXPECT_NE(shown, gray);
        (Engine().*set)(Qt::gray);
        ASSERT_EQ(looks(), gray);
        (Engine().*set)(corrected);
        EXPECT_EQ(looks(), shown);
    };
    expectAlike(&Kivora::CKivora::SetUIColor, Qt::white, CapColor(Qt::white));
    expectAlike(&Kivora::CKivora::SetUIDisplayColor, Qt::black, LiftColor(Qt::black));
    expectAlike(&Kivora::CKivora::SetUIDisplay2Color, Qt::darkRed, LiftColor(Qt::darkRed));
}

TEST(WallpaperCache, TheFolderIsMadeForItsOwnerToWrite) {
    const CTemporaryFolder folder;
    const QString path = QString::fromStdString((folder / "picture.png").native());
    QImage picture(QSize(100, 50), QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(path));
    const WallpaperCache cache(QString::fromStdString((folder / "Cache").native()) + "/");
    EXPECT_EQ(cache.Load(path, QSize(200, 300)).image.size(), QSize(200, 100));
    const std::filesystem::perms rights = std::filesystem::status(folder / "Cache").permissions();
    EXPECT_EQ(rights & std::filesystem::perms::owner_all, std::filesystem::perms::owner_all);
    EXPECT_EQ(rights & std::filesystem::perms::others_write, std::filesystem::perms::none);
}

}  // namespace
