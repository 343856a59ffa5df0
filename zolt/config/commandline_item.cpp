// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Each option is read in two steps: its key up to a separator, then its value, which the separator tells
// where to look for: behind it, whole or in elements, or in the arguments that follow.
#include <zolt/config/commandline_item.hpp>

#include <zolt/strings/string_utility.hpp>

#include <iostream>
#include <vector>

namespace ZOLT_2_18::config {
namespace {

using strings::ustring8;

/// The tokens of one argument. One token object serves them all, so a run of blanks carries the text of the
/// token before it; those who call take it like any other text.
class argument_reader {
public:
    explicit argument_reader(char const* argument) : m_argument(argument) {}

    bool next() { return base_config_item::get_token(m_argument, m_position, m_token) != config_token::T_END; }
    config_token::tok_types kind() const { return m_token.kind; }
    ustring8 const& text() const { return m_token.text; }
    bool is_mark(char mark) const {
        return m_token.kind == config_token::T_NON_ALPHA_NUM && m_token.text.front() == mark;
    }
    /// The texts of all tokens to come.
    ustring8 rest() {
        ustring8 texts;
        while (next()) texts += text();
        return texts;
    }

private:
    ustring8 m_argument;
    unsigned int m_position = 0;
    config_token m_token;
};

enum class separator { none, in_elements, whole };

/// Appends the key to `key` and tells what ended it.
separator read_key(argument_reader& reader, ustring8& key) {
    while (reader.next()) {
        switch (reader.kind()) {
        case config_token::T_EQ:
        case config_token::T_COLON:
        case config_token::T_COLONEQ:
            return separator::in_elements;
        case config_token::T_GTEQ:
        case config_token::T_LTEQ:
        case config_token::T_PLUSEQ:
        case config_token::T_MINUSEQ:
        case config_token::T_TIMESEQ:
        case config_token::T_DIVEQ:
            key += reader.text().front();
            return separator::in_elements;
        default:
            break;
        }
        if (reader.is_mark('$')) return separator::whole;
        key += reader.text();
    }
    return separator::none;
}

bool starts_with(char const* argument, char mark) { return *argument == mark; }
bool is_option(char const* argument) { return starts_with(argument, '-') || starts_with(argument, '/'); }

void warn_of(char const* argument) {
    std::string text("Warning! unknown key:");
    text.append(argument).append("\nIgnoring key and continuing\n");
    std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
}

/// Stores the values of one key: an array if there are several.
void store(base_config_item& item, ustring8 const& key, generic::varg_list const& values) {
    if (values.count() == 1) {
        item.set(key, values.at(0).value(), 0);
    } else {
        item.set_array(key, values, generic::varg_list());
    }
}

generic::varg_list elements_of(argument_reader& reader) {
    generic::varg_list elements;
    ustring8 element;
    while (reader.next()) {
        if (reader.is_mark(',')) {
            elements.push_back(types::variant(element));
            element.clear();
        } else {
            element += reader.text();
        }
    }
    elements.push_back(types::variant(element));
    return elements;
}

/// Takes the arguments from `next` on that are values and moves `next` behind them.
generic::varg_list values_from(char const* const*& next, char const* const* end) {
    generic::varg_list values;
    do {
        values.push_back(types::variant(argument_reader(*next++).rest()));
    } while (next != end && !starts_with(*next, '-'));
    return values;
}

/// Stores the name of the program under "application.name" and its parts below that.
void store_name(base_config_item& item, ustring8 const& path) {
    std::vector<ustring8> const pieces = strings::split_string(path, "/");
    ustring8 const name = pieces.empty() ? ustring8() : pieces.back();
    std::vector<ustring8> const parts = strings::split_string(name, ".");
    ustring8 raw;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) raw += parts[i];
    item.set("application.name", name, 0);
    if (parts.size() > 1) item.set("application.name.extention", parts.back(), 0);
    item.set("application.name.raw", raw, 0);
}

/// Stores the option at `next` and moves `next` behind it and its values.
void store_option(base_config_item& item, char const* const*& next, char const* const* end) {
    argument_reader reader(*next++ + 1);
    ustring8 key;
    switch (read_key(reader, key)) {
    case separator::in_elements:
        return store(item, key, elements_of(reader));
    case separator::whole:
        return item.set(key, reader.rest(), 0);
    case separator::none:
        break;
    }
    if (next == end || is_option(*next)) return item.set(key, 1);
    store(item, key, values_from(next, end));
}

} // namespace

commandline_item::commandline_item(unsigned int argc, char const* const* argv)
    : base_config_item("command line"), m_argc(argc), m_argv(argv) {}
commandline_item::commandline_item(commandline_item const&) = default;
commandline_item::~commandline_item() = default;

commandline_item& commandline_item::assign(commandline_item const& other) {
    base_config_item::assign(other);
    m_argc = other.m_argc;
    m_argv = other.m_argv;
    return *this;
}

bool commandline_item::load(item_list const&) { return load(); }

bool commandline_item::load() {
    if (!m_argv) return true;
    if (m_argv[0]) store_name(*this, m_argv[0]);
    bool const has_arguments = static_cast<int>(m_argc) > 1; // an argc of main that was negative is none
    unsigned int count = 1;
    while (has_arguments && count < m_argc && m_argv[count]) ++count;
    char const* const* next = m_argv + 1;
    char const* const* const end = m_argv + count;
    while (next != end) {
        if (is_option(*next)) {
            store_option(*this, next, end);
        } else {
            warn_of(*next++);
        }
    }
    return true;
}

void commandline_item::unload() { own_tree().erase(); }

commandline_item* commandline_item::clone() const {
    auto* const copy = new commandline_item(*this);
    copy->heap_allocated = true;
    return copy;
}

} // namespace ZOLT_2_18::config
