#include "app/PanelPictures.h"

#include <gtest/gtest.h>

#include <fstream>
#include <QImage>
#include <QPushButton>
#include <QWidget>

#include "support/TemporaryFolder.h"

namespace {

class PanelPictures : public testing::Test {
protected:
    PanelPictures() {
        panel_.resize(100, 50);
        panel_.setStyleSheet("background: red");
        view_.setObjectName("record-view");
        view_.setGeometry(0, 0, 50, 50);
        QObject::connect(&view_, &QPushButton::clicked, [this] { view_.hide(); });
        view_.setStyleSheet("background: blue; border: 0");
        panel_.show();
    }
    QString Dir() const { return QString::fromStdString((folder_ / "pictures").string()); }

    const KivoraTest::CTemporaryFolder folder_;
    QWidget panel_;
    QPushButton view_{&panel_};
};

TEST_F(PanelPictures, ShowBothViews) {
    ASSERT_TRUE(Kivora::SavePanelPictures(panel_, Dir()));
    const QImage first(Dir() + "/panel.png");
    const QImage second(Dir() + "/panel-alt.png");
    EXPECT_EQ(first.deviceIndependentSize(), QSizeF(100, 50));
    EXPECT_EQ(first.pixelColor(25, 25), QColor(Qt::blue));
    EXPECT_EQ(second.pixelColor(25, 25), QColor(Qt::red));
}

TEST_F(PanelPictures, ShowTheSettings) {
    ASSERT_TRUE(Kivora::SaveSettingsPicture(nullptr, Dir()));
    EXPECT_GT(QImage(Dir() + "/settings.png").width(), 300);
}

TEST_F(PanelPictures, AFolderThatCannotBeMadeIsAFailure) {
    std::ofstream(folder_ / "pictures") << "a file where the folder should be";
    testing::internal::CaptureStderr();
    EXPECT_FALSE(Kivora::SavePanelPictures(panel_, Dir()));
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_NE(told.find("the picture could not be written: " + Dir().toStdString() + "/panel.png"), std::string::npos)
        << told;
}

}  // namespace
