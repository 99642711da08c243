// What comes from outside is shown as it is, and no file that it names is opened.
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QMenu>
#include <QToolTip>

#include "nk/qt/nk_qt_string.h"
#include "support/OpenWatch.h"
#include "ui/dialogs/midiSettings.h"
#include "ui/dialogs/PresetList.h"
#include "ui/parts/MessageBoxes.h"
#include "ui/parts/PlainTexts.h"
#include "widget/ui/PanelRig.h"

using namespace KivoraTest;

namespace {

constexpr const wchar_t* kMarkup = L"<img src='trap.png'>";

/// In a folder with a picture, "trap.png", that markup would show.
class PlainTextsTest : public PanelTest {
protected:
    PlainTextsTest() {
        std::filesystem::create_directories(rig.folder / "trap");
        QImage picture(4, 4, QImage::Format_RGB32);
        picture.fill(Qt::red);
        EXPECT_TRUE(picture.save(PathOf("trap/trap.png")));
        EXPECT_TRUE(QDir::setCurrent(PathOf("trap")));
        watch = std::make_unique<COpenWatch>(rig.folder / "trap/trap.png");
    }
    ~PlainTextsTest() override {
        CloseWindow();
        QDir::setCurrent(former_);
    }
    void SetUp() override {}

    /// Whether the toolkit would follow markup there: the test could not fail otherwise.
    bool FollowsMarkupWithoutThePlainTexts() {
        QLabel label(markup);
        label.grab();
        return watch->WasOpened();
    }
    static void GrabAndClose(QDialog& dialog) {
        dialog.grab();
        dialog.reject();
    }

    const QString markup = NK::ToQt(kMarkup);
    std::unique_ptr<COpenWatch> watch;

private:
    const QString former_ = QDir::currentPath();
};

TEST_F(PlainTextsTest, TheTrapWorks) {
    EXPECT_TRUE(FollowsMarkupWithoutThePlainTexts());
}

TEST_F(PlainTextsTest, AMessageBoxShowsItsTextAndItsDetailsAsTheyAre) {
    const auto box =
        MessageBoxes::Make(nullptr, QMessageBox::Warning, markup, markup, QMessageBox::Ok, markup + "\n" + markup);
    box->show();
    box->grab();
    EXPECT_FALSE(watch->WasOpened());
    EXPECT_EQ(box->text(), markup);
    EXPECT_EQ(box->informativeText(), markup + "\n" + markup);
    for (const QLabel* label : box->findChildren<QLabel*>()) {
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText) << label->text().toStdString();
    }
}

TEST_F(PlainTextsTest, ALabelOrATooltipDoesNotGuess) {
    const PlainTexts plain;
    QLabel label(markup);
    label.show();
    label.grab();
    QToolTip::showText(QPoint(10, 10), markup, &label);
    QApplication::processEvents();
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QTipLabel")) {
            EXPECT_EQ(static_cast<QLabel*>(widget)->text(), markup);
            widget->grab();
        }
    }
    QToolTip::hideText();
    EXPECT_FALSE(watch->WasOpened());
}

TEST_F(PlainTextsTest, TheBoxesOfTheToolkitShowNamesOfFilesAsTheyAre) {
    const PlainTexts plain;
    QFile taken(markup);
    ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
    taken.close();
    ModalAnswers answers;
    answers.TypeFile(QDir::current().filePath(markup));
    answers.Then([](QDialog& question) {
        question.grab();
        question.reject();
    });
    answers.Refuse();
    QFileDialog dialog(nullptr, {}, QDir::currentPath());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.exec();
    ASSERT_GE(answers.seen.size(), 2u);
    EXPECT_NE(answers.seen[1].find("trap.png"), std::string::npos) << "it asks whether to replace the file";
    EXPECT_FALSE(watch->WasOpened());
}

TEST_F(PlainTextsTest, APanelWithNamesLikeMarkupOpensNothing) {
    const PlainTexts plain;
    rig.backend.Plug(kMarkup, LibMidi::kOutput);
    rig.backend.defaultOutput = kMarkup;
    CreateEngine();
    ShowPanel();
    ASSERT_TRUE(Engine().SavePreset(kMarkup));
    ModalAnswers answers;
    answers.Then(GrabAndClose);
    Engine().SetWallpaper(markup + "/missing");
    Wait([&] { return answers.AllGiven() && FindUnaskedBox() == nullptr; });
    EXPECT_EQ(answers.seen.size(), 1u) << "the wallpaper's failure";
    panel->grab();
    EXPECT_EQ(Label("display-preset-name"), markup.toStdString());
    answers.Then(GrabAndClose).Then(GrabAndClose).Then(GrabAndClose);
    Click("settings");
    Click("preset-load");
    Click("preset-save");
    EXPECT_TRUE(answers.AllGiven());
    rig.GetDevice(kMarkup).failsToWrite = true;
    answers.Then(GrabAndClose);
    Type(Qt::Key_Z);
    rig.Run(5);
    QApplication::processEvents();
    panel->grab();
    EXPECT_FALSE(watch->WasOpened());
}

}  // namespace
