// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
#include "message_json.hpp"

#include "tools/program/notation.hpp"

namespace tools {
namespace {

using zolt::i18n::message_item;
using zolt::i18n::message_t;

void append_message(json_writer& json, message_t const& message) {
    json.begin_object();
    json.member("name", message.name());
    json.member("language", message._orginal_locale());
    if (!message.meta().empty()) json.member("note", message.meta());
    json.member("text", notation(message));
    json.begin_array("placeholders");
    for (message_item const& item : message) {
        if (item.type() == message_item::value) continue;
        json.begin_object();
        json.member("name", item.name());
        json.member("type", type_keyword(item.type()));
        json.end_object();
    }
    json.end_array();
    json.end_object();
}

} // namespace

void append_messages(json_writer& json, output& out, ustring8 const& catalog, message_list const& messages) {
    json.member("catalog", catalog);
    json.begin_array("messages");
    for (message_t const* const message : messages) {
        append_message(json, *message);
        out.write(json.take());
    }
    json.end_array();
}

void append_catalogs(json_writer& json, output& out, std::map<ustring8, message_list> const& catalogs) {
    json.begin_array("catalogs");
    for (auto const& [catalog, messages] : catalogs) {
        json.begin_object();
        append_messages(json, out, catalog, messages);
        json.end_object();
    }
    json.end_array();
}

} // namespace tools
