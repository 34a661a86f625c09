// CT_ModuleVersion: a module's version resource, its fixed part and its texts.
//
// A module of a system without resources registers its version with platform::RegisterVersion when
// it is loaded; the library itself does so. Objects keep copies of everything.
// Errors: records none; running out of memory throws CT_SmartHeapException.
// Threads: one object, one thread at a time.
#ifndef FOUNDATION_CORE_VERSION_MODULEVERSION_H
#define FOUNDATION_CORE_VERSION_MODULEVERSION_H

#include <cstdint>

#include "Foundation/Core/Container/StringStringMap.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_ModuleVersion {
public:
    using st_FixedFileInfo = VS_FIXEDFILEINFO;
    static constexpr std::uint32_t kSignature = 0xFEEF04BD;

    // Not valid: all numbers 0, all texts empty.
    CT_ModuleVersion() = default;
    // The version that the module registered (null: the program's); not valid when it has none. Of
    // several texts with one name the first that is not empty counts; standard names are known in
    // any case.
    explicit CT_ModuleVersion(HINSTANCE module);
    CT_ModuleVersion(const CT_ModuleVersion&) = default;
    // Running out of memory leaves this object as it was.
    CT_ModuleVersion& operator=(const CT_ModuleVersion& other);
    ~CT_ModuleVersion() = default;

    // Whether the signature is kSignature.
    [[nodiscard]] BOOL b_IsValid() const { return info_.dwSignature == kSignature ? TRUE : FALSE; }
    // The low half of the file version, 0 when not valid.
    [[nodiscard]] std::uint32_t n_GetBuildNumber() const {
        return b_IsValid() ? info_.dwFileVersionLS : 0;
    }
    [[nodiscard]] const st_FixedFileInfo* pcso_GetInfo() const { return &info_; }
    // All texts by their names.
    [[nodiscard]] const CT_StringStringMap* pcco_GetMap() const { return &map_; }

    // The texts with standard names, empty where the module has none.
    [[nodiscard]] const CT_UString* pcco_GetComments() const { return &texts_[0]; }
    [[nodiscard]] const CT_UString* pcco_GetCompanyName() const { return &texts_[1]; }
    [[nodiscard]] const CT_UString* pcco_GetFileDescription() const { return &texts_[2]; }
    [[nodiscard]] const CT_UString* pcco_GetFileVersion() const { return &texts_[3]; }
    [[nodiscard]] const CT_UString* pcco_GetInternalName() const { return &texts_[4]; }
    [[nodiscard]] const CT_UString* pcco_GetLegalCopyright() const { return &texts_[5]; }
    [[nodiscard]] const CT_UString* pcco_GetLegalTrademarks() const { return &texts_[6]; }
    [[nodiscard]] const CT_UString* pcco_GetOriginalFilename() const { return &texts_[7]; }
    [[nodiscard]] const CT_UString* pcco_GetPrivateBuild() const { return &texts_[8]; }
    [[nodiscard]] const CT_UString* pcco_GetProductName() const { return &texts_[9]; }
    [[nodiscard]] const CT_UString* pcco_GetProductVersion() const { return &texts_[10]; }
    [[nodiscard]] const CT_UString* pcco_GetSpecialBuild() const { return &texts_[11]; }

private:
    st_FixedFileInfo info_{};
    std::uint32_t reserved_ = 0;
    CT_StringStringMap map_;
    CT_UString texts_[12];
};

#endif
