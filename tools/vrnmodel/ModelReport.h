// A readable report of a model file, as text or as one JSON document, read
// straight from the file with SQLite.
#pragma once

#include <ostream>
#include <string>

// False (with a reason) when the file is not a model file that can be read.
bool WriteModelReport(const std::string& path, bool json, std::ostream& out, std::string& error);
