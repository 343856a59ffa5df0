// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// To see whether a file can be opened is to read it: a probe of its own would open a pipe twice, and the
// file might be another one by then.
#include <zolt/config/file_item.hpp>

#include <zolt/config/config_file_reader_private.hpp>
#include <zolt/config/config_file_writer_private.hpp>
#include <zolt/exceptions/exception.hpp>
#include <zolt/system/file_utility.hpp>

#include <exception>

namespace ZOLT_2_18::config {
namespace {

using strings::ustring8;

enum class outcome { not_opened, too_large, read };

outcome read_file(ustring8 const& name, ustring8& text) {
    try {
        return system::load_file(name, text) == 0 ? outcome::read : outcome::not_opened;
    } catch (exceptions::exception const&) {
        return outcome::too_large;
    } catch (std::exception const&) { // no memory for it, or more than a string takes
        return outcome::too_large;
    }
}

/// Reads the first file that opens of those that the sources name under the key, and stores its name. An
/// empty name is none.
outcome read_first(base_config_item::item_list const& sources, char const* key, char const* suffix,
                   ustring8& file_name, ustring8& text) {
    for (auto const& source : sources) {
        auto const* const entry = source ? source->get_value(key) : nullptr;
        ustring8 const name = entry ? entry->second.as_utf8() : ustring8();
        if (name.empty()) continue;
        ustring8 const candidate = name + suffix;
        outcome const result = read_file(candidate, text);
        if (result == outcome::not_opened) continue;
        file_name = candidate;
        return result;
    }
    return outcome::not_opened;
}

} // namespace

file_item::file_item(ustring8 const& file_name) : base_config_item("standard file"), m_file_name(file_name) {}
file_item::file_item(file_item const&) = default;
file_item::~file_item() = default;

file_item& file_item::assign(file_item const& other) {
    ustring8 file_name = other.m_file_name;
    base_config_item::assign(other);
    m_file_name.swap(file_name);
    m_was_loaded = other.m_was_loaded;
    return *this;
}

bool file_item::load(item_list const& others) {
    ustring8 text;
    outcome result = read_first(others, "cfg_file", "", m_file_name, text);
    if (result == outcome::not_opened && m_file_name.empty()) {
        result = read_first(others, "application.name.raw", ".cfg", m_file_name, text);
    } else if (result == outcome::not_opened) {
        result = read_file(m_file_name, text);
    }
    return take(text, result == outcome::read);
}

bool file_item::load() {
    ustring8 text;
    return take(text, read_file(m_file_name, text) == outcome::read);
}

bool file_item::take(ustring8 const& text, bool was_read) {
    if (was_read) {
        _private::read_config_text(text, own_tree());
        m_was_loaded = true;
    }
    return was_read;
}

void file_item::save(item_list const&) { save(); }

void file_item::save() {
    if (tree().empty() && !m_was_loaded) return;
    if (auto const text = _private::write_config_text(tree())) system::store_file(m_file_name, *text);
}

std::vector<ustring8> file_item::unsaved() const { return _private::unwritable_keys(tree()); }

void file_item::unload() { own_tree().erase(); }

file_item* file_item::clone() const {
    auto* const copy = new file_item(*this);
    copy->heap_allocated = true;
    return copy;
}

} // namespace ZOLT_2_18::config
