// What changed from one model to another, as a reader of a review wants it:
// text grouped by table (with the lines of changed code texts), JSON for
// tools, Markdown for review comments. Built on the reader's comparison.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <VrnReader.h>

struct CDiffSides {
    std::string oldName, newName;  // as the command line named them
};

void WriteDiffText(const CDiffSides& sides, const std::vector<CModelChange>& changes, std::ostream& out);
void WriteDiffJson(const CDiffSides& sides, const std::vector<CModelChange>& changes, std::ostream& out);
void WriteDiffMarkdown(const CDiffSides& sides, const std::vector<CModelChange>& changes, std::ostream& out);

// The lines of `before` and `after` as a line diff: common lines with " ",
// lines only in `before` with "-", only in `after` with "+".
std::vector<std::string> LineDiff(const std::string& before, const std::string& after);
