// The live-database source of a vrnmodel built where unixODBC was not found:
// every such source is refused with the reason.
#include "OdbcSource.h"

struct COdbcSource::CState {};

COdbcSource::COdbcSource() = default;
COdbcSource::~COdbcSource() = default;

bool COdbcSource::Open(const std::string&, std::string& error) {
    error = "this vrnmodel was built without ODBC (the unixODBC development files were not found): "
            "it cannot read a live database";
    return false;
}

int COdbcSource::Platform() const { return 0; }
std::string COdbcSource::Description() const { return std::string(); }
int COdbcSource::Calls() const { return 0; }

bool COdbcSource::Import(CDdlImporter&, const COdbcOptions&, const std::string&, std::string& error) {
    error = "this vrnmodel was built without ODBC";
    return false;
}
