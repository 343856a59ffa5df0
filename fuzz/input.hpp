// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What every fuzz target starts from: structured values out of the bytes of an input, a check that names its
// line, and a private folder for those that need files. A target defines fuzz::run.
//
// Every value can be read from any input, whose end reads as zero bytes. Texts end at a byte 0xFF, so that
// they stay readable in seeds and dictionaries; rest() takes everything that is left.
#pragma once

#include <zolt/strings/ustring.hpp>
#include <zolt/version.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace zolt = ZOLT_2_18;

namespace fuzz {

using zolt::strings::ustring8;

class input {
public:
    input(std::uint8_t const* data, std::size_t size) : m_at(data), m_end(data + size) {}

    bool empty() const { return m_at == m_end; }

    /// A number of any arithmetic type, as it lies in memory.
    template <typename Number>
    Number number() {
        unsigned char image[sizeof(Number)] = {};
        for (std::size_t i = 0; i < sizeof image && !empty(); ++i) image[i] = *m_at++;
        Number value;
        std::memcpy(&value, image, sizeof value);
        return value;
    }

    /// 0 to limit - 1, from one byte.
    unsigned below(std::size_t limit) { return static_cast<unsigned>(number<std::uint8_t>() % limit); }

    ustring8 text() {
        std::uint8_t const* const first = m_at;
        while (!empty() && *m_at != 0xFF) ++m_at;
        ustring8 const result(first, m_at);
        m_at += !empty();
        return result;
    }

    ustring8 rest() {
        ustring8 const result(m_at, m_end);
        m_at = m_end;
        return result;
    }

private:
    std::uint8_t const* m_at;
    std::uint8_t const* m_end;
};

/// Does everything with one input that the target is for.
void run(input in);

/// Ends the program when the library does not keep a promise.
inline void check(bool kept, char const* promise, int line = __builtin_LINE()) {
    if (kept) return;
    std::fprintf(stderr, "line %d: broken: %s\n", line, promise);
    std::abort();
}

/// A folder of this process, in memory where the system has a place for that; it goes with the program.
class private_folder {
public:
    private_folder() {
        std::string name =
            access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
        name += "/zolt_fuzz_XXXXXX";
        check(mkdtemp(name.data()) != nullptr, "a folder can be made");
        m_path = name + "/";
    }
    ~private_folder() { std::filesystem::remove_all(m_path.c_str()); }
    private_folder(private_folder const&) = delete;
    private_folder& operator=(private_folder const&) = delete;

    ustring8 path(char const* name) const { return m_path + name; }
    void write(char const* name, std::string const& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
    }
    std::string read(char const* name) const {
        std::ostringstream content;
        content << std::ifstream(path(name), std::ios::binary).rdbuf();
        return content.str();
    }

private:
    std::string m_path;
};

} // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    fuzz::run(fuzz::input(data, size));
    return 0;
}
