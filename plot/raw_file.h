/* Raw text files: tables of stations or points with values, one a line.
 *
 *     QRARAW
 *     a title that ends in its date
 *     a format, "!" in front of it when a table of columns follows
 *     name:description:format     a column a line, one word with "_" for a blank, up to "$"
 *     KOKC 35.39 -97.60 29 21     the records: identifier, position, values
 *
 * The table begins with the identifier; "lat" and "lon" may stand on its line.  "-" is a missing
 * number or value.  An entry of a record is a value, "value,value", or either with the name of its
 * column in front and a format behind, "temp=29:co=red".
 */
#pragma once

#include "files/date_time.h"
#include "shell/missing.h"

#include <string>
#include <vector>

constexpr int RAW_MAX_COLUMNS = 75;

struct RawColumnInfo {
    std::string name;        // at most 19 characters
    std::string description; // at most 59
    std::string format;      // at most 39
};

struct RawHeader {
    char title[50] = "";   // with its date
    std::string date_text; // "2000Z 20 MAY 13", "" without a date
    DateTime date;
    std::string format;                 // without the "!"
    int column_base = 1;                // number of the first value column, the identifier being 0
    std::vector<RawColumnInfo> columns; // of the table, none without one
};

struct RawRecord {
    char id[80] = "";
    int wmo = MISSING;                      // an identifier of digits, more than 4
    int index = 0;                          // number of the column
    float lat = MISSING_F, lon = MISSING_F; // degrees; missing both or none
    float value = MISSING_F, value2 = MISSING_F;
    std::string text;   // value as it stands, "" for none
    std::string format; // of the column, and behind a ":" that of the entry
};

/* Which column RAW_read_record delivers: one of these, or RAW_COLUMN + its number. */
enum RawColumn { RAW_ALL = 1, RAW_ID = 2, RAW_COLUMN = 10 };

/* Opens a file below `file_path`, to be read ("r") or written ("w").  name is
 * "file[:column[:format]]"; what stands behind the file goes to column and format (may be null).
 * Returns a handle, or -1 after a message. */
int RAW_file_open(const char *name, std::string *column, std::string *format, const char *mode);
void RAW_close(int handle);

/* The head with its column table.  1, or -1 after a message when it is none. */
int RAW_read_header(int handle, RawHeader *header);
int RAW_write_header(int handle, const RawHeader *header);

/* Name of a column from 0 on; "" without one. */
const char *RAW_column_name(int handle, int index);

/* What RAW_read_record takes for a column of that name; a number below 76 stands for itself, "" for
 * RAW_ALL.  A name that is not in the table is sought in each record, as "name=value"; the handle
 * keeps the last one.  -1 for a number that stands for nothing. */
int RAW_find_column(int handle, const char *name);

/* Next value.  RAW_ALL delivers the values of a record one by one; else it is one of each record,
 * and RAW_ID its identifier.  *count goes up with each record.  1 for a value, 0 for a record or an
 * entry without one, -1 at the end. */
int RAW_read_record(int handle, RawRecord *record, int column, int *count);

/* Back to the first record; not on a pipe. */
void RAW_rewind(int handle);

void RAW_reset();
