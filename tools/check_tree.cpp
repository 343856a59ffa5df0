// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "check_tree.hpp"

#include <algorithm>
#include <string>

namespace tools {

text_place place_of(checked_file& file, std::size_t offset) {
    std::vector<std::size_t>& starts = file.line_starts;
    if (starts.empty()) {
        starts.push_back(0);
        for (auto at = file.text.find('\n'); at != ustring8::npos; at = file.text.find('\n', at + 1))
            starts.push_back(at + 1);
    }
    auto const next = std::upper_bound(starts.begin(), starts.end(), offset);
    return {static_cast<std::size_t>(next - starts.begin()), offset - *(next - 1) + 1};
}

ustring8 shown(std::string_view name) {
    constexpr std::size_t longest = 100;
    if (name.size() <= longest) return ustring8(std::string(name));
    std::size_t end = longest;
    while (end != 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
    return ustring8(std::string(name.substr(0, end)) + "…");
}

void rule_report::add(rule_id id, std::uint32_t file, std::size_t offset, rule_set ignored, ustring8 const& scope,
                      ustring8 const& text) const {
    if (ignored & in_set(id)) return;
    text_place const at = place_of(m_tree.files[file], offset);
    rule const& rule = get_rule(id);
    m_found.add({m_tree.files[file].path, at.line, at.column, rule.level, rule.name, text, scope});
}

void rule_report::add(rule_id id, checked_message const& message, std::size_t offset, ustring8 const& text) const {
    ustring8 scope;
    if (!m_session.options.ignored.empty())
        scope.append(m_tree.catalogs[message.catalog].name).append("/").append(message.name);
    add(id, message.file, offset, message.ignored, scope, text);
}

} // namespace tools
