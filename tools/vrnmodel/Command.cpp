#include "Command.h"

#include <cstdlib>
#include <cstring>
#include <iostream>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "OutputFile.h"

int CommandHelp(const CCommand& command) {
    std::cout << "usage: " << command.usage << "\n\n" << command.summary << ".\n\n" << command.help;
    if (std::string(command.name) == "import") std::cout << "\nPlatform names: " << PlatformNames() << ".\n";
    return 0;
}

int UsageError(const CCommand& command, const std::string& problem) {
    std::cerr << "vrnmodel: " << problem << "\nusage: " << command.usage << "\nSee 'vrnmodel " << command.name
              << " --help'.\n";
    return 2;
}

int Failure(const std::string& reason) {
    std::cerr << "vrnmodel: " << reason << "\n";
    return 1;
}

bool OutputIsNoInput(const std::string& output, const std::vector<std::string>& inputs) {
    std::string error;
    if (CheckOutputIsNoInput(output, inputs, error)) return true;
    Failure(error);
    return false;
}

bool ParsePlatform(const std::string& text, int& code) {
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 10);
    const bool numeric = !text.empty() && end && *end == '\0';
    if (numeric && (number < 0 || number >= kPlatformCount)) return false;
    const CPlatformInfo* platform =
        numeric ? FindPlatform(static_cast<int>(number)) : FindPlatformByName(text.c_str());
    if (!platform || !*platform->name) return false;  // codes 49 to 53 name no platform
    code = platform->code;
    return true;
}

std::string PlatformNames() {
    std::string names;
    for (int code = 0; code < kPlatformCount; ++code) {
        const char* alias = kPlatforms[code].aliases;
        for (const char* end = alias; *alias; alias = *end ? end + 1 : end) {
            end = std::strchr(alias, ' ');
            if (!end) end = alias + std::strlen(alias);
            names += (names.empty() ? "" : ", ") + std::string(alias, end) + " (" + std::to_string(code) + ")";
        }
    }
    return names;
}

int ReadCommandModel(const CCommand& command, const std::string& path, const std::string& output, CModel& model) {
    if (path.empty()) return UsageError(command, "no model file given");
    if (!OutputIsNoInput(output, {path})) return 1;
    std::string error;
    if (!ReadModelFile(path, model, error)) return Failure(error);
    return 0;
}
