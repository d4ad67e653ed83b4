// The row of a setting that is one of several choices. Those of a colour show the colours.
#pragma once

#include <string>
#include <vector>

#include "shells/settings/setting_row.h"

namespace quorvel::settings_pages {

class ChoiceRow final : public SettingRow {
public:
    ChoiceRow(const freedesktop::SettingDescription& setting, SettingsModel& model);

private:
    void showValue() override;
    void choose();
    void addChoice(std::string value, const std::string& label);

    // By position in the list. Empty: no value is set, and the host chooses the colour.
    std::vector<std::string> m_values;
};

} // namespace quorvel::settings_pages
