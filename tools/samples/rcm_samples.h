/* The shipped file of radar coded messages. */
#pragma once

#include <string>

/* Five radars along a squall line: two with storms, one of them in blocks; one in between without
 * storms; one that sees nothing; one that is being mended. */
std::string SMP_rcm_file();
