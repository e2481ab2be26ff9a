#include "kernel/redraw_store.h"

#include "kernel/device.h"
#include "kernel/state.h"
#include "shell/strings.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {
constexpr uint64_t kPollEvery = 500; // calls

struct StoreState {
    GraphicsObject head;            // holds no call
    GraphicsObject *tail = nullptr; // null stands for the head
    uint64_t calls = 0;
    int saving = 0;
    int redraw = 0;
    void (*poll)() = nullptr;
};
constinit StoreState store;

/* Null after a report. */
GraphicsObject *make_object(ObjCode code, int count, size_t size, const void *data) {
    auto *object = static_cast<GraphicsObject *>(malloc(sizeof(GraphicsObject)));
    if (!object) {
        gerror("newobj", "malloc error\n");
        return nullptr;
    }
    *object = {.code = code, .count = count};
    if (size == 0)
        return object;
    object->data = malloc(size);
    if (!object->data) {
        gerror("newobj", "data malloc error\n");
        free(object);
        return nullptr;
    }
    if (data)
        memcpy(object->data, data, size);
    return object;
}
} // namespace

void *gobj_new(ObjCode code, int count, size_t size, const void *data) {
    if (++store.calls % kPollEvery == 0)
        gobj_poll();
    if (!store.saving)
        return nullptr;
    GraphicsObject *object = make_object(code, count, size, data);
    if (!object)
        return nullptr;
    (store.tail ? store.tail : &store.head)->next = object;
    store.tail = object;
    return object->data;
}

int gobj_init() {
    gobj_free();
    store.calls = 0;
    if (STR_casecmp(getenv("qraredraw"), "no") == 0 ||
        STR_casecmp(gdevice().preset("redraw"), "no") == 0)
        store.saving = 0;
    return 0;
}

int gobj_free() {
    for (GraphicsObject *object = store.head.next; object;) {
        GraphicsObject *next = object->next;
        if (object->code == OBJ_CALL && object->data)
            free(static_cast<ObjectCall *>(object->data)->argument);
        free(object->data);
        free(object);
        object = next;
    }
    store.head.next = nullptr;
    store.tail = nullptr;
    return 0;
}

const GraphicsObject *gobj_first() { return store.head.next; }

int gobj_set_saving(int flag) {
    const int former = store.saving;
    store.saving = flag;
    return former;
}

int gobj_saving() { return store.saving; }

int gset_redraw_enabled(int flag) {
    store.redraw = flag;
    return 0;
}

int gget_redraw_enabled() { return store.redraw; }

void gobj_set_poll(void (*poll)()) { store.poll = poll; }

void gobj_poll() {
    if (store.poll)
        store.poll();
}

void gobj_reset() {
    gobj_free();
    store = StoreState{};
}
