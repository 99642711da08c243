#include "nk/platform/platform_library_ranges.h"

#include <link.h>
#include <ucontext.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string_view>

namespace NK::Platform {
namespace {

struct TRange {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};
constexpr std::size_t kMaxRanges = 32;
std::array<TRange, kMaxRanges> ranges;
std::atomic<std::size_t> rangeCount{0};

constexpr std::array<std::string_view, 10> kLibraries{"ld-",        "libasan.",  "libc-",    "libc.",     "libgcc_s",
                                                      "libpthread", "libstdc++", "libtsan.", "libubsan.", "liblsan."};

int RecordModule(dl_phdr_info* module, std::size_t, void*) {
    std::string_view name = module->dlpi_name == nullptr ? "" : module->dlpi_name;
    name.remove_prefix(name.find_last_of('/') + 1);
    if (std::none_of(kLibraries.begin(), kLibraries.end(), [&](auto start) { return name.starts_with(start); })) {
        return 0;
    }
    for (std::size_t i = 0; i < module->dlpi_phnum; ++i) {
        const auto& header = module->dlpi_phdr[i];
        const std::size_t count = rangeCount.load();
        if (header.p_type == PT_LOAD && (header.p_flags & PF_X) != 0 && count < kMaxRanges) {
            const std::uintptr_t begin = module->dlpi_addr + header.p_vaddr;
            ranges[count] = {begin, begin + header.p_memsz};
            rangeCount.store(count + 1);
        }
    }
    return 0;
}

std::uintptr_t InterruptedAddress(const void* context) noexcept {
    const auto& machine = static_cast<const ucontext_t*>(context)->uc_mcontext;
#if defined(__x86_64__)
    return static_cast<std::uintptr_t>(machine.gregs[REG_RIP]);
#elif defined(__aarch64__)
    return static_cast<std::uintptr_t>(machine.pc);
#else
#error "Name the program counter of this processor."
#endif
}

}  // namespace

void RecordLibraryRanges() {
    static std::once_flag once;
    std::call_once(once, [] { dl_iterate_phdr(&RecordModule, nullptr); });
}

bool WasLibraryInterrupted(const void* context) noexcept {
    const std::uintptr_t address = InterruptedAddress(context);
    const std::size_t count = rangeCount.load();
    return std::any_of(ranges.begin(), ranges.begin() + static_cast<std::ptrdiff_t>(count),
                       [=](const TRange& range) { return address >= range.begin && address < range.end; });
}

}  // namespace NK::Platform
