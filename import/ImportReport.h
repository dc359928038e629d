// What an import did: objects by kind, statements skipped by kind, warnings
// and the messages of relationship resolution.
#pragma once

#include <map>
#include <string>
#include <vector>

struct CImportReport {
    std::map<std::string, int> imported;  // e.g. "tables" -> 12
    std::map<std::string, int> skipped;   // statement kind -> count
    std::map<std::string, std::vector<std::string>> skippedAt;  // statement kind -> "file:line" places
    std::vector<std::string> warnings;
    std::vector<std::string> messages;    // relationship resolution
    // Every statement read is either applied or skipped (and counted by kind).
    int statements = 0;
    int applied = 0;

    void Count(const std::string& kind, int n = 1) { imported[kind] += n; }
    void Skip(const std::string& kind, const std::string& where) {
        ++skipped[kind];
        skippedAt[kind].push_back(where);
    }
    int SkippedTotal() const {
        int total = 0;
        for (const auto& entry : skipped) total += entry.second;
        return total;
    }
    int ImportedTotal() const {
        int total = 0;
        for (const auto& entry : imported) total += entry.second;
        return total;
    }
};
