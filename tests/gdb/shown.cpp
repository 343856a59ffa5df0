// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Objects for GDB to show, whole and broken. commands.gdb stops in look_around, called by main, and prints
// main's variables.
#include <zolt/config/config_tree.hpp>
#include <zolt/generic/varg_list.hpp>
#include <zolt/memory/shared_pointer.hpp>
#include <zolt/system/date_time/date_time.hpp>

#include <cstring>
#include <string>

using namespace ZOLT_2_18;
using generic::argument;
using strings::ustring16;
using strings::ustring32;
using strings::ustring8;
using types::variant;

namespace {

void look_around(void const*) { asm volatile(""); }

struct counted : generic::abilities::clone_ability, generic::abilities::reference_count_pointer_ability<counted> {
    int number = 7;
};

struct shared : memory::pointers::shared_count {
    int number = 8;
};

/// Memory that is no object: zeros, ones, words that count up, and a place that points to itself again and again.
alignas(16) unsigned char zeros[256];
alignas(16) unsigned char ones[256];
alignas(16) std::size_t counting[64];
alignas(16) void* circle[64];

template <typename T>
struct broken {
    T& from_zeros = reinterpret_cast<T&>(zeros);
    T& from_ones = reinterpret_cast<T&>(ones);
    T& from_counting = reinterpret_cast<T&>(counting);
    T& from_circle = reinterpret_cast<T&>(circle);
};

template <typename Text>
Text units(std::initializer_list<unsigned int> list) {
    Text text;
    for (unsigned int const unit : list) text += static_cast<typename Text::value_type>(unit);
    return text;
}

config::config_tree settings() {
    config::config_tree tree;
    tree.set_node("net.port", ustring8("80"), 0);
    tree.set_node("net.host", ustring8("\"quoted\" caf\xC3\xA9"), 0);
    tree.set_node("net", 1.5, 0);
    tree.set_node("empty", types::nil, 0);
    tree.set_node("verbose", types::nil, 1);
    tree.set_node("hosts", types::nil, 2);
    tree.set_node("hosts.1", ustring8("b"), 0);
    tree.set_node("hosts.0", ustring8("a"), 0);
    tree.set_node("other", ustring8("$net.port"), 5);
    tree.set_node("a.b.c.d", ustring16(2, 'x'), 0);
    tree.set_node("tail\xFF", ustring8(), 0);
    return tree;
}

/// Enough keys for blocks of blocks, in no order.
config::config_tree many_keys() {
    config::config_tree tree;
    for (unsigned int i = 0; i < 500; ++i)
        tree.set_node(ustring8("key" + std::to_string(1000 + i * 7 % 500)), ustring8(std::to_string(i)), 0);
    return tree;
}

/// Takes the payload away.
void spoil(variant const& value) {
    std::memset(const_cast<void*>(static_cast<void const*>(&value)), 0, sizeof value);
}

/// Makes the first block with children the next one to itself.
void link_in_circle(config::config_tree& tree) {
    void** block;
    std::memcpy(&block, reinterpret_cast<char*>(&tree + 1) - sizeof block, sizeof block);
    *block = block;
}

} // namespace

int main() {
    std::memset(ones, 0xFF, sizeof ones);
    for (std::size_t i = 0; i < 64; ++i) counting[i] = i + 1;
    for (void*& each : circle) each = circle;

    // Texts: well-formed, escaped, ill-formed; long ones that end within a character.
    ustring8 const utf8("caf\xC3\xA9 \xF0\x9F\x98\x80 \\ \"\t\x01 \xFF\xC3(\xED\xA0\x80 \xC3");
    ustring16 const utf16 = units<ustring16>({'c', 0xE9, 0xD83D, 0xDE00, '\n', 0, 0xDE00, 'a', 0xD83D});
    ustring32 const utf32 = units<ustring32>({'c', 0xE9, 0x1F600, 0x85, 0xD800, 0x110000, 0xFFFFFFFF});
    ustring8 const long_utf8 = units<ustring8>({'a', 'b', 'c', 0xF0, 0x9F, 0x98, 0x80, 'd'});
    ustring16 const long_utf16 = units<ustring16>({'a', 'b', 'c', 'd', 0xD83D, 0xDE00, 'e'});
    ustring16 const empty;

    // Values of all types, and names.
    argument const small(static_cast<signed char>(-5)), small_unsigned(static_cast<unsigned char>(65));
    generic::varg_list const values(
        argument("user", "ann"), argument("nothing", types::nil), variant(true), small, small_unsigned,
        variant(static_cast<short>(-6)), variant(static_cast<unsigned short>(7)), variant(-8), variant(9u),
        variant(-10L), variant(11UL), variant(-12LL), variant(13ULL), variant(1.5f), variant(0.1),
        argument("exact", 0.1L), variant(std::string("s")), variant(std::wstring(L"w\u00E9")), variant(utf8),
        variant(utf16), argument("caf\xC3\xA9", utf32));
    variant const number(42), wide(long_utf16), nothing;
    argument const named("size", 3), unnamed(4);
    generic::varg_list const no_values;
    generic::varg_list damaged_values(argument("bad", 1), argument("good", 2));
    spoil(damaged_values.at(0).value());

    // Pointers.
    memory::pointers::rc_pointer<counted> const owner = memory::pointers::make_rc<counted>(), second_owner = owner;
    counted local;
    memory::pointers::rc_pointer<counted> const borrower(&local), nobody;
    auto const share = memory::pointers::make_shared_pointer<shared>();

    // Trees; one in which a text was made a node.
    config::config_tree tree = settings(), keys = many_keys();
    auto& damaged = *new config::config_tree(settings()); // it could not be taken apart
    config::config_tree const no_keys, single(ustring8("alone"), 7);
    memory::pointers::rc_pointer<config::config_tree> const root(&tree);
    tree.get_node("net.port");
    link_in_circle(damaged.make_node("hosts"));
    spoil(damaged.make_node("net").value());
    link_in_circle(damaged);

    // Dates and times.
    system::date_time::date_time_t const moment(system::date_time::date(31, 2, 2023),
                                                system::date_time::time(23, 5, 59, 7));
    system::date_time::date const leap_day(29, 2, 2024), no_day;
    system::date_time::time const midnight;
    system::date_time::date_duration const days(-365), day(1);
    system::date_time::time_duration const film(1, 30, 0, 5), past(-100, 0, 0, -1);

    // What is none of these.
    broken<ustring8> const texts;
    broken<variant> const variants;
    broken<generic::varg_list> const lists;
    broken<memory::pointers::rc_pointer<counted>> const pointers;
    broken<memory::pointers::shared_pointer<shared>> const shares;
    broken<config::config_tree> const trees;
    broken<system::date_time::date_time_t> const moments;
    broken<system::date_time::time_duration> const durations;

    look_around(&texts);
    return 0;
}
