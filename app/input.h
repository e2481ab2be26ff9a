/* Input selection and dispatch: which kind of radar input the run has, and what plots it. */
#pragma once

/* Values of PAR_INPUT. */
enum RadInput {
    RAD_SUMMARY = 31,
    RAD_RRWDS = 32,
    RAD_NIDS = 33,
    RAD_NOWRAD = 34,
    RAD_RCM = 35,
    RAD_KAVRAD = 36,
    RAD_LEVEL2 = 37,
    RAD_LEVEL2_COMPRESSED = 38
};

/* Sets the input slots, the file name convention and the data source tag from the resources `input`
 * and `in_file`.  `input` decides the type; `in_file` only when `input` said nothing. */
void RAD_select_input();

/* Asks for the file of the selected input and plots it.  An input of no known code does nothing. */
void RAD_dispatch();
