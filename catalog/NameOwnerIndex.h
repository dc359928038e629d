// An index over a growing list of named, owned catalog rows (triggers,
// procedures, packages): by name, and by name and owner, both folded to upper
// case. Each key keeps the first row entered under it together with its place
// in the list, so that "the first match in list order" is answered without
// walking the list, also when two keys could match.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "framework/AfxString.h"

namespace vrn {

template <class Row>
class CNameOwnerIndex {
public:
    struct CHit {
        Row* row = nullptr;
        std::size_t order = 0;  // the row's place in its list
    };

    void Add(const char* name, const char* owner, Row* row) {
        const CHit hit{row, m_count++};
        m_byName.emplace(Fold(name), hit);
        m_byNameAndOwner.emplace(NameAndOwner(name, owner), hit);
    }
    CHit FindByName(const char* name) const { return Find(m_byName, Fold(name)); }
    CHit FindByNameAndOwner(const char* name, const char* owner) const {
        return Find(m_byNameAndOwner, NameAndOwner(name, owner));
    }

private:
    static std::string Fold(const char* text) {
        std::string folded(text ? text : "");
        for (char& ch : folded) ch = AfxToUpperAscii(ch);
        return folded;
    }
    // A NUL between the two parts: no name contains one, so no two pairs collide.
    static std::string NameAndOwner(const char* name, const char* owner) {
        return Fold(name) + std::string(1, '\0') + Fold(owner);
    }
    static CHit Find(const std::unordered_map<std::string, CHit>& map, const std::string& key) {
        const auto found = map.find(key);
        return found == map.end() ? CHit{} : found->second;
    }

    std::unordered_map<std::string, CHit> m_byName;
    std::unordered_map<std::string, CHit> m_byNameAndOwner;
    std::size_t m_count = 0;
};

}  // namespace vrn
