/* Texts of a NIDS product: its title, and the line of mode, range, elevation and values. */
#pragma once

#include "decoders/nids_record.h"

/* Both take what is filled already of the product; a text too long for its place is cut. */
void NIDS_make_title(NidsProduct *product);
void NIDS_make_info(const NidsHeader &header, NidsProduct *product);
