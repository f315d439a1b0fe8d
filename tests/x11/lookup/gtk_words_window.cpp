// SPDX-License-Identifier: GPL-3.0-or-later
// A GTK 3 window of words for the look-up tests, the benchmark and the demonstration: a text view
// holding the given text. Once drawn it prints where each word's middle is on the screen
// (root-window pixels), one "INDEX WORD x y" per line, then "ready".
//     gtk_words_window [--select TEXT] [--title TITLE] TEXT…
// With --select the view gets the focus and TEXT is selected in it.
#include <gtk/gtk.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

GtkWidget* view = nullptr;

gboolean report(gpointer)
{
    GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
    GtkTextIter end;
    gtk_text_buffer_get_start_iter(buffer, &end);
    int index = 0;
    while (gtk_text_iter_forward_word_end(&end)) {
        GtkTextIter start = end;
        gtk_text_iter_backward_word_start(&start);
        gchar* word = gtk_text_iter_get_text(&start, &end);
        GtkTextIter middle = start;
        gtk_text_iter_forward_chars(&middle, (gtk_text_iter_get_offset(&end) - gtk_text_iter_get_offset(&start)) / 2);
        GdkRectangle rect;
        gtk_text_view_get_iter_location(GTK_TEXT_VIEW(view), &middle, &rect);
        int windowX = 0, windowY = 0, originX = 0, originY = 0;
        gtk_text_view_buffer_to_window_coords(GTK_TEXT_VIEW(view), GTK_TEXT_WINDOW_TEXT, rect.x + rect.width / 2,
                                              rect.y + rect.height / 2, &windowX, &windowY);
        gdk_window_get_origin(gtk_text_view_get_window(GTK_TEXT_VIEW(view), GTK_TEXT_WINDOW_TEXT), &originX, &originY);
        std::printf("%d %s %d %d\n", index++, word, originX + windowX, originY + windowY);
        g_free(word);
    }
    std::printf("ready\n");
    std::fflush(stdout);
    return G_SOURCE_REMOVE;
}

} // namespace

int main(int argc, char** argv)
{
    gtk_init(&argc, &argv);
    const char* selection = nullptr;
    const char* title = "Words";
    std::string text;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--select") == 0 && i + 1 < argc)
            selection = argv[++i];
        else if (std::strcmp(argv[i], "--title") == 0 && i + 1 < argc)
            title = argv[++i];
        else
            text += (text.empty() ? "" : " ") + std::string(argv[i]);
    }

    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window), title);
    gtk_window_set_default_size(GTK_WINDOW(window), 1000, 700);
    gtk_window_move(GTK_WINDOW(window), 40, 60);
    g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);

    view = gtk_text_view_new();
    gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(view), GTK_WRAP_WORD);
    gtk_text_view_set_left_margin(GTK_TEXT_VIEW(view), 16);
    gtk_text_view_set_top_margin(GTK_TEXT_VIEW(view), 16);
    gtk_text_view_set_pixels_below_lines(GTK_TEXT_VIEW(view), 10);
    GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
    gtk_text_buffer_set_text(buffer, text.c_str(), -1);
    GtkCssProvider* css = gtk_css_provider_new();
    gtk_css_provider_load_from_data(css, "textview { font-size: 15pt; }", -1, nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(view), GTK_STYLE_PROVIDER(css),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    gtk_container_add(GTK_CONTAINER(window), view);
    gtk_widget_show_all(window);

    if (selection) {
        const auto at = text.find(selection);
        if (at != std::string::npos) {
            GtkTextIter start, end;
            gtk_text_buffer_get_iter_at_offset(buffer, &start,
                                               int(g_utf8_pointer_to_offset(text.c_str(), text.c_str() + at)));
            end = start;
            gtk_text_iter_forward_chars(&end, int(g_utf8_strlen(selection, -1)));
            gtk_text_buffer_select_range(buffer, &start, &end);
        }
        gtk_widget_grab_focus(view);
    }
    gtk_window_present(GTK_WINDOW(window));
    g_timeout_add(700, report, nullptr);
    gtk_main();
    return 0;
}
