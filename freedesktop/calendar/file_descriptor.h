// An open file of the system's, closed with its object. For this folder's own sources.
#pragma once

#include <unistd.h>

namespace quorvel::freedesktop::ics {

class Descriptor {
public:
    explicit Descriptor(int value)
        : m_value(value) {}
    ~Descriptor() {
        if (m_value >= 0) {
            close(m_value);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_value; }
    bool isOpen() const { return m_value >= 0; }

private:
    int m_value;
};

} // namespace quorvel::freedesktop::ics
