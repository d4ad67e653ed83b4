#include "app/password_prompt.h"

#include <csignal>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "app/input_line.h"
#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::FileDescriptor;
using freedesktop::translated;

namespace {

constexpr std::size_t longestPassword = 1024; // bytes

volatile std::sig_atomic_t isInterrupted = 0;

void interrupt(int) {
    isInterrupted = 1;
}

// While it exists, Ctrl+C ends a read instead of the process, so that the terminal is restored.
class Interruption {
public:
    Interruption() {
        isInterrupted = 0;
        struct sigaction action {};
        action.sa_handler = interrupt;
        ::sigaction(SIGINT, &action, &m_before);
    }
    ~Interruption() { ::sigaction(SIGINT, &m_before, nullptr); }
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

private:
    struct sigaction m_before {};
};

// While it exists, the terminal does not show what is typed.
class HiddenInput {
public:
    explicit HiddenInput(int terminal)
        : m_terminal(terminal) {
        m_isTerminal = ::tcgetattr(terminal, &m_before) == 0;
        termios hidden = m_before;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        if (m_isTerminal) {
            ::tcsetattr(m_terminal, TCSAFLUSH, &hidden);
        }
    }
    ~HiddenInput() {
        if (m_isTerminal) {
            ::tcsetattr(m_terminal, TCSAFLUSH, &m_before);
        }
    }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

private:
    int m_terminal;
    bool m_isTerminal = false;
    termios m_before{};
};

Error noPassword() {
    return {translated("no password was given"), {}, translated("try again")};
}

Result<std::string> passwordFrom(int descriptor) {
    const InputLine line =
        readInputLine(descriptor, longestPassword, [] { return isInterrupted != 0; });
    if (line.isTooLong) {
        return Error{translated("the password is too long"), {}, {}};
    }
    return line.text.empty() || isInterrupted != 0 ? Result<std::string>(noPassword()) : line.text;
}

void show(int terminal, const std::string& text) {
    static_cast<void>(!::write(terminal, text.data(), text.size()));
}

} // namespace

Result<std::string> askForPassword(const std::string& question) {
    const FileDescriptor terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC));
    if (!terminal.isOpen()) {
        return Error{translated("there is no terminal to ask for the password"),
                     {},
                     translated("write the password to standard input, with --password-stdin")};
    }
    show(terminal.get(), question);
    const Interruption interruption;
    const HiddenInput hidden(terminal.get());
    Result<std::string> password = passwordFrom(terminal.get());
    show(terminal.get(), "\n");
    return password;
}

Result<std::string> readPassword() {
    isInterrupted = 0;
    return passwordFrom(STDIN_FILENO);
}

} // namespace quorvel::app
