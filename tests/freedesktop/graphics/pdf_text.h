// The texts of a PDF: newer cairo writes the description of the document into a compressed stream,
// older cairo into the file as it is.
#pragma once

#include <string>
#include <string_view>

namespace quorvel::freedesktop {

// The file's bytes and, after them, what its compressed streams contain.
std::string pdfText(std::string_view file);

} // namespace quorvel::freedesktop
