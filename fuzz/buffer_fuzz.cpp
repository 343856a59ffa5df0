// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Random programs on binary and text buffers: what was appended reads back, from copies too. Then any bytes
// as content: what a binary buffer reads of them is laid out here, a text buffer comes to its end.
#include "input.hpp"

#include <zolt/serialization/serialize_binary_buf.hpp>
#include <zolt/serialization/serialize_text_buf.hpp>

#include <cmath>
#include <functional>
#include <vector>

namespace {

using namespace zolt::serialization;
using fuzz::check;
using zolt::memory::pointers::rc_pointer;

/// Reads a value again and tells whether it is the one that was appended.
using step = std::function<bool(serialize_buffer const&)>;

/// The same bits; a text buffer gives 0 for what is no number, and a 32-bit function returns a signalling
/// not-a-number as a quiet one.
template <typename Number>
bool same(Number read, Number written) {
    return std::memcmp(&read, &written, sizeof read) == 0 || (!std::isfinite(written) && read == 0) ||
           (std::isnan(read) && std::isnan(written));
}

step append(fuzz::input& in, serialize_buffer& to) {
    auto const number = [&](auto sample, auto write, auto read) -> step {
        auto const value = in.number<decltype(sample)>();
        write(value);
        return [=](auto& from) { return static_cast<decltype(sample)>(read(from)) == value; };
    };
#define ZOLT_STEP(type, name)                                                                                      \
    number(                                                                                                        \
        type(), [&](auto v) { to.append_##name(v); }, [](auto& from) { return from.read_##name(); })
    switch (in.below(12)) {
    case 0:
        return ZOLT_STEP(std::int8_t, int8);
    case 1:
        return ZOLT_STEP(std::int16_t, int16);
    case 2:
        return ZOLT_STEP(std::int32_t, int32);
    case 3:
        return ZOLT_STEP(std::int64_t, int64);
    case 4:
        return ZOLT_STEP(std::uint8_t, uint8);
    case 5:
        return ZOLT_STEP(std::uint16_t, uint16);
    case 6:
        return ZOLT_STEP(std::uint32_t, uint32);
    case 7:
        return ZOLT_STEP(std::uint64_t, uint64);
#undef ZOLT_STEP
    case 8: {
        auto const value = in.number<float>();
        to.append_float(value, 9);
        return [=](auto& from) { return same(from.read_float(), value); };
    }
    case 9: {
        auto const value = in.number<double>();
        to.append_double(value, 17);
        return [=](auto& from) { return same(from.read_double(), value); };
    }
    case 10: {
        std::string const value = in.text();
        to.append_string(value);
        return [=](auto& from) { return from.read_string() == value; };
    }
    default: {
        std::string const whole = to.as_str();
        to.append_buffer(to);
        return [=](auto& from) { return from.read_buffer()->as_str() == whole; };
    }
    }
}

void check_program(fuzz::input in, serialize_buffer&& buffer) {
    std::vector<step> steps;
    for (unsigned left = in.below(40); left > 0 && buffer.as_str().size() < 2000; --left) {
        steps.push_back(append(in, buffer));
    }
    rc_pointer<serialize_buffer> const copy(buffer.create());
    copy->assign(buffer.as_str());
    for (step const& reads_back : steps) {
        check(!buffer.at_end() && reads_back(buffer) && reads_back(*copy), "a value reads back");
    }
    check(buffer.at_end() && copy->at_end(), "nothing is left");
    rc_pointer<serialize_buffer> const cloned(buffer.clone());
    buffer.reset_read();
    check(steps.empty() || (steps[0](buffer) && steps[0](*cloned)), "reading starts again");
}

/// The bytes of a binary buffer, zeros behind them.
struct plain_buffer {
    std::string content;
    std::size_t at = 0;

    template <typename Number>
    Number number() {
        if (at >= content.size()) return 0;
        std::string const image = content.substr(at, sizeof(Number)) + std::string(sizeof(Number), '\0');
        at += sizeof(Number);
        Number value;
        std::memcpy(&value, image.data(), sizeof value);
        return value;
    }

    std::string text() {
        auto const length = number<std::uint32_t>();
        std::string const result = at < content.size() ? content.substr(at, length) : "";
        at += result.size();
        return result;
    }
};

void check_binary(std::string const& content, fuzz::input in) {
    serialize_binary_buf buffer;
    buffer.assign(content);
    plain_buffer plain{content};
    for (int i = 0; i < 50; ++i) {
        switch (in.below(6)) {
        case 0:
            check(buffer.read_int8() == plain.number<std::int8_t>(), "8 bits");
            break;
        case 1:
            check(buffer.read_uint16() == plain.number<std::uint16_t>(), "16 bits");
            break;
        case 2:
            check(buffer.read_int32() == plain.number<std::int32_t>(), "32 bits");
            break;
        case 3:
            check(same(buffer.read_double(), plain.number<double>()), "a double");
            break;
        case 4:
            check(buffer.read_buffer()->as_str() == plain.text(), "a buffer");
            break;
        default:
            check(buffer.read_string() == plain.text(), "a string");
        }
        check(buffer.at_end() == (plain.at >= content.size()), "the end");
    }
    check(buffer.as_str() == content, "reading changes nothing");
}

/// Every read takes a separator at least.
void check_text(std::string const& content) {
    serialize_text_buf buffer;
    buffer.assign(content);
    std::size_t reads = 0;
    for (; !buffer.at_end(); ++reads) {
        std::size_t const kind = (reads + content.size()) % 4;
        if (kind == 0) buffer.read_string();
        if (kind == 1) buffer.read_uint64();
        if (kind == 2) buffer.read_double();
        if (kind == 3) buffer.read_buffer();
    }
    check(reads <= content.size() && buffer.as_str() == content, "a text buffer comes to its end");
}

} // namespace

void fuzz::run(input in) {
    check_program(in, serialize_binary_buf());
    check_program(in, serialize_text_buf());
    input const reads = in;
    in.text();
    std::string const content = in.rest();
    check_binary(content, reads);
    check_text(content);
}
