#include "Foundation/Core/Version/ModuleVersion.h"

#include <algorithm>
#include <array>

#include "Foundation/Platform/Modules.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

// In the order of the getters.
constexpr auto kStandardNames = std::to_array<const char16_t*>(
    {u"Comments", u"CompanyName", u"FileDescription", u"FileVersion", u"InternalName",
     u"LegalCopyright", u"LegalTrademarks", u"OriginalFilename", u"PrivateBuild", u"ProductName",
     u"ProductVersion", u"SpecialBuild"});

}  // namespace

CT_ModuleVersion::CT_ModuleVersion(HINSTANCE module) {
    const platform::VersionResource* const version = platform::FindVersion(module);
    if (version == nullptr) return;
    info_ = version->fixed;
    for (const auto& [name, text] : version->texts) {
        map_.v_Insert(name, text);
        for (std::size_t i = 0; i < kStandardNames.size(); ++i) {
            const bool same = platform::CompareNoCase(name, kStandardNames[i]) == 0;
            if (same && texts_[i].n_GetLength() == 0) texts_[i].v_Set(text);
        }
    }
}

CT_ModuleVersion& CT_ModuleVersion::operator=(const CT_ModuleVersion& other) {
    map_ = other.map_;  // the one step that needs memory
    info_ = other.info_;
    reserved_ = other.reserved_;
    std::ranges::copy(other.texts_, texts_);
    return *this;
}
