// CT_AppVersion: the product version of this library build, as numbers and as display texts.
//
// Errors: records none; running out of memory throws CT_SmartHeapException.
// Threads: any may read; whoever changes an object has it alone.
#ifndef FOUNDATION_CORE_VERSION_APPVERSION_H
#define FOUNDATION_CORE_VERSION_APPVERSION_H

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_AppVersion {
public:
    // Edition 7, version 7.0.0, build 615, a release, without product names.
    CT_AppVersion() { v_Init(); }
    // A copy builds its own texts when they are first read.
    CT_AppVersion(const CT_AppVersion& other) noexcept { *this = other; }
    CT_AppVersion& operator=(const CT_AppVersion& other) noexcept;
    ~CT_AppVersion() = default;

    [[nodiscard]] unsigned int n_GetEdition() const { return edition_; }
    [[nodiscard]] unsigned int n_GetMajorVersion() const { return major_; }
    [[nodiscard]] unsigned int n_GetMinorVersion() const { return minor_; }
    [[nodiscard]] unsigned int n_GetMaintenance() const { return maintenance_; }
    [[nodiscard]] unsigned int n_GetBuild() const { return build_; }
    [[nodiscard]] BOOL b_GetBeta() const { return beta_level_ != 0 ? TRUE : FALSE; }
    // 0 for a release; 1 " Beta", 2 " Pre-Release", 3 " RC1", 4 " RC2", 5 " RC", 6 " Preview".
    [[nodiscard]] unsigned int n_GetBetaLevel() const { return beta_level_; }

    // "7.0.0.615", with the label of a pre-release behind it, and "Edition 7 Build 615".
    [[nodiscard]] const CT_UString* pcco_GetProductVersion() const;
    [[nodiscard]] const CT_UString* pcco_GetProductEdition() const;

    // A null name is empty.
    void v_SetShortProductName(const CT_UString* name);
    [[nodiscard]] const CT_UString* pcco_GetShortProductName() const { return &short_name_; }
    void v_SetLongProductName(const CT_UString* name);
    [[nodiscard]] const CT_UString* pcco_GetLongProductName() const { return &long_name_; }

private:
    void v_Init();
    void v_Update() const;  // builds the texts if they are stale
    friend struct AppVersionTestAccess;

    mutable BOOL texts_stale_ = TRUE;
    mutable CT_UString product_version_;
    mutable CT_UString product_edition_;
    unsigned int edition_ = 0;
    unsigned int major_ = 0;
    unsigned int minor_ = 0;
    unsigned int maintenance_ = 0;
    unsigned int build_ = 0;
    unsigned int beta_level_ = 0;
    CT_UString short_name_;
    CT_UString long_name_;
};

#endif
