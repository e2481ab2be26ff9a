/* The devices of this program. */
#pragma once

/* Puts the row of each device into the kernel's table. */
void gregister_devices();
