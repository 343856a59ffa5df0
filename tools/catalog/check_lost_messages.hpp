// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Messages that several files of one load have: of a file and its includes, in their order, the library keeps the
// first one. Across loads a later text may replace an earlier one on purpose.
#pragma once

#include "check_tree.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tools {

class lost_messages {
public:
    explicit lost_messages(check_tree const& tree) : m_tree(tree), m_slots(tree.messages.size(), none) {}

    /// Two messages of one name, catalog and language in different files.
    void add(std::uint32_t first, std::uint32_t second);

    struct loss {
        std::uint32_t lost;
        std::uint32_t kept;
        std::uint32_t loaded; ///< the file that has both below it, and is itself included by none
    };
    /// Each message that is lost in some load, once.
    std::vector<loss> find();

private:
    struct step {
        std::uint32_t file;
        std::size_t next_include;
        std::size_t next_message; ///< in m_shared
    };

    void load(std::uint32_t root);
    step enter(std::uint32_t file, std::uint32_t root);
    bool is_include_next(step const& at) const;
    void take(std::uint32_t message, std::uint32_t root);

    check_tree const& m_tree;
    std::vector<std::uint32_t> m_slots; // of a message: its number among names that several files have
    std::uint32_t m_slot_count = 0;
    std::vector<std::uint32_t> m_shared; // messages with a slot, in the order of files and lines
    std::vector<std::uint32_t> m_root;   // of a file: the last load that it was seen in
    std::vector<std::uint32_t> m_kept;   // of a slot: the message
    std::vector<std::uint32_t> m_loaded; // of a slot: the load in which it is the message
    std::vector<bool> m_is_lost;         // messages that have been found
    std::vector<loss> m_found;
    std::size_t m_steps = 0;
};

} // namespace tools
