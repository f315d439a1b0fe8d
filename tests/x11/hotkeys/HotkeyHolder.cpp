// SPDX-License-Identifier: GPL-3.0-or-later
// A second X client for the hotkey tests. Usage:
//     hotkey_holder hold KEYSYM XMODS   grab the combination, print "held", keep it until stdin closes
//     hotkey_holder try KEYSYM XMODS    exit 0 when the combination (with every lock variant) can be grabbed
// KEYSYM and XMODS are numbers (0x… allowed); XMODS is the X modifier mask.
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    const bool hold = std::strcmp(argv[1], "hold") == 0;
    const auto keysym = static_cast<xcb_keysym_t>(std::strtoul(argv[2], nullptr, 0));
    const auto modifiers = static_cast<uint16_t>(std::strtoul(argv[3], nullptr, 0));

    xcb_connection_t* c = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(c))
        return 3;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(c);
    xcb_keycode_t* codes = xcb_key_symbols_get_keycode(symbols, keysym);
    if (!codes || codes[0] == XCB_NO_SYMBOL)
        return 4;
    const xcb_keycode_t keycode = codes[0];
    std::free(codes);
    xcb_key_symbols_free(symbols);

    // Num Lock is Mod2 on every keymap these tests run with.
    const uint16_t variants[] = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};
    int refused = 0;
    for (uint16_t variant : variants) {
        xcb_generic_error_t* error =
            xcb_request_check(c, xcb_grab_key_checked(c, 0, root, modifiers | variant, keycode, XCB_GRAB_MODE_ASYNC,
                                                      XCB_GRAB_MODE_ASYNC));
        if (error) {
            ++refused;
            std::free(error);
        }
        if (hold)
            break; // one variant is enough to stand in the way
    }
    if (!hold) {
        xcb_disconnect(c);
        return refused == 0 ? 0 : 1;
    }
    if (refused)
        return 1;
    std::printf("held\n");
    std::fflush(stdout);
    char buffer[64];
    while (read(0, buffer, sizeof buffer) > 0) {
    }
    xcb_disconnect(c);
    return 0;
}
