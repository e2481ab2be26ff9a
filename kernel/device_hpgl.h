/* Plotter files in HP-GL/2, bare or for a laser printer. */
#pragma once

#include "kernel/device.h"

extern const Device kHpglDevice;
