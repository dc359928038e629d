// The script that takes a database from one model to another, for one
// platform: what changed, in an order where nothing a statement needs is
// missing and nothing it would break is still there. Foreign keys and code
// that depend on what changes go first, then indexes and constraints, then
// columns and tables; creation follows in the reverse order, foreign keys
// last. A comment stands above every statement that destroys data, and what
// the platform cannot do in place is written as a "-- manual step:" line.
//
// Objects are matched as the model comparison matches them (tables by owner
// and name, columns by name, indexes by name or by what they index, foreign
// keys by their parent and columns), so that importing the script of the
// old model followed by this one gives a model that compares equal to the
// new one, in what the script makes.
#pragma once

#include <string>
#include <vector>

#include <VrnReader.h>

#include "DdlWriter.h"

struct CMigrationScript {
    std::string text;
    std::vector<std::string> warnings;     // what the new model holds and the platform cannot, as WriteDdl says
    std::vector<std::string> manualSteps;  // each one also a "-- manual step:" line of the script
    int statements = 0;                    // statements written
};

// `options.platform`: -1 for `after`'s platform. The table pattern is not used.
CMigrationScript WriteMigration(const CModel& before, const CModel& after, const CDdlOptions& options);
