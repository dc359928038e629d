// Where the client's results go: a file replaced whole or left as it was, or
// standard output; and the check that no output lands on one of its inputs.
#pragma once

#include <string>
#include <vector>

// The name that stands for standard output in -o.
constexpr const char* kStandardOutput = "-";

// False, with a one-line reason, when `output` is the same file as one of
// `inputs` (same device and inode, so links and other spellings count). An
// output that does not exist yet is nobody's input.
bool CheckOutputIsNoInput(const std::string& output, const std::vector<std::string>& inputs, std::string& error);

// Writes `bytes` to `path`, or to standard output for "-". A file is written
// beside the target under a temporary name and renamed over it once complete,
// so a failed write leaves the target as it was. False with the reason.
bool WriteOutput(const std::string& path, const std::string& bytes, std::string& error);
