// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// commandline_item: the program's arguments as a configuration source.
//
//     -port=80 /host:here       values; ":=" separates, too
//     -list=1,2,3               an array
//     -text$1,2                 a value that is not split: "1,2"
//     -port 80                  the value is the next argument, which is not split
//     -list 1 2 3               an array of the arguments up to the next that starts with "-"
//     -verbose                  a switch, of kind 1 with an empty value
//
// The program's name, which is the last piece of argv[0] between slashes, is stored as "application.name",
// what follows its last dot as "application.name.extention", and what precedes it, without dots, as
// "application.name.raw", which is empty when there is no dot. Kept: a dot at the end counts for nothing, so
// "tool." has an empty raw name, too.
//
// An argument is cut into tokens by base_config_item::get_token, which removes quotes. Kept:
//  - The key has all of the argument but its first character: "--name=x" sets "-name".
//  - ">=", "<=", "+=", "-=", "*=" and "/=" leave their first character in the key: "-a+=b" sets "a+".
//  - A run of blanks repeats the token before it: the argument "-x=a b" sets "aab", "-x=1, 2" the array
//    "1" and ",2".
//  - A next argument that starts with "/" is no first value, but may be any further one.
//  - The key of a switch is read like an environment entry: the argument -"c=d" sets "c" to "d", of kind 1.
#pragma once

#include <zolt/config/base_config_item.hpp>
#include <zolt/export.hpp>

namespace ZOLT_2_18::config {

class ZOLT_API commandline_item : public base_config_item {
public:
    /// Takes what main gets: argv ends in a null entry, which also ends the arguments when argc is larger. A
    /// null argv counts as no arguments and so does an argc that was negative; a null argv[0] stores no name.
    /// The caller keeps the strings alive while the item can still load.
    commandline_item(unsigned int argc, char const* const* argv);
    commandline_item(commandline_item const&);
    ~commandline_item() override;

    commandline_item& operator=(commandline_item const& other) { return assign(other); }
    commandline_item& assign(commandline_item const& other);

    /// The arguments as they were given.
    unsigned int get_argc() const noexcept { return m_argc; }
    char const* const* get_argv() const noexcept { return m_argv; }

    /// Returns true. An argument that starts with neither "-" nor "/" and is no value is reported on standard
    /// output ("Warning! unknown key:", the argument, "\nIgnoring key and continuing\n") and passed over.
    bool load(item_list const& others) override;
    bool load() override;
    void unload() override;
    commandline_item* clone() const override;

private:
    unsigned int m_argc;
    char const* const* m_argv;
};

} // namespace ZOLT_2_18::config
