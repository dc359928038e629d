// What every vrnmodel command shares: its entry in the command table (name,
// usage line, help), how it reads its arguments, and how it reports usage
// errors and failures. One file per command holds its Run function.
#pragma once

#include <string>
#include <vector>

struct CModel;

struct CCommand {
    const char* name;
    const char* usage;    // one line: "vrnmodel show MODEL [...]"
    const char* summary;  // what it does, in one line
    const char* help;     // its options, one per line
    int (*run)(const CCommand& command, const std::vector<std::string>& args);
};

extern const CCommand kCommands[];
extern const int kCommandCount;
const CCommand* FindCommand(const std::string& name);

int RunImport(const CCommand& command, const std::vector<std::string>& args);
int RunShow(const CCommand& command, const std::vector<std::string>& args);
int RunDiagram(const CCommand& command, const std::vector<std::string>& args);
int RunDdl(const CCommand& command, const std::vector<std::string>& args);
int RunDiff(const CCommand& command, const std::vector<std::string>& args);

// A command's arguments, taken in order.
class CArguments {
public:
    explicit CArguments(const std::vector<std::string>& args) : m_args(args) {}
    bool Next(std::string& arg) {
        if (m_at >= m_args.size()) return false;
        arg = m_args[m_at++];
        return true;
    }
    // The value of the option just taken; false when the option was the last argument.
    bool Value(std::string& value) { return Next(value); }

private:
    const std::vector<std::string>& m_args;
    std::size_t m_at = 0;
};

// The command's help on standard output; 0. Commands answer --help and -h
// where an option may stand (not as the value of another option).
int CommandHelp(const CCommand& command);
// Says what is wrong, the command's usage line and where its help is; 2.
int UsageError(const CCommand& command, const std::string& problem);
// Says why the command failed; 1.
int Failure(const std::string& reason);
// False (and says so) when `output` is the same file as one of `inputs`.
bool OutputIsNoInput(const std::string& output, const std::vector<std::string>& inputs);
// Reads the model file `path` that a command writing `output` takes: 0 when
// read, else the exit status to return (no path given, the output is the
// model itself, the file cannot be read).
int ReadCommandModel(const CCommand& command, const std::string& path, const std::string& output, CModel& model);
// A platform code, or a name of the platform table; only codes of platforms
// the table names are taken (the library itself takes any code).
bool ParsePlatform(const std::string& text, int& code);
// "unknown (0), sqlite (0), oracle7 (8), ..."
std::string PlatformNames();
