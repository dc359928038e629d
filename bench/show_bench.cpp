// Reads a model file with the model reader and writes the text and JSON
// reports of `vrnmodel show` and the script of `vrnmodel ddl` into memory,
// timing each:
//   show_bench MODEL_FILE
// Prints one line of name=value figures; bench/run compares them with the
// import that made the file.
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <sstream>

#include "DdlWriter.h"
#include "Lap.h"
#include "ModelReport.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: show_bench MODEL_FILE\n");
        return 2;
    }
    auto clock = std::chrono::steady_clock::now();
    CModel model;
    std::string error;
    if (!ReadModelFile(argv[1], model, error)) {
        std::fprintf(stderr, "show_bench: %s\n", error.c_str());
        return 1;
    }
    const double read = Lap(clock);
    rusage afterRead{};
    getrusage(RUSAGE_SELF, &afterRead);
    std::ostringstream text;
    WriteTextReport(model, CReportOptions(), text);
    const double report = Lap(clock);
    std::ostringstream json;
    WriteJsonReport(model, json);
    const double jsonReport = Lap(clock);
    const CDdlScript script = WriteDdl(model, CDdlOptions());
    const double ddl = Lap(clock);
    if (script.tables != static_cast<int>(model.tables.size())) return 1;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    struct stat info {};
    stat(argv[1], &info);
    std::printf("tables=%zu read=%.3f text=%.3f json=%.3f ddl=%.3f read_peak_kib=%ld peak_kib=%ld file_bytes=%lld\n",
                model.tables.size(), read, report, jsonReport, ddl, afterRead.ru_maxrss, usage.ru_maxrss,
                static_cast<long long>(info.st_size));
    return 0;
}
