/* Frames by number: how many a window keeps, and what calls name besides. */
#pragma once

constexpr int FRAME_MAX = 128;
enum FrameName { FRAME_LAST = -1, FRAME_CURRENT = -2, FRAME_BASE = -3 };
