// Random hands on the whole program: nothing sounds that nobody holds, nothing ends or says what it should not.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>

#include "e2e/player/ActionGenerator.h"
#include "e2e/player/Session.h"
#include "e2e/player/Shrinker.h"

namespace {

using Player::CActions;
using Player::Session;
using Player::TFailure;

/// In one run of the program.
constexpr std::size_t kActionsOfARun = 400;
constexpr std::size_t kActionsOfAShortRun = 150;
constexpr std::uint32_t kSeeds[] = {1, 2, 3};

std::string Lines(const CActions& actions) {
    std::ostringstream lines;
    for (const Player::TAction& action : actions) {
        lines << action << "\n";
    }
    return lines.str();
}

std::size_t NumberFrom(const char* variable, std::size_t otherwise) {
    const char* text = std::getenv(variable);
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

/// The shortest list that still ends in a failure of that kind.
CActions ShrinkFailure(CActions actions, const TFailure& failure) {
    actions.resize(std::min(actions.size(), failure.at + 1));
    const auto fails = [kind = failure.kind](const CActions& shorter) {
        const std::optional<TFailure> again = Session().Play(shorter);
        return again && again->kind == kind;
    };
    const auto limit = static_cast<int>(NumberFrom("KIVORA_PLAYER_SHRINKS", 100));
    return Player::Shrink<Player::TAction>(std::move(actions), fails, limit);
}

/// What was done over all runs of the program.
struct TTally {
    std::size_t deeds = 0;
    std::size_t rests = 0;
    std::size_t failures = 0;
};

std::optional<TFailure> Play(const CActions& actions, TTally& tally) {
    Session session;
    std::optional<TFailure> failure = session.Play(actions);
    const auto done = static_cast<std::ptrdiff_t>(session.GetDoneCount());
    tally.deeds += Player::CountDeeds(CActions(actions.begin(), actions.begin() + done));
    tally.rests += session.GetRestCount();
    tally.failures += failure ? 1U : 0U;
    return failure;
}

void PlaySeed(std::uint32_t seed, std::size_t count, TTally& tally) {
    const CActions actions = Player::ActionGenerator(seed).Make(count);
    const std::optional<TFailure> failure = Play(actions, tally);
    std::cout << "seed " << seed << ": " << tally.deeds << " actions, " << tally.rests << " rests, " << tally.failures
              << " failures so far" << std::endl;
    if (failure) {
        // Before it is made shorter, which takes its time.
        std::cout << "seed " << seed << " fails: " << failure->text << std::endl;
        ADD_FAILURE() << "seed " << seed << ", after " << failure->at << " of " << actions.size()
                      << " actions: " << failure->text << "\nit fails with:\n"
                      << Lines(ShrinkFailure(actions, *failure));
    }
}

TEST(RandomPlayer, LeavesNothingHanging) {
    std::vector<std::uint32_t> seeds(std::begin(kSeeds), std::end(kSeeds));
    std::size_t length = kActionsOfAShortRun;
    const auto first = static_cast<std::uint32_t>(NumberFrom("KIVORA_PLAYER_SEED", std::random_device()()));
    if (const std::size_t wanted = NumberFrom("KIVORA_PLAYER_ACTIONS", 0); wanted != 0) {
        length = std::min(wanted, NumberFrom("KIVORA_PLAYER_LENGTH", kActionsOfARun));
        seeds.clear();
        for (std::size_t done = 0; done < wanted; done += length) {
            seeds.push_back(first + static_cast<std::uint32_t>(seeds.size()));
        }
    } else {
        seeds.push_back(first);
    }
    std::cout << "seed " << first << "\n";
    TTally tally;
    for (const std::uint32_t seed : seeds) {
        PlaySeed(seed, length, tally);
    }
}

TEST(RandomPlayer, PlaysAListAgain) {
    const char* path = std::getenv("KIVORA_PLAYER_LIST");
    if (path == nullptr) {
        GTEST_SKIP() << "KIVORA_PLAYER_LIST names no list of actions.";
    }
    std::ifstream file(path);
    const CActions actions = Player::ReadActions(file);
    ASSERT_FALSE(actions.empty()) << path;
    const std::optional<TFailure> failure = Session().Play(actions);
    EXPECT_FALSE(failure) << "after " << failure->at << " of " << actions.size() << " actions: " << failure->text;
}

}  // namespace
