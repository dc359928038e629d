/// @file
/// Framework objects with runtime class records.
///
/// Every class that declares itself dynamically creatable gets one static
/// CRuntimeClass record; the records register themselves by name at load time,
/// so a host can make an object knowing only its class name
/// (CRuntimeClass::FromName("CVrnAPI")->CreateObject()).
#pragma once

#include "framework/VrnExport.h"

struct CRuntimeClass;
class CObject;

/// The runtime class record of a class: its name, how to make one, and its base class's record. Records are static and
/// never freed.
struct VRN_EXPORT CRuntimeClass {
    /// The class name, as FromName looks it up.
    const char* m_lpszClassName;
    /// Makes a new object of the class with `new`; null when the class cannot be created by name.
    CObject* (*m_pfnCreateObject)();
    /// The base class's record; null for CObject.
    const CRuntimeClass* m_pBaseClass;

    /// Null when the class cannot be created by name.
    CObject* CreateObject() const { return m_pfnCreateObject ? m_pfnCreateObject() : nullptr; }
    /// True when this record is `base` or one of its derived classes' records, following the base records.
    bool IsDerivedFrom(const CRuntimeClass* base) const;

    /// The registered class of that name, or null.
    static const CRuntimeClass* FromName(const char* className);
};

/// Enters a record in the by-name registry; used by the IMPLEMENT macros.
struct AFX_CLASSINIT {
    /// Enters `record` in the registry under its class name, replacing an earlier record of that name.
    explicit AFX_CLASSINIT(const CRuntimeClass* record);
};

/// The root of the framework's classes: an object that can tell its runtime class.
class VRN_EXPORT CObject {
public:
    virtual ~CObject() = default;
    /// The record of the object's most derived class that declares one (DECLARE_DYNAMIC, DECLARE_DYNCREATE).
    virtual const CRuntimeClass* GetRuntimeClass() const;
    /// True when the object's class is that of `record` or derives from it.
    bool IsKindOf(const CRuntimeClass* record) const;

    /// The record of CObject, the root of every chain of base records.
    static const CRuntimeClass classCObject;

protected:
    CObject() = default;
};

/// The host's message maps: a command target without commands has an empty one.
struct AFX_MSGMAP {
    /// The base class's map; null for the root.
    const AFX_MSGMAP* pBaseMap;
    /// The number of entries; always 0 in the library.
    int nEntries;
};

/// A framework object that could receive commands; the library's command targets have none. CVrnAPI derives from it.
class VRN_EXPORT CCmdTarget : public CObject {
public:
    /// The record of CCmdTarget, unless a derived class declares its own.
    const CRuntimeClass* GetRuntimeClass() const override;
    /// The record of CCmdTarget, whose base record is CObject's.
    static const CRuntimeClass classCCmdTarget;

protected:
    CCmdTarget() = default;
    /// The message map: an empty one, shared by every object.
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

/// The runtime class record of `class_name`, a `const CRuntimeClass*`; the class must declare one.
#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

/// In a class body: declares the class's record `class<name>` and its GetRuntimeClass override. Leaves the
/// class body in its public section.
#define DECLARE_DYNAMIC(class_name)                         \
public:                                                     \
    static const CRuntimeClass class##class_name;           \
    const CRuntimeClass* GetRuntimeClass() const override;

/// In a class body: DECLARE_DYNAMIC, and a static CreateObject that makes a new object of the class with
/// `new` (the caller owns it). The class needs a default constructor.
#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* CreateObject();

/// In one source file: defines the record and GetRuntimeClass declared by DECLARE_DYNAMIC, with
/// `base_class_name`'s record as the base. The record is not registered by name.
#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                               \
    const CRuntimeClass class_name::class##class_name = {#class_name, nullptr,                       \
                                                          RUNTIME_CLASS(base_class_name)};           \
    const CRuntimeClass* class_name::GetRuntimeClass() const { return RUNTIME_CLASS(class_name); }

/// In one source file: defines what DECLARE_DYNCREATE declares, and registers the record at load time so
/// that CRuntimeClass::FromName finds it.
#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                             \
    CObject* class_name::CreateObject() { return new class_name; }                                   \
    const CRuntimeClass class_name::class##class_name = {#class_name, &class_name::CreateObject,     \
                                                          RUNTIME_CLASS(base_class_name)};           \
    static const AFX_CLASSINIT _init_##class_name(RUNTIME_CLASS(class_name));                        \
    const CRuntimeClass* class_name::GetRuntimeClass() const { return RUNTIME_CLASS(class_name); }
