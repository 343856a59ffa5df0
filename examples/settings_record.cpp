// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Stores settings and the day of a backup in a file, reads them back and tells how old they are on a given
// day, or today:
//
//     settings_record tidemark.record 2024 3 1
#include <zolt/serialization/labeled_text_buffer.hpp>
#include <zolt/system/date_time/date.hpp>
#include <zolt/system/file_utility.hpp>
#include <zolt/types/variant.hpp>
#include <zolt/zolt.hpp>

#include <iostream>

namespace {

using zolt::serialization::labeled_text_buffer;
using zolt::strings::ustring8;
using zolt::system::date_time::date;
using zolt::types::variant;

unsigned int number(char const* text) { return variant(text).as_uint32(); }

void store_date(labeled_text_buffer& group, date const& day) {
    group.add_value("year", day.year());
    group.add_value("month", day.month());
    group.add_value("day", day.day());
}

date stored_date(labeled_text_buffer const& group) {
    auto const part = [&group](char const* label) { return group.retrieve_value(label).as_uint32(); };
    return date(part("day"), part("month"), part("year"));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 5) {
        std::cerr << "usage: settings_record FILE [YEAR MONTH DAY]\n";
        return 2;
    }
    date const now = argc == 5 ? date(number(argv[4]), number(argv[3]), number(argv[2])) : date::local_date();

    labeled_text_buffer record;
    labeled_text_buffer& settings = record.create_group("settings");
    settings.add_value("target", "/mnt/backup/first disk");
    settings.add_value("level", 3);
    store_date(record.create_group("saved"), date(21, 11, 2023));
    zolt::system::store_file(ustring8(argv[1]), ustring8(record.as_str()));

    ustring8 content;
    if (zolt::system::load_file(ustring8(argv[1]), content) != 0) {
        std::cerr << argv[1] << " cannot be read\n";
        return 1;
    }
    labeled_text_buffer const stored(content);
    for (auto const& label : stored.retrieve_group("settings").labels()) {
        std::cout << label << " = " << stored.retrieve_group("settings").retrieve_value(label).as_string() << '\n';
    }
    date const saved = stored_date(stored.retrieve_group("saved"));
    auto const age = static_cast<int>(now.pJulian_day_number() - saved.pJulian_day_number());
    std::cout << "saved " << age << " days ago\n";
}
