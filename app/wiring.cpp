#include "app/wiring.h"

#include "files/file_name.h"
#include "kernel/devices.h"
#include "kernel/workstation.h"
#include "plot/domain_text.h"
#include "plot/dump.h"
#include "shell/resource.h"

void APP_wire() {
    RES_set_converter(OPT_HOUR, FILE_parse_hour);
    RES_set_converter(OPT_REGION, DOM_convert);
    RES_set_converter(OPT_DOMAIN, DOM_convert);
    RES_set_converter(OPT_DEVICE, gdevice_convert);
    gregister_devices();
    PLT_lend_dumps();
}
