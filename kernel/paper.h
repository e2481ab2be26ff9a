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

/* Hands the words of the environment variable to preset, then those of the connection text behind
 * its first to word; with one procedure, all of them to it. */
using PaperWordProc = void (*)(const char *word);
void gpaper_words(const char *connection, const char *variable, PaperWordProc preset,
                  PaperWordProc word);
void gpaper_words(const char *connection, const char *variable, PaperWordProc word);

/* Takes a paper word: "letter", "a4", "sz=10x8".  Returns 1, or 0 for a word of another kind. */
int gpaper_word(const char *word, Paper *paper);

/* Takes a size in inches that a page can have; any other leaves the paper as it is. */
void gpaper_size(float width, float height, Paper *paper);

/* How an offset in pixels is written: "+10-20", or behind plus signs alone. */
enum class OffsetForm { Signed, Plus };

/* Shapes the drawing area of the kernel from the `geometry` resource, else from the first of the
 * environment variables that is set.  unit is device units to a pixel of the screen, margin device
 * units on top of an offset in pixels. */
void gpaper_geometry(std::span<const char *const> variables, double unit, int margin = 0,
                     OffsetForm form = OffsetForm::Signed);

/* Grey of a colour index, 0 black to 1 white.  Reversed counts for the colours set after it. */
void gpaper_set_gray(int index, float r, float g, float b);
float gpaper_gray(int index);
void gpaper_set_reverse(int flag);

void gpaper_reset();
