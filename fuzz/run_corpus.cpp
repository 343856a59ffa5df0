// SPDX-FileCopyrightText: 2026 the zolt authors
// SPDX-License-Identifier: BSL-1.0
//
// Runs a fuzz target over folders of inputs without libFuzzer, as a test that any compiler builds. An input
// stands in a block of exactly its size, so that reading beyond it is seen; one that fails is named.
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

std::string s_current;

void name_input(int) { (void)!write(STDERR_FILENO, s_current.c_str(), s_current.size()); }

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGABRT, name_input); // the program ends after that, as it would have
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        for (auto const& entry : std::filesystem::directory_iterator(argv[i])) {
            s_current = "failing input: " + entry.path().string() + "\n";
            std::ifstream file(entry.path(), std::ios::binary);
            std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
            bytes.shrink_to_fit();
            LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
            ++inputs;
        }
    }
    std::printf("%d inputs\n", inputs);
    return inputs == 0; // an empty corpus tests nothing
}
