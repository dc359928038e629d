// vrnmodel: turns database catalogs and DDL scripts into model files, and
// shows what a model file holds. Everything it builds goes through the
// public model builder interface.
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <VrnIntf.h>

#include "DdlImporter.h"
#include "ModelDiagram.h"
#include "ModelReport.h"
#include "OutputFile.h"
#include "SqlSource.h"
#include "SqliteImporter.h"

namespace {

const char kUsage[] =
    "usage:\n"
    "  vrnmodel import SOURCE... -o MODEL [options]\n"
    "  vrnmodel show MODEL [--json|--markdown] [--code] [-o OUT|-]\n"
    "  vrnmodel diagram MODEL -o OUT.svg|OUT.html|- [--tables PATTERN] [--no-columns]\n"
    "\n"
    "import reads DDL scripts (T-SQL, Oracle SQL*Plus, DB2) and SQLite databases\n"
    "and writes one model file.\n"
    "  -o, --output MODEL     the model file to write\n"
    "  --platform NAME|CODE   target platform: a code of the platform table, or one\n"
    "                         of the names below (default: guessed from the input)\n"
    "  --continue EXISTING    continue an existing model file\n"
    "  --sql-id ID            owner of tables declared without one\n"
    "  --model-id N           model number of the new objects\n"
    "  --encoding E           auto (default: UTF-16 by its byte order mark, else UTF-8)\n"
    "                         or utf-8 (always)\n"
    "  --define NAME=VALUE    value of the template tag &$NAME. in scripts\n"
    "  --verbose              list every skipped statement and warning\n"
    "show prints the tables, keys, relationships and catalog objects of a model\n"
    "file; --json prints the same as one JSON document, --markdown as a data\n"
    "dictionary; --code adds the text of triggers, procedures and packages; -o\n"
    "writes it to a file instead of standard output.\n"
    "diagram draws the tables and relationships of a model file in crow's foot\n"
    "notation with Graphviz's dot program, as SVG or as one HTML page with pan,\n"
    "zoom and search (-o - writes the SVG to standard output); --tables draws\n"
    "the tables whose names match a shell pattern, --no-columns only their names.\n"
    "\n"
    "No command writes over one of its inputs: an output that is the same file as\n"
    "an input is refused. A file is replaced only once its new content is complete.\n";

bool ParsePlatform(const std::string& text, int& code) {
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 10);
    if (!text.empty() && end && *end == '\0') {
        code = static_cast<int>(number);
        return true;
    }
    const CPlatformInfo* platform = FindPlatformByName(text.c_str());
    if (platform) code = platform->code;
    return platform != nullptr;
}

// The code of the platform the command line calls `name`.
int PlatformNamed(const char* name) {
    const CPlatformInfo* platform = FindPlatformByName(name);
    return platform ? platform->code : 0;
}

bool Contains(const std::string& text, const char* word) {
    std::string upper(text.size(), ' ');
    for (std::size_t i = 0; i < text.size(); ++i) upper[i] = AfxToUpperAscii(text[i]);
    return upper.find(word) != std::string::npos;
}

// A platform from what a script looks like, for inputs given without one.
int GuessPlatform(const std::string& text) {
    if (Contains(text, "STOGROUP") || Contains(text, "CURRENT SQLID") || Contains(text, "CCSID"))
        return PlatformNamed("db2zos");
    if (Contains(text, "DB2LOOK") || Contains(text, "ORGANIZE BY") || Contains(text, "CODEUNITS"))
        return PlatformNamed("db2");
    if (Contains(text, "VARCHAR2") || Contains(text, "NUMBER(") || Contains(text, "\n/\n")) return PlatformNamed("oracle");
    if (Contains(text, "\nGO\n") || Contains(text, "SP_ADDTYPE") || Contains(text, "NVARCHAR") ||
        Contains(text, "IDENTITY(")) {
        return PlatformNamed(Contains(text, "SP_BINDRULE") && !Contains(text, "SYS.SP_") ? "sybase" : "sqlserver");
    }
    return PlatformNamed("unknown");
}

void RegisterHostTexts() {
    AfxSetResourceString(kHostTextProductName, "vrnmodel");
    AfxSetResourceString(kHostTextModelName, "Physical model");
    AfxSetResourceString(kHostTextDiagramName, "Main diagram");
    AfxSetResourceString(kHostTextParentNotFound, "Parent table %1 was not found.");
    AfxSetResourceString(kHostTextUnnamedKeyNotAdded, "A foreign key without a name was not added.");
    AfxSetResourceString(kHostTextForeignKeyNotAdded, "Foreign key %1 was not added.");
    AfxSetResourceString(kHostTextColumnPairNotAdded, "Foreign key %1: a column pair from %2 to %3 could not be added.");
}

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
};

// The usage text, with the platform names of the library's platform table.
std::string HelpText() {
    std::string names;
    for (int code = 0; code < kPlatformCount; ++code) {
        const char* alias = kPlatforms[code].aliases;
        for (const char* end = alias; *alias; alias = *end ? end + 1 : end) {
            end = std::strchr(alias, ' ');
            if (!end) end = alias + std::strlen(alias);
            names += (names.empty() ? "" : ", ") + std::string(alias, end) + " (" + std::to_string(code) + ")";
        }
    }
    return kUsage + ("\nPlatform names: " + names + ".\n");
}

int Usage(const std::string& problem) {
    std::cerr << "vrnmodel: " << problem << "\n" << HelpText();
    return 2;
}

int Failure(const std::string& reason) {
    std::cerr << "vrnmodel: " << reason << "\n";
    return 1;
}

// Refuses, before anything is read, an output that would replace an input.
bool OutputIsNoInput(const std::string& output, const std::vector<std::string>& inputs) {
    std::string error;
    if (CheckOutputIsNoInput(output, inputs, error)) return true;
    Failure(error);
    return false;
}

int Import(const CImportOptions& options) {
    const auto start = std::chrono::steady_clock::now();
    RegisterHostTexts();
    const bool progress = isatty(STDERR_FILENO) != 0;

    // Read every source first: an unreadable one stops the import before a model is made.
    std::vector<std::string> texts(options.sources.size());
    std::vector<bool> databases(options.sources.size());
    for (std::size_t i = 0; i < options.sources.size(); ++i) {
        databases[i] = IsSqliteFile(options.sources[i]);
        if (databases[i]) continue;
        std::string error;
        if (!ReadSourceText(options.sources[i], texts[i], error, options.encoding == "auto")) {
            std::cerr << "vrnmodel: " << error << "\n";
            return 1;
        }
    }
    int platform = options.platform;
    if (platform < 0) {
        platform = 0;
        for (std::size_t i = 0; i < texts.size() && platform == 0; ++i) platform = GuessPlatform(texts[i]);
    }

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
    for (std::size_t i = 0; i < options.sources.size(); ++i) {
        if (progress) std::fprintf(stderr, "\rreading %s ...", options.sources[i].c_str());
        if (databases[i]) {
            std::string error;
            if (!ImportSqliteDatabase(options.sources[i], importer, error)) {
                std::cerr << "\nvrnmodel: " << error << "\n";
                return 1;
            }
        } else {
            importer.ImportScript(options.sources[i], texts[i]);
        }
    }
    importer.Finish();
    if (progress) std::fprintf(stderr, "\r%*s\r", 60, "");

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
    std::printf("%d statements in %.2f s\n", report.statements, seconds);
    return 0;
}

int ImportCommand(int argc, char** argv) {
    CImportOptions options;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= argc) return false;
            into = argv[++i];
            return true;
        };
        std::string text;
        if (arg == "-o" || arg == "--output") {
            if (!value(options.output)) return Usage("-o needs a file name");
        } else if (arg == "--platform") {
            if (!value(text) || !ParsePlatform(text, options.platform)) return Usage("unknown platform '" + text + "'");
        } else if (arg == "--continue") {
            if (!value(options.continued)) return Usage("--continue needs a model file");
        } else if (arg == "--sql-id") {
            if (!value(options.sqlId)) return Usage("--sql-id needs an id");
        } else if (arg == "--model-id") {
            if (!value(text) || std::strtol(text.c_str(), nullptr, 10) <= 0) return Usage("--model-id needs a number");
            options.modelId = std::strtol(text.c_str(), nullptr, 10);
        } else if (arg == "--encoding") {
            if (!value(options.encoding) || (options.encoding != "auto" && options.encoding != "utf-8"))
                return Usage("--encoding is auto or utf-8 (UTF-16 is recognised by its byte order mark)");
        } else if (arg == "--define") {
            if (!value(text) || text.find('=') == std::string::npos) return Usage("--define needs NAME=VALUE");
            options.tags.emplace_back(text.substr(0, text.find('=')), text.substr(text.find('=') + 1));
        } else if (arg == "--verbose" || arg == "-v") {
            options.verbose = true;
        } else if (!arg.empty() && arg[0] == '-') {
            return Usage("unknown option " + arg);
        } else {
            options.sources.push_back(arg);
        }
    }
    if (options.sources.empty()) return Usage("no source given");
    if (options.output.empty()) return Usage("no model file given (-o MODEL)");
    if (options.output == kStandardOutput)
        return Usage("a model file cannot go to standard output (-o -): name a file");
    // The model being continued may be the output: it is read whole before
    // the new model replaces it, atomically.
    if (!OutputIsNoInput(options.output, options.sources)) return 1;
    return Import(options);
}

int ShowCommand(int argc, char** argv) {
    std::string path, output = kStandardOutput;
    enum class EFormat { Text, Json, Markdown } format = EFormat::Text;
    CReportOptions options;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--json") format = EFormat::Json;
        else if (arg == "--markdown") format = EFormat::Markdown;
        else if (arg == "--code") options.code = true;
        else if (arg == "-o" || arg == "--output") {
            if (i + 1 >= argc) return Usage("-o needs a file name, or - for standard output");
            output = argv[++i];
        } else if (!arg.empty() && arg[0] == '-') return Usage("unknown option " + arg);
        else path = arg;
    }
    if (path.empty()) return Usage("no model file given");
    if (!OutputIsNoInput(output, {path})) return 1;
    CModel model;
    std::string error;
    if (!ReadModelFile(path, model, error)) return Failure(error);
    std::ostringstream report;
    if (format == EFormat::Json) WriteJsonReport(model, report);
    else if (format == EFormat::Markdown) WriteMarkdownReport(model, report);
    else WriteTextReport(model, options, report);
    if (!WriteOutput(output, report.str(), error)) return Failure(error);
    return 0;
}

int DiagramCommand(int argc, char** argv) {
    std::string model, output;
    CDiagramOptions options;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        if ((arg == "-o" || arg == "--output") && i + 1 < argc) output = argv[++i];
        else if (arg == "--tables" && i + 1 < argc) options.tablePattern = argv[++i];
        else if (arg == "--no-columns") options.columns = false;
        else if (!arg.empty() && arg[0] == '-') return Usage("unknown option " + arg);
        else model = arg;
    }
    if (model.empty()) return Usage("no model file given");
    if (output.empty()) return Usage("no output file given (-o OUT.svg, OUT.html, or - for SVG on standard output)");
    if (!OutputIsNoInput(output, {model})) return 1;
    std::string dot, svg, error;
    if (!WriteDiagramDot(model, options, dot, error) || !RenderSvg(dot, svg, error)) return Failure(error);
    const bool html = output.size() > 5 && AfxCompareNoCase(output.substr(output.size() - 5).c_str(), ".html") == 0;
    if (!WriteOutput(output, html ? DiagramPage(model, svg) : svg, error)) return Failure(error);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return Usage("no command given");
    const std::string command = argv[1];
    if (command == "--help" || command == "-h" || command == "help") {
        std::cout << HelpText();
        return 0;
    }
    int status;
    if (command == "import")
        status = ImportCommand(argc, argv);
    else if (command == "show")
        status = ShowCommand(argc, argv);
    else if (command == "diagram")
        status = DiagramCommand(argc, argv);
    else
        return Usage("unknown command " + command);
    // What went to standard output through the stream (the import summary)
    // must have arrived too.
    std::cout.flush();
    if (std::fflush(stdout) != 0 || std::ferror(stdout) || !std::cout) {
        const int cause = errno;
        std::cerr << "vrnmodel: cannot write to standard output: " << std::strerror(cause) << "\n";
        return status == 0 ? 1 : status;
    }
    return status;
}
