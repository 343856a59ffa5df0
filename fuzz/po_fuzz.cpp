// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Any bytes as a PO file, of which a part may be repeated: what was read reads the same when it is written; the
// messages that it makes come back from entries of their own, and out of a catalog file. All that takes time in
// proportion to the file.
#include "input.hpp"

#include "tools/catalog/catalog_texts.hpp"
#include "tools/catalog/po_exchange.hpp"
#include "tools/catalog/po_file.hpp"
#include "tools/program/notation.hpp"

#include <zolt/i18n/message_catalogs.hpp>

#include <ctime>
#include <optional>
#include <vector>

namespace {

using namespace tools;
using fuzz::check;
using zolt::i18n::message_catalogs;
using zolt::i18n::message_item;
using zolt::i18n::message_t;

constexpr std::size_t most_bytes = 1 << 16;
constexpr std::clock_t most_time = 2 * CLOCKS_PER_SEC; // a hundred times what it takes, with sanitizers

// All that an entry says; its line and references are the file's.
std::string described(po_entry const& entry) {
    std::string all = entry.context ? "context " + *entry.context : std::string("none");
    all += '\0' + entry.id + '\0' + (entry.plural_id ? "plural " + *entry.plural_id : std::string("none"));
    for (ustring8 const& text : entry.texts) all += '\0' + text;
    all += '\n';
    for (ustring8 const& note : entry.notes) all += '\0' + note;
    return all + (entry.is_fuzzy ? '!' : '.') + (entry.is_brace_format ? '{' : '.');
}

// All that a program sees of a message.
std::string described(ustring8 const& catalog, message_t const& message) {
    std::string all = catalog + '\0' + message.name() + '\0' + message.meta() + '\0' + message._orginal_locale();
    for (message_item const& item : message) {
        unsigned const type = item.type() == value_argument ? message_item::value : item.type();
        all += '\0' + std::to_string(type) + item.data();
    }
    return all;
}

ustring8 written(std::vector<po_entry> const& entries) {
    ustring8 file;
    append_po(file, po_header("de", "en"));
    for (po_entry const& entry : entries) append_po(file, entry);
    return file;
}

void check_form(po_file const& file) {
    ustring8 const text = written(file.entries);
    po_file const again = read_po(text);
    check(again.faults.empty() && again.obsolete == 0, "what was written can be read");
    check(again.entries.size() == file.entries.size(), "as many entries");
    for (std::size_t i = 0; i != file.entries.size(); ++i)
        check(described(again.entries[i]) == described(file.entries[i]), "an entry reads as it was written");
    check(written(again.entries) == text, "written again, the file is the same");
}

std::vector<po_message> messages_of(std::vector<po_entry> const& entries, po_importer importer) {
    using result = po_importer::result;
    std::vector<po_message> messages;
    for (po_entry const& entry : entries) {
        std::size_t const count = messages.size();
        result const what = importer.add(entry, "n != 1", messages);
        doubts_about(entry);
        check((what == result::imported) == (messages.size() > count), "what is imported makes messages");
        check(messages.size() - count <= entry.texts.size(), "a message for each form at most");
    }
    return messages;
}

// Each message alone, with itself or another one as the reference.
void check_exchange(std::vector<po_message> const& messages) {
    std::vector<po_entry> entries;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i != messages.size(); ++i) {
        auto const& [catalog, message] = messages[i];
        message_t const* const references[] = {nullptr, &message, &messages.front().message};
        if (!fits_po(catalog, message) || !fits_po("", messages.front().message)) continue;
        entries.push_back(to_po_entry(catalog, references[i % 3], &message));
        expected.push_back(described(catalog, message));
    }
    po_file const file = read_po(written(entries));
    check(file.faults.empty(), "what was exported can be read");
    std::vector<po_message> const back = messages_of(file.entries, po_importer("de", std::nullopt, false));
    check(back.size() == expected.size(), "as many messages come back");
    for (std::size_t i = 0; i != back.size(); ++i)
        check(described(back[i].catalog, back[i].message) == expected[i], "a message comes back");
}

void check_catalogs(std::vector<po_message> const& messages) {
    static fuzz::private_folder const folder;
    catalog_writer writer;
    for (auto const& [catalog, message] : messages) writer.add(catalog, message);
    folder.write("catalog.xmc", writer.text());
    message_catalogs catalogs;
    check(catalogs.load_file(folder.path("catalog.xmc"), "de").code() == message_catalogs::no_error,
          "what was imported can be loaded");
    for (auto const& [catalog, message] : messages) {
        check(described(catalog, catalogs.message(catalog, message.name())) == described(catalog, message),
              "a message out of the catalog file");
    }
}

void check_file(ustring8 const& text, unsigned choices) {
    po_file const file = read_po(text);
    if (!file.faults.empty()) return;
    check_form(file);
    auto const catalog = choices & 16 ? std::optional<ustring8>("app/%") : std::nullopt;
    std::vector<po_message> const messages =
        messages_of(file.entries, po_importer("de", catalog, (choices & 32) != 0));
    if (messages.empty()) return;
    check_exchange(messages);
    check_catalogs(messages);
}

} // namespace

void fuzz::run(input in) {
    std::clock_t const start = std::clock();
    unsigned const choices = in.number<std::uint8_t>();
    bool const is_repeated = choices % 16 == 15;
    ustring8 text = in.text();
    ustring8 const part = in.rest();
    do text += part;
    while (is_repeated && !part.empty() && text.size() + part.size() < most_bytes);
    check_file(text, choices);
    check(text.size() > most_bytes || std::clock() - start < most_time, "time in proportion to the file");
}
