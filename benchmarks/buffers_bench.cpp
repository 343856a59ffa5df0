// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// The serialization buffers beside archives and streams. Everybody writes the same values into fresh memory
// and gives the bytes, or reads them from the bytes of its own writing; the answer is what reads back.
#include "bench.hpp"

#include <zolt/zolt.hpp>

#include <cstdint>
#include <random>
#include <sstream>

#if __has_include(<cereal/archives/binary.hpp>)
#define PEER_CEREAL 1
#include <cereal/archives/binary.hpp>
#include <cereal/types/string.hpp>
#endif
#if PEER_BOOST_SERIALIZATION
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/archive/text_iarchive.hpp>
#include <boost/archive/text_oarchive.hpp>
#endif
#if PEER_FMT
#include <fmt/compile.h>
#include <fmt/format.h>
#endif

using namespace zolt;

namespace {

constexpr std::size_t count = 1000;

struct record {
    int number;
    double weight;
    std::string name;
    bool active;
    long long stamp;
};

// What is in a record is visited by every archive in its own way; these are the values in order.
template <typename Archive, typename Record>
void visit(Archive& archive, Record& item) {
    archive(item.number);
    archive(item.weight);
    archive(item.name);
    archive(item.active);
    archive(item.stamp);
}

std::vector<int> numbers(std::size_t size) {
    std::mt19937 random(11);
    std::vector<int> result(size);
    for (int& number : result) number = static_cast<int>(random()) >> random() % 24;
    return result;
}

std::vector<double> doubles(std::size_t size) {
    std::vector<double> result;
    for (int number : numbers(size)) result.push_back(number / 1000.0);
    return result;
}

std::vector<std::string> texts(std::size_t size) {
    std::vector<std::string> result;
    for (int number : numbers(size)) result.push_back("name " + std::to_string(number % 1000000));
    return result;
}

std::vector<record> records(std::size_t size) {
    std::vector<record> result;
    for (int number : numbers(size)) {
        result.push_back({number, number / 8.0, "item " + std::to_string(number % 1000), number % 2 == 0, number});
    }
    return result;
}

// ---- the archives: `put` and `get` of one value, and what makes one on bytes ---------------------------------

template <typename Buffer>
struct zolt_writer {
    Buffer buffer;

    void operator()(int value) { buffer.append_int32(value); }
    void operator()(long long value) { buffer.append_int64(value); }
    void operator()(bool value) { buffer.append_uint8(value); }
    void operator()(double value) { buffer.append_double(value, 17); }
    void operator()(std::string const& value) { buffer.append_string(value); }
    std::string bytes() { return buffer.as_str(); }
};

template <typename Buffer>
struct zolt_reader {
    Buffer buffer;

    explicit zolt_reader(std::string const& bytes) { buffer.assign(bytes); }
    void operator()(int& value) { value = static_cast<int>(buffer.read_int32()); }
    void operator()(long long& value) { value = buffer.read_int64(); }
    void operator()(bool& value) { value = buffer.read_uint8() != 0; }
    void operator()(double& value) { value = buffer.read_double(); }
    void operator()(std::string& value) { value = buffer.read_string(); }
};

struct stream_writer {
    std::ostringstream stream;

    stream_writer() { stream.precision(17); }
    template <typename T>
    void operator()(T const& value) {
        stream << value << ' ';
    }
    void operator()(std::string const& value) { stream << value.size() << ' ' << value << ' '; }
    std::string bytes() { return std::move(stream).str(); }
};

struct stream_reader {
    std::istringstream stream;

    explicit stream_reader(std::string const& bytes) : stream(bytes) {}
    template <typename T>
    void operator()(T& value) {
        stream >> value;
    }
    void operator()(std::string& value) {
        std::size_t size = 0;
        stream >> size;
        stream.get();
        value.resize(size);
        stream.read(value.data(), static_cast<std::streamsize>(size));
    }
};

#if PEER_CEREAL
struct cereal_writer {
    std::ostringstream stream;
    cereal::BinaryOutputArchive archive{stream};

    template <typename T>
    void operator()(T const& value) {
        archive(value);
    }
    std::string bytes() { return std::move(stream).str(); }
};

struct cereal_reader {
    std::istringstream stream;
    cereal::BinaryInputArchive archive{stream};

    explicit cereal_reader(std::string const& bytes) : stream(bytes) {}
    template <typename T>
    void operator()(T& value) {
        archive(value);
    }
};
#endif

#if PEER_BOOST_SERIALIZATION
template <typename Archive>
struct boost_writer {
    std::ostringstream stream;
    Archive archive{stream, boost::archive::no_header};

    template <typename T>
    void operator()(T const& value) {
        archive << value;
    }
    std::string bytes() {
        stream.flush();
        return std::move(stream).str();
    }
};

template <typename Archive>
struct boost_reader {
    std::istringstream stream;
    Archive archive{stream, boost::archive::no_header};

    explicit boost_reader(std::string const& bytes) : stream(bytes) {}
    template <typename T>
    void operator()(T& value) {
        archive >> value;
    }
};
#endif

#if PEER_FMT
struct fmt_writer {
    fmt::memory_buffer buffer;

    template <typename T>
    void operator()(T const& value) {
        fmt::format_to(std::back_inserter(buffer), FMT_COMPILE("{} "), value);
    }
    std::string bytes() { return fmt::to_string(buffer); }
};
#endif

// ---- one task with all its sides -----------------------------------------------------------------------------

template <typename Archive, typename Item>
void transfer(Archive& archive, Item& item) {
    if constexpr (std::is_same_v<std::remove_const_t<Item>, record>)
        visit(archive, item);
    else
        archive(item);
}

template <typename Writer, typename Item>
std::string written(std::vector<Item> const& items) {
    Writer writer;
    for (Item const& item : items) transfer(writer, item);
    return writer.bytes();
}

template <typename Reader, typename Item>
void read(std::string const& bytes, std::vector<Item>& items) {
    Reader reader(bytes);
    for (Item& item : items) transfer(reader, item);
}

template <typename Reader, typename Item>
std::vector<Item> read_anew(std::string const& bytes, std::size_t size) {
    std::vector<Item> items(size);
    read<Reader>(bytes, items);
    return items;
}

// Values in the plainest possible form, in which the answers of all formats are compared.
template <typename Item>
std::string listed(std::vector<Item> const& items) {
    std::string text;
    auto const add = [&text](auto const& value) {
        if constexpr (std::is_arithmetic_v<std::remove_cvref_t<decltype(value)>>)
            text += std::to_string(value);
        else
            text += value;
        text += '\n';
    };
    for (Item const& item : items) transfer(add, item);
    return text;
}

template <typename Item>
class task {
public:
    task(std::string const& format, std::string const& input, std::vector<Item> items)
        : m_write(format + "/write/" + input, items.size()),
          m_read(format + "/read/" + input, items.size()),
          m_items(std::move(items)) {}

    template <typename Writer, typename Reader>
    void side(std::string const& who) {
        std::string const bytes = written<Writer>(m_items);
        auto const answer = [this, bytes] { return listed(read_anew<Reader, Item>(bytes, m_items.size())); };
        m_write.side(
            who, [items = m_items] { return written<Writer>(items); }, answer);
        m_read.side(
            who, [bytes, items = m_items]() mutable { read<Reader>(bytes, items); }, answer);
    }

    bench::comparison& writing() { return m_write; }
    std::string answer() const { return listed(m_items); }
    std::vector<Item> const& items() const { return m_items; }

private:
    bench::comparison m_write;
    bench::comparison m_read;
    std::vector<Item> m_items;
};

using serialization::labeled_text_buffer;
using serialization::serialize_binary_buf;
using serialization::serialize_text_buf;

template <typename Item>
void add_binary(std::string const& input, std::vector<Item> items) {
    task<Item> binary("binary_buffer", input, std::move(items));
    binary.template side<zolt_writer<serialize_binary_buf>, zolt_reader<serialize_binary_buf>>("zolt");
#if PEER_CEREAL
    binary.template side<cereal_writer, cereal_reader>("cereal");
#endif
#if PEER_BOOST_SERIALIZATION
    binary.template side<boost_writer<boost::archive::binary_oarchive>,
                         boost_reader<boost::archive::binary_iarchive>>("Boost");
#endif
}

template <typename Item>
void add_text(std::string const& input, std::vector<Item> items) {
    task<Item> text("text_buffer", input, std::move(items));
    text.template side<zolt_writer<serialize_text_buf>, zolt_reader<serialize_text_buf>>("zolt");
    text.template side<stream_writer, stream_reader>("iostream");
#if PEER_BOOST_SERIALIZATION
    text.template side<boost_writer<boost::archive::text_oarchive>, boost_reader<boost::archive::text_iarchive>>(
        "Boost");
#endif
#if PEER_FMT
    if constexpr (std::is_same_v<Item, int>) {
        text.writing().side(
            "fmt", [items = text.items()] { return written<fmt_writer>(items); },
            [&] {
                return listed(
                    read_anew<stream_reader, int>(written<fmt_writer>(text.items()), text.items().size()));
            });
    }
#endif
}

// ---- labeled buffers -----------------------------------------------------------------------------------------

labeled_text_buffer labeled(std::size_t size) {
    labeled_text_buffer buffer;
    for (std::size_t i = 0; i < size; ++i) buffer.add_value("entry" + std::to_string(i), static_cast<int>(i));
    return buffer;
}

labeled_text_buffer nested(std::size_t size) {
    labeled_text_buffer buffer;
    serialization::labeled_text_buffer* group = &buffer;
    for (std::size_t i = 0; i < size; ++i) {
        group->add_value("value", static_cast<int>(i));
        group = &group->create_group("group");
    }
    group->add_value("value", "innermost");
    return buffer;
}

void add_labeled(std::string const& input, labeled_text_buffer const& buffer) {
    std::string const form = buffer.as_str();
    bench::comparison write("labeled_buffer/write/" + input, count);
    write.side("zolt", [buffer] { return buffer.as_str(); });
    bench::comparison reading("labeled_buffer/read/" + input, count);
    reading.side(
        "zolt", [form] { return labeled_text_buffer(form); }, [&] { return form; });
}

template <typename Buffer>
void add_growth(std::string const& name) {
    bench::growth(name, 10, [](std::size_t size) {
        // Alike at all sizes; random ones would show how many the processor can remember.
        std::vector<int> items(size);
        for (std::size_t i = 0; i < size; ++i) items[i] = static_cast<int>(1000 + i % 9000);
        return [items] {
            std::string const bytes = written<zolt_writer<Buffer>>(items);
            return read_anew<zolt_reader<Buffer>, int>(bytes, items.size());
        };
    });
}

} // namespace

void add_benchmarks() {
    add_binary("numbers", numbers(count));
    add_binary("records", records(count));
    add_binary("texts", texts(count));
    add_text("integers", numbers(count));
    add_text("doubles", doubles(count));
    add_text("records", records(count));
    add_text("texts", texts(count));
    add_labeled("flat", labeled(count));
    add_labeled("nested", nested(count));
    add_growth<serialize_binary_buf>("binary_buffer");
    add_growth<serialize_text_buf>("text_buffer");
    bench::growth("labeled_buffer", 10, [](std::size_t size) {
        return [buffer = labeled(size)] { return labeled_text_buffer(buffer.as_str()); };
    });
}
