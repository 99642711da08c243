// The wallpaper, its cache on the disk, and the tint of the panel.
#include "widget/ui/PanelRig.h"

#include <filesystem>
#include <QImage>

#include "support/Files.h"
#include "support/FileSizeLimit.h"
#include "ui/SkinColors.h"
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
    QColor ColorAt(const QPoint& point) { return panel->grab(QRect(point, QSize(1, 1))).toImage().pixelColor(0, 0); }
    int HueAt(const QPoint& point) { return ColorAt(point).hsvHue(); }
    QString CachePicture() { return PathOf("user/Cache/wallpaper.bmp"); }
    QString CachePath() { return PathOf("user/Cache/wallpaper.txt"); }
    void ExpectFailure(const QString& wallpaper, const QString& text, const QString& path) {
        ModalAnswers answers;
        answers.Click(QMessageBox::Ok);
        Engine().SetWallpaper(wallpaper);
        EXPECT_EQ(answers.seen, Seen{"Error Loading Wallpaper: " + (text + "\n" + path).toStdString()});
        EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the cursor is restored";
    }
};

TEST_F(PanelWallpaper, IsScaledToThePanelsWidthAndKept) {
    const QString path = MakePicture("blue.png", Qt::blue);
    Engine().SetWallpaper(path);
    EXPECT_EQ(HueAt(kBareBody), kBlue);
    const QImage kept(CachePicture(), "BMP");
    EXPECT_EQ(kept.size(), QSize(2 * 1180, 2 * 400)) << "fine enough for a screen at 2x";
    EXPECT_EQ(QImage(path).size(), QSize(590, 200));
    EXPECT_NE(ReadFileBytes((rig.folder / "user/Cache/wallpaper.txt")).find("blue.png"), std::string::npos);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(PanelWallpaper, AKeptPictureIsNotDecodedAgain) {
    const QString path = MakePicture("blue.png", Qt::blue);
    Engine().SetWallpaper(path);
    QImage kept(CachePicture());
    kept.fill(Qt::green);
    ASSERT_TRUE(kept.save(CachePicture(), "BMP"));
    ASSERT_TRUE(std::filesystem::remove(rig.folder / "blue.png"));
    panel->updateSkin();
    EXPECT_EQ(HueAt(kBareBody), kGreen);
}

TEST_F(PanelWallpaper, APictureKeptForAnotherPathIsNotUsed) {
    Engine().SetWallpaper(MakePicture("blue.png", Qt::blue));
    Engine().SetWallpaper(MakePicture("red.png", Qt::red));
    EXPECT_EQ(HueAt(kBareBody), kRed);
    Engine().SetWallpaper(PathOf("blue.png"));
    EXPECT_EQ(HueAt(kBareBody), kBlue);
}

TEST_F(PanelWallpaper, ADamagedCacheIsBuiltAnew) {
    const QString path = MakePicture("blue.png", Qt::blue);
    Engine().SetWallpaper(path);
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
    Engine().SetWallpaper(path);
    ASSERT_TRUE(QFile::remove(path));
    panel->updateSkin();
    EXPECT_EQ(HueAt(kBareBody), kBlue);
}

TEST_F(PanelWallpaper, AShortPictureLeavesTheBodyBelow) {
    Engine().SetWallpaper(MakePicture("flat.png", Qt::blue, QSize(1180, 100)));
    EXPECT_EQ(HueAt(QPoint(255, 99)), kBlue);
    EXPECT_NEAR(HueAt(QPoint(255, 110)), Kivora::CKivora::GetDefaultUIColor().hsvHue(), 5);
}

TEST_F(PanelWallpaper, WithoutAWallpaperThePanelHasItsBody) {
    const QImage plain = panel->grab().toImage();
    Engine().SetWallpaper(MakePicture("blue.png", Qt::blue));
    EXPECT_NE(panel->grab().toImage(), plain);
    Engine().SetWallpaper({});
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
    const auto looks = [&] { return panel->grab().toImage(); };
    const auto expectAlike = [&](void (Kivora::CKivora::*set)(const QColor&), const QColor& chosen,
                                 const QColor& corrected) {
        ASSERT_NE(chosen, corrected);
        (Engine().*set)(Qt::gray);
        const QImage gray = looks();
        (Engine().*set)(chosen);
        const QImage shown = looks();
        EXPECT_NE(shown, gray);
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
    EXPECT_EQ(cache.Load(path, 200).image.size(), QSize(200, 100));
    const std::filesystem::perms rights = std::filesystem::status(folder / "Cache").permissions();
    EXPECT_EQ(rights & std::filesystem::perms::owner_all, std::filesystem::perms::owner_all);
    EXPECT_EQ(rights & std::filesystem::perms::others_write, std::filesystem::perms::none);
}

}  // namespace
