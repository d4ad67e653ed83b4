#include "tests/golden/drawing_versions.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <hb.h>
#include <pango/pango.h>
#include FT_FREETYPE_H

#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>

#include "base/stable_hash.h"

namespace quorvel::golden {
namespace {

std::string freeTypeVersion() {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0)
        return "missing";
    FT_Int major = 0;
    FT_Int minor = 0;
    FT_Int patch = 0;
    FT_Library_Version(library, &major, &minor, &patch);
    FT_Done_FreeType(library);
    return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(patch);
}

// Of the font that is chosen for the pattern; empty if there is none.
std::string fontFile(const char* name) {
    const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> pattern(
        FcNameParse(reinterpret_cast<const FcChar8*>(name)), &FcPatternDestroy);
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultNoMatch;
    const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> font(
        FcFontMatch(nullptr, pattern.get(), &result), &FcPatternDestroy);
    FcChar8* file = nullptr;
    if (!font || FcPatternGetString(font.get(), FC_FILE, 0, &file) != FcResultMatch)
        return {};
    return reinterpret_cast<const char*>(file);
}

std::string fontVersion(const char* name) {
    std::ifstream file(fontFile(name), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return bytes.empty() ? "missing" : hexDigits(stableHash(bytes), 16);
}

} // namespace

std::string drawingVersions() {
    std::string versions = std::string("cairo ") + cairo_version_string() + "\n";
    versions += std::string("Pango ") + pango_version_string() + "\n";
    versions += std::string("HarfBuzz ") + hb_version_string() + "\n";
    versions += "FreeType " + freeTypeVersion() + "\n";
    for (const char* font : {"Inter", "Noto Sans Arabic", "Noto Sans CJK JP", "Noto Color Emoji"})
        versions += std::string(font) + " " + fontVersion(font) + "\n";
    return versions;
}

} // namespace quorvel::golden
