// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// What the benchmark programs share. A program has one function, `add_benchmarks`, that makes a
// `comparison` for each task and gives it our side and the peers' sides over the same input:
//
//     bench::comparison task("utf8_to_utf16/cyrillic/4KB", text.size());
//     task.side("zolt", [&] { return strings::utf8_to_utf16(text); });
//     task.side("ICU", [&] { return by_icu(text); });
//
// The answer of the first side is the right one: a side that gives another ends the program before
// anything is timed. Names are subject/task/input; scripts/bench.sh pairs the sides by them and checks
// the ratios against benchmarks/goals.tsv. Under callgrind each side runs a fixed number of times and its
// counts are dumped for scripts/profile.sh.
#pragma once

#include <benchmark/benchmark.h>
#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace bench {

// The bytes of an answer, in which two sides are compared. `as_answer` of a type of one's own is found
// beside that type.
template <typename T>
std::string as_answer(T const& value) {
    if constexpr (std::is_convertible_v<T const&, std::string_view>) {
        return std::string(std::string_view(value));
    } else if constexpr (std::is_arithmetic_v<T>) {
        return std::string(reinterpret_cast<char const*>(&value), sizeof value);
    } else {
        using unit = typename T::value_type; // a container of plain units
        static_assert(std::is_arithmetic_v<unit>);
        return std::string(reinterpret_cast<char const*>(value.data()), value.size() * sizeof(unit));
    }
}

#ifdef CALLGRIND_DUMP_STATS_AT
inline bool is_profiled() { return RUNNING_ON_VALGRIND != 0; }
inline void begin_profile() {
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
}
inline void end_profile(std::string const& label) { CALLGRIND_DUMP_STATS_AT(label.c_str()); }
#else
inline bool is_profiled() { return false; }
inline void begin_profile() {}
inline void end_profile(std::string const&) {}
#endif

class comparison {
public:
    // `units`: how many bytes, numbers or messages one run handles; the table shows the time per unit.
    comparison(std::string name, std::size_t units) : m_name(std::move(name)), m_units(units) {}

    // Times `run()`, whose result is kept alive to its end and destroyed in the timed part.
    template <typename Run>
    void side(std::string const& who, Run run) {
        check(who, as_answer(run()));
        add(who, std::move(run));
    }

    // The same for a run whose result is not the answer itself: `answer()` tells it once.
    template <typename Run, typename Answer>
    void side(std::string const& who, Run run, Answer answer) {
        check(who, as_answer(answer()));
        add(who, std::move(run));
    }

private:
    void check(std::string const& who, std::string answer) {
        if (!m_answer) {
            m_answer = std::move(answer);
        } else if (*m_answer != answer) {
            std::fprintf(stderr, "%s: the answer of %s is not that of the first side (%zu and %zu bytes)\n",
                         m_name.c_str(), who.c_str(), answer.size(), m_answer->size());
            std::exit(1);
        }
    }

    template <typename Run>
    void add(std::string const& who, Run run) {
        std::string const name = m_name + ":" + who;
        std::size_t const units = m_units;
        auto* const added = benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) mutable {
            begin_profile();
            for (auto _ : state) {
                if constexpr (std::is_void_v<decltype(run())>) {
                    run();
                    benchmark::ClobberMemory();
                } else {
                    auto&& result = run();
                    benchmark::DoNotOptimize(result);
                }
            }
            end_profile(name + " " + std::to_string(units * static_cast<std::size_t>(state.iterations())));
            state.counters["units"] = static_cast<double>(units);
        });
        if (is_profiled()) added->Iterations(static_cast<benchmark::IterationCount>(profiled_runs(units)));
    }

    // Enough that the loop around the run does not count, few enough for a simulated processor.
    static std::size_t profiled_runs(std::size_t units) { return std::max<std::size_t>(2, 20000 / units); }

    std::string m_name;
    std::size_t m_units;
    std::optional<std::string> m_answer;
};

// Cost per unit as the input grows: a comparison of one side for 1, 10, 100 and 1,000 times `base`.
// `make(n)` prepares an input of n units and returns the run over it. The table compares the cost per
// unit at 1,000 times with that at 10 times.
template <typename Make>
void growth(std::string const& name, std::size_t base, Make make) {
    for (std::size_t times : {1u, 10u, 100u, 1000u}) {
        comparison task("growth/" + name + "/" + std::to_string(times), base * times);
        task.side("zolt", make(base * times), [] { return 0; });
    }
}

} // namespace bench

// Defined once in each program.
void add_benchmarks();
