// Dialogs, menus and boxes as pictures, in both languages.
#include "widget/ui/PanelRig.h"

#include <filesystem>

#include "ui/Dialogs.h"
#include "ui/PresetList.h"
#include "widget/ui/GoldenWindow.h"

using namespace KivoraTest;

namespace {

class DialogPictures : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        AddPresets();
    }
    void AddPresets() {
        const auto factory = rig.folder / "factory";
        std::filesystem::create_directories(factory);
        for (const wchar_t* name : {L"Cathedral Organ", L"Grand Piano", L"Vibraphone and Upright Bass"}) {
            ASSERT_TRUE(Engine().SavePreset(name));
            const auto file = std::filesystem::path(name).string() + ".kivoraLXPreset";
            std::filesystem::rename(rig.folder / "user" / "Presets" / file, factory / file);
        }
        ASSERT_TRUE(Engine().SavePreset(L"Evening"));
        ASSERT_TRUE(Engine().SavePreset(L"Lead for the second verse"));
        ASSERT_TRUE(front->LoadPreset(L"Evening", false));
    }
    void ExpectLike(QWidget& dialog, const QString& name) {
        dialog.show();
        QApplication::processEvents();
        ExpectLikeReviewed(dialog.grab().toImage(), name);
    }
    /// Runs the check in English, then in Russian, whose pictures end in "_ru".
    void InBothLanguages(const std::function<void(const QString& suffix)>& check) {
        check("");
        Kivora::SetLocale("ru_RU", false);
        QApplication::processEvents();
        check("_ru");
    }
};

TEST_F(DialogPictures, ThePresetsLookAsReviewed) {
    InBothLanguages([this](const QString& language) {
        PresetList load(front.get(), false);
        ExpectLike(load, "presets_load" + language);
        PresetList save(front.get(), true);
        ExpectLike(save, "presets_save" + language);
    });
}

TEST_F(DialogPictures, BoxesLookAsReviewed) {
    InBothLanguages([](const QString& language) {
        ModalAnswers answers;
        const auto show = [&](QMessageBox::Icon icon, const QString& name, QMessageBox::StandardButtons buttons) {
            answers.Then([name](QDialog& box) {
                ExpectLikeReviewed(box.grab().toImage(), name);
                box.reject();
            });
            Dialogs::Show(nullptr, icon, "Kivora LX", "Overwrite preset \"Evening\"?", buttons);
        };
        show(QMessageBox::Question, "box_question" + language, QMessageBox::Yes | QMessageBox::No);
        show(QMessageBox::Warning, "box_warning" + language, QMessageBox::Ok);
        show(QMessageBox::Critical, "box_critical" + language, QMessageBox::Ok);
    });
}

}  // namespace
