// Target database platforms and the model's datatype vocabulary, as data.
#pragma once

struct CPlatformInfo {
    int code;                 // the platform code a client passes to Initialize
    const char* name;         // "" for the unused codes 49 to 53
    bool nullableByDefault;   // new attributes admit nulls unless told otherwise
    bool isOracle;            // "TEXT" keeps its own code ("TX") instead of "DTX"
};

// One entry per code 0 to 54, index = code.
extern const CPlatformInfo kPlatforms[];
extern const int kPlatformCount;

// Codes outside the table are accepted and behave like an ordinary platform:
// nullable by default, not Oracle.
bool PlatformIsNullableByDefault(int code);
bool PlatformIsOracle(int code);

struct CDatatypeName {
    const char* name;  // a client's bare datatype name, compared without regard to case
    int codeIndex;     // index into kDatatypeCodes
};

extern const char* const kDatatypeCodes[];
extern const int kDatatypeCodeCount;
// Searched in order; the first equal name wins.
extern const CDatatypeName kDatatypeNames[];
extern const int kDatatypeNameCount;

// The datatype code of a bare datatype name on `platform`, or null.
const char* TranslateDatatypeName(const char* name, int platform);
