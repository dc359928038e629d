// CGuidMgr: the model's object types, names such as "Attribute" or "Entity"
// with a number each. Every row table is an object type numbered by its row
// type; a name asked for that is not known yet is registered with the next
// free number from the first-added-type number given to Init.
#pragma once

#include <string>
#include <unordered_map>

#include "framework/VrnExport.h"
#include "framework/AfxString.h"

class CVrnFile;
class CGlobalIdMaps;

class VRN_EXPORT CGuidMgr {
public:
    CGuidMgr(CVrnFile* file, int reserved) : m_pFile(file) { (void)reserved; }
    virtual ~CGuidMgr() = default;
    CGuidMgr(const CGuidMgr&) = delete;
    CGuidMgr& operator=(const CGuidMgr&) = delete;

    // `typeCount` sizes the manager (0 for an opened file); `firstAddedType` is
    // the number of the first type registered beyond the row tables. An opened
    // file's types are read and continued. Returns 1.
    int Init(unsigned typeCount, unsigned long firstAddedType);
    // The number of the object type `name` (exact spelling); registers the name
    // when it is new. 0 only for an empty name.
    int GetObjectTypeId(CString& name);
    // Writes the object types into the file's ObjectType table.
    void Save(CVrnFile* file, CGlobalIdMaps* idMaps, int reserved1, int reserved2);

    unsigned GetInitTypeCount() const { return m_initTypeCount; }
    unsigned long GetInitFirstAddedType() const { return m_initFirstAddedType; }

private:
    CVrnFile* m_pFile;
    std::unordered_map<std::string, int> m_types;
    unsigned m_initTypeCount = 0;
    unsigned long m_initFirstAddedType = 0;
    unsigned long m_nextType = 0;
};
