// COleDateTime: a calendar date and time as the host framework keeps it, a day
// count from 30 December 1899 with the time of day as its fraction.
#pragma once

#include <string>

#include "framework/VrnExport.h"

class VRN_EXPORT COleDateTime {
public:
    enum DateTimeStatus { valid = 0, invalid = 1, null = 2 };

    COleDateTime() = default;
    COleDateTime(int year, int month, int day, int hour, int minute, int second);

    // The current local date and time, to the second.
    static COleDateTime GetCurrentTime();

    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    DateTimeStatus GetStatus() const { return m_status; }

    // "YYYY-MM-DD HH:MM:SS"; empty when the value is not valid.
    std::string FormatIso() const;

    double m_dt = 0.0;
    DateTimeStatus m_status = valid;

private:
    struct Parts {
        int year, month, day, hour, minute, second;
    };
    Parts Split() const;
};
