#include "freedesktop/text/fonts.h"

#include <algorithm>
#include <array>

#include <fontconfig/fontconfig.h>
#include <pango/pangofc-fontmap.h>

#include "freedesktop/session/desktop_settings.h"
#include "freedesktop/text/font_context.h"

namespace quorvel::freedesktop {

namespace {

bool isSameName(const FcChar8* name, const std::string& other) {
    return FcStrCmpIgnoreCase(name, reinterpret_cast<const FcChar8*>(other.c_str())) == 0;
}

bool isGenericName(const std::string& family) {
    constexpr std::array names = {"sans", "sans-serif", "serif", "monospace", "system-ui"};
    return std::any_of(names.begin(), names.end(), [&](const char* name) {
        return isSameName(reinterpret_cast<const FcChar8*>(name), family);
    });
}

// A font may have names in several languages.
bool hasFamilyName(FcPattern* font, const std::string& family) {
    FcChar8* name = nullptr;
    for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
        if (isSameName(name, family))
            return true;
    }
    return false;
}

bool isFamilyOfAnyFont(const std::string& family) {
    const FcFontSet* fonts = FcConfigGetFonts(nullptr, FcSetSystem);
    for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
        if (hasFamilyName(fonts->fonts[i], family))
            return true;
    }
    return false;
}

// Pango loads the list of fonts in the background. A program that asks fontconfig before that has
// ended loads the list a second time.
void waitForFonts(PangoContext* context) {
    pango_fc_font_map_get_config(PANGO_FC_FONT_MAP(pango_context_get_font_map(context)));
}

std::optional<std::string> desktopFontFamily() {
    const auto name = DesktopSetting("org.gnome.desktop.interface", "font-name").value();
    if (!name)
        return std::nullopt;
    const FontDescriptionHandle description(pango_font_description_from_string(name->c_str()));
    const char* family = pango_font_description_get_family(description.get());
    if (family == nullptr || *family == '\0')
        return std::nullopt;
    return family;
}

} // namespace

bool isFontInstalled(const std::string& family) {
    if (family.empty() || g_utf8_validate(family.c_str(), -1, nullptr) == 0)
        return false;
    waitForFonts(createFontContext({}).get());
    return isGenericName(family) || isFamilyOfAnyFont(family);
}

bool areFontsInstalled() {
    waitForFonts(createFontContext({}).get());
    const FcFontSet* fonts = FcConfigGetFonts(nullptr, FcSetSystem);
    return fonts != nullptr && fonts->nfont > 0;
}

std::string systemFontFamily(PangoContext* context, const std::optional<std::string>& requested) {
    if (requested && !requested->empty())
        return *requested;
    const std::optional<std::string> desktopFamily = desktopFontFamily();
    waitForFonts(context);
    if (desktopFamily && isFamilyOfAnyFont(*desktopFamily))
        return *desktopFamily;
    for (const char* family : {"Inter", "Cantarell", "Noto Sans", "DejaVu Sans"}) {
        if (isFamilyOfAnyFont(family))
            return family;
    }
    return "sans-serif";
}

} // namespace quorvel::freedesktop
