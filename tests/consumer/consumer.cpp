// The smallest client: make a builder, describe a table, save it.
// Exits nonzero when the model file was not written.
#include <VrnIntf.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    CVrnAPI builder;
    if (!builder.Initialize(34, nullptr)) return 1;
    const unsigned long item = builder.AddEntity("ITEM", "SALES", 0, 0);
    if (!builder.AddAttribute(item, "QTY", "NUMBER", -1, -1, 0, 0)) return 1;
    builder.SaveToFile(argv[1]);
    const char* error = builder.GetVrnFile()->GetLastError();
    if (*error) std::fprintf(stderr, "%s\n", error);
    return *error ? 1 : 0;
}
