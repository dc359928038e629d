/// @file
/// COleDateTime: a calendar date and time as the host framework keeps it, a day
/// count from 30 December 1899 with the time of day as its fraction.
#pragma once

#include <string>

#include "framework/VrnExport.h"

/// A date and time, as the model's diagram row keeps when it was created and modified.
class VRN_EXPORT COleDateTime {
public:
    /// Whether a value holds a date: `valid`, `invalid` (made from fields out of range) or `null` (a status the host
    /// framework has; nothing in the library sets it).
    enum DateTimeStatus { valid = 0, invalid = 1, null = 2 };

    /// 30 December 1899, midnight (day count 0), valid.
    COleDateTime() = default;
    /// The given date and time. A month outside 1 to 12, a day outside 1 to 31, an hour outside 0 to 23, or a
    /// minute or second outside 0 to 59 makes an invalid value (day count 0). A day past the end of its month is not
    /// caught: 31 February counts on into March.
    COleDateTime(int year, int month, int day, int hour, int minute, int second);

    /// The current local date and time, to the second.
    static COleDateTime GetCurrentTime();

    /// The year of the day count, whatever the status.
    int GetYear() const;
    /// The month, 1 to 12.
    int GetMonth() const;
    /// The day of the month, 1 to 31.
    int GetDay() const;
    /// The hour, 0 to 23; a time of day is rounded to the second.
    int GetHour() const;
    /// The minute, 0 to 59.
    int GetMinute() const;
    /// The second, 0 to 59.
    int GetSecond() const;
    /// Whether the value holds a date (see DateTimeStatus).
    DateTimeStatus GetStatus() const { return m_status; }

    /// "YYYY-MM-DD HH:MM:SS"; empty when the value is not valid.
    std::string FormatIso() const;

    /// The days since 30 December 1899, with the time of day as the fraction.
    double m_dt = 0.0;
    /// The value's status; getters ignore it, FormatIso does not.
    DateTimeStatus m_status = valid;

private:
    struct Parts {
        int year, month, day, hour, minute, second;
    };
    Parts Split() const;
};
