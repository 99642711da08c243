// No text of the panel is cut in any language.
#include <gtest/gtest.h>

#include <QLabel>

#include "engine/values/VoiceSlots.h"
#include "locale/Locale.h"
#include "ui/KivoraWidget.h"
#include "ui/parts/EmbeddedFonts.h"
#include "ui/parts/PanelCombo.h"
#include "ui/parts/PanelKey.h"
#include "ui/parts/PanelText.h"
#include "ui/PatchTexts.h"

namespace {

constexpr double kPatchNameWidth = 251;  // logical pixels on the main display
constexpr double kFamilyWidth = 250;
constexpr QChar kEllipsis(0x2026);

class TextsFit : public testing::TestWithParam<const char*> {
protected:
    TextsFit() {
        Kivora::RegisterEmbeddedFonts();
        Kivora::SetLocale(GetParam(), false);
    }
    ~TextsFit() override { Kivora::SetLocale("en_US", false); }
};

TEST_P(TextsFit, KeysShowTheirWholeCaptions) {
    const KivoraWidget panel(nullptr);
    int captions = 0;
    for (const PanelKey* key : panel.findChildren<PanelKey*>()) {
        captions += key->text().isEmpty() ? 0 : 1;
        EXPECT_FALSE(key->fittedCaption().text.contains(kEllipsis)) << key->text().toStdString();
    }
    EXPECT_GT(captions, 8);
}

TEST_P(TextsFit, CombosShowTheirWholeEntries) {
    const KivoraWidget panel(nullptr);
    int entries = 0;
    for (PanelCombo* combo : panel.findChildren<PanelCombo*>()) {
        const QSignalBlocker quiet(combo);
        for (int i = 0; i < combo->count(); ++i) {
            combo->setCurrentIndex(i);
            ++entries;
            EXPECT_FALSE(combo->fittedText().contains(kEllipsis)) << combo->currentText().toStdString();
        }
    }
    EXPECT_EQ(entries, 2 * (7 + 4 + 10));
}

TEST_P(TextsFit, TheDisplayShowsWholePatchNames) {
    for (int program = Kivora::VoiceSlots::kFirstPatch; program <= Kivora::VoiceSlots::kLastPatch; ++program) {
        const PatchTexts::Name name = PatchTexts::NameOf(program, true);
        EXPECT_EQ(PanelText::Fit(PanelText::kPatchName, name.program, kPatchNameWidth).text, name.program);
        EXPECT_EQ(PanelText::Fit(PanelText::kPatchFamily, name.family, kFamilyWidth).text, name.family);
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, TextsFit, testing::ValuesIn(Kivora::kSupportedLocales),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
