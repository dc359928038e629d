// ODBC connection strings ("DSN=x;UID=u;PWD=p"): finding a key, adding a
// password, and the form that messages and summaries show, with any
// password hidden.
#pragma once

#include <string>

// Whether the string gives a password (PWD= or PASSWORD=, in any letter case).
bool HasPassword(const std::string& connection);
// The string with `key=value` added; the value braced when it needs to be.
std::string WithValue(const std::string& connection, const std::string& key, const std::string& value);
// The string with every password replaced by "***".
std::string MaskedConnection(const std::string& connection);
