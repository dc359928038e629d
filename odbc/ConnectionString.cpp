#include "ConnectionString.h"

#include <cctype>

namespace {

// Where a part of the string starts with `key` ("PWD="), in any letter case.
std::size_t FindKey(const std::string& connection, const std::string& key) {
    for (std::size_t start = 0; start < connection.size();) {
        std::size_t at = start;
        while (at < connection.size() && connection[at] == ' ') ++at;
        bool same = connection.size() - at >= key.size();
        for (std::size_t i = 0; same && i < key.size(); ++i)
            same = std::toupper(static_cast<unsigned char>(connection[at + i])) == key[i];
        if (same) return at;
        const std::size_t semicolon = connection.find(';', start);
        if (semicolon == std::string::npos) break;
        start = semicolon + 1;
    }
    return std::string::npos;
}

}  // namespace

bool HasPassword(const std::string& connection) {
    return FindKey(connection, "PWD=") != std::string::npos || FindKey(connection, "PASSWORD=") != std::string::npos;
}

std::string WithValue(const std::string& connection, const std::string& key, const std::string& value) {
    std::string spelled = value;
    // In braces when it holds a character of the string's own syntax, a closing brace doubled.
    if (value.find_first_of(";{}= ") != std::string::npos) {
        spelled = "{";
        for (char ch : value) spelled += ch == '}' ? std::string("}}") : std::string(1, ch);
        spelled += "}";
    }
    return connection + (connection.empty() || connection.back() == ';' ? "" : ";") + key + "=" + spelled;
}

std::string MaskedConnection(const std::string& connection) {
    std::string masked = connection;
    for (const char* key : {"PWD=", "PASSWORD="}) {
        const std::size_t at = FindKey(masked, key);
        if (at == std::string::npos) continue;
        const std::size_t from = at + std::string(key).size();
        std::size_t end = masked.find(';', from);
        if (from < masked.size() && masked[from] == '{') {
            // A braced value runs to its closing brace; a doubled one is part of it.
            end = from + 1;
            while (end < masked.size() && !(masked[end] == '}' && (end + 1 >= masked.size() || masked[end + 1] != '}')))
                end += masked[end] == '}' ? 2 : 1;
            if (end < masked.size()) ++end;
        }
        masked.replace(from, (end == std::string::npos ? masked.size() : end) - from, "***");
    }
    return masked;
}
