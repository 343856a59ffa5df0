// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Each vector core that this machine runs, held against the portable one. Texts lie between two pages that
// cannot be read, now at the front one, now at the back one, so that any step outside ends the program.
#include <zolt/strings/unicode.hpp>
#include <zolt/strings/unicode_private.hpp>

#include <gtest/gtest.h>

#include <sys/mman.h>

#include <cstring>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace ZOLT_2_18::strings;
using namespace ZOLT_2_18::strings::_private;

constexpr std::size_t page = 4096;

class guarded_pages {
public:
    guarded_pages() {
        void* const all = mmap(nullptr, size + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        m_begin = static_cast<char*>(all) + page;
        mprotect(m_begin, size, PROT_READ | PROT_WRITE);
    }
    guarded_pages(guarded_pages const&) = delete;
    guarded_pages& operator=(guarded_pages const&) = delete;
    ~guarded_pages() { munmap(m_begin - page, size + 2 * page); }

    template <typename Unit>
    Unit const* place(std::basic_string<Unit> const& text, bool at_front) {
        std::size_t const bytes = text.size() * sizeof(Unit);
        char* const to = at_front ? m_begin : m_begin + size - bytes;
        std::memcpy(to, text.data(), bytes);
        return reinterpret_cast<Unit const*>(to);
    }

private:
    static constexpr std::size_t size = 16 * page;
    char* m_begin;
};

template <typename In, typename Out>
std::basic_string<Out> run(core<In, Out> core, In const* text, std::size_t size, std::size_t piece, bool& good) {
    static std::vector<Out> const filled(growth<In, Out> * (4 * page + overrun) + spill, Out('#'));
    static std::vector<Out> block = filled;
    std::basic_string<Out> result;
    In const* const end = text + size;
    good = true;
    for (cursor<In, Out> at{text, nullptr}; good && at.from < end;) {
        In const* const from = at.from;
        In const* const stop = at.left(end) > piece ? from + piece : end;
        at.to = block.data();
        at = core(at, stop, end);
        good = at.to != nullptr;
        if (!good) break;
        EXPECT_TRUE(from < at.from && at.from <= end &&
                    at.left(end) + overrun > static_cast<std::size_t>(end - stop));
        result.append(block.data(), static_cast<std::size_t>(at.to - block.data()));
    }
    return result;
}

template <typename In, typename Out>
void compare(std::basic_string<In> const& text, core<In, Out> core_set::*direction, std::size_t piece) {
    static guarded_pages pages;
    static std::vector<std::pair<char const*, core_set const*>> const sets = [] {
        std::vector<std::pair<char const*, core_set const*>> available;
        if (can_run_avx2()) available.emplace_back("avx2", &avx2_cores);
        if (can_run_avx512()) available.emplace_back("avx512", &avx512_cores);
        return available;
    }();
    bool expected_good = false, good = false;
    auto const expected = run(portable_cores.*direction, text.data(), text.size(), text.size(), expected_good);
    for (auto const& [name, set] : sets) {
        for (bool at_front : {true, false}) {
            auto const result = run(set->*direction, pages.place(text, at_front), text.size(), piece, good);
            ASSERT_EQ(good, expected_good) << name << " " << testing::PrintToString(text);
            ASSERT_TRUE(!good || result == expected) << name << " " << testing::PrintToString(text);
        }
    }
}

void compare_all(std::string const& text, std::size_t piece) {
    compare(text, &core_set::utf8_to_utf16, piece);
    compare(text, &core_set::utf8_to_utf32, piece);
}

void compare_all(std::basic_string<unsigned short> const& text, std::size_t piece) {
    compare(text, &core_set::utf16_to_utf8, piece);
    compare(text, &core_set::utf16_to_utf32, piece);
}

void compare_all(std::wstring const& text, std::size_t piece) {
    compare(text, &core_set::utf32_to_utf8, piece);
    compare(text, &core_set::utf32_to_utf16, piece);
}

template <typename Unit>
std::basic_string<Unit> text_of(std::initializer_list<unsigned int> units) {
    std::basic_string<Unit> text;
    for (unsigned int unit : units) text += static_cast<Unit>(unit);
    return text;
}

// All texts of up to `longest` units of the alphabet, at every place of interest between neutral characters.
template <typename Unit>
void compare_short_texts(std::basic_string<Unit> const& alphabet, std::size_t longest,
                         std::vector<std::basic_string<Unit>> const& neutral,
                         std::vector<std::size_t> const& places) {
    std::vector<std::basic_string<Unit>> texts(1);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        for (std::size_t k = 0; texts[i].size() < longest && k < alphabet.size(); ++k) {
            texts.push_back(texts[i] + alphabet[k]);
        }
        if (i == 0) continue;
        for (std::size_t n = 0; n < neutral.size(); ++n) {
            std::size_t const place = places[(i + n) % places.size()]; // each text's start meets several
            for (std::size_t at : {place, places[(i * 7 + n) % places.size()]}) {
                std::basic_string<Unit> text(at % neutral[n].size(), Unit('a'));
                while (text.size() < at) text += neutral[n];
                text += texts[i];
                compare_all(text, 4096); // ends here
                for (int more = 0; more < 40; ++more) text += neutral[n];
                compare_all(text, at + 1); // goes on, the first piece ends inside
                if (testing::Test::HasFatalFailure()) return;
            }
        }
    }
}

TEST(UnicodeCores, ShortTextsAtWindowEnds) {
    std::vector<std::size_t> const places{0,  1,  12, 13, 14, 15, 16, 28, 29, 30,
                                          31, 32, 33, 47, 60, 61, 62, 63, 64, 65};
    compare_short_texts<char>(text_of<char>({'a', 0, 0x80, 0xBF, 0xC0, 0xDF, 0xE2, 0xEF, 0xF0, 0xF7, 0xF8, 0xFF}),
                              4, {"a", "\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"}, places);
    compare_short_texts<unsigned short>(text_of<unsigned short>({'a', 0, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xD800,
                                                                 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF}),
                                        3,
                                        {text_of<unsigned short>({'a'}), text_of<unsigned short>({0xE9}),
                                         text_of<unsigned short>({0x4E2D}),
                                         text_of<unsigned short>({0xD83D, 0xDE00})},
                                        places);
    compare_short_texts<wchar_t>(
        text_of<wchar_t>({'a', 0, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xD800, 0xDFFF, 0xE000, 0xFFFE, 0xFFFF, 0x10000,
                          0x10FFFF, 0x110000, 0x80000041, 0xFFFFFFFF}),
        3,
        {text_of<wchar_t>({'a'}), text_of<wchar_t>({0xE9}), text_of<wchar_t>({0x4E2D}),
         text_of<wchar_t>({0x1F600})},
        places);
}

// Runs of characters of one length each, here and there a unit that is any.
template <typename Unit>
std::basic_string<Unit> random_text(std::mt19937& random, std::size_t size, unsigned int faults) {
    static constexpr std::tuple<unsigned int, unsigned int> ranges[] = {
        {0, 0x80}, {0, 0x80}, {0x80, 0x800}, {0x800, 0xD800}, {0xE000, 0x10000}, {0x10000, 0x110000}};
    std::basic_string<Unit> text;
    while (text.size() < size) {
        auto const [low, high] = ranges[random() % 6];
        ustring32 characters;
        for (std::size_t count = 1 + random() % (1u << random() % 8); count > 0; --count) {
            characters += static_cast<wchar_t>(low + random() % (high - low));
        }
        if constexpr (sizeof(Unit) == 4) text += characters;
        if constexpr (sizeof(Unit) == 1) text += utf32_to_utf8(characters);
        if constexpr (sizeof(Unit) == 2) text += utf8_to_utf16(utf32_to_utf8(characters));
    }
    text.resize(size);
    for (; faults > 0 && size > 0; --faults) text[random() % size] = static_cast<Unit>(random() >> random() % 32);
    return text;
}

template <typename Unit>
void compare_random_texts() {
    std::mt19937 random(23);
    for (int round = 0; round < 1500 && !testing::Test::HasFatalFailure(); ++round) {
        std::size_t const size = random() % (1u << (3 + random() % 11));
        auto const text = random_text<Unit>(random, size, random() % 3 ? 0 : 1 + random() % 4);
        compare_all(text, random() % 2 ? 4096 : 1 + random() % 300);
    }
}

TEST(UnicodeCores, RandomTexts) {
    compare_random_texts<char>();
    compare_random_texts<unsigned short>();
    compare_random_texts<wchar_t>();
}

// The frame around the cores: texts of many pieces, whose later pieces are not like the first.
TEST(UnicodeCores, LongTextsOfChangingKind) {
    ustring8 text;
    for (char const* character : {"a", "\xF0\x9F\x98\x80", "\xE4\xB8\xAD", "a", "\xC3\xA9"}) {
        for (int i = 0; i < 20000; ++i) text += character;
    }
    ustring32 const codes = utf8_to_utf32(text);
    ASSERT_EQ(codes.size(), 100000u);
    ASSERT_TRUE(utf32_to_utf8(codes) == text && utf16_to_utf8(utf8_to_utf16(text)) == text);
    ASSERT_TRUE(utf16_to_utf32(utf8_to_utf16(text)) == codes);
}

} // namespace
