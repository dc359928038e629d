// vrnmodel: turns database catalogs and DDL scripts into model files, and
// model files into what people read. Each command has its own file; this one
// holds the command table, the help and the dispatch.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "Command.h"

#ifndef VRN_VERSION
#define VRN_VERSION "unknown"
#endif

const CCommand kCommands[] = {
    {"import", "vrnmodel import SOURCE... -o MODEL [options]",
     "reads DDL scripts (T-SQL, Oracle SQL*Plus, DB2), SQLite databases and live databases\n"
     "(odbc:CONNECTION, an ODBC connection string) into one model file",
     "  -o, --output MODEL     the model file to write (never one of the sources)\n"
     "  --platform NAME|CODE   target platform: a name below or a code of the platform\n"
     "                         table (default: guessed from the first script)\n"
     "  --continue EXISTING    continue an existing model file (it may be the output)\n"
     "  --sql-id ID            owner of tables declared without one\n"
     "  --model-id N           model number of the new objects\n"
     "  --encoding auto|utf-8  auto: UTF-16 by its byte order mark, else UTF-8\n"
     "  --define NAME=VALUE    value of the template tag &$NAME. in scripts\n"
     "  --schema NAME|PATTERN  live databases: a schema to read (repeatable; LIKE patterns);\n"
     "                         default: every schema but the server's own\n"
     "  --tables PATTERN       live databases: only tables whose names match (LIKE pattern)\n"
     "  A live database's password comes from its connection string, from VRN_ODBC_PASSWORD,\n"
     "  or is asked for on a terminal; it is never shown, logged or written to the model.\n"
     "  -v, --verbose          list every skipped statement and warning\n",
     &RunImport},
    {"show", "vrnmodel show MODEL [--json|--markdown] [--code] [-o OUT|-]",
     "reports what a model file holds: tables, columns, keys, relationships, catalog objects",
     "  --json                 one JSON document with typed values (see docs/vrnmodel.md)\n"
     "  --markdown             a data dictionary in Markdown\n"
     "  --code                 also the text of triggers, procedures and packages\n"
     "  -o, --output OUT|-     write to a file instead of standard output\n",
     &RunShow},
    {"diagram",
     "vrnmodel diagram MODEL -o OUT.svg|.html|.png|.pdf|.dot|- [--tables PATTERN] [--keys-only|--no-columns] "
     "[--group-by owner]",
     "draws the tables and relationships in crow's foot notation with Graphviz",
     "  -o, --output FILE      OUT.svg, OUT.html (one page with search and a details\n"
     "                         panel), OUT.png, OUT.pdf, OUT.dot (Graphviz's source), or -\n"
     "                         for SVG on standard output\n"
     "  --format FORMAT        svg, html, png, pdf or dot, whatever the file is called\n"
     "  --tables PATTERN       only tables whose names match the shell pattern (any case)\n"
     "  --keys-only            only key and foreign key columns\n"
     "  --no-columns           table names only, for large models\n"
     "  --group-by owner       each owner (schema) in a labelled frame\n",
     &RunDiagram},
    {"ddl", "vrnmodel ddl MODEL [-o OUT.sql|-] [--platform NAME|CODE] [--tables PATTERN] [--no-storage] [--no-code]",
     "writes the DDL script that creates the model, for its platform or another",
     "  -o, --output OUT|-     write to a file instead of standard output\n"
     "  --platform NAME|CODE   the platform to write for (default: the model's); types are\n"
     "                         translated, and what it cannot hold is left out with a\n"
     "                         comment in the script and a warning\n"
     "  --tables PATTERN       only tables whose names match the shell pattern (any case)\n"
     "  --no-storage           no storage objects, storage spaces or partitions\n"
     "  --no-code              no triggers, procedures or packages\n",
     &RunDdl},
    {"diff", "vrnmodel diff OLD NEW [--json|--markdown|--ddl] [--platform NAME|CODE] [--no-storage] [--no-code] [-o OUT|-]",
     "says what changed from one model to another; either may be a script or database to import",
     "  --json                 the changes as JSON, one object each\n"
     "  --markdown             the changes as Markdown tables, for review comments\n"
     "  --ddl                  the script that migrates a database from OLD to NEW, for\n"
     "                         NEW's platform: destructive statements have a comment above\n"
     "                         them, and what the platform cannot do in place is marked\n"
     "                         \"-- manual step:\" (and said on standard error)\n"
     "  --platform NAME|CODE   --ddl: the platform to write the migration for (default: NEW's)\n"
     "  --no-storage           --ddl: no storage spaces, partitions or their changes\n"
     "  --no-code              --ddl: no triggers, procedures or packages\n"
     "  -o, --output OUT|-     write to a file instead of standard output\n"
     "  exit status: 0 the models are equal, 1 they differ, 2 trouble\n",
     &RunDiff},
};
const int kCommandCount = sizeof kCommands / sizeof kCommands[0];

const CCommand* FindCommand(const std::string& name) {
    for (const CCommand& command : kCommands)
        if (name == command.name) return &command;
    return nullptr;
}

namespace {

void WriteOverview(std::ostream& out) {
    out << "usage:\n";
    for (const CCommand& command : kCommands) out << "  " << command.usage << "\n";
    out << "\n";
    for (const CCommand& command : kCommands) out << "  " << command.name << ": " << command.summary << "\n";
    out << "\nvrnmodel COMMAND --help tells more of each; vrnmodel --version its version.\n"
           "No command writes over one of its inputs, and a file is replaced only once its\n"
           "new content is complete.\n";
}

// The command's exit status; what went to standard output must have
// arrived too, or the status says it did not.
int Run(const std::vector<std::string>& all) {
    if (all.empty()) {
        std::cerr << "vrnmodel: no command given\n";
        WriteOverview(std::cerr);
        return 2;
    }
    const std::string& first = all[0];
    if (first == "--help" || first == "-h" || first == "help") {
        if (all.size() > 1 && FindCommand(all[1])) return CommandHelp(*FindCommand(all[1]));
        WriteOverview(std::cout);
        return 0;
    }
    if (first == "--version") {
        std::cout << "vrnmodel " << VRN_VERSION << "\n";
        return 0;
    }
    const CCommand* command = FindCommand(first);
    if (!command) {
        std::cerr << "vrnmodel: unknown command '" << first << "'\n";
        WriteOverview(std::cerr);
        return 2;
    }
    return command->run(*command, std::vector<std::string>(all.begin() + 1, all.end()));
}

}  // namespace

int main(int argc, char** argv) {
    const int status = Run(std::vector<std::string>(argv + 1, argv + argc));
    std::cout.flush();
    if (std::fflush(stdout) != 0 || std::ferror(stdout) || !std::cout) {
        const int cause = errno;
        std::cerr << "vrnmodel: cannot write to standard output: " << std::strerror(cause) << "\n";
        return status == 0 ? 1 : status;
    }
    return status;
}
