// CDbObjectBase: the base of every row of the model file.
//
// A row class lists its persisted fields, in row order, to a CRowFieldVisitor;
// the same listing creates the table (column names and types) and writes each
// record, so the two can never disagree.
#pragma once

#include <cstdint>
#include <functional>
#include <tuple>
#include <typeinfo>

#include "framework/VrnExport.h"
#include "store/VrnTypes.h"

class VRN_EXPORT CRowFieldVisitor {
public:
    virtual ~CRowFieldVisitor() = default;
    virtual void Int(const char* column, std::int64_t value) = 0;
    virtual void Text(const char* column, const CString& text) = 0;
    // A name-space string: the text is stored in the row and entered into the name space.
    virtual void NameSpaceText(const char* column, const CVrnString& value) = 0;
    virtual void DateTime(const char* column, const CVrnDateTime& value) = 0;
};

class VRN_EXPORT CDbObjectBase {
public:
    CDbObjectBase() = default;
    CDbObjectBase(const CDbObjectBase&) = default;
    CDbObjectBase& operator=(const CDbObjectBase&) = default;
    virtual ~CDbObjectBase() = default;

    virtual unsigned int Hash() const { return 0; }
    virtual int MatchKey(const CDbObjectBase* other) const { return other == this; }
    virtual void Copy(const CDbObjectBase* other) { (void)other; }
    virtual int Compare(const CDbObjectBase* other) { return other == this ? 0 : 1; }
    virtual unsigned long GetTechKey() { return 0; }
    virtual void SetTechKey(unsigned long key) { (void)key; }
    virtual int HasTechKey() { return 0; }

    // Belongs to the row's owner: the builder keeps here the row's position in
    // the list that holds it. Never stored in the file, never copied by Copy.
    void* m_pOwnerData = nullptr;
};

// The key-based operations of a row class, written once. `Derived` supplies
// RowKey(), a tuple of the fields that identify a row in its table.
template <class Derived>
class CRowBaseT : public CDbObjectBase {
public:
    unsigned int Hash() const override {
        std::size_t seed = 0;
        std::apply([&seed](auto... part) { ((seed = seed * 31 + std::hash<decltype(part)>()(part)), ...); },
                   Self().RowKey());
        return static_cast<unsigned int>(seed);
    }
    int MatchKey(const CDbObjectBase* other) const override {
        const Derived* row = dynamic_cast<const Derived*>(other);
        return row && row->RowKey() == Self().RowKey();
    }
    // Copies the other row's fields; the owner's list position stays this row's own.
    void Copy(const CDbObjectBase* other) override {
        const Derived* row = dynamic_cast<const Derived*>(other);
        if (!row || row == this) return;
        void* const ownerData = m_pOwnerData;
        static_cast<Derived&>(*this) = *row;
        m_pOwnerData = ownerData;
    }
    int Compare(const CDbObjectBase* other) override {
        const Derived* row = dynamic_cast<const Derived*>(other);
        if (!row) return 1;
        const auto mine = Self().RowKey();
        const auto theirs = row->RowKey();
        return mine < theirs ? -1 : (theirs < mine ? 1 : 0);
    }

private:
    const Derived& Self() const { return static_cast<const Derived&>(*this); }
};

// Rows with a technical key map it onto one of their fields.
#define VRN_TECH_KEY(field)                                                        \
    unsigned long GetTechKey() override { return field; }                          \
    void SetTechKey(unsigned long key) override { field = static_cast<std::uint32_t>(key); } \
    int HasTechKey() override { return field != 0; }
