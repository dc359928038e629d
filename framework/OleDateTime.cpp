#include "framework/OleDateTime.h"

#include <cmath>
#include <cstdio>
#include <ctime>

namespace {

// Days from 1970-01-01 to the civil date (proleptic Gregorian), after
// Howard Hinnant's days_from_civil.
long DaysFromCivil(int y, int m, int d) {
    y -= m <= 2;
    const long era = (y >= 0 ? y : y - 399) / 400;
    const long yoe = y - era * 400;
    const long doy = (153L * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void CivilFromDays(long z, int& y, int& m, int& d) {
    z += 719468;
    const long era = (z >= 0 ? z : z - 146096) / 146097;
    const long doe = z - era * 146097;
    const long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yoe + era * 400 + (m <= 2));
}

// 1899-12-30 counted from 1970-01-01.
constexpr long kOleEpochOffset = -25569;

}  // namespace

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) {
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 59) {
        m_status = invalid;
        return;
    }
    const long days = DaysFromCivil(year, month, day) - kOleEpochOffset;
    m_dt = static_cast<double>(days) + (hour * 3600 + minute * 60 + second) / 86400.0;
}

COleDateTime COleDateTime::GetCurrentTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return COleDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                        local.tm_sec);
}

COleDateTime::Parts COleDateTime::Split() const {
    const double dayPart = std::floor(m_dt);
    long seconds = std::lround((m_dt - dayPart) * 86400.0);
    long days = static_cast<long>(dayPart);
    if (seconds >= 86400) {
        ++days;
        seconds -= 86400;
    }
    Parts parts{};
    CivilFromDays(days + kOleEpochOffset, parts.year, parts.month, parts.day);
    parts.hour = static_cast<int>(seconds / 3600);
    parts.minute = static_cast<int>(seconds / 60 % 60);
    parts.second = static_cast<int>(seconds % 60);
    return parts;
}

int COleDateTime::GetYear() const { return Split().year; }
int COleDateTime::GetMonth() const { return Split().month; }
int COleDateTime::GetDay() const { return Split().day; }
int COleDateTime::GetHour() const { return Split().hour; }
int COleDateTime::GetMinute() const { return Split().minute; }
int COleDateTime::GetSecond() const { return Split().second; }

std::string COleDateTime::FormatIso() const {
    if (m_status != valid) return std::string();
    const Parts p = Split();
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", p.year, p.month, p.day, p.hour, p.minute,
                  p.second);
    return buffer;
}
