// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Messages that several files of one load have: of a file and its includes, in their order, the library keeps the
// first one, and of the files of a directory the last. Across loads a later text may replace an earlier one on
// purpose.
#pragma once

#include "check_tree.hpp"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tools {

class lost_messages {
public:
    /// Of a tree whose messages are grouped when they are to be found.
    explicit lost_messages(check_tree const& tree) : m_tree(tree) {}

    struct loss {
        std::uint32_t lost;
        std::uint32_t kept;
        ustring8 const* loaded; ///< a file that has both below it and is included by none, else a directory
    };
    /// Each message that is lost in some load, once; of those of one name, catalog and language one is left.
    std::vector<loss> find();
    bool is_lost(std::uint32_t message) const { return !m_is_lost.empty() && m_is_lost[message]; }

private:
    struct step {
        std::uint32_t file;
        std::size_t next_include;
        std::size_t next_message; ///< in m_shared
    };

    void find_shared();
    void add(std::uint32_t first, std::uint32_t second);
    void load(std::uint32_t root);
    void load(checked_directory const& directory);
    step enter(std::uint32_t file);
    bool is_include_next(step const& at) const;
    void take(std::uint32_t message);
    void lose(std::uint32_t message, std::uint32_t kept, ustring8 const& loaded);

    check_tree const& m_tree;
    std::vector<std::uint32_t> m_slots; // of a message: its number among names that several files have
    std::uint32_t m_slot_count = 0;
    std::vector<std::uint32_t> m_shared; // messages with a slot, in the order of files and lines
    std::size_t m_load = 0;              // their number
    std::vector<std::size_t> m_seen;     // of a file: the last load that it was seen in
    std::vector<std::uint32_t> m_kept;   // of a slot: the message
    std::vector<std::size_t> m_loaded;   // of a slot: the load in which it is the message
    std::vector<std::uint32_t> m_served; // the messages of this load
    std::vector<std::pair<std::uint32_t, std::uint32_t>> m_behind; // those lost in it, and what is kept
    std::vector<bool> m_is_lost;                                   // messages that have been found
    std::vector<loss> m_found;
    std::size_t m_steps = 0;
};

} // namespace tools
