// Fuzz target: opening arbitrary bytes, and mutated real model files, as a
// model file; a file that opens is continued and written again in memory.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <VrnIntf.h>

namespace {

class CFuzzBuilder : public CVrnAPI {
public:
    using CVrnAPI::UpdateRelationships;
    using CVrnAPI::WriteModel;
};

const std::string& ScratchPath() {
    static const std::string path = "/tmp/vrn-fuzz-open-" + std::to_string(::getpid()) + ".vrn";
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = ScratchPath();
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (!out) return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);
    CFuzzBuilder builder;
    if (builder.Initialize(34, path.c_str())) {
        const unsigned long entity = builder.AddEntity("FUZZ", nullptr, 0, 0);
        builder.AddAttribute(entity, "A", "int", -1, -1, 1, 0);
        builder.UpdateRelationships(0);
        builder.WriteModel(path.c_str());
    }
    return 0;
}
