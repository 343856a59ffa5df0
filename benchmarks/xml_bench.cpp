// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// XML events and token lists beside an in-situ tree parser and two event parsers. Everybody delivers the
// events that our parser has: words and the whitespace between them one by one, so a peer's run of text is
// cut up at whitespace. What the tree parser drops, whitespace alone between two pieces of markup, is left
// out of the answers.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <cstdint>
#include <list>
#include <random>

#if PEER_EXPAT
#include <expat.h>
#endif
#if PEER_LIBXML2
#include <libxml/parserInternals.h>
#endif
#if __has_include(<rapidxml/rapidxml.hpp>)
#define PEER_RAPIDXML 1
#include <rapidxml/rapidxml.hpp>
#endif

using namespace zolt;
using token = parser::xml_token_stream::token;

namespace {

// A message catalog of about `size` bytes.
std::string catalog_text(std::size_t size) {
    static constexpr char const* words[] = {"file",
                                            "could",
                                            "not",
                                            "be",
                                            "opened",
                                            "Gr\xC3\xB6\xC3\x9F"
                                            "e",
                                            "R&amp;D",
                                            "&quot;%1&quot;",
                                            "a",
                                            "settings",
                                            "saved",
                                            "the",
                                            "value,",
                                            "of",
                                            "\xE2\x82\xAC",
                                            "message",
                                            "directory",
                                            "in",
                                            "catalog",
                                            "is",
                                            "too",
                                            "large.",
                                            "to",
                                            "\xD1\x84\xD0\xB0\xD0\xB9\xD0\xBB",
                                            "&lt;1&gt;",
                                            "and"};
    std::mt19937 random(3);
    auto const below = [&random](unsigned limit) { return static_cast<unsigned>(random()) % limit; };
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xmc version=\"1.1\">\n"
                       "  <catalog name=\"app\" lang=\"de_DE\">\n";
    for (unsigned message = 0; text.size() + 40 < size; ++message) {
        if (message && below(8) == 0)
            text += "    <!-- messages of the file dialog, shown when nothing else fits -->\n";
        text += "    <msg name=\"message_" + std::to_string(message) + "\"";
        if (below(4) == 0) text += " meta='seen by users &amp; translators'";
        text += ">";
        for (unsigned left = 3 + below(14); left; --left) {
            text += words[below(std::size(words))];
            if (below(8) == 0) text += " <arg name=\"size\" type=\"memory\" precision=\"1\"/>";
            if (below(24) == 0) text += "<br/>\n        ";
            if (left > 1) text += ' ';
        }
        text += "</msg>\n";
    }
    return text + "  </catalog>\n</xmc>\n";
}

// What a user does with the events: as little as shows that each arrived with its text.
struct event_sum {
    void start(std::string_view name) { add(0, name); }
    void end(std::string_view name) { add(1, name); }
    void attribute(std::string_view name, std::string_view value) {
        add(2, name);
        add(3, value);
    }
    void word(std::string_view text) { add(4, text); }
    void space(std::string_view text) { space_bytes += text.size(); }
    void comment(std::string_view text) { add(5, text); }

    void run(std::string_view text) {
        each_piece(text, [this](std::string_view piece, bool is_space) { is_space ? space(piece) : word(piece); });
    }

    template <typename Use>
    static void each_piece(std::string_view text, Use use) {
        auto const is_space = [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; };
        for (std::size_t first = 0, last = 0; first < text.size(); first = last) {
            bool const kind = is_space(text[first]);
            do ++last;
            while (last < text.size() && is_space(text[last]) == kind);
            use(text.substr(first, last - first), kind);
        }
    }

    // A reference may split a word for a peer, so words count by their bytes alone.
    void add(unsigned kind, std::string_view text) {
        bytes[kind] += text.size();
        if (kind != 4) ++events;
    }

    std::size_t bytes[6] = {};
    std::size_t events = 0;
    std::size_t space_bytes = 0;
};

std::string as_answer(event_sum const& sum) {
    std::string answer = std::to_string(sum.events);
    for (std::size_t const bytes : sum.bytes) answer += " " + std::to_string(bytes);
    return answer;
}

event_sum zolt_events(strings::ustring8 const& text) {
    using strings::ustring8;
    event_sum sum;
    parser::xml_parser parser;
    parser.on_element_start = [&sum](ustring8 const& name) { sum.start(name); };
    parser.on_element_end = [&sum](ustring8 const& name) { sum.end(name); };
    parser.on_attribute = [&sum](ustring8 const& name, ustring8 const& value) { sum.attribute(name, value); };
    parser.on_space = [&sum](ustring8 const& space) { sum.space(space); };
    parser.on_character = [&sum](ustring8 const& word) { sum.word(word); };
    parser.on_comment = [&sum](ustring8 const& comment) { sum.comment(comment); };
    parser.parse(text);
    return sum;
}

#if PEER_RAPIDXML
template <typename Sink>
void walk(rapidxml::xml_node<> const* parent, Sink& sink) {
    auto const text_of = [](auto const* node) { return std::string_view(node->value(), node->value_size()); };
    auto const name_of = [](auto const* node) { return std::string_view(node->name(), node->name_size()); };
    for (auto const* node = parent->first_node(); node; node = node->next_sibling()) {
        switch (node->type()) {
        case rapidxml::node_element:
            sink.start(name_of(node));
            for (auto const* next = node->first_attribute(); next; next = next->next_attribute()) {
                sink.attribute(name_of(next), text_of(next));
            }
            walk(node, sink);
            sink.end(name_of(node));
            break;
        case rapidxml::node_data:
            sink.run(text_of(node));
            break;
        case rapidxml::node_comment:
            sink.comment(text_of(node));
            break;
        default:
            break;
        }
    }
}

template <typename Sink>
Sink rapidxml_events(std::string const& text) {
    Sink sink;
    std::string copy = text;
    rapidxml::xml_document<> document;
    document.parse<rapidxml::parse_comment_nodes | rapidxml::parse_no_element_values>(copy.data());
    walk(&document, sink);
    return sink;
}
#endif

#if PEER_EXPAT
event_sum expat_events(std::string const& text) {
    static auto const sum_of = [](void* sum) -> event_sum& { return *static_cast<event_sum*>(sum); };
    event_sum sum;
    XML_Parser const parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &sum);
    XML_SetElementHandler(
        parser,
        [](void* data, char const* name, char const** attributes) {
            sum_of(data).start(name);
            for (; *attributes; attributes += 2) sum_of(data).attribute(attributes[0], attributes[1]);
        },
        [](void* data, char const* name) { sum_of(data).end(name); });
    XML_SetCharacterDataHandler(parser, [](void* data, char const* run, int length) {
        sum_of(data).run({run, static_cast<std::size_t>(length)});
    });
    XML_SetCommentHandler(parser, [](void* data, char const* comment) { sum_of(data).comment(comment); });
    XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1);
    XML_ParserFree(parser);
    return sum;
}
#endif

#if PEER_LIBXML2
event_sum libxml2_events(std::string const& text) {
    static auto const sum_of = [](void* sum) -> event_sum& { return *static_cast<event_sum*>(sum); };
    static auto const chars = [](xmlChar const* name) { return reinterpret_cast<char const*>(name); };
    event_sum sum;
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void* data, xmlChar const* name, xmlChar const*, xmlChar const*, int,
                                xmlChar const**, int count, int, xmlChar const** attributes) {
        sum_of(data).start(chars(name));
        for (; count; --count, attributes += 5) { // name, prefix, address, value, end of the value
            sum_of(data).attribute(chars(attributes[0]), {chars(attributes[3]), chars(attributes[4])});
        }
    };
    handler.endElementNs = [](void* data, xmlChar const* name, xmlChar const*, xmlChar const*) {
        sum_of(data).end(chars(name));
    };
    handler.characters = [](void* data, xmlChar const* run, int length) {
        sum_of(data).run({chars(run), static_cast<std::size_t>(length)});
    };
    handler.comment = [](void* data, xmlChar const* comment) { sum_of(data).comment(chars(comment)); };
    xmlParserCtxtPtr const context = xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size()));
    *context->sax = handler;
    context->userData = &sum;
    xmlCtxtUseOptions(context, XML_PARSE_NOENT); // references in attribute values as what they stand for
    xmlParseDocument(context);
    xmlFreeParserCtxt(context);
    return sum;
}
#endif

// The peer's list, made with the same token type.
struct token_list {
    void start(std::string_view name) { add(token::element_start, name); }
    void end(std::string_view name) {
        close();
        add(token::element_end, name);
    }
    void attribute(std::string_view name, std::string_view value) {
        add(token::attribute_name, name);
        add(token::attribute_value, value);
    }
    void run(std::string_view text) {
        close();
        event_sum::each_piece(text, [this](std::string_view piece, bool is_space) {
            add(is_space ? token::space : token::character, piece);
        });
    }
    void comment(std::string_view text) { add(token::comment, text); }
    void close() {
        if (open) add(token::start_tag_end, {});
    }
    void add(token::token_type type, std::string_view text) {
        if (type == token::element_start) close();
        tokens.emplace_back(type, strings::ustring8(text));
        open = type == token::element_start || (open && type != token::start_tag_end);
    }

    std::list<token> tokens;
    bool open = false;
};

template <typename Tokens>
std::string tokens_answer(Tokens const& tokens) {
    std::string answer;
    for (token const& next : tokens) {
        if (next.type() != token::space) answer += std::to_string(next.type()) + next.value() + '\n';
    }
    return answer;
}

void compare(std::string const& input, strings::ustring8 const& text) {
    bench::comparison events("xml/events/" + input, text.size());
    events.side("zolt", [&] { return zolt_events(text); });
    bench::comparison list("xml/token_list/" + input, text.size());
    list.side(
        "zolt",
        [&text] {
            parser::xml_token_stream stream;
            stream.parse(text);
            return stream.size();
        },
        [&text] {
            parser::xml_token_stream stream;
            stream.parse(text);
            return tokens_answer(stream);
        });
#if PEER_RAPIDXML
    events.side("rapidxml", [&] { return rapidxml_events<event_sum>(text); });
    list.side(
        "rapidxml", [&] { return rapidxml_events<token_list>(text); },
        [&] { return tokens_answer(rapidxml_events<token_list>(text).tokens); });
#endif
#if PEER_EXPAT
    events.side("expat", [&] { return expat_events(text); });
#endif
#if PEER_LIBXML2
    events.side("libxml2", [&] { return libxml2_events(text); });
#endif
}

} // namespace

void add_benchmarks() {
    static strings::ustring8 const small = catalog_text(3000), large = catalog_text(1500000);
    compare("3KB", small);
    compare("1500KB", large);
    // The branches of a document of a few KB are learned by the processor, which makes it cheaper by the byte
    // for everybody; the instructions per byte are the same. So growth is looked at above that.
    bench::growth("xml", 15000, [](std::size_t size) {
        return [text = strings::ustring8(catalog_text(size))] { return zolt_events(text); };
    });
}
