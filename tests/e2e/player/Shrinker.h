// Makes a list that fails shorter, as long as it fails.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <vector>

namespace Player {

/// Leaves out ever smaller pieces while `fails` still says yes; at the end no single item can go (where `fails` is
/// certain). `list` itself must fail. Asks `fails` `limit` times at most.
template <class TItem>
std::vector<TItem> Shrink(std::vector<TItem> list, const std::function<bool(const std::vector<TItem>&)>& fails,
                          int limit) {
    const auto without = [&list](std::size_t from, std::size_t length) {
        std::vector<TItem> rest(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(from));
        const std::size_t end = std::min(from + length, list.size());
        rest.insert(rest.end(), list.begin() + static_cast<std::ptrdiff_t>(end), list.end());
        return rest;
    };
    std::size_t length = std::max<std::size_t>(list.size() / 2, 1);
    for (bool shorter = true; shorter || length > 1;) {
        if (!shorter) {
            length /= 2;
        }
        shorter = false;
        for (std::size_t from = 0; from < list.size();) {
            if (limit-- <= 0) {
                return list;
            }
            if (std::vector<TItem> rest = without(from, length); fails(rest)) {
                list = std::move(rest);
                shorter = true;
            } else {
                from += length;
            }
        }
    }
    return list;
}

}  // namespace Player
