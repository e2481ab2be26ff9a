/* Writes radar coded messages. */
#pragma once

#include "decoders/rcm_record.h"

#include <string>

/* The text of a message, without line ends.  A status of maintenance has no more than its head. */
std::string SMP_rcm_text(const RcmReport &report, bool edited);

/* A message of a file: lines that begin it, then the text behind the zeros of an empty binary head,
 * or in blocks with the radar's number, place and time. */
std::string SMP_rcm_plain(const RcmReport &report, const std::string &text);
std::string SMP_rcm_framed(const RcmReport &report, const std::string &text);
