// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Settings of a program that runs with more rights than its caller has: one file and no other source, neither command
// line nor environment, and nothing that names another file. In place of the argument such a program has an absolute
// path:
//
//     PORT=1 fixed_settings examples/config/tidemark.cfg
#include <zolt/config/config_dispatch.hpp>
#include <zolt/config/config_manager.hpp>
#include <zolt/config/file_item.hpp>
#include <zolt/memory/rc_pointer.hpp>
#include <zolt/zolt.hpp>

#include <iostream>
#include <utility>

namespace {

using zolt::strings::ustring8;

class fixed_dispatch : public zolt::config::config_dispatch {
public:
    explicit fixed_dispatch(ustring8 path) : m_path(std::move(path)) {}

    void setup(item_list& items) const override {
        items.push_back(zolt::memory::pointers::make_rc<zolt::config::file_item>(m_path));
    }
    // Without the other sources a file does not look for "cfg_file" in them, or in itself.
    void load(item_list& items) const override {
        for (auto const& item : items) item->load();
    }
    fixed_dispatch* clone() const override { return new fixed_dispatch(*this); }

private:
    ustring8 m_path;
};

} // namespace

int main(int argc, char** argv) {
    zolt::config::config_manager settings;
    settings.init(fixed_dispatch(argc > 1 ? argv[1] : "/etc/tidemark.cfg"));
    settings.load();
    for (char const* const key : {"backup.target", "port"})
        std::cout << key << " = " << settings.get_value(key, "not set").as_string() << '\n';
}
