/* The records of the Level II archive now open: the volume, and the message in hand.
 *
 * Values stand as the archive has them; what a message lacks keeps the last one's, but for what a
 * message of type 31 clears.
 */
#pragma once

#include "files/date_time.h"
#include "shell/missing.h"

enum Lev2Moment { LEV2_REFLECTIVITY = 0, LEV2_VELOCITY = 1, LEV2_SPECTRUM_WIDTH = 2 };

/* The archive's identity. */
struct Lev2Volume {
    char radar[4] = "";        // last three letters of the identifier
    float latitude = 38.98f;   // degrees, where the radar is not known
    float longitude = -77.48f; //
    DateTime start_time;
    char time_text[64] = ""; // start_time as a label
    DateTime plot_time;      // as asked for, completed from start_time
};

/* One message. */
struct Lev2Radial {
    char radar_id[5] = "";      // message 31 only
    float latitude = MISSING_F; // degrees; message 31 with a volume block
    float longitude = MISSING_F;
    int height = 0; // metres
    int message_type = 0, sequence = 0, date = 0, time = 0, segments = 0, segment = 0;
    int ray_time = 0;               // milliseconds since midnight
    int ray_date = 0;               // days, 1 is 1 January 1970
    float unambiguous_range = 0.0f; // km
    float azimuth = 0.0f;           // degrees
    int azimuth_number = 0, radial_status = 0, radial_length = 0;
    float azimuth_resolution = 1.0f; // degrees
    int compression = 0;
    float elevation = 0.0f; // degrees
    int elevation_number = 0;
    int cut_sector = 0, spot_blanking = 0, azimuth_indexing = 0, block_count = 0;
    float ref_first = 0.0f, vel_first = 0.0f; // km to the first gate
    float ref_gate = 0.0f, vel_gate = 0.0f;   // km
    int ref_gates = 0, vel_gates = 0;
    int sector = 0;
    int ref_ptr = 0, vel_ptr = 0, spw_ptr = 0, vol_ptr = 0, elv_ptr = 0, rad_ptr = 0;
    float velocity_resolution = 0.0f;
    int vcp = 0;
    float nyquist = 0.0f; // m/s
    float attenuation = 0.0f;
    float threshold = 0.0f;
};
