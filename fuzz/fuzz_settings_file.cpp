#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/failure.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "fuzz_support.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace {

using namespace anomalis;

constexpr const char* key = "fuzz_key";

/// True when the text is a settings file. What was read is written so that it reads back as the same.
bool reads_back(std::string_view text) {
    try {
        const SettingsTable values = parse_settings(text);
        require(parse_settings(settings_text(values)) == values);
        return true;
    } catch (const Fault&) {
        return false;
    }
}

}  // namespace

/// A program starts with any settings file, says one thing at most, keeps what it is told, and leaves a file
/// that it does not understand as it is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TempFolder folder;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const bool understood = reads_back(text);
    const std::string path = folder.write("settings.conf", text);
    ScriptedPrompts prompts;
    Settings settings(path, prompts);
    const int status = settings.set(settings_section, key, text.substr(0, 64));
    const std::string kept = settings.get(settings_section, key);
    require(prompts.messages.size() == (understood ? 0 : 1));
    require((status == 0) == understood);
    require((folder.read("settings.conf") == text) == !understood);
    if (!understood) return 0;
    const Settings again(path, prompts);
    require(again.get(settings_section, key) == kept && prompts.messages.empty());
    return 0;
}
