// Fuzz target: opening arbitrary bytes, and mutated real model files, as a
// model file; a file that opens is continued and written again in memory.
#include <cstddef>
#include <cstdint>
#include <string>

#include <VrnIntf.h>

#include "FuzzScratch.h"

namespace {

class CFuzzBuilder : public CVrnAPI {
public:
    using CVrnAPI::UpdateRelationships;
    using CVrnAPI::WriteModel;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CFuzzScratchFile scratch("open");
    if (!scratch.Write(data, size)) return 0;
    const std::string& path = scratch.Path();
    CFuzzBuilder builder;
    if (builder.Initialize(34, path.c_str())) {
        const unsigned long entity = builder.AddEntity("FUZZ", nullptr, 0, 0);
        builder.AddAttribute(entity, "A", "int", -1, -1, 1, 0);
        builder.UpdateRelationships(0);
        builder.WriteModel(path.c_str());
    }
    return 0;
}
