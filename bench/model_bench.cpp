// Builds a synthetic catalog of N tables through the public interface and
// saves it, timing each step of the job separately:
//   model_bench TABLES MODEL_FILE
// Prints one line of name=value figures.
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <VrnIntf.h>

#include "Lap.h"
#include "SyntheticCatalog.h"

namespace {

// The model builder with the steps of its save open to timing.
class CTimedBuilder : public CVrnAPI {
public:
    using CVrnAPI::UpdateRelationships;
    using CVrnAPI::WriteModel;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: model_bench TABLES MODEL_FILE\n");
        return 2;
    }
    const long tables = std::strtol(argv[1], nullptr, 10);
    const char* path = argv[2];
    auto clock = std::chrono::steady_clock::now();

    auto* builder = new CTimedBuilder;
    builder->Initialize(34, nullptr);
    const CCatalogSize size = DescribeSyntheticCatalog(*builder, tables);
    const double build = Lap(clock);
    builder->UpdateRelationships(0);
    const double resolve = Lap(clock);
    builder->WriteModel(path);
    const double rows = Lap(clock);
    builder->GetVrnFile()->Save(path, 0);
    const double file = Lap(clock);
    const bool saved = *builder->GetVrnFile()->GetLastError() == '\0';
    if (!saved) std::fprintf(stderr, "model_bench: %s\n", builder->GetVrnFile()->GetLastError());
    delete builder;

    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    struct stat info {};
    stat(path, &info);
    std::printf("tables=%ld attributes=%ld foreign_keys=%ld build=%.3f resolve=%.3f rows=%.3f file=%.3f total=%.3f "
                "peak_kib=%ld file_bytes=%lld\n",
                size.tables, size.attributes, size.foreignKeys, build, resolve, rows, file,
                build + resolve + rows + file, usage.ru_maxrss, static_cast<long long>(info.st_size));
    return saved ? 0 : 1;
}
