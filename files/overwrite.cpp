#include "files/overwrite.h"

#include "files/stream.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/prompt.h"

#include <cctype>
#include <string>

namespace {
enum FileMode { MODE_OVERWRITE = 1, MODE_APPEND = 2, MODE_USE = 3 };

/* Asks with the file's name in front of the choices; the first letter, upper case. */
char ask(const char *name, const char *choices) {
    std::string answer;
    MSG_prompt((std::string(name) + ": exists overwrite " + choices).c_str(), &answer, 10);
    return answer.empty() ? '\0' : char(toupper(static_cast<unsigned char>(answer[0])));
}
} // namespace

int FILE_check_overwrite(const char *name, int kind) {
    if (FILE_is_stream(name) || !FILE_exists(name))
        return MODE_OVERWRITE;
    if (PAR_get(PAR_FILE_MODE) > 0)
        return int(PAR_get(PAR_FILE_MODE));
    if (PAR_is_batch())
        return MODE_USE;
    if (kind != 1 && kind != 2)
        return 0;
    const char letter = ask(name, kind == 2 ? "(Y,N,Use,Over,App): " : "(Y,N,Use,Over): ");
    if (letter == 'Y' || letter == 'O')
        return MODE_OVERWRITE;
    return kind == 2 && letter == 'A' ? MODE_APPEND : MODE_USE;
}
