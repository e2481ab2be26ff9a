#include "kernel/devices.h"

#include "kernel/device.h"
#include "kernel/device_ps.h"
#include "kernel/device_x11.h"
#include "kernel/workstation.h"

namespace {
/* Named, so that the user is told what is missing. */
constexpr Device kHpgl = {.name = "HPGL"};
constexpr Device kMetafile = {.name = "metafile"};

constexpr struct {
    WsType type;
    const Device *device;
} kDevices[] = {
    {WS_X11, &kX11Device},
    {WS_META, &kMetafile},
    {WS_PS, &kPsDevice},
    {WS_HPGL, &kHpgl},
    {WS_X11_ATTACHED, &kX11AttachedDevice},
};
} // namespace

void gregister_devices() {
    for (const auto &row : kDevices)
        gset_device(row.type, row.device);
}
