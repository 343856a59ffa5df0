// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What may be used from several threads at once, each with objects of its own: exceptions, conversions,
// code pages, files, numbers; and reading one collection of catalogs. ThreadSanitizer watches in its build.
#include <zolt/zolt.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

using namespace zolt;
using strings::ustring8;

TEST(races, threads_with_objects_of_their_own) {
    ustring8 const prefix("/tmp/zolt_races_" + std::to_string(::getpid()) + "_");
    ustring8 const catalog_file(prefix + "catalog");
    system::store_file(catalog_file,
                       ustring8("<?xml version='1.0'?><xmc version='1.1'><catalog name='c' lang='en'>"
                                "<msg name='m'>Copied <arg name='n' type='int'/>.</msg></catalog></xmc>"));
    i18n::message_catalogs catalogs;
    ASSERT_EQ(catalogs.load(catalog_file, "en").code(), i18n::message_catalogs::no_error);
    std::filesystem::remove(std::string(catalog_file));
    std::atomic<int> faults{0};
    auto const expect = [&faults](bool holds) { faults += !holds; };
    auto const work = [&](int thread) {
        ustring8 const file(prefix + std::to_string(thread));
        for (int i = 0; i < 200; ++i) {
            ustring8 const text("\xC3\xA4 text of thread " + std::to_string(thread));
            try {
                strings::code_page(strings::code_page::none).encode(text);
                expect(false);
            } catch (exceptions::exception const& fault) {
                expect(fault.where.line != 0);
            }
            for (auto const type : {strings::code_page::cp1252, strings::code_page::koi8_r,
                                    strings::code_page::cp932, strings::code_page::utf_8}) {
                strings::code_page const page(type);
                expect(page.as_utf8(page.encode(ustring8("plain"))) == "plain");
            }
            expect(strings::utf16_to_utf8(strings::utf8_to_utf16(text)) == text);
            expect(types::variant(i).as_string() == std::to_string(i));
            expect(types::variant("0.1").as_double() == 0.1);
            ustring8 content;
            expect(system::store_file(file, text) == 0 && system::load_file(file, content) == 0 && content == text);
            generic::varg_list const arguments(generic::argument("n", i));
            expect(catalogs.message("c", "m").as_string(arguments) == "Copied " + std::to_string(i) + ".");
            expect(!catalogs.has_message("c", "absent"));
        }
        std::filesystem::remove(std::string(file));
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(work, i);
    for (std::thread& each : threads) each.join();
    EXPECT_EQ(faults, 0);
}

} // namespace
