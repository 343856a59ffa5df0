// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include <zolt/config/config_dispatch.hpp>
#include <zolt/config/file_item.hpp>
#include <zolt/config/user_item.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace ZOLT_2_18::config;
using ZOLT_2_18::generic::argument;
using ZOLT_2_18::generic::varg_list;

// Ids of the sources, with the names of their files and what was loaded under "a".
std::string sources_of(config_dispatch const& dispatch) {
    config_dispatch::item_list items;
    std::unique_ptr<config_dispatch> const copy(dispatch.clone());
    copy->setup(items);
    copy->load(items);
    std::string all;
    for (auto const& item : items) {
        auto const* const file = dynamic_cast<file_item*>(item.get());
        auto const* const entry = item->get_value("a");
        all += item->get_id() + (file ? ":" + file->get_filename() : "") + (entry ? "*; " : "; ");
    }
    copy->unload(items);
    for (auto const& item : items) EXPECT_TRUE(item->tree().empty());
    return all;
}

// Notes what is done to it and to how many sources.
struct noting_item : user_item {
    bool load(item_list const& others) override {
        notes += "load" + std::to_string(others.size()) + " ";
        return false; // does not stop the walk
    }
    void save(item_list const& others) override { notes += "save" + std::to_string(others.size()) + " "; }
    void unload() override { notes += "unload "; }
    static inline std::string notes;
};

} // namespace

TEST(ConfigDispatch, SourcesInOrderOfPrecedence) {
    char const* const argv[] = {"tool", "-a=1", nullptr};
    char const* const envp[] = {"A=2", nullptr};
    std_config_dispatch standard;
    EXPECT_EQ(sources_of(standard), "command line; standard file:; enviroment; ");
    standard = std_config_dispatch(2, argv, envp, "no.cfg", "second");
    EXPECT_EQ(sources_of(standard), "command line*; standard file:no.cfg; enviroment*; ");
    EXPECT_EQ(standard.get_second_name(), "second");
    EXPECT_EQ(sources_of(std_config_dispatch(-1, argv, nullptr, "", "")),
              "command line; standard file:; enviroment; ");

    module_config_dispatch modules({}, nullptr);
    EXPECT_EQ(sources_of(modules), "user item; enviroment; ");
    modules = module_config_dispatch(varg_list(argument("x", "b.cfg"), argument(7)), envp);
    EXPECT_EQ(sources_of(modules), "user item; standard file:b.cfg; standard file:7; enviroment*; ");
}

TEST(ConfigDispatch, OperationsWalkAllSources) {
    noting_item first, last;
    config_dispatch::item_list items{&first, nullptr, &last};
    std_config_dispatch().load(items);
    std_config_dispatch().save(items);
    std_config_dispatch().unload(items);
    EXPECT_EQ(noting_item::notes, "load3 load3 save3 save3 unload unload ");
}
