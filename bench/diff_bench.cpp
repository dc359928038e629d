// Compares two model files as `vrnmodel diff` does, and writes the
// migration script of `vrnmodel diff --ddl` into memory, timing each step:
//   diff_bench OLD_MODEL NEW_MODEL
// Prints one line of name=value figures; bench/run compares them with the
// import that made one of the files.
#include <cstdio>

#include "Lap.h"
#include "MigrationWriter.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: diff_bench OLD_MODEL NEW_MODEL\n");
        return 2;
    }
    auto clock = std::chrono::steady_clock::now();
    CModel before, after;
    std::string error;
    if (!ReadModelFile(argv[1], before, error) || !ReadModelFile(argv[2], after, error)) {
        std::fprintf(stderr, "diff_bench: %s\n", error.c_str());
        return 1;
    }
    const double read = Lap(clock);
    const std::vector<CModelChange> changes = CompareModels(before, after);
    const double compare = Lap(clock);
    const CMigrationScript migration = WriteMigration(before, after, CDdlOptions());
    const double migrate = Lap(clock);
    std::printf("read=%.3f compare=%.3f migration=%.3f changes=%zu migration_bytes=%zu\n", read, compare, migrate,
                changes.size(), migration.text.size());
    return 0;
}
