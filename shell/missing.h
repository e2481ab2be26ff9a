/* The missing value, the same in every record, table and option of the program. */
#pragma once

constexpr int MISSING = -9999;
constexpr float MISSING_F = -9999.0f;
