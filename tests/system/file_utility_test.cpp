// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/exceptions/exception.hpp>
#include <zolt/strings/unicode.hpp>
#include <zolt/system/file_utility.hpp>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

using namespace ZOLT_2_18::strings;
using namespace ZOLT_2_18::system;

namespace {

class FileUtility : public testing::Test {
protected:
    FileUtility() : directory("/tmp/zolt_file_XXXXXX") { ::mkdtemp(directory.data()); }
    ~FileUtility() override { std::filesystem::remove_all(directory.c_str()); }

    ustring8 path(std::string const& name) const { return directory + "/" + name; }

    std::string directory;
};

// What loading gives or raises; the content starts as "kept".
template <typename Content, typename Name>
std::string loaded(Name const& name) {
    Content content("kept");
    try {
        return std::to_string(load_file(name, content)) + " " + content;
    } catch (ZOLT_2_18::exceptions::runtime_error const& e) {
        EXPECT_EQ(content, "kept");
        return std::to_string(e.where.line) + e.where.file + e.where.function + ": " + e.get_message();
    }
}

} // namespace

TEST_F(FileUtility, BytesComeBackAsTheyWere) {
    ustring8 content("something else");
    for (std::string const& bytes :
         {std::string(), std::string(100000, 'x'), std::string("\xEF\xBB\xBF\r\n\0\x1A\xFF", 8)}) {
        EXPECT_EQ(store_file(path("f"), bytes), 0u);
        EXPECT_EQ(load_file(path("f"), content), 0u);
        EXPECT_EQ(content, bytes);
    }
    EXPECT_EQ(store_file("/dev/full", content), 0u); // kept: writing fails unnoticed
}

TEST_F(FileUtility, WhatCannotBeOpenedLeavesTheContentAlone) {
    store_file(path("f"), "x");
    EXPECT_EQ(loaded<ustring8>(path("missing")), "1 kept");
    for (ustring8 const& name : {ustring8(), ustring8(directory), path("f/x"), path(std::string("f\0g", 3))}) {
        EXPECT_EQ(loaded<ustring8>(name), "1 kept") << name;
        EXPECT_EQ(store_file(name, "y"), 1u) << name;
    }
    EXPECT_EQ(loaded<ustring8>(path("f")), "0 x");
}

TEST_F(FileUtility, EveryFormLoadsTheSameFileOrThrowsAtItsOwnLine) {
    ustring8 const name = path("\xC3\xA9\xE2\x82\xAC");
    auto const [name16, name32] = std::pair(utf8_to_utf16(name), utf8_to_utf32(name));
    auto const loads = [&, &name16 = name16, &name32 = name32] {
        return std::vector{loaded<ustring8>(name),    loaded<ustring8>(name16),    loaded<ustring8>(name32),
                           loaded<std::string>(name), loaded<std::string>(name16), loaded<std::string>(name32)};
    };
    EXPECT_EQ(store_file(name16, "16"), 0u);
    EXPECT_EQ(loads(), std::vector<std::string>(6, "0 16"));
    EXPECT_EQ(store_file(name32, "32"), 0u);
    EXPECT_EQ(loads(), std::vector<std::string>(6, "0 32"));
    ASSERT_EQ(::truncate64(name.c_str(), 0x80000000), 0);
    std::vector<std::string> faults = {"99", "131", "162", "226", "258", "289"};
    for (auto& fault : faults) fault += "system/file_utilityload_file: 2147483648 is large than a string can hold";
    EXPECT_EQ(loads(), faults);
}

TEST_F(FileUtility, PipesAreReadToTheirEnd) {
    for (std::size_t const size : {0u, 1u, 0x10000u, 300001u}) {
        ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
        std::string const bytes(size, 'p');
        std::thread writer([&] { store_file(path("pipe"), bytes); });
        EXPECT_EQ(loaded<ustring8>(path("pipe")), "0 " + bytes);
        writer.join();
        std::filesystem::remove(path("pipe").c_str());
    }
}

TEST_F(FileUtility, PseudoFilesHaveTheSizeThatSeekingTells) {
    EXPECT_EQ(loaded<ustring8>("/dev/zero"), "0 ");
    EXPECT_EQ(loaded<ustring8>("/proc/self/status").substr(0, 8), "0 Name:\t"); // cannot be seeked
}
