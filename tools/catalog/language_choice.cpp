// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "language_choice.hpp"

#include <zolt/i18n/_private/xmc_file_loader.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tools {
namespace {

constexpr std::size_t most_parts = 64; // of an id, for the library

// The bases of the id, the shortest first, and itself.
template <typename Visitor>
void for_each_prefix(std::string_view id, Visitor visit) {
    auto end = id.find('_');
    for (std::size_t parts = 0; end != std::string_view::npos && parts != most_parts; ++parts) {
        visit(id.substr(0, end));
        end = id.find('_', end + 1);
    }
    visit(id);
}

} // namespace

std::vector<serving_language> language_choice::for_request(ustring8 const& id) const {
    zolt::i18n::_private::xmc_file_loader loader;
    loader.handle_language(id);
    std::vector<std::pair<unsigned, serving_language>> weighed;
    auto const add_language = [&](std::string_view candidate, bool is_fitting) {
        auto const found = m_languages.find(candidate);
        if (found == m_languages.end()) return;
        auto const is_same = [&](auto const& each) { return each.second.language == found->second; };
        if (std::any_of(weighed.begin(), weighed.end(), is_same)) return;
        unsigned const weight = loader.get_locale_weight(found->first);
        if (weight != 0) weighed.push_back({weight, {found->second, is_fitting}});
    };
    for_each_prefix(id, [&](std::string_view prefix) { add_language(prefix, true); });
    add_language(".", true);
    add_language("en", false);
    std::sort(weighed.begin(), weighed.end(), [](auto const& a, auto const& b) { return a.first > b.first; });
    std::vector<serving_language> result;
    result.reserve(weighed.size());
    for (auto const& [weight, each] : weighed) result.push_back(each);
    return result;
}

} // namespace tools
