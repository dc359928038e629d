// A model written back as a DDL script for one platform, from the model
// reader's structures: the script that creates what the model describes, in
// an order where everything a statement names exists before it (foreign
// keys last, as ALTER TABLE, so that cycles never matter). What the target
// platform cannot express is left out with a comment line in the script and
// a warning; nothing is dropped silently.
#pragma once

#include <string>
#include <vector>

#include <VrnReader.h>

struct CDdlOptions {
    int platform = -1;         // the platform to write for; -1 for the model's own
    std::string tablePattern;  // shell pattern on table names (any letter case); empty for all
    bool storage = true;       // storage objects, storage spaces and partitions
    bool code = true;          // triggers, procedures and packages
};

struct CDdlScript {
    std::string text;
    std::vector<std::string> warnings;  // one per kind of thing left out, with how many
    int tables = 0;                     // tables written
};

CDdlScript WriteDdl(const CModel& model, const CDdlOptions& options);
