// The slim header of the window: the bundle's picture, today's date, the menu and the button to
// close. The user moves the window by it.
#pragma once

#include <string>

#include <gtk/gtk.h>

namespace quorvel::window {

class WindowHeader {
public:
    WindowHeader();
    WindowHeader(const WindowHeader&) = delete;
    WindowHeader& operator=(const WindowHeader&) = delete;

    // Owned by the window that it becomes the title bar of.
    GtkWidget* widget() const { return m_bar; }
    // Until then the bar is empty: what it contains takes the toolkit as long as all the rows.
    void showContents();
    // A picture file for that number of pixels per point; one that cannot be read shows nothing.
    void setPicture(const std::string& path, int scale);
    void setDate(const std::string& date);
    // The toolkit takes long to make the menu, which is seen only when it is opened. Its actions
    // are those of the window that contains the header. Without effect if there is one.
    void makeMenu();
    void openMenu();
    int height() const; // points

private:
    GtkWidget* m_bar;
    GtkWidget* m_picture;
    GtkWidget* m_date;
    GtkWidget* m_menuButton;
};

} // namespace quorvel::window
