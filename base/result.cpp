#include "base/result.h"

namespace quorvel {

std::string message(const Error& error) {
    std::string text = error.where;
    for (const std::string* const part : {&error.what, &error.toDo}) {
        if (!text.empty() && !part->empty()) {
            text += ": ";
        }
        text += *part;
    }
    return text;
}

} // namespace quorvel
