// Framework objects with runtime class records.
//
// Every class that declares itself dynamically creatable gets one static
// CRuntimeClass record; the records register themselves by name at load time,
// so a host can make an object knowing only its class name
// (CRuntimeClass::FromName("CVrnAPI")->CreateObject()).
#pragma once

#include "framework/VrnExport.h"

struct CRuntimeClass;
class CObject;

struct VRN_EXPORT CRuntimeClass {
    const char* m_lpszClassName;
    CObject* (*m_pfnCreateObject)();
    const CRuntimeClass* m_pBaseClass;

    // Null when the class cannot be created by name.
    CObject* CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }
    bool IsDerivedFrom(const CRuntimeClass* base) const;

    // The registered class of that name, or null.
    static const CRuntimeClass* FromName(const char* className);
};

// Enters a record in the by-name registry; used by the IMPLEMENT macros.
struct AFX_CLASSINIT {
    explicit AFX_CLASSINIT(const CRuntimeClass* record);
};

class VRN_EXPORT CObject {
public:
    virtual ~CObject() = default;
    virtual const CRuntimeClass* GetRuntimeClass() const;
    bool IsKindOf(const CRuntimeClass* record) const;

    static const CRuntimeClass classCObject;

protected:
    CObject() = default;
};

// The host's message maps: a command target without commands has an empty one.
struct AFX_MSGMAP {
    const AFX_MSGMAP* pBaseMap;
    int nEntries;
};

class VRN_EXPORT CCmdTarget : public CObject {
public:
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass classCCmdTarget;

protected:
    CCmdTarget() = default;
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

#define DECLARE_DYNAMIC(class_name)                         \
public:                                                     \
    static const CRuntimeClass class##class_name;           \
    const CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* CreateObject();

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                               \
    const CRuntimeClass class_name::class##class_name = {#class_name, nullptr,                       \
                                                          RUNTIME_CLASS(base_class_name)};           \
    const CRuntimeClass* class_name::GetRuntimeClass() const { return RUNTIME_CLASS(class_name); }

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                             \
    CObject* class_name::CreateObject() { return new class_name; }                                   \
    const CRuntimeClass class_name::class##class_name = {#class_name, &class_name::CreateObject,     \
                                                          RUNTIME_CLASS(base_class_name)};           \
    static const AFX_CLASSINIT _init_##class_name(RUNTIME_CLASS(class_name));                        \
    const CRuntimeClass* class_name::GetRuntimeClass() const { return RUNTIME_CLASS(class_name); }
