#include "plot/number_format.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
constexpr long kMostWidth = 60, kMostDecimals = 20;
constexpr size_t kLongestText = 40; // around the number

/* Passes over digits; false when their number is above most. */
bool take_digits(const char **at, long most) {
    const char *digits = *at;
    *at += strspn(digits, "0123456789");
    return *at - digits <= 4 && strtol(digits, nullptr, 10) <= most;
}

/* Passes over a conversion, its "%" included.  False when it is none that is taken here. */
bool take_conversion(const char **at) {
    *at += 1;
    *at += strspn(*at, "+- 0#");
    if (!take_digits(at, kMostWidth))
        return false;
    if (**at == '.') {
        *at += 1;
        if (!take_digits(at, kMostDecimals))
            return false;
    }
    return **at && strchr("fFeEgGd", *(*at)++);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
/* conversion was passed over by take_conversion. */
std::string convert(const std::string &conversion, float value) {
    char text[160]; // the longest float has 39 digits in front of its decimals
    if (conversion.back() != 'd')
        snprintf(text, sizeof text, conversion.c_str(), double(value));
    else
        snprintf(text, sizeof text, conversion.c_str(),
                 std::isnan(value) ? 0 : int(std::clamp(value, -2e9f, 2e9f)));
    return text;
}
#pragma GCC diagnostic pop
} // namespace

bool FMT_number(const char *format, float value, std::string *out) {
    std::string text, number;
    for (const char *at = format; *at;) {
        if (*at != '%') {
            text += *at++;
        } else if (at[1] == '%') {
            text += '%';
            at += 2;
        } else {
            const char *from = at;
            if (!number.empty() || !take_conversion(&at))
                return false;
            number = convert(std::string(from, at), value);
            text += number;
        }
    }
    if (number.empty() || text.size() > number.size() + kLongestText)
        return false;
    *out = text;
    return true;
}

bool FMT_number_z(const char *format, float value, std::string *out) {
    if (!*format || format[1] != 'z')
        return FMT_number(format, value, out);
    if (!FMT_number((std::string("%") + (format + 2)).c_str(), value, out))
        return false;
    const size_t zero = out->starts_with('-') ? 1 : 0;
    if (out->size() > zero + 1 && (*out)[zero] == '0')
        out->erase(zero, 1);
    return true;
}
