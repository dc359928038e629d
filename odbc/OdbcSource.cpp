#include "OdbcSource.h"

#include "DdlImporter.h"
#include "OdbcCatalog.h"
#include "OdbcConnection.h"

struct COdbcSource::CState {
    COdbcConnection connection;
    COdbcServer server;
};

COdbcSource::COdbcSource() : m_state(new CState) {}
COdbcSource::~COdbcSource() = default;

bool COdbcSource::Open(const std::string& source, std::string& error) {
    if (!m_state->connection.Connect(source.substr(5))) {
        error = m_state->connection.Error();
        return false;
    }
    m_state->server = DescribeServer(m_state->connection);
    return true;
}

int COdbcSource::Platform() const { return m_state->server.platform; }

std::string COdbcSource::Description() const {
    const COdbcServer& server = m_state->server;
    return server.name + " " + server.version + " through " + server.driver;
}

int COdbcSource::Calls() const { return m_state->connection.Calls(); }

bool COdbcSource::Import(CDdlImporter& importer, const COdbcOptions& options, const std::string& name,
                         std::string& error) {
    COdbcCatalog catalog;
    if (!ReadOdbcCatalog(m_state->connection, m_state->server, options, catalog, error)) return false;
    for (const std::string& warning : catalog.warnings) importer.Note(name + ": " + warning);
    for (CStatementDecl& statement : catalog.statements) importer.Apply(std::move(statement), name);
    return true;
}
