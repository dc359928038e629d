// Fuzz target: the model reader on arbitrary bytes and mutated model files.
// A file that reads must equal itself, and the DDL writer and the migration
// writer must take whatever such a file holds, names and numbers the builder
// would never have written among them.
#include <cstddef>
#include <cstdint>
#include <string>

#include <VrnReader.h>

#include "DdlWriter.h"
#include "FuzzCheck.h"
#include "FuzzScratch.h"
#include "MigrationWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CFuzzScratchFile scratch("read");
    if (!scratch.Write(data, size)) return 0;
    const std::string& path = scratch.Path();
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
