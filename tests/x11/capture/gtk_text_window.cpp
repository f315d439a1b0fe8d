// SPDX-License-Identifier: GPL-3.0-or-later
// A GTK 3 window for the text-capture tests: a label and a text view. Once drawn it prints where
// some characters are on the screen (root-window pixels), one "name x y" per line, then "ready".
// With --select WORD it selects WORD in the text view and gives the view the focus first. With
// --big the view holds ten megabytes of text after its first lines; with --objects it holds only
// embedded buttons (object characters in its text) and reports "object x y".
#include <gtk/gtk.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

const char* const sentence = "Hello, world! The quick brown fox jumps.";
GtkWidget* label = nullptr;
GtkWidget* view = nullptr;
const char* selectWord = nullptr;
bool objectsOnly = false;

void printLabelCharacter(const char* name, int byteIndex)
{
    PangoRectangle rect;
    pango_layout_index_to_pos(gtk_label_get_layout(GTK_LABEL(label)), byteIndex, &rect);
    int offsetX = 0, offsetY = 0, originX = 0, originY = 0;
    gtk_label_get_layout_offsets(GTK_LABEL(label), &offsetX, &offsetY);
    gdk_window_get_origin(gtk_widget_get_window(label), &originX, &originY);
    std::printf("%s %d %d\n", name, originX + offsetX + (rect.x + rect.width / 2) / PANGO_SCALE,
                originY + offsetY + (rect.y + rect.height / 2) / PANGO_SCALE);
}

void printViewPoint(const char* name, int characterOffset, int dx)
{
    GtkTextIter iter;
    gtk_text_buffer_get_iter_at_offset(gtk_text_view_get_buffer(GTK_TEXT_VIEW(view)), &iter, characterOffset);
    GdkRectangle rect;
    gtk_text_view_get_iter_location(GTK_TEXT_VIEW(view), &iter, &rect);
    int windowX = 0, windowY = 0, originX = 0, originY = 0;
    gtk_text_view_buffer_to_window_coords(GTK_TEXT_VIEW(view), GTK_TEXT_WINDOW_TEXT, rect.x + rect.width / 2,
                                          rect.y + rect.height / 2, &windowX, &windowY);
    gdk_window_get_origin(gtk_text_view_get_window(GTK_TEXT_VIEW(view), GTK_TEXT_WINDOW_TEXT), &originX, &originY);
    std::printf("%s %d %d\n", name, originX + windowX + dx, originY + windowY);
}

gboolean report(gpointer)
{
    if (objectsOnly) {
        printViewPoint("object", 1, 0);
        std::printf("ready\n");
        std::fflush(stdout);
        return G_SOURCE_REMOVE;
    }
    const std::string text(sentence);
    printLabelCharacter("label-world", int(text.find("world")) + 2);
    printViewPoint("view-quick", int(text.find("quick")) + 2, 0);
    // Far right of the first line's last character: empty space, no character there.
    printViewPoint("view-after-line", int(text.size()) - 1, 200);
    printViewPoint("view-second-line", int(text.size()) + 3, 0);
    // Characters beyond the Basic Multilingual Plane: AT-SPI counts code points.
    const gchar* content = nullptr;
    {
        GtkTextIter start, end;
        GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
        gtk_text_buffer_get_bounds(buffer, &start, &end);
        content = gtk_text_buffer_get_text(buffer, &start, &end, FALSE);
    }
    const char* naive = std::strstr(content, "naïve");
    printViewPoint("view-naive", int(g_utf8_pointer_to_offset(content, naive)), 0);
    g_free(const_cast<gchar*>(content));
    std::printf("ready\n");
    std::fflush(stdout);
    return G_SOURCE_REMOVE;
}

} // namespace

int main(int argc, char** argv)
{
    gtk_init(&argc, &argv);
    bool big = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--select") == 0 && i + 1 < argc)
            selectWord = argv[i + 1];
        big = big || std::strcmp(argv[i], "--big") == 0;
        objectsOnly = objectsOnly || std::strcmp(argv[i], "--objects") == 0;
    }

    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window), "Capture GTK");
    gtk_window_set_default_size(GTK_WINDOW(window), 640, 320);
    gtk_window_move(GTK_WINDOW(window), 40, 60);
    g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);

    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
    gtk_container_set_border_width(GTK_CONTAINER(box), 16);
    label = gtk_label_new(sentence);
    gtk_widget_set_halign(label, GTK_ALIGN_START);
    view = gtk_text_view_new();
    gtk_widget_set_vexpand(view, TRUE);
    GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
    std::string content = std::string(sentence) + "\nA second line of text.\nThumbs 👍🏽 up for naïve words.";
    if (big) {
        const std::string line = "\nLorem ipsum dolor sit amet, consectetur adipiscing elit, sed do eiusmod tempor.";
        content.reserve(10 * 1024 * 1024 + line.size());
        while (content.size() < 10 * 1024 * 1024)
            content += line;
    }
    if (objectsOnly) {
        GtkTextIter end;
        for (int i = 0; i < 3; ++i) {
            gtk_text_buffer_get_end_iter(buffer, &end);
            GtkTextChildAnchor* anchor = gtk_text_buffer_create_child_anchor(buffer, &end);
            gtk_text_view_add_child_at_anchor(GTK_TEXT_VIEW(view), gtk_button_new_with_label("Open"), anchor);
        }
    } else {
        gtk_text_buffer_set_text(buffer, content.c_str(), -1);
    }
    gtk_box_pack_start(GTK_BOX(box), label, FALSE, FALSE, 0);
    if (big) {
        // A view that large must scroll, or the window would grow past what X allows.
        GtkWidget* scrolled = gtk_scrolled_window_new(nullptr, nullptr);
        gtk_container_add(GTK_CONTAINER(scrolled), view);
        gtk_box_pack_start(GTK_BOX(box), scrolled, TRUE, TRUE, 0);
    } else {
        gtk_box_pack_start(GTK_BOX(box), view, TRUE, TRUE, 0);
    }
    gtk_container_add(GTK_CONTAINER(window), box);
    gtk_widget_show_all(window);

    if (selectWord) {
        const auto at = content.find(selectWord);
        if (at != std::string::npos) {
            GtkTextIter start, end;
            gtk_text_buffer_get_iter_at_offset(buffer, &start, int(at));
            gtk_text_buffer_get_iter_at_offset(buffer, &end, int(at + std::strlen(selectWord)));
            gtk_text_buffer_select_range(buffer, &start, &end);
        }
        gtk_widget_grab_focus(view);
    }
    gtk_window_present(GTK_WINDOW(window));
    g_timeout_add(700, report, nullptr);
    gtk_main();
    return 0;
}
