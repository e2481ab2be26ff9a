/* The earth, and angles on it. */
#pragma once

constexpr float PRJ_EARTH_RADIUS = 63.7122f;         // hundreds of kilometres
constexpr double PRJ_KM_PER_DEGREE = 111.195;        // of latitude
constexpr double PRJ_RADIANS = 0.017453292519943334; // one degree
constexpr double PRJ_DEGREES = 57.295779513082195;   // one radian
