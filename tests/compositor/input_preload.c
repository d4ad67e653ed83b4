// Preloaded into a compositor that runs without hardware: adds a keyboard, a pointer and a touch
// screen, and makes real input of the datagrams that arrive at the socket $QUORVEL_INPUT_SOCKET:
//   down ID X Y    move ID X Y    up ID      a finger, X and Y from 0 to 1 of the screen
//   point X Y      press          release    the pointer, likewise, and its first button
//   key CODE                                 a key of the kernel's list, pressed and released
// The devices exist before the first client connects, so that no client misses the seat.
#include <dlfcn.h>
#include <linux/input-event-codes.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <wayland-server-core.h>
#include <wlr/backend.h>
#include <wlr/backend/headless.h>
#include <wlr/backend/multi.h>
#include <wlr/types/wlr_input_device.h>
#include <wlr/types/wlr_keyboard.h>
#include <wlr/types/wlr_pointer.h>
#include <wlr/types/wlr_touch.h>

static struct wl_display* display;
static struct wlr_input_device* keyboard;
static struct wlr_input_device* pointer;
static struct wlr_input_device* touchScreen;

static uint32_t milliseconds(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (uint32_t)(now.tv_sec * 1000 + now.tv_nsec / 1000000);
}

static void touchDown(int id, double x, double y) {
    struct wlr_event_touch_down event = {touchScreen, milliseconds(), id, x, y};
    wl_signal_emit(&touchScreen->touch->events.down, &event);
}

static void touchMove(int id, double x, double y) {
    struct wlr_event_touch_motion event = {touchScreen, milliseconds(), id, x, y};
    wl_signal_emit(&touchScreen->touch->events.motion, &event);
}

static void touchUp(int id) {
    struct wlr_event_touch_up event = {touchScreen, milliseconds(), id};
    wl_signal_emit(&touchScreen->touch->events.up, &event);
}

static void movePointer(double x, double y) {
    struct wlr_event_pointer_motion_absolute event = {pointer, milliseconds(), x, y};
    wl_signal_emit(&pointer->pointer->events.motion_absolute, &event);
}

static void pressButton(enum wlr_button_state state) {
    struct wlr_event_pointer_button event = {pointer, milliseconds(), BTN_LEFT, state};
    wl_signal_emit(&pointer->pointer->events.button, &event);
}

static void pressKey(uint32_t code) {
    struct wlr_event_keyboard_key event = {milliseconds(), code, true,
                                           WL_KEYBOARD_KEY_STATE_PRESSED};
    wlr_keyboard_notify_key(keyboard->keyboard, &event);
    event.state = WL_KEYBOARD_KEY_STATE_RELEASED;
    wlr_keyboard_notify_key(keyboard->keyboard, &event);
}

static bool obeyTouch(const char* command) {
    int id = 0;
    double x = 0;
    double y = 0;
    if (sscanf(command, "down %d %lf %lf", &id, &x, &y) == 3) {
        touchDown(id, x, y);
    } else if (sscanf(command, "move %d %lf %lf", &id, &x, &y) == 3) {
        touchMove(id, x, y);
    } else if (sscanf(command, "up %d", &id) == 1) {
        touchUp(id);
    } else {
        return false;
    }
    wl_signal_emit(&touchScreen->touch->events.frame, NULL);
    return true;
}

static bool obeyPointer(const char* command) {
    double x = 0;
    double y = 0;
    if (sscanf(command, "point %lf %lf", &x, &y) == 2) {
        movePointer(x, y);
    } else if (strcmp(command, "press") == 0) {
        pressButton(WLR_BUTTON_PRESSED);
    } else if (strcmp(command, "release") == 0) {
        pressButton(WLR_BUTTON_RELEASED);
    } else {
        return false;
    }
    wl_signal_emit(&pointer->pointer->events.frame, pointer->pointer);
    return true;
}

static void obey(const char* command) {
    unsigned code = 0;
    if (sscanf(command, "key %u", &code) == 1) {
        pressKey(code);
    } else if (!obeyTouch(command) && !obeyPointer(command)) {
        fprintf(stderr, "input_preload: unknown command: %s\n", command);
    }
}

static int receive(int descriptor, uint32_t events, void* data) {
    (void)events;
    (void)data;
    char command[128];
    const ssize_t size = recv(descriptor, command, sizeof command - 1, MSG_DONTWAIT);
    if (size > 0) {
        command[size] = '\0';
        obey(command);
    }
    return 0;
}

static void listenForInput(void) {
    const char* path = getenv("QUORVEL_INPUT_SOCKET");
    struct sockaddr_un address = {.sun_family = AF_UNIX};
    if (path == NULL || strlen(path) >= sizeof address.sun_path) {
        fprintf(stderr, "input_preload: QUORVEL_INPUT_SOCKET is unset or too long\n");
        return;
    }
    strcpy(address.sun_path, path);
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0 || bind(descriptor, (const struct sockaddr*)&address, sizeof address) != 0) {
        perror("input_preload: no socket");
        return;
    }
    wl_event_loop_add_fd(wl_display_get_event_loop(display), descriptor, WL_EVENT_READABLE, receive,
                         NULL);
}

static void findHeadless(struct wlr_backend* backend, void* found) {
    if (wlr_backend_is_headless(backend)) {
        *(struct wlr_backend**)found = backend;
    }
}

static void addDevices(struct wlr_backend* backend) {
    struct wlr_backend* headless = NULL;
    if (wlr_backend_is_multi(backend)) {
        wlr_multi_for_each_backend(backend, findHeadless, &headless);
    } else {
        findHeadless(backend, &headless);
    }
    if (headless == NULL) {
        fprintf(stderr, "input_preload: the compositor does not run without hardware\n");
        return;
    }
    keyboard = wlr_headless_add_input_device(headless, WLR_INPUT_DEVICE_KEYBOARD);
    pointer = wlr_headless_add_input_device(headless, WLR_INPUT_DEVICE_POINTER);
    touchScreen = wlr_headless_add_input_device(headless, WLR_INPUT_DEVICE_TOUCH);
    listenForInput();
}

struct wlr_backend* wlr_backend_autocreate(struct wl_display* server) {
    struct wlr_backend* (*create)(struct wl_display*) = NULL;
    *(void**)&create = dlsym(RTLD_NEXT, "wlr_backend_autocreate");
    display = server;
    return create(server);
}

// A backend that consists of several starts each of them through this function too.
bool wlr_backend_start(struct wlr_backend* backend) {
    static bool isNested = false;
    bool (*start)(struct wlr_backend*) = NULL;
    *(void**)&start = dlsym(RTLD_NEXT, "wlr_backend_start");
    if (isNested) {
        return start(backend);
    }
    isNested = true;
    const bool isStarted = start(backend);
    isNested = false;
    if (isStarted && touchScreen == NULL) {
        addDevices(backend);
    }
    unsetenv("LD_PRELOAD"); // the compositor's children need no devices
    return isStarted;
}
