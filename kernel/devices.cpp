#include "kernel/devices.h"

#include "kernel/device.h"
#include "kernel/device_hpgl.h"
#include "kernel/device_meta.h"
#include "kernel/device_ps.h"
#include "kernel/device_x11.h"
#include "kernel/workstation.h"

namespace {
constexpr struct {
    WsType type;
    const Device *device;
} kDevices[] = {
    {WS_X11, &kX11Device},
    {WS_META, &kMetaDevice},
    {WS_PS, &kPsDevice},
    {WS_HPGL, &kHpglDevice},
    {WS_X11_ATTACHED, &kX11AttachedDevice},
};
} // namespace

void gregister_devices() {
    for (const auto &row : kDevices)
        gset_device(row.type, row.device);
}
