// Starting GTK for a program that is nothing but the agenda's window.
#pragma once

#include <stdexcept>

namespace quorvel::window {

class NoDisplayError : public std::runtime_error {
public:
    using runtime_error::runtime_error;
};

// Settles what GTK is to do without. First of all in a program: it touches the environment, which
// is safe only while there is one thread.
void prepareToolkit();

// Opens the display. Throws NoDisplayError.
void startToolkit();

} // namespace quorvel::window
