// Value types of the model file's rows.
#pragma once

#include <cstdint>

#include "framework/VrnExport.h"
#include "framework/AfxString.h"
#include "framework/OleDateTime.h"

// A name-space string: a number in the model's name space and its text. The
// builder always fills number 0 and the text; the row's output enters the text
// into the name space and stores the text in the row.
class VRN_EXPORT CVrnString {
public:
    CVrnString() = default;
    CVrnString(std::int32_t id, const char* text) : m_id(id), m_text(text) {}

    void Set(std::int32_t id, const char* text) {
        m_id = id;
        m_text = text;
    }

    std::int32_t m_id = 0;
    CString m_text;
};

// A date-time field: a leading word the store reserves (always 0 here) and the
// calendar value, copied member-wise.
class VRN_EXPORT CVrnDateTime {
public:
    CVrnDateTime() = default;
    explicit CVrnDateTime(const COleDateTime& value) : m_dt(value) {}

    std::int32_t m_reserved = 0;
    COleDateTime m_dt;
};
