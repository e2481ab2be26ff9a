/* File series: the names of the command line, or a span of time around a date. */
#pragma once

#include "files/date_time.h"

#include <cstdint>
#include <string>

void FILE_series_init(const DateTime *date);

/* Delivers the next name.  Returns 1, or 0 at the end. */
int FILE_series_next(std::string *out);

/* 0 for a single plot, not 0 for a sequence. */
int64_t FILE_series_count();

/* The `num_hour` resource: span and step in seconds. */
int64_t FILE_num_hours();
int64_t FILE_num_step();
void FILE_set_default_span(int hours);

int64_t FILE_get_offset();
void FILE_set_offset(int64_t seconds);
void FILE_next_name(std::string *out);
void FILE_prev_name(std::string *out);

void FILE_series_reset();
