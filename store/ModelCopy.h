// Copying the model's database into the temporary file of an atomic save,
// page by page, without holding a copy of it in memory.
#pragma once

#include <string>

struct sqlite3;

namespace vrn {

class CTemporaryFile;

// Copies the committed "main" database of `source` into the empty `file`
// with SQLite's backup, through a small VFS whose only file is `file`: the
// pages go through the store's file-system interface like any other saved
// byte. True when the copy is complete; else false with *why (the file
// system's reason when it refused a write, else SQLite's).
bool CopyDatabase(sqlite3* source, CTemporaryFile& file, std::string* why);

}  // namespace vrn
