// Runs a fuzz target over every file of its corpus directories, once each,
// without the fuzzer: the inputs a campaign kept (and every one that ever
// failed) become a test that any build runs, under the sanitizers in CI. A
// failing input aborts with its name printed first; an empty or missing
// corpus fails too, so that a lost corpus is never a silent pass.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    std::vector<std::filesystem::path> inputs;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(argv[i], error))
            if (entry.is_regular_file()) inputs.push_back(entry.path());
        if (error) {
            std::fprintf(stderr, "cannot read corpus %s: %s\n", argv[i], error.message().c_str());
            return 1;
        }
    }
    if (inputs.empty()) {
        std::fprintf(stderr, "no inputs to replay\n");
        return 1;
    }
    std::sort(inputs.begin(), inputs.end());
    for (const std::filesystem::path& path : inputs) {
        std::ifstream in(path, std::ios::binary);
        const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        std::fprintf(stderr, "%s\n", path.c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs replayed\n", inputs.size());
    return 0;
}
