// The property catalogue: the physical and catalog options that the property
// manager stores, as property numbers, and the answers to them, as value
// numbers with a text each. The builder turns its clients' property codes into
// these numbers; the manager accepts only numbers that stand here.
#pragma once

namespace vrn {

struct CPropertyInfo {
    int propertyNo;
    const char* name;
};

struct CPropertyValueInfo {
    int valueNo;
    int propertyNo;  // the property this value usually answers
    const char* text;
};

extern const CPropertyInfo kProperties[];
extern const int kPropertyCount;
extern const CPropertyValueInfo kPropertyValues[];
extern const int kPropertyValueCount;

// Null when the number is not in the catalogue.
const CPropertyInfo* FindProperty(int propertyNo);
const CPropertyValueInfo* FindPropertyValue(int valueNo);

}  // namespace vrn
