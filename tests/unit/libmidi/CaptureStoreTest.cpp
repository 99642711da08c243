#include "libmidi/CaptureStore.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/AllocationCounter.h"

namespace {

using namespace LibMidi;

CapturedEvent EventAt(std::uint32_t time) {
    return {time, NK::MIDI::TMIDIMessage::FromWord(time * 7)};
}

std::vector<std::uint32_t> TimesOf(const CaptureStore::View& view, std::uint32_t from) {
    std::vector<std::uint32_t> times;
    view.Visit(from, [&times](const CapturedEvent& event) {
        EXPECT_EQ(event.message.ToWord(), event.time * 7);
        times.push_back(event.time);
    });
    return times;
}

TEST(CaptureStore, AnEmptyStoreIsVisitedWithoutACall) {
    const CaptureStore store;
    EXPECT_EQ(store.GetCount(), 0U);
    EXPECT_TRUE(TimesOf(store.GetView(), 0).empty());
}

TEST(CaptureStore, EventsComeInTheOrderOfAppendingAcrossChunks) {
    constexpr std::uint32_t kChunk = CaptureStore::kChunkEvents;
    for (const std::uint32_t count : {1U, kChunk - 1, kChunk, kChunk + 1, 3 * kChunk, 3 * kChunk + 5}) {
        CaptureStore store;
        for (std::uint32_t time = 0; time < count; ++time) {
            store.Append(EventAt(time));
        }
        ASSERT_EQ(store.GetCount(), count);
        for (const std::uint32_t from : {0U, 1U, kChunk - 1, kChunk, kChunk + 1, count - 1, count, count + 1}) {
            const std::vector<std::uint32_t> times = TimesOf(store.GetView(), from);
            ASSERT_EQ(times.size(), from < count ? count - from : 0) << count << " from " << from;
            for (std::uint32_t index = 0; index < times.size(); ++index) {
                ASSERT_EQ(times[index], from + index);
            }
        }
    }
}

TEST(CaptureStore, AnEventNeverMoves) {
    CaptureStore store;
    store.Append(EventAt(0));
    const CapturedEvent* first = nullptr;
    store.GetView().Visit(0, [&first](const CapturedEvent& event) { first = &event; });
    for (std::uint32_t time = 1; time < 20 * CaptureStore::kChunkEvents; ++time) {
        store.Append(EventAt(time));
    }
    const CapturedEvent* later = nullptr;
    store.GetView().Visit(0, [&later](const CapturedEvent& event) { later = event.time == 0 ? &event : later; });
    EXPECT_EQ(first, later);
}

TEST(CaptureStore, OneAllocationServesAChunk) {
    CaptureStore store;
    const std::uint64_t before = KivoraTest::GetAllocationCount();
    for (std::uint32_t time = 0; time < 10 * CaptureStore::kChunkEvents; ++time) {
        store.Append(EventAt(time));
    }
    EXPECT_EQ(KivoraTest::GetAllocationCount() - before, 10U);
}

TEST(CaptureStore, AViewOutlivesTheStoreAndSeesNoLaterEvents) {
    auto store = std::make_unique<CaptureStore>();
    for (std::uint32_t time = 0; time < CaptureStore::kChunkEvents; ++time) {
        store->Append(EventAt(time));
    }
    const CaptureStore::View view = store->GetView();
    store->Append(EventAt(CaptureStore::kChunkEvents));
    store.reset();
    EXPECT_EQ(TimesOf(view, 0).size(), CaptureStore::kChunkEvents);
}

TEST(CaptureStore, AnHoursRecordingIsFreedWithoutDeepRecursion) {
    CaptureStore store;
    constexpr std::uint32_t kEvents = 3600000;
    for (std::uint32_t time = 0; time < kEvents; ++time) {
        store.Append({time, {}});
    }
    const CaptureStore::View view = store.GetView();
    store = CaptureStore();
    std::uint32_t visited = 0;
    view.Visit(0, [&visited](const CapturedEvent&) { ++visited; });
    EXPECT_EQ(visited, kEvents);
}

}  // namespace
