#include "plot/domain_input.h"

#include "plot/domain_text.h"
#include "plot/region.h"
#include "shell/menu.h"
#include "shell/message.h"
#include "shell/params.h"
#include "shell/process.h"
#include "shell/resource.h"
#include "shell/strings.h"

#include <string>

namespace {
struct DomainInputState {
    int ask = 1;
};
constinit DomainInputState input;

constexpr int kInvalidDomain = 43; // exit status
constexpr int kMostTurns = 5;
constexpr const char *kRegionFile = "qra.reg";

/* Decodes a resource that is set.  A prompt in the decode may set it anew. */
int decode_resource(const char *name, Domain *domain) {
    const std::string text = RES_get(name);
    return DOM_decode(text.c_str(), domain);
}

void read_menu_once() {
    if (!REG_table_read())
        REG_read_table(kRegionFile);
}

int decode_first_region(Domain *domain) {
    read_menu_once();
    const std::string abbr = REG_first_abbr();
    return DOM_decode(abbr.c_str(), domain);
}

/* A domain that no one can correct: it ends the run if it is invalid, and is not asked for again.
 */
int settle(int result) {
    if (result == -1) {
        MSG_print(MSG_ERROR, "Invalid domain\n");
        PROC_exit(kInvalidDomain);
    }
    input.ask = 0;
    return result;
}

int settle_resource(const char *name, Domain *domain) {
    return RES_get(name) ? settle(decode_resource(name, domain)) : 0;
}

/* One turn of the menu.  Returns true with a result that ends the turns. */
bool take_turn(Domain *domain, int *result) {
    std::string answer;
    const int value = MENU_ask("\n        Region Menu\n", REG_menu(), 0,
                               "Enter the region: ", &answer, MENU_EXIT | MENU_BACK);
    if (!STR_casecmp(answer.c_str(), "list")) {
        REG_list(kRegionFile);
        return false;
    }
    if (value == -1)
        PROC_exit(0);
    *result = value == 0 ? 0 : DOM_decode(answer.c_str(), domain);
    if (*result == -1)
        MSG_print(MSG_ERROR, "Invalid domain\n");
    return *result != -1;
}
} // namespace

int DOM_from_resources(Domain *domain, int mode) {
    DOM_init(domain);
    if ((mode == 1 || mode == 3 || mode == 4) && RES_get("plot_domain"))
        return decode_resource("plot_domain", domain);
    if (RES_get("region"))
        return decode_resource("region", domain);
    return mode == 4 ? decode_first_region(domain) : 0;
}

int DOM_grid_from_resources(Domain *domain) {
    DOM_init(domain);
    for (const char *name : {"grid_domain", "region", "plot_domain"})
        if (RES_get(name))
            return decode_resource(name, domain);
    return 0;
}

int DOM_prompt(Domain *domain, int mode) {
    if (!input.ask)
        return 0;
    int result = mode == 1 ? settle_resource("plot_domain", domain) : 0;
    if (result <= 0)
        result = settle_resource("region", domain);
    if (result > 0)
        return result;
    if (PAR_is_batch())
        return settle(decode_first_region(domain));
    read_menu_once();
    for (int turn = 0; turn < kMostTurns; turn++)
        if (take_turn(domain, &result))
            return result;
    return -1;
}

void DOM_set_ask(int flag) { input.ask = flag; }
