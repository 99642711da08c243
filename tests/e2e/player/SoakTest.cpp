// Random hands on one run of the program for a long time: what it takes of the system stays as it is.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <vector>

#include "e2e/player/ActionGenerator.h"
#include "e2e/player/Session.h"

namespace {

using Player::CActions;
using Player::EAct;
using Player::TFootprint;
using std::chrono::steady_clock;

constexpr std::size_t kActionsOfARound = 150;
constexpr int kF10 = 76;
constexpr int kUp = 111;
constexpr int kRight = 114;
constexpr int kDown = 116;
constexpr int kReturn = 36;

double NumberFrom(const char* variable, double otherwise) {
    const char* text = std::getenv(variable);
    return text == nullptr ? otherwise : std::strtod(text, nullptr);
}

/// Chooses a language, by its number, in the panel's menu: from its end Quit, About, Help, the keyboard's test, MIDI
/// Learn, the velocities, Settings, Language.
void AddLanguage(CActions& actions, int number) {
    constexpr int kEntriesUp = 8;
    const auto tap = [&](int code) {
        actions.push_back({EAct::kKeyDown, {code}});
        actions.push_back({EAct::kKeyUp, {code}});
        actions.push_back({EAct::kMeet});
    };
    actions.push_back({EAct::kHome});
    tap(kF10);
    for (int i = 0; i < kEntriesUp; ++i) {
        tap(kUp);
    }
    tap(kRight);
    for (int i = 0; i < number; ++i) {
        tap(kDown);
    }
    tap(kReturn);
    actions.push_back({EAct::kHome});
}

/// One round of the soak: half of it in Russian, all plugs in at the end, the panel alone.
CActions MakeRound(std::uint32_t seed) {
    Player::ActionGenerator generator(seed, Player::ActionGenerator::EEnd::kNever);
    CActions actions;
    const auto play = [&](int language) {
        AddLanguage(actions, language);
        const CActions part = generator.Make(kActionsOfARound / 2);
        actions.insert(actions.end(), part.begin(), part.end());
    };
    play(1);
    play(0);
    AddLanguage(actions, 0);
    for (int device = 0; device < 3; ++device) {
        actions.push_back({EAct::kPlug, {device}});
    }
    actions.push_back({EAct::kRest});
    return actions;
}

std::ptrdiff_t MedianOf(const std::vector<TFootprint>& rounds, std::size_t from, std::size_t to,
                        std::ptrdiff_t TFootprint::*member) {
    std::vector<std::ptrdiff_t> values;
    for (std::size_t i = from; i < to; ++i) {
        values.push_back(rounds[i].*member);
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

TEST(Soak, TakesNoMoreOfTheSystemTheLongerItIsPlayed) {
    constexpr std::size_t kFewestRounds = 8;
    /// What is kept of what was played last, and what the heap leaves between what lives longer.
    constexpr std::ptrdiff_t kSettlingKB = 4096;
    constexpr double kGrowthKBAnHour = 1024.0;
    const std::chrono::duration<double> wanted(NumberFrom("KIVORA_SOAK_MINUTES", 0.25) * 60.0);
    const auto first = static_cast<std::uint32_t>(NumberFrom("KIVORA_PLAYER_SEED", std::random_device()()));
    std::cout << "seed " << first << std::endl;
    Player::Session session;
    session.Begin();
    std::vector<TFootprint> rounds;
    const auto start = steady_clock::now();
    while (steady_clock::now() - start < wanted || rounds.size() < kFewestRounds) {
        session.Carry(MakeRound(first + static_cast<std::uint32_t>(rounds.size())));
        ASSERT_FALSE(session.GetFailure()) << "round " << rounds.size() << ", after " << session.GetFailure()->at
                                           << " actions: " << session.GetFailure()->text;
        rounds.push_back(session.GetFootprint());
        const TFootprint& now = rounds.back();
        std::cout << "round " << rounds.size() << ": " << now.memoryKB << " kB, " << now.descriptors << " descriptors, "
                  << now.threads << " threads, " << session.GetWrittenCount() << " messages" << std::endl;
    }
    const std::chrono::duration<double, std::ratio<3600>> took = steady_clock::now() - start;
    session.Carry({{EAct::kEnd, {1}}});
    EXPECT_FALSE(session.GetFailure()) << session.GetFailure()->text;

    const auto growth = [&](std::ptrdiff_t TFootprint::*member) {
        const std::size_t third = rounds.size() / 3;
        return MedianOf(rounds, rounds.size() - third, rounds.size(), member) -
               MedianOf(rounds, third, 2 * third, member);
    };
    EXPECT_EQ(growth(&TFootprint::threads), 0);
    EXPECT_LE(growth(&TFootprint::descriptors), 1) << "one more file may be open at a time";
    EXPECT_LE(growth(&TFootprint::memoryKB),
              kSettlingKB + static_cast<std::ptrdiff_t>(kGrowthKBAnHour * took.count() / 3));
}

}  // namespace
