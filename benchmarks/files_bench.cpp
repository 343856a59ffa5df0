// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// A whole file into a string, from the system's cache. "ifstream" asks the stream for its size and reads once;
// "ifstream_iterators" is the other usual idiom; "read" are the system calls alone.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace zolt;

namespace {

// Removed when the program ends.
struct folder {
    folder() { ::mkdtemp(path.data()); }
    ~folder() { std::filesystem::remove_all(path); }

    std::string path = "/tmp/zolt_files_bench_XXXXXX";
};

std::string make_file(std::size_t size) {
    static folder const files;
    std::string const path = files.path + "/" + std::to_string(size);
    strings::ustring8 content;
    for (std::size_t i = 0; content.size() < size; ++i) content += "line " + std::to_string(i) + " of a file\n";
    content.resize(size);
    system::store_file(path, content);
    return path;
}

strings::ustring8 by_zolt(strings::ustring8 const& path) {
    strings::ustring8 content;
    system::load_file(path, content);
    return content;
}

std::string by_size_and_read(std::string const& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    std::string content(static_cast<std::size_t>(file.tellg()), '\0');
    file.seekg(0);
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    return content;
}

std::string by_iterators(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string by_system_calls(std::string const& path) {
    int const file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status;
    ::fstat(file, &status);
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t done = 0;
    while (done < content.size()) {
        ssize_t const got = ::read(file, content.data() + done, content.size() - done);
        if (got <= 0) break;
        done += static_cast<std::size_t>(got);
    }
    ::close(file);
    return content;
}

} // namespace

void add_benchmarks() {
    struct {
        std::size_t size;
        char const* label;
    } const rows[] = {{4096, "4KB"}, {1 << 20, "1MB"}, {16 << 20, "16MB"}};
    for (auto const& row : rows) {
        std::string const path = make_file(row.size);
        bench::comparison task("files/load/" + std::string("text/") + row.label, row.size);
        task.side("zolt", [=] { return by_zolt(path); });
        task.side("ifstream", [=] { return by_size_and_read(path); });
        task.side("ifstream_iterators", [=] { return by_iterators(path); });
        task.side("read", [=] { return by_system_calls(path); });
    }
    bench::growth("files/load", 1 << 10,
                  [](std::size_t size) { return [path = make_file(size)] { return by_zolt(path); }; });
}
