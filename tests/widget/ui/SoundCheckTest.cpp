#include "ui/dialogs/SoundCheck.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QtTest/QTest>
#include <vector>

#include "locale/Locale.h"
#include "ui/dialogs/midiSettings.h"
#include "ui/dialogs/SoundFindings.h"
#include "widget/ui/DialogTexts.h"
#include "widget/ui/ModalBoxes.h"
#include "widget/ui/SoundFindingsOf.h"

namespace {

class SoundCheckTest : public testing::Test {
protected:
    SoundCheckTest() { Kivora::SetLocale("en_US", false); }
    ~SoundCheckTest() override { Kivora::SetLocale("en_US", false); }

    SoundDoctorTools GetTools() {
        return {[this] {
                    ++looks_;
                    return findings_;
                },
                [this](bool isDown) { notes_.push_back(isDown); }};
    }
    void Show(SoundCheck& page, int looks = 1) {
        page.show();
        ASSERT_TRUE(QTest::qWaitFor([&] { return looks_ >= looks; }, 30000));
        QApplication::processEvents();  // the page grows to what it says now
    }
    static QPushButton& Button(QWidget& page, const char* name) { return *page.findChild<QPushButton*>(name); }
    static QStringList GetSentences(SoundCheck& page) {
        QStringList sentences;
        for (const QLabel* label : page.findChild<QWidget*>("rows")->findChildren<QLabel*>()) {
            sentences << label->accessibleName();
        }
        return sentences;
    }

    SoundFindings findings_ = KivoraTest::FindNoSound();
    int looks_ = 0;
    std::vector<bool> notes_;
};

TEST_F(SoundCheckTest, SaysWhatIsFoundOnceItIsShown) {
    SoundCheck page(GetTools());
    EXPECT_EQ(looks_, 0) << "the page comes first";
    Show(page);
    const QStringList sentences = GetSentences(page);
    EXPECT_TRUE(sentences.contains("Trouble: No key sounds. What is marked below says why."));
    EXPECT_TRUE(sentences.contains("Trouble: PulseAudio does not play. The sound server does not run."));
    EXPECT_FALSE(page.findChild<QLabel*>("waiting")->isVisible());
}

TEST_F(SoundCheckTest, LooksAgainWhenAsked) {
    SoundCheck page(GetTools());
    Show(page);
    findings_ = KivoraTest::FindSound();
    Button(page, "againBtn").click();
    EXPECT_EQ(looks_, 2);
    EXPECT_TRUE(GetSentences(page).contains("Well: A key sounds: Software synthesizer."));
    EXPECT_FALSE(GetSentences(page).join('\n').contains("No key sounds"));
}

TEST_F(SoundCheckTest, ANoteThatWasBegunIsEndedWhenThePageGoes) {
    {
        SoundCheck page(GetTools());
        Show(page);
        Button(page, "noteBtn").click();
        EXPECT_EQ(notes_, std::vector{true});
        Button(page, "noteBtn").click();
        EXPECT_EQ(notes_, (std::vector{true, false, true}));
    }
    EXPECT_EQ(notes_, (std::vector{true, false, true, false}));
}

TEST_F(SoundCheckTest, ANoteEndsByItself) {
    SoundCheck page(GetTools());
    Show(page);
    Button(page, "noteBtn").click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return notes_.size() == 2; }, 30000));
    EXPECT_FALSE(notes_.back());
}

TEST_F(SoundCheckTest, WithoutAnEngineNoNoteIsPlayed) {
    SoundDoctorTools tools = GetTools();
    tools.holdNote = nullptr;
    SoundCheck page(tools);
    Show(page);
    EXPECT_FALSE(Button(page, "noteBtn").isEnabled());
}

TEST_F(SoundCheckTest, CanBeReadHeardAndReachedInBothLanguages) {
    for (const char* locale : {"en_US", "ru_RU"}) {
        Kivora::SetLocale(locale, false);
        SoundCheck page(GetTools());
        Show(page, looks_ + 1);
        EXPECT_EQ(ClippedTexts(page), "") << locale;
        EXPECT_EQ(NamelessControls(page), "") << locale;
        EXPECT_EQ(SharedMnemonics(page), "") << locale;
    }
}

TEST_F(SoundCheckTest, IsAPageOfTheSettingsWhereSomebodyLooks) {
    midiSettings settings(nullptr);
    settings.show();
    EXPECT_FALSE(Button(settings, "soundCheckBtn").isVisible());
    settings.setSoundDoctor(GetTools());
    EXPECT_TRUE(Button(settings, "soundCheckBtn").isVisible());
    EXPECT_EQ(SharedMnemonics(settings), "");
    ModalBoxes boxes;
    bool opened = false;
    boxes.add([&opened](QWidget& page) {
        opened = page.objectName() == "SoundCheck";
        page.close();
    });
    Button(settings, "soundCheckBtn").click();
    EXPECT_TRUE(opened);
}

}  // namespace
