// Fuzz target: the DDL importer of vrnmodel on arbitrary script bytes, in
// any encoding, for a platform chosen by the first byte. The model is
// resolved and its rows written, in memory.
#include <cstddef>
#include <cstdint>
#include <string>

#include <VrnIntf.h>

#include "DdlImporter.h"
#include "SqlSource.h"

namespace {

class CFuzzBuilder : public CVrnAPI {
public:
    using CVrnAPI::UpdateRelationships;
    using CVrnAPI::WriteModel;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::string text, error;
    if (!DecodeSourceText(std::string(reinterpret_cast<const char*>(data) + 1, size - 1), text, error)) return 0;
    CFuzzBuilder builder;
    builder.Initialize(data[0] % 60, nullptr);
    CImportReport report;
    CDdlImporter importer(builder, report);
    importer.SetTags({{"DBSCH", "S"}});
    importer.ImportScript("fuzz.sql", text);
    importer.Finish();
    builder.UpdateRelationships(0);
    builder.WriteModel("fuzz.vrn");
    return 0;
}
