/* What the devices that write to paper have in common: the file to write to, the words of the
 * device text, paper sizes, placing on the page, grey levels.
 */
#pragma once

#include <span>
#include <string>

struct Paper {
    float width = 0.0f; // inches
    float height = 0.0f;
    bool given = false; // by a size in the device text, not by a name
};

/* The file: the first word of the connection text, else the first of the environment variables
 * that is set, else a name of the device's own. */
std::string gpaper_target(const char *connection, std::span<const char *const> variables,
                          const char *fallback);

/* Hands the words of the environment variable, then those of the connection text behind its first,
 * to a procedure. */
void gpaper_words(const char *connection, const char *variable, void (*word)(const char *));

/* Takes a paper word: "letter", "a4", "sz=10x8".  Returns 1, or 0 for a word of another kind. */
int gpaper_word(const char *word, Paper *paper);

/* Shapes the drawing area of the kernel from the `geometry` resource, else from the first of the
 * environment variables that is set.  unit is device units to a pixel of the screen. */
void gpaper_geometry(std::span<const char *const> variables, double unit);

/* Grey of a colour index, 0 black to 1 white.  Reversed counts for the colours set after it. */
void gpaper_set_gray(int index, float r, float g, float b);
float gpaper_gray(int index);
void gpaper_set_reverse(int flag);

void gpaper_reset();
