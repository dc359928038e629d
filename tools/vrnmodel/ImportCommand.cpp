// vrnmodel import: DDL scripts and SQLite databases into one model file,
// through the public model builder interface, with a summary of what the
// saved model holds.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include <VrnIntf.h>

#include "Command.h"
#include "DdlImporter.h"
#include "Dialect.h"
#include "ModelReport.h"
#include "OutputFile.h"
#include "ModelSources.h"

namespace {

struct CImportOptions {
    std::vector<std::string> sources;
    std::string output;
    std::string continued;
    std::string sqlId;
    std::string encoding = "auto";
    long modelId = 0;
    int platform = -1;
    bool verbose = false;
    std::vector<std::pair<std::string, std::string>> tags;
    COdbcOptions odbc;
};

int Import(const CImportOptions& options) {
    const auto start = std::chrono::steady_clock::now();
    RegisterHostTexts();
    const bool progress = isatty(STDERR_FILENO) != 0;

    // Read every source first: an unreadable one stops the import before a model is made.
    CSources sources;
    std::string readError;
    if (!ReadSources(options.sources, options.platform, options.encoding == "auto", sources, readError))
        return Failure(readError);
    sources.odbc = options.odbc;
    const int platform = sources.platform;
    const std::vector<char>& databases = sources.databases;
    const std::vector<CDialect>& dialects = sources.dialects;

    CVrnAPI builder;
    if (!builder.Initialize(platform, options.continued.empty() ? nullptr : options.continued.c_str())) {
        std::cerr << "vrnmodel: " << builder.GetVrnFile()->GetLastError() << "\n";
        return 1;
    }
    if (!options.sqlId.empty()) builder.SetDB2SqlId(options.sqlId.c_str());
    if (options.modelId > 0) builder.SetModelId(static_cast<unsigned long>(options.modelId));

    CImportReport report;
    CDdlImporter importer(builder, report);
    importer.SetTags(options.tags);
    std::string importError;
    const bool imported = ImportSources(sources, importer, importError, progress);
    if (progress) std::fprintf(stderr, "\r%*s\r", 60, "");
    if (!imported) {
        std::cerr << "vrnmodel: " << importError << "\n";
        return 1;
    }

    if (report.ImportedTotal() == 0) {
        std::cerr << "vrnmodel: nothing could be imported\n";
        return 1;
    }
    builder.SaveToFile(options.output.c_str());
    const std::string saveError = builder.GetVrnFile()->GetLastError();
    if (!saveError.empty()) {
        std::cerr << "vrnmodel: the model was not saved: " << saveError << "\n";
        return 1;
    }
    // What the saved model holds, read back: a foreign key that resolution
    // dropped, or a view, is not counted as if it were kept.
    CModel model;
    std::string error;
    if (!ReadModelFile(options.output, model, error)) {
        std::cerr << "vrnmodel: the saved model cannot be read back: " << error << "\n";
        return 1;
    }
    std::cout << "Imported into " << options.output << " (platform " << PlatformLine(model)
              << (options.platform < 0 ? ", guessed from the input" : "") << ")\n";
    std::cout << "Read as:\n";
    for (std::size_t i = 0; i < options.sources.size(); ++i) {
        std::cout << "  " << COdbcSource::Shown(options.sources[i]) << ": ";
        if (sources.servers[i])
            std::cout << "a live database, " << sources.servers[i]->Description() << ", from its catalog ("
                      << sources.servers[i]->Calls() << " catalog calls)\n";
        else if (databases[i]) std::cout << "an SQLite database, from its catalog\n";
        else std::cout << dialects[i].Name() << (dialects[i].guessed ? " (guessed from the script)" : " (--platform)") << "\n";
    }
    std::cout << "The model holds:\n";
    for (const auto& [kind, count] : CountObjects(model))
        if (count != 0 || kind == "tables") std::cout << "  " << Counted(count, kind) << "\n";
    const auto views = report.imported.find("views");
    if (views != report.imported.end() && views->second > 0)
        std::cout << "Read but not kept (a model keeps no rows for views):\n  " << Counted(views->second, "views")
                  << "\n";
    if (!report.skipped.empty()) {
        std::cout << "Skipped statements:\n";
        for (const auto& [kind, count] : report.skipped) {
            std::cout << "  " << count << " " << kind;
            if (options.verbose) {
                std::cout << " at";
                for (const std::string& where : report.skippedAt.at(kind)) std::cout << " " << where;
            }
            std::cout << "\n";
        }
    }
    if (!report.warnings.empty()) {
        std::cout << "Warnings: " << report.warnings.size() << (options.verbose ? "" : " (--verbose lists them)") << "\n";
        if (options.verbose)
            for (const std::string& warning : report.warnings) std::cout << "  " << warning << "\n";
    }
    if (!report.messages.empty()) {
        std::cout << "Relationship resolution:\n";
        for (const std::string& message : report.messages) std::cout << "  " << message << "\n";
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%d statements (%d applied, %d skipped) in %.2f s\n", report.statements, report.applied,
                report.SkippedTotal(), seconds);
    return 0;
}

}  // namespace

int RunImport(const CCommand& command, const std::vector<std::string>& args) {
    CImportOptions options;
    CArguments arguments(args);
    for (std::string arg, text; arguments.Next(arg);) {
        auto missing = [&] { return UsageError(command, arg + " needs a value"); };
        if (arg == "--help" || arg == "-h") return CommandHelp(command);
        if (arg == "-o" || arg == "--output") {
            if (!arguments.Value(options.output)) return missing();
        } else if (arg == "--platform") {
            if (!arguments.Value(text)) return missing();
            if (!ParsePlatform(text, options.platform))
                return UsageError(command, "unknown platform '" + text + "'; the platform names are " + PlatformNames() +
                                               ", or any code of the platform table that names a platform");
        } else if (arg == "--continue") {
            if (!arguments.Value(options.continued)) return missing();
        } else if (arg == "--sql-id") {
            if (!arguments.Value(options.sqlId)) return missing();
        } else if (arg == "--model-id") {
            if (!arguments.Value(text)) return missing();
            char* end = nullptr;
            options.modelId = std::strtol(text.c_str(), &end, 10);
            if (text.empty() || *end || options.modelId <= 0 || options.modelId > 0xFFFFFFFFL)
                return UsageError(command, "--model-id needs a number from 1 to 4294967295");
        } else if (arg == "--encoding") {
            if (!arguments.Value(options.encoding)) return missing();
            if (options.encoding != "auto" && options.encoding != "utf-8")
                return UsageError(command, "--encoding is auto or utf-8 (UTF-16 is recognised by its byte order mark)");
        } else if (arg == "--define") {
            if (!arguments.Value(text)) return missing();
            if (text.find('=') == std::string::npos) return UsageError(command, "--define needs NAME=VALUE");
            options.tags.emplace_back(text.substr(0, text.find('=')), text.substr(text.find('=') + 1));
        } else if (arg == "--schema") {
            if (!arguments.Value(text)) return missing();
            options.odbc.schemas.push_back(text);
        } else if (arg == "--tables") {
            if (!arguments.Value(options.odbc.tablePattern)) return missing();
        } else if (arg == "--verbose" || arg == "-v") {
            options.verbose = true;
        } else if (!arg.empty() && arg[0] == '-') {
            return UsageError(command, "unknown option " + arg);
        } else {
            options.sources.push_back(arg);
        }
    }
    if (options.sources.empty()) return UsageError(command, "no source given");
    if (options.output.empty()) return UsageError(command, "no model file given (-o MODEL)");
    if (options.output == kStandardOutput)
        return UsageError(command, "a model file cannot go to standard output (-o -): name a file");
    // The model being continued may be the output: it is read whole before
    // the new model replaces it, atomically.
    if (!OutputIsNoInput(options.output, options.sources)) return 1;
    return Import(options);
}
