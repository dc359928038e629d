/// @file
/// The host framework's ordered lists and the maps the library uses internally.
///
/// CList is a doubly linked list whose nodes never move: a POSITION names one
/// node and stays valid until that node is removed, which is what lets an
/// entity or attribute remember where it sits in the list that holds it.
/// The lists never own what their pointers point to; the containers that do
/// own rows say so where they are declared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "framework/VrnExport.h"
#include "framework/AfxString.h"

/// The base of a list's nodes; only POSITION is used.
struct __POSITION {};
/// Names one node of a list, as the list's calls hand it out; null names no node (before the head, after the
/// tail, or not found).
using POSITION = __POSITION*;

/// A doubly linked list of `TYPE` values, taking them as `ARG_TYPE` (see the file comment). Calls that take a
/// POSITION require one of this list's nodes unless they say what null does.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CList {
    struct CNode : __POSITION {
        CNode* pNext;
        CNode* pPrev;
        TYPE data;
        CNode(CNode* prev, CNode* next, ARG_TYPE value) : pNext(next), pPrev(prev), data(value) {}
    };

public:
    /// The block size of the host framework only tuned its allocator; nodes are
    /// allocated one by one here, so it is accepted and ignored.
    explicit CList(int blockSize = 10) { (void)blockSize; }
    /// Frees the nodes; the values' destructors run, but what pointer values point to stays.
    ~CList() { RemoveAll(); }
    CList(const CList&) = delete;
    CList& operator=(const CList&) = delete;

    /// The number of elements.
    int GetCount() const { return m_count; }
    /// The number of elements, as GetCount.
    int GetSize() const { return m_count; }
    /// True when the list has no element.
    bool IsEmpty() const { return m_count == 0; }

    /// The first element. REQUIRES: the list is not empty.
    TYPE& GetHead() { return m_pHead->data; }
    /// The first element, read-only. REQUIRES: the list is not empty.
    const TYPE& GetHead() const { return m_pHead->data; }
    /// The last element. REQUIRES: the list is not empty.
    TYPE& GetTail() { return m_pTail->data; }
    /// The last element, read-only. REQUIRES: the list is not empty.
    const TYPE& GetTail() const { return m_pTail->data; }

    /// Inserts `value` before the first element; returns its position.
    POSITION AddHead(ARG_TYPE value) {
        CNode* node = new CNode(nullptr, m_pHead, value);
        (m_pHead ? m_pHead->pPrev : m_pTail) = node;
        m_pHead = node;
        ++m_count;
        return node;
    }
    /// Appends `value` after the last element; returns its position.
    POSITION AddTail(ARG_TYPE value) {
        CNode* node = new CNode(m_pTail, nullptr, value);
        (m_pTail ? m_pTail->pNext : m_pHead) = node;
        m_pTail = node;
        ++m_count;
        return node;
    }
    /// Inserts `value` before the element at `position` (at the head when `position` is null); returns its
    /// position.
    POSITION InsertBefore(POSITION position, ARG_TYPE value) {
        CNode* at = Node(position);
        if (!at || at == m_pHead) return AddHead(value);
        CNode* node = new CNode(at->pPrev, at, value);
        at->pPrev->pNext = node;
        at->pPrev = node;
        ++m_count;
        return node;
    }
    /// Inserts `value` after the element at `position` (at the tail when `position` is null); returns its
    /// position.
    POSITION InsertAfter(POSITION position, ARG_TYPE value) {
        CNode* at = Node(position);
        if (!at || at == m_pTail) return AddTail(value);
        CNode* node = new CNode(at, at->pNext, value);
        at->pNext->pPrev = node;
        at->pNext = node;
        ++m_count;
        return node;
    }

    /// Removes the first element and returns it. Removing from an empty list gives a default value
    /// (null for pointers) instead of faulting.
    TYPE RemoveHead() {
        if (!m_pHead) return TYPE();
        TYPE value = m_pHead->data;
        RemoveAt(m_pHead);
        return value;
    }
    /// Removes the last element and returns it; a default value when the list is empty.
    TYPE RemoveTail() {
        if (!m_pTail) return TYPE();
        TYPE value = m_pTail->data;
        RemoveAt(m_pTail);
        return value;
    }
    /// Removes the element at `position`, which then names nothing; a null position removes nothing.
    void RemoveAt(POSITION position) {
        CNode* node = Node(position);
        if (!node) return;
        (node->pPrev ? node->pPrev->pNext : m_pHead) = node->pNext;
        (node->pNext ? node->pNext->pPrev : m_pTail) = node->pPrev;
        delete node;
        --m_count;
    }
    /// Removes every element; pointer values are not deleted.
    void RemoveAll() {
        while (m_pHead) {
            CNode* next = m_pHead->pNext;
            delete m_pHead;
            m_pHead = next;
        }
        m_pTail = nullptr;
        m_count = 0;
    }

    /// The position of the first element; null when the list is empty.
    POSITION GetHeadPosition() const { return m_pHead; }
    /// The position of the last element; null when the list is empty.
    POSITION GetTailPosition() const { return m_pTail; }
    /// Returns the element at `position` and moves `position` to the next one
    /// (null after the tail). REQUIRES: `position` is not null.
    TYPE& GetNext(POSITION& position) {
        CNode* node = Node(position);
        position = node->pNext;
        return node->data;
    }
    /// GetNext of a const list: the element is read-only.
    const TYPE& GetNext(POSITION& position) const {
        CNode* node = Node(position);
        position = node->pNext;
        return node->data;
    }
    /// Returns the element at `position` and moves `position` to the previous one (null before the head).
    /// REQUIRES: `position` is not null.
    TYPE& GetPrev(POSITION& position) {
        CNode* node = Node(position);
        position = node->pPrev;
        return node->data;
    }
    /// The element at `position`. REQUIRES: `position` is not null.
    TYPE& GetAt(POSITION position) { return Node(position)->data; }
    /// The element at `position`, read-only. REQUIRES: `position` is not null.
    const TYPE& GetAt(POSITION position) const { return Node(position)->data; }
    /// Replaces the element at `position` with `value`. REQUIRES: `position` is not null.
    void SetAt(POSITION position, ARG_TYPE value) { Node(position)->data = value; }

    /// The position of the first element equal to `value` (by ==) after `startAfter`, or from the head when
    /// `startAfter` is null; null when there is none.
    POSITION Find(ARG_TYPE value, POSITION startAfter = nullptr) const {
        CNode* node = startAfter ? Node(startAfter)->pNext : m_pHead;
        for (; node; node = node->pNext)
            if (node->data == value) return node;
        return nullptr;
    }
    /// The position of the element at `index`, counting from 0 at the head; null for an index outside the list.
    POSITION FindIndex(int index) const {
        if (index < 0 || index >= m_count) return nullptr;
        CNode* node = m_pHead;
        while (index-- > 0) node = node->pNext;
        return node;
    }

private:
    static CNode* Node(POSITION position) { return static_cast<CNode*>(position); }

    CNode* m_pHead = nullptr;
    CNode* m_pTail = nullptr;
    int m_count = 0;
};

/// A list of untyped pointers, the base that CTypedPtrList names as its host framework does.
using CPtrList = CList<void*, void*>;

/// For lists that own their elements: deletes every element, from the head,
/// and leaves the list empty.
template <class TYPE>
void DeleteAllFromHead(CList<TYPE*, TYPE*>& list) {
    while (!list.IsEmpty()) delete list.RemoveHead();
}

/// A list of texts, each a CString copy of the const char* it was given (null gives "").
class VRN_EXPORT CStringList : public CList<CString, const char*> {
public:
    /// An empty list; `blockSize` is ignored, as by CList.
    explicit CStringList(int blockSize = 10) : CList<CString, const char*>(blockSize) {}
};

/// A list of pointers of one type, as the host framework types its pointer lists.
template <class BASE_CLASS, class TYPE>
class CTypedPtrList : public CList<TYPE, TYPE> {
public:
    /// An empty list; `blockSize` is ignored, as by CList.
    explicit CTypedPtrList(int blockSize = 10) : CList<TYPE, TYPE>(blockSize) {}
};

/// Identifier-keyed lookup. Adding under a key that is present replaces the
/// stored pointer. Maps are only ever used for lookup, never iterated, so the
/// hash order is invisible.
template <class TYPE>
class CMapIdToPtr {
public:
    CMapIdToPtr() = default;
    CMapIdToPtr(const CMapIdToPtr&) = delete;
    CMapIdToPtr& operator=(const CMapIdToPtr&) = delete;

    /// Enters `value` under `key`, replacing what was there; the map does not own `value`.
    void SetAt(std::uint32_t key, TYPE* value) { m_map[key] = value; }
    /// True when `key` is present; `value` is set to what it maps to, or to null when absent.
    bool Lookup(std::uint32_t key, TYPE*& value) const {
        const auto found = m_map.find(key);
        value = found == m_map.end() ? nullptr : found->second;
        return found != m_map.end();
    }
    /// Clients hand identifiers over as unsigned long: one beyond 32 bits
    /// names nothing here.
    TYPE* Find(std::uint64_t key) const {
        TYPE* value = nullptr;
        if (key <= UINT32_MAX) Lookup(static_cast<std::uint32_t>(key), value);
        return value;
    }
    /// Removes `key`; true when it was present.
    bool RemoveKey(std::uint64_t key) { return key <= UINT32_MAX && m_map.erase(static_cast<std::uint32_t>(key)) != 0; }
    /// Removes every entry; nothing pointed to is deleted.
    void RemoveAll() { m_map.clear(); }
    /// The number of entries.
    int GetCount() const { return static_cast<int>(m_map.size()); }

private:
    std::unordered_map<std::uint32_t, TYPE*> m_map;
};

/// Text-keyed lookup, case-sensitive; callers that want case-insensitive lookup
/// upper-case the key before insertion and lookup.
template <class TYPE>
class CMapStringToPtr {
public:
    CMapStringToPtr() = default;
    CMapStringToPtr(const CMapStringToPtr&) = delete;
    CMapStringToPtr& operator=(const CMapStringToPtr&) = delete;

    /// Enters `value` under `key` (null counts as ""), replacing what was there; the map does not own `value`.
    void SetAt(const char* key, TYPE* value) { m_map[key ? key : ""] = value; }
    /// True when `key` is present; `value` is set to what it maps to, or to null when absent.
    bool Lookup(const char* key, TYPE*& value) const {
        const auto found = m_map.find(key ? key : "");
        value = found == m_map.end() ? nullptr : found->second;
        return found != m_map.end();
    }
    /// What `key` maps to; null when absent.
    TYPE* Find(const char* key) const {
        TYPE* value = nullptr;
        Lookup(key, value);
        return value;
    }
    /// Removes `key`; true when it was present.
    bool RemoveKey(const char* key) { return m_map.erase(key ? key : "") != 0; }
    /// Removes every entry; nothing pointed to is deleted.
    void RemoveAll() { m_map.clear(); }
    /// The number of entries.
    int GetCount() const { return static_cast<int>(m_map.size()); }

private:
    std::unordered_map<std::string, TYPE*> m_map;
};

/// An index by name, folded to upper case (ASCII letters only), over a list
/// that only grows: the first object entered under a name stays the one found,
/// so a lookup answers "the first match in list order" without walking the
/// list.
template <class TYPE>
class CFirstMatchNameIndex {
public:
    CFirstMatchNameIndex() = default;
    CFirstMatchNameIndex(const CFirstMatchNameIndex&) = delete;
    CFirstMatchNameIndex& operator=(const CFirstMatchNameIndex&) = delete;

    /// Enters `value` under `name` unless an earlier object holds that name.
    void AddIfAbsent(const char* name, TYPE* value) { m_map.emplace(Fold(name), value); }
    /// The object first entered under `name`, compared without regard to ASCII case; null when none.
    TYPE* Find(const char* name) const {
        const auto found = m_map.find(Fold(name));
        return found == m_map.end() ? nullptr : found->second;
    }

private:
    static std::string Fold(const char* name) {
        std::string folded(name ? name : "");
        for (char& ch : folded) ch = AfxToUpperAscii(ch);
        return folded;
    }

    std::unordered_map<std::string, TYPE*> m_map;
};
