// Fuzz target: the model reader on arbitrary bytes and mutated model files.
// A file that reads must equal itself, and the DDL writer and the migration
// writer must take whatever such a file holds, names and numbers the builder
// would never have written among them.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <VrnReader.h>

#include "DdlWriter.h"
#include "FuzzCheck.h"
#include "MigrationWriter.h"

namespace {

const std::string& ScratchPath() {
    static const std::string path = "/tmp/vrn-fuzz-read-" + std::to_string(::getpid()) + ".vrn";
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = ScratchPath();
    std::FILE* out = std::fopen(path.c_str(), "wb");
    if (!out) return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);
    CModel model;
    std::string error;
    if (!ReadModelFile(path, model, error)) {
        FUZZ_CHECK(!error.empty());
        return 0;
    }
    FUZZ_CHECK(CompareModels(model, model).empty());
    CDdlOptions options;
    options.platform = static_cast<int>(size % 60);  // the file's own bytes are the file; its size picks the platform
    WriteDdl(model, options);
    WriteMigration(CModel(), model, options);
    WriteMigration(model, CModel(), options);
    return 0;
}
