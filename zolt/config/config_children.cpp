// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The children of a node are a B+ tree: blocks of up to 128 children, and above them blocks of blocks when
// one does not do. Blocks are split on the way down to where a child goes and never joined: children go only
// all at once.
//
// A block keeps a byte of hash for each of its names. To find a name is to find its byte, which takes one
// memchr and then most often one comparison, in any order. So a new child goes to the end of its block, and
// the children are put in byte order of their names only when the block is split or walked over; but the
// first one is always the least, which tells blocks from each other.
//
// Text records lie one after the other in chunks of the block they were made for. After a split some of the
// children in the block to the right lie in chunks of this one, which is as well: all go together.
//
// A tree may be as deep as its longest key has components. So nothing here recurses over nodes; blocks to
// be freed are strung together by their own links, which needs no memory.
#include <zolt/config/config_children_private.hpp>

#include <zolt/config/config_token.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ZOLT_2_18::config::_private {

using memory::pointers::rc_pointer;
using strings::ustring8;

/// Memory for text records, behind this head.
struct record_chunk {
    record_chunk* next;
    std::size_t size; ///< in bytes behind the head
    std::size_t used;

    char* bytes() noexcept { return reinterpret_cast<char*>(this + 1); }
};

struct child_block {
    static constexpr unsigned int most = 128;

    child_block* next;       ///< to the right on the same level of the same node, or null
    record_chunk* records;   ///< the latest chunk, or null
    unsigned short count;    ///< at least 1
    unsigned short capacity; ///< `most` unless the block is a node's only one
    unsigned short height;   ///< 0 for children, else one more than that of the blocks below
    bool ordered;            ///< by name; else only the first child is in its place

    /// One for each child, beside the head, as they are what a search reads.
    unsigned char* tags() noexcept { return reinterpret_cast<unsigned char*>(this + 1); }
    child* children() noexcept { return reinterpret_cast<child*>(tags() + tags_size(capacity)); }
    child_block** blocks() noexcept { return reinterpret_cast<child_block**>(this + 1); }

    /// With what aligns the children that follow.
    static constexpr std::size_t tags_size(std::size_t count) noexcept {
        return (count + alignof(child) - 1) / alignof(child) * alignof(child);
    }
};
static_assert(sizeof(child_block) % alignof(child) == 0);

namespace {

static_assert(std::endian::native == std::endian::little);

/// The bytes as a number, the first one lowest.
template <typename Word>
Word load(char const* bytes) noexcept {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// Up to eight bytes as a number, with zeros for those that are missing.
std::uint64_t load_some(char const* bytes, std::size_t count) noexcept {
    if (count >= 8) return load<std::uint64_t>(bytes);
    std::uint64_t word = 0;
    if (count >= 4) {
        word = load<std::uint32_t>(bytes + count - 4);
        return word << 8 * (count - 4) | load<std::uint32_t>(bytes);
    }
    while (count != 0) word = word << 8 | static_cast<unsigned char>(bytes[--count]);
    return word;
}

/// Sixteen bytes looked at together. The bits of a result tell about one byte each, the lowest about the first.
#if defined(__SSE2__)
class sixteen_bytes {
public:
    explicit sixteen_bytes(void const* bytes) noexcept
        : m_bytes(_mm_loadu_si128(static_cast<__m128i const*>(bytes))) {}
    sixteen_bytes(std::uint64_t first, std::uint64_t second) noexcept
        : m_bytes(_mm_set_epi64x(static_cast<long long>(second), static_cast<long long>(first))) {}

    unsigned int separators() const noexcept { // "." and "/" differ in their lowest bit
        __m128i const slashes = _mm_cmpeq_epi8(_mm_or_si128(m_bytes, _mm_set1_epi8(1)), _mm_set1_epi8('/'));
        return mask(_mm_or_si128(slashes, _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8('\\'))));
    }
    /// Those that lowered() may change: capitals, and from 0x80 on those that the locale takes for such.
    unsigned int not_lowered() const noexcept {
        __m128i const from_a = _mm_cmpgt_epi8(m_bytes, _mm_set1_epi8('A' - 1));
        __m128i const to_z = _mm_cmplt_epi8(m_bytes, _mm_set1_epi8('Z' + 1));
        return mask(_mm_or_si128(m_bytes, _mm_and_si128(from_a, to_z)));
    }

private:
    static unsigned int mask(__m128i bytes) noexcept { return static_cast<unsigned int>(_mm_movemask_epi8(bytes)); }

    __m128i m_bytes;
};
#else
class sixteen_bytes {
public:
    explicit sixteen_bytes(void const* bytes) noexcept { std::memcpy(m_bytes, bytes, sizeof m_bytes); }
    sixteen_bytes(std::uint64_t first, std::uint64_t second) noexcept {
        std::memcpy(m_bytes, &first, sizeof first);
        std::memcpy(m_bytes + sizeof first, &second, sizeof second);
    }

    unsigned int separators() const noexcept { return mask(isConfigDotSlash); }
    /// Those that lowered() may change: capitals, and from 0x80 on those that the locale takes for such.
    unsigned int not_lowered() const noexcept {
        return mask([](char each) { return (each >= 'A' && each <= 'Z') || static_cast<signed char>(each) < 0; });
    }

private:
    template <typename Test>
    unsigned int mask(Test test) const noexcept {
        unsigned int bits = 0;
        for (unsigned int i = 0; i < sizeof m_bytes; ++i) bits |= test(m_bytes[i]) ? 1u << i : 0u;
        return bits;
    }

    char m_bytes[16];
};
#endif

/// Every byte of the name counts.
unsigned char tag_of(std::string_view name) noexcept {
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15;
    auto const mixed = [](std::uint64_t hash) { return hash * factor ^ (hash * factor) >> 32; };
    std::uint64_t hash = name.size();
    for (; name.size() > 16; name.remove_prefix(8)) hash = mixed(hash ^ load<std::uint64_t>(name.data()));
    // The rest in two words, which may overlap.
    char const* const end = name.data() + name.size();
    if (name.size() >= 8) {
        hash = mixed(hash ^ load<std::uint64_t>(name.data())) ^ load<std::uint64_t>(end - 8);
    } else if (name.size() >= 4) {
        hash ^= load<std::uint32_t>(name.data()) | std::uint64_t{load<std::uint32_t>(end - 4)} << 32;
    } else {
        for (char const c : name) hash = hash << 8 ^ static_cast<unsigned char>(c);
    }
    return static_cast<unsigned char>(hash * factor >> 56);
}

// Children.

/// The child as a node, made now if it was a text.
named_node& as_node(child& place) {
    if (text_record* const record = place.record()) {
        place = child(new named_node(record->name(), place.value(), 0)); // the record's memory stays unused
    }
    return *place.named();
}

// Blocks.

child_block* make_block(unsigned int capacity, unsigned int height) {
    std::size_t const tags_size = height == 0 ? child_block::tags_size(capacity) : 0;
    void* const memory = ::operator new(sizeof(child_block) + tags_size + capacity * sizeof(child));
    return new (memory) child_block{
        nullptr, nullptr, 0, static_cast<unsigned short>(capacity), static_cast<unsigned short>(height), true};
}

void free_block(child_block* block) noexcept {
    for (record_chunk* chunk = block->records; chunk;) ::operator delete(std::exchange(chunk, chunk->next));
    ::operator delete(block);
}

/// Memory for a record of that many bytes in the block.
void* record_place(child_block& block, std::size_t bytes) {
    constexpr std::size_t least = 64, most = 4096;
    bytes = (bytes + alignof(text_record) - 1) / alignof(text_record) * alignof(text_record);
    record_chunk* chunk = block.records;
    if (!chunk || chunk->size - chunk->used < bytes) {
        std::size_t const usual = chunk ? std::clamp(chunk->size * 3 / 2, least, most) : least;
        std::size_t const size = std::max(bytes, usual);
        void* const memory = ::operator new(sizeof(record_chunk) + size);
        chunk = block.records = new (memory) record_chunk{chunk, size, 0};
    }
    return chunk->bytes() + std::exchange(chunk->used, chunk->used + bytes);
}

/// Neither name nor text may be longer than text_record::most, nor the text than the capacity.
text_record* make_record(child_block& block, std::string_view name, std::string_view text, std::size_t capacity) {
    auto const size = [](std::size_t bytes) { return static_cast<unsigned short>(bytes); };
    void* const place = record_place(block, sizeof(text_record) + name.size() + capacity);
    auto* const record = new (place) text_record{size(name.size()), size(text.size()), size(capacity)};
    std::copy(text.begin(), text.end(), std::copy(name.begin(), name.end(), record->bytes()));
    return record;
}

/// Puts the children in order of their names.
void put_in_order(child_block& block) noexcept {
    if (block.ordered) return;
    std::array<std::pair<child, unsigned char>, child_block::most> pairs;
    for (unsigned int i = 0; i < block.count; ++i) pairs[i] = {block.children()[i], block.tags()[i]};
    auto const is_before = [](auto const& a, auto const& b) { return a.first.name() < b.first.name(); };
    std::sort(pairs.begin(), pairs.begin() + block.count, is_before);
    for (unsigned int i = 0; i < block.count; ++i) {
        block.children()[i] = pairs[i].first;
        block.tags()[i] = pairs[i].second;
    }
    block.ordered = true;
}

child_block* first_leaf(child_block* block) noexcept {
    while (block && block->height != 0) block = block->blocks()[0];
    return block;
}

std::string_view first_name(child_block* block) noexcept { return first_leaf(block)->children()[0].name(); }

/// Which of the blocks below holds the name if any does.
unsigned int block_index(child_block& block, std::string_view name) noexcept {
    auto const is_before = [](std::string_view wanted, child_block* below) { return wanted < first_name(below); };
    auto const* const first = block.blocks();
    auto const* const after = std::upper_bound(first + 1, first + block.count, name, is_before);
    return static_cast<unsigned int>(after - first) - 1;
}

child* find(child_block* block, wanted_name const& name) noexcept {
    if (!block) return nullptr;
    while (block->height != 0) block = block->blocks()[block_index(*block, name.text())];
    unsigned char const* const tags = block->tags();
    unsigned char const* const end = tags + block->count;
    for (auto const* at = tags; at != end; ++at) {
        at = static_cast<unsigned char const*>(std::memchr(at, name.tag, static_cast<std::size_t>(end - at)));
        if (!at) return nullptr;
        child& found = block->children()[at - tags];
        if (found.name() == name.text()) return &found;
    }
    return nullptr;
}

child* find(config_tree const& node, key_path const& path) noexcept {
    config_tree const* step = &node;
    child* found = nullptr;
    for (wanted_name const& name : path) {
        found = step ? find(child_access::root(*step), name) : nullptr;
        if (!found) return nullptr;
        step = found->node();
    }
    return found;
}

/// Moves what the block holds from the index on to an empty block of the same height.
void move_tail(child_block& block, unsigned int index, child_block& empty) noexcept {
    auto const count = static_cast<unsigned short>(block.count - index);
    if (block.height == 0) {
        std::copy_n(block.children() + index, count, empty.children());
        std::copy_n(block.tags() + index, count, empty.tags());
    } else {
        std::copy_n(block.blocks() + index, count, empty.blocks());
    }
    empty.count = count;
    empty.ordered = block.ordered;
    block.count = static_cast<unsigned short>(index);
}

template <typename T>
void insert_at(T* places, unsigned int count, unsigned int index, T value) noexcept {
    std::copy_backward(places + index, places + count, places + count + 1);
    places[index] = value;
}

/// Splits the full block at the index, to make room for the name. Names that come in order leave full
/// blocks behind.
void split_below(child_block& parent, unsigned int index, std::string_view name) {
    child_block& full = *parent.blocks()[index];
    put_in_order(full);
    std::string_view const last_name =
        full.height == 0 ? full.children()[full.count - 1].name() : first_name(full.blocks()[full.count - 1]);
    bool const goes_last = !full.next && last_name < name;
    child_block* const right = make_block(child_block::most, full.height);
    move_tail(full, goes_last ? full.count - 1u : full.count / 2u, *right);
    right->next = full.next;
    full.next = right;
    insert_at(parent.blocks(), parent.count, index + 1, right);
    ++parent.count;
}

/// Makes room for one more below the root.
void grow_root(child_block*& root, std::string_view name) {
    if (!root) {
        root = make_block(4, 0);
    } else if (root->count == child_block::most) {
        child_block* const top = make_block(child_block::most, root->height + 1u);
        top->blocks()[0] = root;
        top->count = 1;
        root = top;
        split_below(*top, 0, name);
    } else if (root->count == root->capacity) {
        child_block* const larger = make_block(root->capacity * 2u, 0);
        move_tail(*root, 0, *larger);
        std::swap(larger->records, root->records);
        free_block(std::exchange(root, larger));
    }
}

/// The block in which a child of that name goes, with room for it. It is left empty if it is the first one.
child_block& make_room(child_block*& root, std::string_view name) {
    grow_root(root, name);
    child_block* block = root;
    while (block->height != 0) {
        unsigned int index = block_index(*block, name);
        if (block->blocks()[index]->count == child_block::most) {
            split_below(*block, index, name);
            index = block_index(*block, name);
        }
        block = block->blocks()[index];
    }
    return *block;
}

void add(child_block& block, wanted_name const& name, child added) noexcept {
    child* const children = block.children();
    unsigned int const last = block.count++;
    unsigned int place = last;
    if (last != 0 && name.text() < children[0].name()) {
        children[last] = children[0];
        block.tags()[last] = block.tags()[0];
        block.ordered = last == 1;
        place = 0;
    } else if (last != 0 && block.ordered) {
        block.ordered = children[last - 1].name() < name.text();
    }
    children[place] = added;
    block.tags()[place] = name.tag;
}

config_tree& insert_node(child_block*& root, wanted_name const& name, types::variant const& value,
                         unsigned int kind) {
    auto* const node = new named_node(name.text(), value, kind);
    rc_pointer<config_tree> owner = std::move(node->self.second);
    add(make_room(root, name.text()), name, child(node));
    node->self.second = std::move(owner);
    return *node;
}

config_tree& find_or_make(child_block*& root, wanted_name const& name) {
    child* const found = find(root, name);
    return found ? as_node(*found) : insert_node(root, name, types::nil, 0);
}

/// Neither may be longer than text_record::most.
void insert_text(child_block*& root, wanted_name const& name, std::string_view text) {
    child_block& block = make_room(root, name.text());
    try {
        add(block, name, child(make_record(block, name.text(), text, text.size())));
    } catch (...) {
        if (block.count == 0) free_block(std::exchange(root, nullptr));
        throw;
    }
}

/// The text may be part of the one there. A record that is too small is left behind for one of twice the room,
/// so that no number of changes takes more than a few times the memory of the longest text.
void replace_text(child_block& root, child& place, std::string_view text) {
    text_record* record = place.record();
    if (text.size() > record->text_capacity) {
        std::size_t const capacity =
            std::min(std::max(text.size(), record->text_capacity * std::size_t{2}), text_record::most);
        place = child(make_record(*first_leaf(&root), record->name(), text, capacity));
        return;
    }
    std::memmove(record->bytes() + record->name_size, text.data(), text.size());
    record->text_size = static_cast<unsigned short>(text.size());
}

/// Puts the blocks with the children of a node before those of the list and frees the others.
void prepend_leaves(child_block* root, child_block*& list) noexcept {
    while (root->height != 0) {
        child_block* const below = root->blocks()[0];
        while (root) free_block(std::exchange(root, root->next));
        root = below;
    }
    child_block* last = root;
    while (last->next) last = last->next;
    last->next = std::exchange(list, root);
}

} // namespace

// deep_copy_map.

deep_copy_map::deep_copy_map() noexcept = default;

// Through the default constructor, so that a copy that fails half-way is taken apart like any other map.
deep_copy_map::deep_copy_map(deep_copy_map const& other) : deep_copy_map() {
    std::vector<std::pair<deep_copy_map const*, deep_copy_map*>> pending{{&other, this}};
    while (!pending.empty()) {
        auto const [source, target] = pending.back();
        pending.pop_back();
        for (child_block* leaf = first_leaf(source->m_root); leaf; leaf = leaf->next) {
            for (child const* each = leaf->children(); each != leaf->children() + leaf->count; ++each) {
                if (text_record const* const record = each->record()) {
                    insert_text(target->m_root, wanted_name(record->name()), record->text());
                    continue;
                }
                config_tree const& node = *each->node();
                config_tree& copy =
                    insert_node(target->m_root, wanted_name(each->name()), node.value(), node.kind());
                if (!node.empty()) pending.emplace_back(&node.m_children, &copy.m_children);
            }
        }
    }
}

deep_copy_map::~deep_copy_map() { clear(); }

deep_copy_map& deep_copy_map::assign(deep_copy_map const& other) {
    deep_copy_map copy(other);
    swap(copy);
    return *this;
}

deep_copy_map::const_iterator deep_copy_map::begin() const noexcept {
    child_block* const leaf = first_leaf(m_root);
    if (leaf) put_in_order(*leaf);
    return const_iterator(leaf, 0);
}

deep_copy_map::value_type const& deep_copy_map::const_iterator::operator*() const {
    return as_node(m_block->children()[m_index]).self;
}

deep_copy_map::const_iterator& deep_copy_map::const_iterator::operator++() noexcept {
    if (++m_index == m_block->count) {
        *this = const_iterator(m_block->next, 0);
        if (m_block) put_in_order(*m_block);
    }
    return *this;
}

// Each node goes only after its children have been taken from it, so its destructor finds nothing to do.
void deep_copy_map::clear() noexcept {
    child_block* doomed = nullptr;
    if (m_root) prepend_leaves(std::exchange(m_root, nullptr), doomed);
    while (doomed) {
        child_block* const block = std::exchange(doomed, doomed->next);
        for (child const* each = block->children(); each != block->children() + block->count; ++each) {
            if (each->record()) continue;
            config_tree& node = *each->node();
            bool const goes_now = node.reference_count == 1 && node.heap_allocated;
            if (goes_now && !node.empty()) prepend_leaves(std::exchange(node.m_children.m_root, nullptr), doomed);
            each->named()->self.second.reset();
        }
        free_block(block);
    }
}

// What the library's own sources use.

child_cursor::child_cursor(config_tree const& node) noexcept : m_block(first_leaf(child_access::root(node))) {
    if (m_block) put_in_order(*m_block);
}

child const& child_cursor::take() noexcept {
    child const& taken = m_block->children()[m_index];
    if (++m_index == m_block->count) {
        m_block = m_block->next;
        m_index = 0;
        if (m_block) put_in_order(*m_block);
    }
    return taken;
}

named_node::named_node(std::string_view name, types::variant const& value, unsigned int kind)
    : config_tree(value, kind), self(name, nullptr) {
    heap_allocated = true;
    self.second = this;
}
named_node::~named_node() = default;

wanted_name::wanted_name(std::string_view name) noexcept
    : data(name.data()), size(name.size()), tag(tag_of(name)) {}

key_path::key_path(std::string_view key) {
    if (cut<false>(key)) return;
    m_end = m_first;
    m_lowered = lowered(key);
    cut<true>(m_lowered);
}

/// Finds the components; false when the text may have to be lowered first.
template <bool is_lowered>
bool key_path::cut(std::string_view text) {
    char const* first = text.data(); // of a component
    auto const end_component = [&](char const* end) {
        if (m_end == m_limit) make_room();
        *m_end++ = wanted_name({first, static_cast<std::size_t>(end - first)});
    };
    auto const look_at = [&](sixteen_bytes bytes, char const* place, unsigned int skipped) {
        if (!is_lowered && bytes.not_lowered() != 0) return false;
        for (unsigned int ends = bytes.separators() >> skipped; ends != 0; ends &= ends - 1) {
            char const* const end = place + std::countr_zero(ends);
            end_component(end);
            first = end + 1;
        }
        return true;
    };
    char const* const data = text.data();
    std::size_t const size = text.size();
    if (size < 16) {
        std::uint64_t const second = size > 8 ? load_some(data + 8, size - 8) : 0;
        if (!look_at(sixteen_bytes(load_some(data, size), second), data, 0)) return false;
    } else {
        std::size_t at = 0;
        for (; size - at >= 16; at += 16) {
            if (!look_at(sixteen_bytes(data + at), data + at, 0)) return false;
        }
        // The rest with some that were there before.
        if (at != size &&
            !look_at(sixteen_bytes(data + size - 16), data + at, static_cast<unsigned int>(16 - (size - at))))
            return false;
    }
    char const* const end = text.data() + text.size();
    if (m_end == m_first || first < end) end_component(end);
    return true;
}

void key_path::make_room() {
    auto const size = static_cast<std::size_t>(m_end - m_first);
    if (m_many.empty()) m_many.assign(m_first, m_end);
    m_many.resize(size * 2);
    m_first = m_many.data();
    m_end = m_first + size;
    m_limit = m_first + m_many.size();
}

ustring8 lowered(std::string_view text) {
    ustring8 result(text);
    for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

child const* find_child(config_tree const& node, key_path const& path) noexcept { return find(node, path); }

config_tree const* find_node(config_tree const& node, key_path const& path) {
    child* const found = find(node, path);
    return found ? &as_node(*found) : nullptr;
}

config_tree& make_node(config_tree& node, key_path const& path) {
    config_tree* made = &node;
    for (wanted_name const& name : path) made = &find_or_make(child_access::root(*made), name);
    return *made;
}

void set_text(config_tree& node, std::string_view key, std::string_view text) {
    key_path const path(key);
    wanted_name const& name = *(path.end() - 1);
    config_tree* parent = &node;
    for (auto const* step = path.begin(); step != &name; ++step)
        parent = &find_or_make(child_access::root(*parent), *step);

    child_block*& root = child_access::root(*parent);
    child* const found = find(root, name);
    bool const is_node = (found && found->node()) || std::max(name.text().size(), text.size()) > text_record::most;
    if (is_node) {
        find_or_make(child_access::root(*parent), name).set_entry(ustring8(text), 0);
    } else if (found) {
        replace_text(*root, *found, text);
    } else {
        insert_text(root, name, text);
    }
}

} // namespace ZOLT_2_18::config::_private
