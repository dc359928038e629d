// A live database as a source of a model: `vrnmodel import odbc:CONNECTION`.
// The connection is made when the sources are read, so that the model's
// platform can be the server's; its catalog is read when the sources are
// imported. A vrnmodel built without unixODBC says so for every such source.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ConnectionString.h"

class CDdlImporter;

struct COdbcOptions {
    std::vector<std::string> schemas;  // names or LIKE patterns; empty: every schema but the system's own
    std::string tablePattern;          // a LIKE pattern on table names; empty: all
};

class COdbcSource {
public:
    COdbcSource();
    ~COdbcSource();
    COdbcSource(const COdbcSource&) = delete;
    COdbcSource& operator=(const COdbcSource&) = delete;

    // Whether a source names a live database ("odbc:" and a connection string).
    static bool Names(const std::string& source) { return source.rfind("odbc:", 0) == 0; }
    // The source as messages and the summary show it: its password hidden.
    static std::string Shown(const std::string& source) { return Names(source) ? MaskedConnection(source) : source; }
    // Connects with the connection string after "odbc:"; false with the reason.
    bool Open(const std::string& source, std::string& error);
    // The server's platform code (0 for one the platform table does not number).
    int Platform() const;
    // "PostgreSQL 15.18 through psqlodbcw.so", for the summary.
    std::string Description() const;
    // Reads the catalog and hands its declarations to `importer` under `name`.
    bool Import(CDdlImporter& importer, const COdbcOptions& options, const std::string& name, std::string& error);
    // Catalog functions and queries run so far.
    int Calls() const;

private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
