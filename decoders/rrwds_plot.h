/* Plot of an RRWDS scan. */
#pragma once

#include "decoders/radar_options.h"
#include "plot/domain.h"

/* Plots the series of files; an unset domain is made around the site.  Returns 0. */
int RRWDS_plot(Domain *domain);

/* Fills an unset domain: the polar map around the site. */
void RRWDS_set_domain(Domain *domain);

void RRWDS_parse_params(); // `plot_param`
void RRWDS_draw_data();

/* Events of the window: on "v-Alt" the read-out, then the common ones. */
void RRWDS_pointer(float x, float y, int kind, const char *name);

RadarOptions *RRWDS_options();
void RRWDS_plot_reset();
