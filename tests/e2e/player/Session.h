// One run of the program that a player works: carries out actions and looks what comes of them.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "e2e/InstrumentProcess.h"
#include "e2e/player/Action.h"
#include "e2e/player/LentDevices.h"
#include "e2e/player/Sounding.h"
#include "e2e/player/WindowManager.h"
#include "e2e/player/XClient.h"
#include "support/TemporaryFolder.h"

namespace Player {

struct TFailure {
    enum class EKind { kNoStart, kHangs, kSilent, kEnded, kPrinted, kStuck };

    EKind kind = EKind::kNoStart;
    std::size_t at = 0;  ///< the number of actions that were carried out before
    std::string text;
};

/// What the program takes of the system.
struct TFootprint {
    std::ptrdiff_t memoryKB = 0;     ///< its own, not backed by files
    std::ptrdiff_t descriptors = 0;  ///< but for takes, which stay open until somebody decides about them,
                                     ///< and the desktop's caches, which the toolkit keeps once it has asked
    std::ptrdiff_t threads = 0;
};

class Session {
public:
    Session();
    ~Session();

    /// Starts the program, carries out the actions, ends it; what went wrong first, if anything did.
    std::optional<TFailure> Play(const CActions& actions);
    /// The same in pieces: after Begin() any number of lists, which are left when one fails or ends the program.
    void Begin();
    void Carry(const CActions& actions);
    void Finish();
    const std::optional<TFailure>& GetFailure() const { return failure_; }
    TFootprint GetFootprint() const;
    std::uint32_t GetWrittenCount() const { return devices_.GetWrittenCount(); }
    /// How many of the actions were carried out, and at how many rests it was listened, so far.
    std::size_t GetDoneCount() const { return doneCount_; }
    std::size_t GetRestCount() const { return restCount_; }

private:
    bool Start();
    void Do(const TAction& action);
    void MoveKey(int code, bool down);
    /// In thousandths of its width and height.
    void MovePointerOver(xcb_window_t window, int x, int y);
    void MoveButton(int button, bool down);
    void SendMIDI(const std::array<int, 3>& message);
    void OpenSong();
    void AnswerFileDialog(bool accepts);
    void LetGo();
    void GoHome();
    void Meet();
    void PassRounds(int count);
    void Rest();
    void EndLatched();
    void Prove(int way);
    bool HoldAKey(int way);
    void End(int way);
    void CloseWindow();
    void CheckOutput();
    bool MayPress() const;
    bool IsQuiet();
    void Fail(TFailure::EKind kind, const std::string& text);
    void CheckAlive();

    KivoraTest::CTemporaryFolder dir_;
    LentDevices devices_;
    InstrumentProcess instrument_;
    std::unique_ptr<XClient> client_;
    std::unique_ptr<WindowManager> windows_;
    Sounding sounding_;
    std::set<int> keys_;
    std::set<int> buttons_;
    std::set<std::array<int, 2>> played_;  ///< note-ons and pedals of the MIDI keyboard: status and data 1
    TPlace panel_;
    std::size_t doneCount_ = 0;
    std::size_t restCount_ = 0;
    bool hasEnded_ = false;
    std::optional<TFailure> failure_;
};

}  // namespace Player
